// The driver session: steps, calls and log entries of connects and disconnects.
#include <gtest/gtest.h>

#include "bridge/session.h"
#include "support/colors.h"
#include "support/test_program.h"
#include "workbench/gpio_panel.h"

namespace varzelin::testing {
namespace {

using boards::statuses::call_failed;
using Calls = std::vector<std::string>;

// The workbench loaded, closed session, empty log, time standing at a whole second.
struct BridgeSession : ::testing::Test, TestProgram {
  frmI2C_General* bench = nullptr;

  void SetUp() override {
    bench = &workbench();
    recorder = {};
    bench->Txtlog.Text = "";
    board.set_timing(false);
  }
  // A log entry of the virtual clock's first second.
  static std::string entry(const std::string& message) { return message + " :11-25-2008 14:03:07\r\n\r\n"; }
  std::string take_log() {
    std::string text = log();
    bench->Txtlog.Text = "";
    return text;
  }
  // Counts the yields while `action` runs.
  template <class Action>
  int yields(Action&& action) {
    int count = 0;
    user.at_yield = [&] { ++count; };
    action();
    user.at_yield = nullptr;
    return count;
  }
  Calls take_calls() { return std::exchange(recorder.calls, {}); }

  const std::string setting_up = entry("Setting eventable up,  verifing that the device is attached...\r\n");
};

TEST_F(BridgeSession, AGoodConnectSaysSoInTheLogAndOnTheLamps) {
  bench->Connect_Usb();
  const std::string handle = forms::Hex(store.Dev_Handle);
  EXPECT_EQ(take_log(), setting_up +
                            entry("DeviceAttach: Received and accepted attach for \r\nvendor ID &H7A53 "
                                  "product ID &H2005\r\ndevice handle &H" +
                                  handle) +
                            entry(""));
  EXPECT_EQ(store.Usb_Open, -1);
  EXPECT_EQ(store.Usb_Attached, -1);
  EXPECT_EQ(store.Usb_Status, 0);
  EXPECT_EQ(store.Log_Error, 0);
  EXPECT_EQ(store.Dev_Handle, store.Dev_Ctx.device);
  EXPECT_GT(store.Dev_Handle, 0);
  EXPECT_EQ(bench->txthDriver.Text, std::to_string(store.Drv_Handle));
  EXPECT_EQ(bench->shpUSBCon(0).FillColor, light_green);
  EXPECT_EQ(bench->shpUSBCon(1).FillColor, black);
  EXPECT_EQ(bench->ShpHandleStatus.FillColor, light_green);
  EXPECT_EQ(bench->shpLogStatus.FillColor, light_green);
  EXPECT_EQ(bench->cbNoc.Caption, "USB Initialized");
  EXPECT_FALSE(bench->cbNoc.Enabled);
  EXPECT_EQ(take_calls(), (Calls{"WDU_VB_Init", "WDU_SetInterface", "WDU_GetDeviceInfo"}));
}

TEST_F(BridgeSession, TheAttachLampOfTheFormInFrontTurnsGreenOnceTheDriverIsOpen) {
  frmGPIO& gpio = form<frmGPIO>();
  gpio.Show();
  bench->Connect_Usb();
  EXPECT_EQ(gpio.ShpAttach.FillColor, light_green);
  EXPECT_EQ(bench->ShpAttach.FillColor, black);
}

TEST_F(BridgeSession, AConnectWaitsTenThousandYieldsWhetherTheBoardCameOrNot) {
  // One before the driver is opened, two around Usb_Open.
  EXPECT_EQ(yields([&] { bench->Connect_Usb(); }), 10003);
  EXPECT_EQ(yields([&] { bench->Disconnect_USB(); }), 5);
  board.unplug();
  EXPECT_EQ(yields([&] { bench->Connect_Usb(); }), 10003);
}

TEST_F(BridgeSession, ConnectingWhileOpenOnlyLogs) {
  bench->Connect_Usb();
  take_log();
  take_calls();
  const auto handle = store.Drv_Handle;
  EXPECT_EQ(yields([&] { bench->Connect_Usb(); }), 0);
  Mod_Connect_Usb(program);
  EXPECT_EQ(take_log(), entry("Already Opened") + entry("Already Opened"));
  EXPECT_EQ(take_calls(), Calls{});
  EXPECT_EQ(store.Drv_Handle, handle);
  EXPECT_EQ(store.Usb_Open, -1);
}

TEST_F(BridgeSession, WithoutADriverTheSessionStaysClosed) {
  board.set_driver_present(false);
  bench->Connect_Usb();
  EXPECT_EQ(take_log(),
            setting_up + entry("Form_Activate(): Failed to initialize USB driver: error &H20000001\r\n(The "
                               "driver is not installed)"));
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_EQ(store.Usb_Status, boards::statuses::driver_not_installed);
  EXPECT_EQ(store.Log_Error, -1);
  EXPECT_EQ(bench->cbNoc.Caption, "USB Board won't intialize");
  EXPECT_EQ(bench->shpLogStatus.FillColor, red);
  EXPECT_EQ(take_calls(), Calls{"WDU_VB_Init"});

  board.set_driver_present(true);
  bench->Connect_Usb();
  EXPECT_EQ(bench->cbNoc.Caption, "USB Board won't intialize") << "kept until the next start";
  EXPECT_EQ(store.Log_Error, 0);
}

TEST_F(BridgeSession, WithoutABoardTheSessionOpensAllTheSame) {
  board.unplug();
  bench->Connect_Usb();
  // The number behind "&H" is decimal.
  EXPECT_EQ(take_log(), setting_up + entry("WriteGPIOPipe: WDU_GetDeviceInfo() failed:\r\nerror "
                                           "&H536870914 (Invalid handle)\r\n"));
  EXPECT_EQ(store.Usb_Open, -1);
  EXPECT_EQ(store.Dev_Handle, 0);
  EXPECT_EQ(store.Log_Error, -1);
  EXPECT_EQ(bench->shpUSBCon(0).FillColor, light_green);
  EXPECT_EQ(bench->ShpHandleStatus.FillColor, light_green);
  EXPECT_FALSE(bench->cbNoc.Enabled);
}

TEST_F(BridgeSession, AFailingDeviceInformationOnlyLogs) {
  board.fail_call("WDU_GetDeviceInfo", 255);
  bench->Connect_Usb();
  EXPECT_NE(log().find("WriteGPIOPipe: WDU_GetDeviceInfo() failed:\r\nerror &H255 (Unknown error)\r\n :"),
            std::string::npos);
  EXPECT_EQ(store.Usb_Open, -1);
  EXPECT_NE(store.Dev_Handle, 0);
}

TEST_F(BridgeSession, AFailingInterfaceSettingRefusesTheBoard) {
  board.fail_call("WDU_SetInterface", call_failed);
  bench->Connect_Usb();
  const std::string text = take_log();
  const std::string refused = text.substr(setting_up.size());
  const std::string handle = refused.substr(refused.find("device &H") + 9, 3);
  EXPECT_EQ(text, setting_up +
                      entry("DeviceAttach: WDU_SetInterface failed\r\n(num. 0 alternate 0)\r\ndevice &H" +
                            handle + ": error &H20000008\r\n(The operation failed)") +
                      entry("") +
                      entry("WriteGPIOPipe: WDU_GetDeviceInfo() failed:\r\nerror &H536870914 (Invalid "
                            "handle)\r\n"));
  EXPECT_EQ(store.Usb_Attached, 0);
  EXPECT_EQ(store.Dev_Ctx.device, 0);
  EXPECT_EQ(store.Dev_Ctx.last_status, call_failed);
  EXPECT_EQ(store.Usb_Open, -1);
}

TEST_F(BridgeSession, AnEarlierHandleIsNotTakenForTheNewOne) {
  bench->Connect_Usb();
  bench->Disconnect_USB();
  EXPECT_NE(store.Dev_Ctx.device, 0) << "what the last session left";
  board.unplug();
  bench->Connect_Usb();
  EXPECT_EQ(store.Dev_Handle, 0);
}

TEST_F(BridgeSession, PullingTheBoardOnlyLogs) {
  bench->Connect_Usb();
  take_log();
  const std::string handle = forms::Hex(store.Dev_Handle);
  board.unplug();
  program.runtime.DoEvents();
  EXPECT_EQ(take_log(), entry("DeviceDetach: Received detach for device handle &H" + handle));
  EXPECT_EQ(store.Usb_Open, -1);
  EXPECT_EQ(store.Usb_Attached, 0);
  EXPECT_EQ(store.Dev_Ctx.device, 0);
  EXPECT_NE(store.Dev_Handle, 0) << "until the next checked transfer or connect";
  board.plug();
  program.runtime.DoEvents();
  EXPECT_EQ(store.Usb_Attached, -1);
}

TEST_F(BridgeSession, ABoardThatComesAfterAnErrorTurnsTheLogsLampGreen) {
  board.unplug();
  bench->Connect_Usb();
  EXPECT_EQ(bench->shpLogStatus.FillColor, red);
  board.plug();
  program.runtime.DoEvents();
  EXPECT_EQ(store.Log_Error, 0);
  EXPECT_EQ(bench->shpLogStatus.FillColor, light_green);
}

TEST_F(BridgeSession, ADisconnectClosesTheHandleBeforeTheKitGetsIt) {
  bench->Connect_Usb();
  take_calls();
  take_log();
  bench->Disconnect_USB();
  EXPECT_EQ(take_calls(), (Calls{"WDU_ResetDevice", "CloseHandle", "WDU_VB_Uninit"}));
  EXPECT_EQ(take_log(), "");
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_EQ(store.Usb_Attached, 0);
  EXPECT_EQ(bench->shpUSBCon(0).FillColor, black);
  EXPECT_EQ(bench->shpUSBCon(1).FillColor, light_green);
  EXPECT_EQ(bench->ShpHandleStatus.FillColor, light_green) << "cmdUSBDisconnect clears it, this doesn't";
}

TEST_F(BridgeSession, DisconnectingTwiceDoesNothingTheSecondTime) {
  bench->Connect_Usb();
  bench->Disconnect_USB();
  take_calls();
  EXPECT_EQ(yields([&] {
              bench->Disconnect_USB();
              Mod_Disconnect_USB(program);
            }),
            0);
  EXPECT_EQ(take_calls(), Calls{});
}

TEST_F(BridgeSession, ADisconnectNeedsADriverHandle) {
  store.Usb_Open = true_flag;
  store.Drv_Handle = 0;
  bench->Disconnect_USB();
  EXPECT_EQ(store.Usb_Open, -1);
  EXPECT_EQ(take_calls(), Calls{});
}

TEST_F(BridgeSession, TheButtonsAddTheirOwnLamps) {
  click(bench->cmdUSBConnect);
  EXPECT_FALSE(bench->cmdexit.Enabled);
  bench->cbSend.Enabled = true;
  bench->cbReset.Enabled = true;
  click(bench->cmdUSBDisconnect);
  EXPECT_TRUE(bench->cmdexit.Enabled);
  EXPECT_FALSE(bench->cbSend.Enabled);
  EXPECT_FALSE(bench->cbReset.Enabled);
  EXPECT_EQ(bench->txthDriver.Text, "Closed");
  EXPECT_EQ(bench->ShpHandleStatus.FillColor, black);
}

TEST_F(BridgeSession, TheManualBoxSetsTheFlagAndNothingElse) {
  click(bench->ChKManUsbConn);
  EXPECT_EQ(store.Man_Usb_Conn, -1);
  click(bench->ChKManUsbConn);
  EXPECT_EQ(store.Man_Usb_Conn, 0);
  EXPECT_EQ(take_calls(), Calls{});
}

TEST_F(BridgeSession, TheTwinsTouchNoControlButTheLog) {
  program.runtime.take_changes();
  EXPECT_EQ(yields([&] { Mod_Connect_Usb(program); }), 10001);
  EXPECT_EQ(store.Usb_Open, -1);
  EXPECT_NE(store.Dev_Handle, 0);
  EXPECT_EQ(yields([&] { Mod_Disconnect_USB(program); }), 4);
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_EQ(store.Usb_Attached, -1) << "only Disconnect_USB clears it";
  EXPECT_EQ(take_calls(), (Calls{"WDU_VB_Init", "WDU_SetInterface", "WDU_GetDeviceInfo", "WDU_ResetDevice",
                                 "CloseHandle", "WDU_VB_Uninit"}));
  board.set_driver_present(false);
  Mod_Connect_Usb(program);
  EXPECT_NE(log().find("Form_Activate(): Failed to initialize USB driver: error &H20000001"),
            std::string::npos);
  EXPECT_EQ(bench->cbNoc.Caption, "USB Initialized");
  for (const forms::Control* control : program.runtime.take_changes().controls) {
    EXPECT_TRUE(control == &bench->Txtlog || control == &bench->shpLogStatus) << control->full_name();
  }
}

}  // namespace
}  // namespace varzelin::testing
