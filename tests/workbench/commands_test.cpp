// The workbench's loading, its communications test, and the commands that go over all rows.
#include "support/workbench_fixture.h"
#include "workbench/gpio_panel.h"

namespace varzelin::testing {
namespace {

constexpr forms::Color fail_back{255};
constexpr forms::Color good_back{32768};

Packet gpio_write(std::vector<int> bytes) {
  return {boards::pipe_gpio_out, std::move(bytes), boards::success, 4};
}

// --- loading ---

struct Loading : ::testing::Test, TestProgram {
  Loading() {
    recorder.packets.clear();
    recorder.calls.clear();
  }
};

TEST_F(Loading, ProbesTheBoardAndSendsTheFirstGpioPacket) {
  frmI2C_General& bench = workbench();
  const std::vector<std::string> probe{"WDU_VB_Init",     "WDU_SetInterface", "WDU_GetDeviceInfo",
                                       "WDU_ResetDevice", "CloseHandle",      "WDU_VB_Uninit"};
  const std::vector<std::string> gpio{
      "WDU_VB_Init",       "WDU_SetInterface", "WDU_GetDeviceInfo", "WDU_GetDeviceInfo", "WDU_Transfer",
      "WDU_GetDeviceInfo", "WDU_Transfer",     "WDU_ResetDevice",   "CloseHandle",       "WDU_VB_Uninit"};
  std::vector<std::string> both = probe;
  both.insert(both.end(), gpio.begin(), gpio.end());
  EXPECT_EQ(recorder.calls, both);
  ASSERT_EQ(recorder.packets.size(), 2u);
  EXPECT_EQ(recorder.packets[0], gpio_write({0xFF, 0xFF, 0x00, 0x00}));
  EXPECT_EQ(recorder.packets[1].pipe, boards::pipe_gpio_in);
  EXPECT_EQ(recorder.packets[1].size, 25u);
  EXPECT_FALSE(bench.visible());
  EXPECT_NE(program.forms.loaded("frmGPIO"), nullptr);
  EXPECT_FALSE(form<frmGPIO>().visible());
  EXPECT_EQ(store.Active_Form, &bench);
  EXPECT_EQ(store.Gpio_Image, (std::array<std::uint8_t, 4>{0, 0, 0xFF, 0xFF}));
}

TEST_F(Loading, FillsTheRowTableAndTheAddresses) {
  frmI2C_General& bench = workbench();
  EXPECT_EQ(bench.Caption, "Varzelin I2C Communications Software");
  EXPECT_EQ(bench.Reg_Adr(0).Text, "00");
  EXPECT_EQ(bench.Reg_Adr(9).Text, "09");
  EXPECT_EQ(bench.Reg_Adr(10).Text, "0A");
  EXPECT_EQ(bench.Reg_Adr(31).Text, "1F");
  for (int i = 0; i < 32; ++i) {
    EXPECT_EQ(bench.Reg_Desc(i).Text + bench.txtBWrite(i).Text + bench.txtRdByte(i).Text.get(), "");
    EXPECT_EQ(bench.shpBwrite(i).FillColor.get(), black);
    EXPECT_EQ(bench.Shape1(i).FillColor.get(), black);
    EXPECT_EQ(bench.Reg_Adr(i).container(), &bench.Frame1(i < 16 ? 0 : 1));
  }
  EXPECT_FALSE(bench.Reg_Adr.has(32));
  EXPECT_EQ(bench.txtI2CAdr.Text, "88");
  EXPECT_EQ(bench.txtActualWrtAddress.Text, "88");
  EXPECT_EQ(bench.txtActualReadAddress.Text, "89");
  EXPECT_EQ(store.I2C_WrAdr, 0x88);
  EXPECT_EQ(store.I2C_RdAdr, 0x89);
}

TEST_F(Loading, LeavesTheSessionClosedAndTheRowCommandsEnabled) {
  store.Man_Usb_Conn = true_flag;
  store.Log_Error = true_flag;
  frmI2C_General& bench = workbench();
  EXPECT_EQ(store.Man_Usb_Conn, 0);
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_EQ(store.Log_Error, 0);
  EXPECT_TRUE(bench.cmdexit.Enabled);
  EXPECT_TRUE(bench.cmdReadRegs.Enabled && bench.Command7.Enabled && bench.cmdwriteAll.Enabled);
  EXPECT_TRUE(bench.Frame1(0).Visible && bench.Frame1(1).Visible);
  EXPECT_EQ(bench.SSTab1.Tab, 0);
  EXPECT_FALSE(bench.cbSend.Enabled);
  EXPECT_FALSE(bench.cbReset.Enabled);
  EXPECT_EQ(bench.ShpAttach.FillColor.get(), black);
}

TEST_F(Loading, WithoutADriverTheWorkbenchStandsAllTheSame) {
  board.set_driver_present(false);
  frmI2C_General& bench = workbench();
  EXPECT_EQ(user.errors, std::vector<int>{});
  EXPECT_EQ(recorder.calls, (std::vector<std::string>{"WDU_VB_Init", "WDU_VB_Init"}));
  EXPECT_EQ(bench.cbNoc.Caption, "USB Board won't intialize");
  EXPECT_EQ(bench.Reg_Adr(31).Text, "1F");
  EXPECT_TRUE(bench.cmdexit.Enabled);
}

// --- the communications test ---

struct CommTest : WorkbenchTest {
  void test_address(const std::string& text) {
    bench.txtI2CAdr.Text = text;
    click(bench.cmdTestComm);
  }
  void expect_refused() {
    EXPECT_EQ(recorder.packets, Packets{});
    EXPECT_EQ(logged("Address value too large"), 1);
    EXPECT_EQ(bench.txtActualWrtAddress.Text, "--");
    EXPECT_EQ(bench.txtActualReadAddress.Text, "--");
    EXPECT_EQ(bench.lblCommTest.Caption, "Fail");
    EXPECT_EQ(bench.lblCommTest.BackColor.get(), fail_back);
    EXPECT_EQ(bench.lblCommTest.ForeColor.get(), forms::Color{0xFFFFFF});
    EXPECT_EQ(store.Pipe_Num, 1);
    EXPECT_EQ(store.Xfer_Size, 2);
    EXPECT_EQ(store.Xfer_Buf, (std::vector<std::uint8_t>{0, 0}));
    EXPECT_EQ(bench.Comm_Good, 0);
  }
};

TEST_F(CommTest, AGoodDeviceLightsGreen) {
  for (const int tab : {0, 1}) bench.Frame1(tab).Visible = false;
  for (CommandButton* button : {&bench.cmdReadRegs, &bench.Command7, &bench.cmdwriteAll}) {
    button->Visible = false;
    button->Enabled = false;
  }
  board.set_register(2, 0x0B);
  click(bench.cmdTestComm);
  ASSERT_EQ(recorder.packets.size(), 4u);
  EXPECT_EQ(recorder.packets[0], request({1, 0x89, 2}));
  EXPECT_EQ(recorder.packets[1], reply({1, 0x0B}, 3));
  EXPECT_EQ(recorder.packets[2], gpio_write({0xFF, 0xFE, 0x00, 0x00}));
  EXPECT_EQ(recorder.packets[3].pipe, boards::pipe_gpio_in);
  EXPECT_EQ(bench.txtTstReg(0).Text, "1");
  EXPECT_EQ(bench.txtTstReg(1).Text, "B");
  EXPECT_EQ(bench.lblCommTest.Caption, "Good");
  EXPECT_EQ(bench.lblCommTest.BackColor.get(), good_back);
  EXPECT_EQ(bench.lblCommTest.ForeColor.get(), forms::Color{0x80000012});
  EXPECT_EQ(bench.Comm_Good, -1);
  EXPECT_EQ(form<frmGPIO>().ChKLedData(0).Value, 0);
  EXPECT_EQ(form<frmGPIO>().ChKLedData(1).Value, 1);
  for (const int tab : {0, 1}) EXPECT_TRUE(bench.Frame1(tab).Visible);
  for (const CommandButton* button : {&bench.cmdReadRegs, &bench.Command7, &bench.cmdwriteAll}) {
    EXPECT_TRUE(button->Visible && button->Enabled);
  }
}

TEST_F(CommTest, ADeviceThatDoesNotAnswerLightsRed) {
  board.unmount();
  bench.cmdReadRegs.Enabled = false;
  click(bench.cmdTestComm);
  ASSERT_EQ(recorder.packets.size(), 4u);
  EXPECT_EQ(recorder.packets[1], reply({0}, 3));
  EXPECT_EQ(recorder.packets[2], gpio_write({0xFF, 0xFD, 0x00, 0x00}));
  EXPECT_EQ(bench.txtTstReg(0).Text, "0");
  EXPECT_EQ(bench.lblCommTest.Caption, "Fail");
  EXPECT_EQ(bench.lblCommTest.BackColor.get(), fail_back);
  EXPECT_EQ(bench.lblCommTest.ForeColor.get(), forms::clr_white);
  EXPECT_EQ(bench.Comm_Good, 0);
  EXPECT_TRUE(bench.cmdReadRegs.Enabled);
  EXPECT_TRUE(user.boxes.empty());
}

TEST_F(CommTest, AnyStatusButOneFails) {
  board.queue_reply({2, 0xAB, 0xCD});
  click(bench.cmdTestComm);
  EXPECT_EQ(bench.txtTstReg(0).Text, "2");
  EXPECT_EQ(bench.txtTstReg(1).Text, "AB");
  EXPECT_EQ(bench.lblCommTest.Caption, "Fail");
}

TEST_F(CommTest, AFailedReplyFails) {
  board.fail_transfers(1, boards::statuses::transfer_failed, 1);
  click(bench.cmdTestComm);
  EXPECT_EQ(bench.txtTstReg(0).Text, "0");
  EXPECT_EQ(bench.lblCommTest.Caption, "Fail");
}

TEST_F(CommTest, FfIsTooLargeAndFeGoesThrough) {
  test_address("FF");
  expect_refused();
  EXPECT_EQ(store.I2C_WrAdr, 0x88);
  EXPECT_EQ(calls("WDU_VB_Init"), 1);
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_EQ(bench.txthDriver.Text, "Closed");
  forget();
  test_address("FE");
  EXPECT_EQ(recorder.packets[0], request({1, 0xFF, 2}));
  EXPECT_EQ(store.I2C_WrAdr, 0xFE);
  EXPECT_EQ(store.I2C_RdAdr, 0xFF);
  EXPECT_EQ(bench.txtActualWrtAddress.Text, "FE");
  EXPECT_EQ(bench.txtActualReadAddress.Text, "FF");
}

TEST_F(CommTest, ThreeDigitsAreTooLargeAndFourMayBeNegative) {
  for (const char* text : {"100", "7FFF"}) {
    forget();
    test_address(text);
    expect_refused();
  }
  forget();
  test_address("FFFF");
  EXPECT_EQ(logged("Address value too large"), 0);
  EXPECT_EQ(store.I2C_WrAdr, 0xFF);
  EXPECT_EQ(store.I2C_RdAdr, 0);
  EXPECT_EQ(bench.txtActualWrtAddress.Text, "FF");
  EXPECT_EQ(bench.txtActualReadAddress.Text, "0");
  EXPECT_EQ(recorder.packets[0], request({1, 0, 2}));
}

TEST_F(CommTest, ARefusalYieldsAfterItsConnectAndNotAfterItsDisconnect) {
  const int buttons = yields_of([&] {
    bench.cmdUSBConnect_Click();
    bench.cmdUSBDisconnect_Click();
  });
  EXPECT_EQ(yields_of([&] { test_address("FF"); }), buttons + 1);
}

TEST_F(CommTest, ARefusalInManualModeLeavesTheSessionOpen) {
  hold_session();
  test_address("FF");
  expect_refused();
  EXPECT_EQ(recorder.calls, std::vector<std::string>{});
  EXPECT_NE(store.Usb_Open, 0);
}

TEST_F(CommTest, FiveDigitsOverflow) {
  test_address("12345");
  EXPECT_EQ(user.errors, std::vector<int>{forms::overflow});
  EXPECT_EQ(recorder.packets, Packets{});
}

// The GPIO panel finds the session open and closes it without touching a lamp; what is left for the
// test's own disconnect are the fields of the button.
TEST_F(CommTest, InAutomaticModeTheGpioPanelClosesTheSession) {
  bench.cbSend.Enabled = true;
  bench.cbReset.Enabled = true;
  click(bench.cmdTestComm);
  EXPECT_EQ(logged("Already Opened"), 1);
  EXPECT_EQ(calls("WDU_VB_Init"), 1);
  EXPECT_EQ(calls("WDU_VB_Uninit"), 1);
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_EQ(bench.shpUSBCon(0).FillColor.get(), light_green);
  EXPECT_EQ(bench.shpUSBCon(1).FillColor.get(), black);
  EXPECT_EQ(store.Usb_Attached, -1);
  EXPECT_EQ(bench.ShpHandleStatus.FillColor.get(), black);
  EXPECT_EQ(bench.txthDriver.Text, "Closed");
  EXPECT_FALSE(bench.cbSend.Enabled);
  EXPECT_FALSE(bench.cbReset.Enabled);
  EXPECT_TRUE(bench.cmdexit.Enabled);
}

TEST_F(CommTest, InManualModeTheSessionIsKept) {
  hold_session();
  click(bench.cmdTestComm);
  EXPECT_EQ(recorder.packets.size(), 4u);
  EXPECT_EQ(calls("WDU_VB_Init") + calls("WDU_VB_Uninit"), 0);
  EXPECT_EQ(logged("Already Opened"), 0);
  EXPECT_EQ(bench.lblCommTest.Caption, "Good");
  EXPECT_NE(store.Usb_Open, 0);
}

TEST_F(CommTest, EnterInTheAddressBoxFailsFirstAndTests) {
  std::string seen;
  forms::Color color;
  at_yield([] { return true; },
           [&] {
             seen = bench.lblCommTest.Caption;
             color = bench.lblCommTest.BackColor;
           });
  press_enter(bench.txtI2CAdr, "88");
  EXPECT_EQ(seen, "Fail");
  EXPECT_EQ(color, fail_back);
  EXPECT_EQ(bench.lblCommTest.Caption, "Good");
  EXPECT_EQ(recorder.packets.size(), 4u);
}

// --- all rows ---

using AllRows = WorkbenchTest;

TEST_F(AllRows, ReadsEveryActiveRowInOneSession) {
  for (int i = 0; i < 9; ++i)
    board.set_register(static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(0xA0 + i));
  bench.Reg_Adr(1).Text = "1";
  bench.Reg_Adr(2).Text = "";
  bench.Reg_Adr(3).Text = "003";
  bench.txtRdByte(1).Text = "77";
  click(bench.cmdReadRegs);
  EXPECT_EQ(calls("WDU_VB_Init"), 1);
  EXPECT_EQ(calls("WDU_VB_Uninit"), 1);
  Packets wanted{request({1, 0x89, 0}), reply({1, 0xA0}, 2)};
  for (int i = 4; i < 32; ++i) {
    wanted.push_back(request({1, 0x89, i}));
    wanted.push_back(reply({1, i < 9 ? 0xA0 + i : 0}, 2));
  }
  EXPECT_EQ(recorder.packets, wanted);
  for (int i = 0; i < 32; ++i) {
    const bool active = i < 1 || i > 3;
    EXPECT_EQ(bench.Shape1(i).Visible, active) << i;
    EXPECT_EQ(bench.txtRdByte(i).Enabled, active) << i;
    EXPECT_EQ(bench.Shape1(i).FillColor.get(), active ? light_green : black) << i;
  }
  EXPECT_EQ(bench.txtRdByte(8).Text, "A8");
  EXPECT_EQ(bench.txtRdByte(1).Text, "77");
  EXPECT_EQ(bench.lblReadCount.Caption, " 1");

  bench.Reg_Adr(1).Text = "01";
  bench.Reg_Adr(0).Text = "";
  click(bench.cmdReadRegs);
  EXPECT_TRUE(bench.Shape1(1).Visible && bench.txtRdByte(1).Enabled);
  EXPECT_EQ(bench.Shape1(1).FillColor.get(), light_green);
  EXPECT_EQ(bench.Shape1(4).FillColor.get(), dark_green);
  EXPECT_EQ(bench.Shape1(0).FillColor.get(), black);
  EXPECT_FALSE(bench.Shape1(0).Visible);
}

TEST_F(AllRows, ReadsWithoutAnAnswerAreRedDashes) {
  board.unmount();
  click(bench.cmdReadRegs);
  EXPECT_EQ(recorder.packets.size(), 64u);
  for (int i = 0; i < 32; ++i) {
    EXPECT_EQ(bench.txtRdByte(i).Text, "--");
    EXPECT_EQ(bench.Shape1(i).FillColor.get(), red);
    EXPECT_TRUE(bench.Shape1(i).Visible && bench.txtRdByte(i).Enabled);
  }
  EXPECT_EQ(bench.lblReadCount.Caption, " 0");
}

TEST_F(AllRows, AClosedSessionInManualModeLogsTwoLinesAnActiveRow) {
  bench.ChKManUsbConn.Value = 1;
  click(bench.cmdReadRegs);
  EXPECT_EQ(logged("Write GPIOPipe .. USB Not opened"), 32);
  EXPECT_EQ(logged("ReadPipe .. USB Not opened"), 32);
  EXPECT_EQ(std::ranges::count(log(), '\n'), 128);
  EXPECT_EQ(recorder.calls, std::vector<std::string>{});
  for (int i = 0; i < 32; ++i) EXPECT_EQ(bench.txtRdByte(i).Text, "--");

  bench.Txtlog.Text = "";
  for (int i = 3; i < 32; ++i) bench.Reg_Adr(i).Text = "";
  click(bench.cmdReadRegs);
  EXPECT_EQ(logged("Write GPIOPipe .. USB Not opened"), 3);
  EXPECT_EQ(logged("ReadPipe .. USB Not opened"), 3);
}

TEST_F(AllRows, WritesTheRowsWithTwoCharactersInBothBoxes) {
  bench.txtBWrite(0).Text = "5";
  bench.txtBWrite(1).Text = "5a";
  bench.txtBWrite(2).Text = "";
  bench.txtBWrite(3).Text = "100";
  bench.txtBWrite(4).Text = "XY";
  bench.txtBWrite(5).Text = "--";
  bench.txtBWrite(6).Text = "66";
  bench.Reg_Adr(6).Text = "6";
  bench.lblReadCount.Caption = "as before";
  click(bench.cmdwriteAll);
  EXPECT_EQ(recorder.packets, (Packets{request({1, 0x88, 1, 0x5A}), reply({3}, 2), request({1, 0x88, 4, 0}),
                                       reply({3}, 2), request({1, 0x88, 5, 0}), reply({3}, 2)}));
  EXPECT_EQ(calls("WDU_VB_Init"), 1);
  EXPECT_EQ(bench.Txtlog.Text.get().find("Invalid"), std::string::npos);
  for (int i = 0; i < 32; ++i) {
    const bool counts = i == 1 || i == 4 || i == 5;
    EXPECT_EQ(bench.shpBwrite(i).Visible, counts) << i;
    EXPECT_EQ(bench.shpBwrite(i).FillColor.get(), counts ? light_green : black) << i;
    EXPECT_TRUE(bench.txtBWrite(i).Enabled) << i;
  }
  EXPECT_EQ(bench.txtBWrite(1).Text, "5a");
  EXPECT_EQ(bench.txtBWrite(4).Text, "XY");
  EXPECT_EQ(bench.lblReadCount.Caption, "as before");

  click(bench.cmdwriteAll);
  EXPECT_EQ(bench.shpBwrite(1).FillColor.get(), dark_green);
  board.set_sensor_answers(false);
  click(bench.cmdwriteAll);
  EXPECT_EQ(bench.shpBwrite(1).FillColor.get(), red);
  EXPECT_TRUE(bench.shpBwrite(1).Visible);
  EXPECT_EQ(bench.shpBwrite(0).FillColor.get(), black);
}

TEST_F(AllRows, MovesReadDataToWriteDataWithoutTheBus) {
  for (int i = 0; i < 32; ++i) {
    bench.txtRdByte(i).Text = i == 7 ? "--" : std::to_string(i);
    bench.txtBWrite(i).Text = "EE";
  }
  click(bench.Command7);
  for (int i = 0; i < 32; ++i) EXPECT_EQ(bench.txtBWrite(i).Text, i == 7 ? "--" : std::to_string(i));
  EXPECT_EQ(recorder.calls, std::vector<std::string>{});
}

}  // namespace
}  // namespace varzelin::testing
