// The transfer routines, checked and fast, and the log that the checked ones write.
#include <gtest/gtest.h>

#include "bridge/log.h"
#include "bridge/session.h"
#include "bridge/transfer.h"
#include "panels/multi_function/proximity_offset.h"
#include "support/colors.h"
#include "support/test_program.h"
#include "workbench/gpio_panel.h"

namespace varzelin::testing {
namespace {

struct BridgeTransfer : ::testing::Test, TestProgram {
  frmI2C_General* bench = nullptr;

  void SetUp() override {
    board.set_timing(false);
    bench = &workbench();
    board.mount("KVT71385");
    bench->Connect_Usb();
    clear();
  }
  void clear() {
    bench->Txtlog.Text = "";
    recorder = {};
  }
  static std::string entry(const std::string& message, const std::string& eol = "\r\n") {
    return message + " :11-25-2008 14:03:07" + eol + eol;
  }
};

TEST_F(BridgeTransfer, ClosedTheCheckedOnesLogAndTransferNothing) {
  bench->Disconnect_USB();
  clear();
  set_request(store, boards::pipe_i2c_out, {1, 0x89, 0});
  int yields = 0;
  user.at_yield = [&] { ++yields; };
  WritePipe(program);
  EXPECT_EQ(yields, 0);
  ReadPipe(program);
  EXPECT_EQ(yields, 1);
  EXPECT_EQ(log(), entry("Write GPIOPipe .. USB Not opened") + entry("ReadPipe .. USB Not opened"));
  EXPECT_TRUE(recorder.calls.empty());
}

TEST_F(BridgeTransfer, ACheckedTransferAsksForTheDeviceFirst) {
  store.Log_Error = true_flag;
  store.Dev_Handle = 0;
  set_request(store, boards::pipe_gpio_out, {1, 2, 3, 4});
  WritePipe(program);
  set_reply(store, boards::pipe_gpio_in, 25);
  ReadPipe(program);
  EXPECT_EQ(recorder.calls, (std::vector<std::string>{"WDU_GetDeviceInfo", "WDU_Transfer",
                                                      "WDU_GetDeviceInfo", "WDU_Transfer"}));
  EXPECT_EQ(store.Dev_Handle, store.Dev_Ctx.device);
  EXPECT_EQ(store.Log_Error, 0);
  EXPECT_EQ(log(), "");
}

TEST_F(BridgeTransfer, AFailedCheckedTransferLogsItsStatusInHexadecimal) {
  board.fail_transfers(2, 255);
  set_request(store, boards::pipe_i2c_out, {1, 0x89, 0});
  WritePipe(program);
  set_reply(store, boards::pipe_i2c_in, 2);
  ReadPipe(program);
  EXPECT_EQ(log(), entry("WritePipe: WDU_Transfer() failed: error &HFF (Unknown error)") +
                       entry("ReadPipe: WDU_Transfer() failed: error &HFF (Unknown error)"));
  EXPECT_EQ(store.Log_Error, -1);
  EXPECT_EQ(bench->shpLogStatus.FillColor, red);
  EXPECT_EQ(store.Usb_Status, 255);
}

TEST_F(BridgeTransfer, AFailedDeviceInformationStopsTheTransfer) {
  set_request(store, boards::pipe_i2c_out, {1, 0x89, 0});
  board.fail_call("WDU_GetDeviceInfo", 255);
  WritePipe(program);
  board.fail_call("WDU_GetDeviceInfo", 255);
  ReadPipe(program);
  // The number behind "&H" is decimal here.
  EXPECT_EQ(log(), entry("WritePipe: WDU_GetDeviceInfo() failed:\r\nerror &H255 (Unknown error)\r\n") +
                       entry("ReadPipe: WDU_GetDeviceInfo() failed:\r\nerror &H255 (Unknown error)\r\n"));
  EXPECT_TRUE(recorder.packets.empty());
}

TEST_F(BridgeTransfer, ASettingWithoutPipesHasItsOwnWords) {
  std::vector<boards::PipeInfo> list{{1, 2, 64, 0}};
  EXPECT_FALSE(Get_Pipes(program, {}, list));
  EXPECT_TRUE(list.empty());
  EXPECT_EQ(log(),
            entry("  No pipes are defined for this device \r\nother than the default pipe (number 0)"));
  clear();
  EXPECT_TRUE(Get_Pipes(program, {0, 0xFF, 0, 0, {{1, 2, 64, 0}, {0x81, 2, 64, 0}}}, list));
  EXPECT_EQ(list.size(), 2u);
  EXPECT_EQ(list[1].address, 0x81);
  EXPECT_EQ(log(), "");
}

TEST_F(BridgeTransfer, ASilentDeviceIsNoTransferFailure) {
  board.set_sensor_answers(false);
  set_request(store, boards::pipe_i2c_out, {1, 0x88, 0, 0x5A});
  Fast_Write(program);
  set_reply(store, boards::pipe_i2c_in, 2);
  Fast_Read(program);
  EXPECT_EQ(store.Usb_Status, 0);
  EXPECT_NE(xfer_byte(store, 0), 3);
  EXPECT_EQ(bench->ShpAttach.FillColor, light_green);
}

TEST_F(BridgeTransfer, AFailedFastTransferStopsTheSamplingAndTurnsTheLampRed) {
  for (const bool read : {false, true}) {
    bench->ShpAttach.FillColor = light_green;
    store.Sample_Run = true_flag;
    board.fail_transfers(1);
    set_reply(store, read ? boards::pipe_i2c_in : boards::pipe_i2c_out, 3);
    read ? Fast_Read(program) : Fast_Write(program);
    EXPECT_EQ(store.Sample_Run, 0);
    EXPECT_EQ(bench->ShpAttach.FillColor, red);
    EXPECT_NE(store.Usb_Status, 0);
    EXPECT_EQ(store.Xfer_Buf, (std::vector<std::uint8_t>{0, 0, 0}));
  }
  EXPECT_EQ(log(), "");
  EXPECT_EQ(recorder.calls, (std::vector<std::string>{"WDU_Transfer", "WDU_Transfer"}));
}

TEST_F(BridgeTransfer, AGoodFastTransferLeavesTheSamplingAndYieldsTwice) {
  store.Sample_Run = true_flag;
  bench->ShpAttach.FillColor = red;
  int yields = 0;
  user.at_yield = [&] { ++yields; };
  set_request(store, boards::pipe_i2c_out, {0, 0x88, 0, 0});
  Fast_Write(program);
  EXPECT_EQ(yields, 2);
  EXPECT_EQ(store.Sample_Run, -1);
  EXPECT_EQ(bench->ShpAttach.FillColor, light_green);
}

TEST_F(BridgeTransfer, ClosedAFastTransferIsTriedOnTheStaleHandle) {
  bench->Disconnect_USB();
  clear();
  store.Sample_Run = true_flag;
  EXPECT_NE(store.Dev_Handle, 0);
  set_request(store, boards::pipe_i2c_out, {0, 0x88, 0, 0});
  Fast_Write(program);
  EXPECT_EQ(recorder.calls, std::vector<std::string>{"WDU_Transfer"});
  EXPECT_EQ(bench->ShpAttach.FillColor, red);
  EXPECT_EQ(store.Sample_Run, 0);
  EXPECT_EQ(log(), "");
}

TEST_F(BridgeTransfer, TheLampIsThatOfTheFormInFront) {
  frmGPIO& gpio = form<frmGPIO>();
  gpio.Show();
  bench->ShpAttach.FillColor = forms::clr_black;
  set_request(store, boards::pipe_i2c_out, {0, 0x88, 0, 0});
  Fast_Write(program);
  EXPECT_EQ(gpio.ShpAttach.FillColor, light_green);
  EXPECT_EQ(bench->ShpAttach.FillColor, forms::clr_black);

  form<frmProxOff>().Show();  // has no such lamp
  Fast_Write(program);
  EXPECT_EQ(store.Usb_Status, 0);
  EXPECT_TRUE(user.errors.empty());
  program.forms.unload("frmGPIO");
}

TEST_F(BridgeTransfer, OnlyTheFormInFrontThatGoesLeavesNoneInFront) {
  frmGPIO& gpio = form<frmGPIO>();
  gpio.Show();
  form<frmProxOff>();
  program.forms.unload("frmProxOff");
  program.forms.sweep();
  EXPECT_EQ(store.Active_Form, &gpio);
  store.Active_Form = &form<frmProxOff>();
  program.forms.unload("frmProxOff");
  program.forms.sweep();
  EXPECT_EQ(store.Active_Form, nullptr);
}

// The longest buffer that is put back has 32 bytes.
TEST_F(BridgeTransfer, WhatAHandlerTransfersInAYieldDoesNotDisturbTheTransferAroundIt) {
  for (const int size : {1, 25, 32}) {
    const std::vector<std::uint8_t> sent(static_cast<std::size_t>(size), 0x5A);
    user.at_yield = [&] { set_reply(store, boards::pipe_gpio_in, 3); };
    for (const bool checked : {false, true}) {
      set_blank_request(store, boards::pipe_i2c_out, size);
      store.Xfer_Buf = sent;
      recorder.packets.clear();
      if (checked) {
        WritePipe(program);
      } else {
        Fast_Write(program);
      }
      EXPECT_EQ(store.Pipe_Num, boards::pipe_i2c_out) << size;
      EXPECT_EQ(store.Xfer_Size, size);
      EXPECT_EQ(store.Xfer_Buf, sent);
      ASSERT_EQ(recorder.packets.size(), 1u);
      EXPECT_EQ(recorder.packets[0].pipe, boards::pipe_i2c_out);
      EXPECT_EQ(recorder.packets[0].size, static_cast<std::size_t>(size));
    }
  }
}

// What was to be transferred for the collection before is void.
TEST_F(BridgeTransfer, ACollectionBegunInTheYieldBeforeATransferGivesItUp) {
  using Transfer = Outcome (*)(Program&);
  for (const Transfer transfer : {Transfer{Fast_Write}, Transfer{Fast_Read}, Transfer{WritePipe}}) {
    set_request(store, boards::pipe_i2c_out, {1, 0x89, 0});
    recorder.packets.clear();
    user.at_yield = [&] { ++store.Collections; };
    EXPECT_EQ(transfer(program), Outcome::given_up);
    EXPECT_TRUE(recorder.packets.empty());
    user.at_yield = nullptr;
    EXPECT_NE(transfer(program), Outcome::given_up);
    EXPECT_EQ(recorder.packets.size(), 1u);
  }
}

TEST_F(BridgeTransfer, ReadsGoToTheAddressAboveThatOfTheWrites) {
  struct Addresses {
    int given, write, read;
  };
  for (const auto& [given, write, read] : {Addresses{0x50, 0x50, 0x51}, Addresses{0xFF, 0xFF, 0},
                                           Addresses{-2, 0xFE, 0xFF}, Addresses{0x188, 0x88, 0x89}}) {
    set_bus_address(store, given);
    EXPECT_EQ(store.I2C_WrAdr, write) << given;
    EXPECT_EQ(store.I2C_RdAdr, read) << given;
  }
}

TEST_F(BridgeTransfer, ABlankRequestIsZeroUntilItIsFilled) {
  store.Xfer_Buf = {1, 2, 3};
  set_blank_request(store, boards::pipe_i2c_out, 4);
  EXPECT_EQ(store.Xfer_Buf, (std::vector<std::uint8_t>(4)));
  EXPECT_EQ(store.Xfer_Size, 4);
  EXPECT_EQ(store.Pipe_Num, boards::pipe_i2c_out);
}

TEST_F(BridgeTransfer, AReplyBufferIsZeroUntilItIsAnswered) {
  store.Xfer_Buf = {1, 2, 3};
  set_reply(store, boards::pipe_i2c_in, 4);
  EXPECT_EQ(store.Xfer_Buf, (std::vector<std::uint8_t>(4)));
  EXPECT_EQ(store.Pipe_Num, 0x82);
  EXPECT_THROW(xfer_byte(store, 4), forms::RunTimeError);
  store.Xfer_Size = -1;
  ReDim_Xfer_Buf(store);
  EXPECT_TRUE(store.Xfer_Buf.empty());
}

// ---- The log

TEST_F(BridgeTransfer, AMessageColoursTheLampByTheErrorFlag) {
  Log_Msg(program, "one");
  EXPECT_EQ(bench->shpLogStatus.FillColor, light_green);
  Log_Err(program, "two");
  EXPECT_EQ(bench->shpLogStatus.FillColor, red);
  EXPECT_EQ(store.Log_Error, -1);
  bench->shpLogStatus.FillColor = forms::clr_black;
  Log_Info(program, "three");
  EXPECT_EQ(bench->shpLogStatus.FillColor, forms::clr_black);
  Log_Msg(program, "four");
  EXPECT_EQ(bench->shpLogStatus.FillColor, red);
  EXPECT_EQ(log(), entry("one") + entry("two") + entry("three") + entry("four"));
  EXPECT_EQ(bench->Txtlog.SelStart, static_cast<int>(log().size()));
}

TEST_F(BridgeTransfer, TheEndOfTheLineIsWrittenTwiceWhateverItIs) {
  Log_Msg(program, "one", "0");
  Log_Line(program, bench->Txtlog, "two", "\n", false);
  EXPECT_EQ(log(), entry("one", "0") + entry("two", "\n"));
  Log_Line(program, bench->Txtlog, "three", "", true);
  EXPECT_EQ(log(), entry("three", ""));
  click(bench->cmdClearLog);
  EXPECT_EQ(log(), "");
}

TEST(BridgeLog, TheLogLoadsTheWorkbenchHidden) {
  TestProgram test;
  ASSERT_EQ(test.program.forms.loaded("frmI2C_General"), nullptr);
  Log_Info(test.program, "early");
  ASSERT_NE(test.program.forms.loaded("frmI2C_General"), nullptr);
  EXPECT_FALSE(test.workbench().visible());
  EXPECT_TRUE(test.log().ends_with("early :11-25-2008 14:03:07\r\n\r\n"));
}

}  // namespace
}  // namespace varzelin::testing
