// The rows of the workbench's register table, one at a time.
#include "support/workbench_fixture.h"

namespace varzelin::testing {
namespace {

constexpr auto invalid_value = "Invalid Write Value";

struct Rows : WorkbenchTest {
  void expect_nothing_sent() { EXPECT_EQ(recorder.packets, Packets{}); }
};

// --- reading a row ---

TEST_F(Rows, AClickOnTheReadCellReadsOneByteFromItsRegister) {
  board.set_register(3, 0x0A);
  click(bench.txtRdByte(3));
  EXPECT_EQ(recorder.packets, (Packets{request({1, 0x89, 3}), reply({1, 0x0A}, 2)}));
  EXPECT_EQ(bench.txtRdByte(3).Text, "0A");
  EXPECT_EQ(bench.lblReadCount.Caption, " 1");
  EXPECT_EQ(bench.Shape1(3).FillColor.get(), light_green);
  EXPECT_EQ(bench.shpBwrite(3).FillColor.get(), black);
  EXPECT_EQ(store.I2C_RdCnt, 1);
}

TEST_F(Rows, TheRegisterIsThatOfTheAddressBoxNotOfTheRow) {
  board.set_register(6, 0xE7);
  bench.Reg_Adr(31).Text = "06";
  click(bench.txtRdByte(31));
  EXPECT_EQ(recorder.packets, (Packets{request({1, 0x89, 6}), reply({1, 0xE7}, 2)}));
  EXPECT_EQ(bench.txtRdByte(31).Text, "E7");
}

TEST_F(Rows, AnAddressThatIsNotHexadecimalIsRegisterZero) {
  bench.Reg_Adr(5).Text = "XY";
  click(bench.txtRdByte(5));
  press_enter(bench.txtBWrite(5), "42");
  double_click(bench.txtBWrite(5), "43");
  EXPECT_EQ(recorder.packets, (Packets{request({1, 0x89, 0}), reply({1, 0}, 2), request({1, 0x88, 0, 0x42}),
                                       reply({3}, 2), request({1, 0x88, 0, 0x43}), reply({3}, 2)}));
}

TEST_F(Rows, GoodReadsAlternateBetweenLightAndDarkGreen) {
  for (const forms::Color color : {light_green, dark_green, light_green, dark_green}) {
    click(bench.txtRdByte(0));
    EXPECT_EQ(bench.Shape1(0).FillColor.get(), color);
  }
}

TEST_F(Rows, AReadThatIsNotAcknowledgedIsRedAndTheNextGoodOneLightGreen) {
  click(bench.txtRdByte(0));
  board.set_sensor_answers(false);
  forget();
  click(bench.txtRdByte(0));
  EXPECT_EQ(recorder.packets, (Packets{request({1, 0x89, 0}), reply({0}, 2)}));
  EXPECT_EQ(bench.txtRdByte(0).Text, "--");
  EXPECT_EQ(bench.lblReadCount.Caption, " 0");
  EXPECT_EQ(bench.Shape1(0).FillColor.get(), red);
  EXPECT_EQ(log().find("failed"), std::string::npos) << log();

  board.set_sensor_answers(true);
  click(bench.txtRdByte(0));
  EXPECT_EQ(bench.Shape1(0).FillColor.get(), light_green);
}

TEST_F(Rows, AnyStatusButOneIsNoGoodRead) {
  for (const auto status : std::initializer_list<std::uint8_t>{0, 2, 3, 255}) {
    board.queue_reply({status, 0x77});
    click(bench.txtRdByte(1));
    EXPECT_EQ(bench.lblReadCount.Caption, " " + std::to_string(status));
    EXPECT_EQ(bench.txtRdByte(1).Text, "--");
    EXPECT_EQ(bench.Shape1(1).FillColor.get(), red);
  }
}

TEST_F(Rows, AReplyThatFailsReadsAsNoStatus) {
  board.fail_transfers(1, boards::statuses::transfer_failed, 1);
  click(bench.txtRdByte(0));
  EXPECT_EQ(bench.txtRdByte(0).Text, "--");
  EXPECT_EQ(bench.lblReadCount.Caption, " 0");
  EXPECT_EQ(bench.Shape1(0).FillColor.get(), red);
  EXPECT_EQ(logged("ReadPipe: WDU_Transfer() failed: error &H20000005 (The transfer failed)"), 1) << log();
}

TEST_F(Rows, AFailedRequestIsFollowedByTheReplyAllTheSame) {
  board.fail_transfers(1, boards::statuses::transfer_failed);
  board.queue_reply({1, 0x5A});
  click(bench.txtRdByte(0));
  EXPECT_EQ(recorder.packets, (Packets{{2, {}, boards::statuses::transfer_failed, 3}, reply({1, 0x5A}, 2)}));
  EXPECT_EQ(bench.txtRdByte(0).Text, "5A");
  EXPECT_EQ(bench.Shape1(0).FillColor.get(), light_green);
}

TEST_F(Rows, AnEmptyReadCellIsZeroWhileItIsRead) {
  std::string seen;
  at_yield([] { return true; }, [&] { seen = bench.txtRdByte(2).Text; });
  bench.txtRdByte(2).Text = "";
  click(bench.txtRdByte(2));
  EXPECT_EQ(seen, "00");
}

// --- writing a row by the Enter key ---

TEST_F(Rows, EnterWritesTheValueInUpperCase) {
  press_enter(bench.txtBWrite(4), "a5");
  EXPECT_EQ(recorder.packets, (Packets{request({1, 0x88, 4, 0xA5}), reply({3}, 2)}));
  EXPECT_EQ(bench.txtBWrite(4).Text, "A5");
  EXPECT_EQ(bench.lblReadCount.Caption, " 3");
  EXPECT_EQ(bench.shpBwrite(4).FillColor.get(), light_green);
  EXPECT_EQ(bench.Shape1(4).FillColor.get(), black);
  EXPECT_EQ(board.register_value(4), 0xA5);
}

TEST_F(Rows, OtherKeysDoNothing) {
  bench.txtBWrite(4).Text = "";
  program.runtime.dispatch([&] { forms::user::type(bench.txtBWrite(4), "a5"); });
  expect_nothing_sent();
  EXPECT_EQ(bench.txtBWrite(4).Text, "a5");
}

TEST_F(Rows, WhatHasNoValueIsWrittenAsZero) {
  for (const char* text : {"", "XY", "0", "000", "G1", "!!"}) {
    for (const bool enter : {true, false}) {
      forget();
      board.set_register(1, 0x33);
      if (enter) {
        press_enter(bench.txtBWrite(1), text);
      } else {
        double_click(bench.txtBWrite(1), text);
      }
      EXPECT_EQ(recorder.packets, (Packets{request({1, 0x88, 1, 0}), reply({3}, 2)})) << text;
      EXPECT_EQ(bench.txtBWrite(1).Text, "00");
    }
  }
}

TEST_F(Rows, DigitsUpToTheFirstBadCharacterCount) {
  press_enter(bench.txtBWrite(1), "1G");
  EXPECT_EQ(recorder.packets, (Packets{request({1, 0x88, 1, 1}), reply({3}, 2)}));
  EXPECT_EQ(bench.txtBWrite(1).Text, "1G");
}

TEST_F(Rows, EnterRefusesValuesBeyondAByteWithDashesBeforeItConnects) {
  for (const char* text : {"100", "FFFF", "8000", "7FFF"}) {
    forget();
    press_enter(bench.txtBWrite(1), text);
    EXPECT_EQ(recorder.calls, std::vector<std::string>{}) << text;
    EXPECT_EQ(bench.txtBWrite(1).Text, "--");
    EXPECT_EQ(logged(invalid_value), 1);
    EXPECT_EQ(bench.shpBwrite(1).FillColor.get(), black);
  }
}

TEST_F(Rows, EnterRefusesDashes) {
  press_enter(bench.txtBWrite(1), "--");
  EXPECT_EQ(recorder.calls, std::vector<std::string>{});
  EXPECT_EQ(bench.txtBWrite(1).Text, "--");
  EXPECT_EQ(logged(invalid_value), 1);
}

TEST_F(Rows, GoodWritesAlternateAndComeBackFromRed) {
  bench.shpBwrite(2).Visible = false;
  bench.txtBWrite(2).Enabled = false;
  for (const forms::Color color : {light_green, dark_green, light_green}) {
    press_enter(bench.txtBWrite(2), "01");
    EXPECT_EQ(bench.shpBwrite(2).FillColor.get(), color);
  }
  EXPECT_TRUE(bench.shpBwrite(2).Visible);
  EXPECT_TRUE(bench.txtBWrite(2).Enabled);

  board.unmount();
  forget();
  bench.shpBwrite(2).Visible = false;
  bench.txtBWrite(2).Enabled = false;
  press_enter(bench.txtBWrite(2), "01");
  EXPECT_EQ(recorder.packets, (Packets{request({1, 0x88, 2, 1}), reply({0}, 2)}));
  EXPECT_EQ(bench.shpBwrite(2).FillColor.get(), red);
  EXPECT_EQ(bench.lblReadCount.Caption, " 0");
  EXPECT_EQ(bench.txtBWrite(2).Text, "01");
  EXPECT_TRUE(bench.shpBwrite(2).Visible);
  EXPECT_TRUE(bench.txtBWrite(2).Enabled);

  board.mount("KVT71385");
  press_enter(bench.txtBWrite(2), "01");
  EXPECT_EQ(bench.shpBwrite(2).FillColor.get(), light_green);
}

// --- writing a row by a double click ---

TEST_F(Rows, ADoubleClickWritesTheValueInUpperCase) {
  double_click(bench.txtBWrite(4), "a5");
  EXPECT_EQ(recorder.packets, (Packets{request({1, 0x88, 4, 0xA5}), reply({3}, 2)}));
  EXPECT_EQ(bench.txtBWrite(4).Text, "A5");
  EXPECT_EQ(bench.lblReadCount.Caption, " 3");
  EXPECT_EQ(bench.shpBwrite(4).FillColor.get(), light_green);
}

TEST_F(Rows, ADoubleClickRefusesValuesBeyondAByteWithMarksInsideASessionOfItsOwn) {
  for (const char* text : {"100", "FFFF", "8000"}) {
    forget();
    double_click(bench.txtBWrite(1), text);
    expect_nothing_sent();
    EXPECT_EQ(bench.txtBWrite(1).Text, "!!");
    EXPECT_EQ(logged(invalid_value), 1);
    EXPECT_EQ(calls("WDU_VB_Init"), 1) << text;
    EXPECT_EQ(calls("WDU_VB_Uninit"), 1);
    EXPECT_EQ(store.Usb_Open, 0);
    EXPECT_EQ(bench.shpBwrite(1).FillColor.get(), black);
  }
}

TEST_F(Rows, ADoubleClickOnDashesSetsTheRegisterPointerOnly) {
  board.set_register(7, 0x12);
  double_click(bench.txtBWrite(7), "--");
  EXPECT_EQ(recorder.packets, (Packets{request({1, 0x88, 7}), reply({2}, 2)}));
  EXPECT_EQ(bench.txtBWrite(7).Text, "--");
  EXPECT_EQ(bench.lblReadCount.Caption, " 2");
  EXPECT_EQ(bench.shpBwrite(7).FillColor.get(), light_green);
  EXPECT_EQ(board.register_value(7), 0x12);
  EXPECT_EQ(store.I2C_WrCnt, 1);
  EXPECT_EQ(logged(invalid_value), 0);
}

TEST_F(Rows, ForAPointerWriteTwoIsGoodAndThreeIsNot) {
  board.queue_reply({3});
  double_click(bench.txtBWrite(7), "--");
  EXPECT_EQ(bench.shpBwrite(7).FillColor.get(), red);
  board.queue_reply({2});
  double_click(bench.txtBWrite(7), "--");
  EXPECT_EQ(bench.shpBwrite(7).FillColor.get(), light_green);
  board.queue_reply({2});
  double_click(bench.txtBWrite(7), "07");
  EXPECT_EQ(bench.shpBwrite(7).FillColor.get(), red);
}

TEST_F(Rows, ARefusedDoubleClickLeavesTheAddressUnread) {
  bench.Reg_Adr(1).Text = "12345";
  double_click(bench.txtBWrite(1), "100");
  EXPECT_EQ(user.errors, std::vector<int>{});
  EXPECT_EQ(bench.txtBWrite(1).Text, "!!");
  EXPECT_EQ(store.Usb_Open, 0);
}

// --- five digits ---

TEST_F(Rows, FiveDigitsOverflow) {
  press_enter(bench.txtBWrite(1), "12345");
  EXPECT_EQ(user.errors, std::vector<int>{forms::overflow});
  EXPECT_EQ(recorder.calls, std::vector<std::string>{});
  EXPECT_EQ(bench.txtBWrite(1).Text, "12345");
}

// The handler is left where it stands: the session that a double click opens first stays open.
TEST_F(Rows, FiveDigitsInADoubleClickLeaveTheSessionOpen) {
  double_click(bench.txtBWrite(1), "abcde");
  EXPECT_EQ(user.errors, std::vector<int>{forms::overflow});
  expect_nothing_sent();
  EXPECT_EQ(bench.txtBWrite(1).Text, "ABCDE");
  EXPECT_NE(store.Usb_Open, 0);
  EXPECT_FALSE(bench.cmdexit.Enabled);
}

// --- the session around it ---

TEST_F(Rows, EveryActionOpensAndClosesTheSession) {
  const std::vector<std::string> one_session{
      "WDU_VB_Init",       "WDU_SetInterface", "WDU_GetDeviceInfo", "WDU_GetDeviceInfo", "WDU_Transfer",
      "WDU_GetDeviceInfo", "WDU_Transfer",     "WDU_ResetDevice",   "CloseHandle",       "WDU_VB_Uninit"};
  click(bench.txtRdByte(0));
  EXPECT_EQ(recorder.calls, one_session);
  forget();
  press_enter(bench.txtBWrite(0), "01");
  EXPECT_EQ(recorder.calls, one_session);
  forget();
  double_click(bench.txtBWrite(0), "01");
  EXPECT_EQ(recorder.calls, one_session);
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_EQ(bench.txthDriver.Text, "Closed");
  EXPECT_EQ(bench.ShpHandleStatus.FillColor.get(), black);
  EXPECT_EQ(bench.shpUSBCon(1).FillColor.get(), light_green);
  EXPECT_TRUE(bench.cmdexit.Enabled);
}

TEST_F(Rows, InManualModeTheSessionStaysAsItIs) {
  hold_session();
  click(bench.txtRdByte(0));
  press_enter(bench.txtBWrite(0), "01");
  double_click(bench.txtBWrite(0), "--");
  EXPECT_EQ(calls("WDU_VB_Init") + calls("WDU_VB_Uninit"), 0);
  EXPECT_EQ(recorder.packets.size(), 6u);
  EXPECT_NE(store.Usb_Open, 0);
}

// A row's read yields once between its connect and its request, its writes don't.
TEST_F(Rows, TheWritesGoOnWithoutAYieldAfterTheConnect) {
  const int read = yields_of([&] { click(bench.txtRdByte(0)); });
  const int by_enter = yields_of([&] { press_enter(bench.txtBWrite(0), "01"); });
  const int by_double_click = yields_of([&] { double_click(bench.txtBWrite(0), "01"); });
  EXPECT_EQ(by_enter, read - 1);
  EXPECT_EQ(by_double_click, by_enter);
}

}  // namespace
}  // namespace varzelin::testing
