// The workbench's panel for single bytes.
#include "support/workbench_fixture.h"

namespace varzelin::testing {
namespace {

constexpr auto invalid_value = "Invalid Write Value";

using SingleByte = WorkbenchTest;

TEST_F(SingleByte, StartsWithItsPreparedValues) {
  EXPECT_EQ(bench.FRGEN.Caption, "Single Byte Transfer User Panel");
  EXPECT_EQ(bench.txtUserRegAdr.Text, "00");
  EXPECT_EQ(bench.txtsbwr(0).Text, "AA");
  EXPECT_EQ(bench.txtsbwr(1).Text, "55");
  EXPECT_EQ(bench.txtUserRegAdr.ToolTipText,
            "Sets Device Register Accessed for Writes and Reads in Single Byte Transfer User Panel");
  for (const int i : {0, 1}) {
    EXPECT_EQ(bench.cmdWrite1Byte(i).Caption, "WRITE");
    EXPECT_EQ(bench.cmdWrite1Byte(i).ToolTipText,
              "Writes Data entered below to  Address in Device Register Address Text Box");
  }
  EXPECT_EQ(bench.cmdRead.Caption, "READ");
  EXPECT_EQ(bench.cmdRead.ToolTipText, "Reads Address in Device Register Address Text Box");
  EXPECT_EQ(bench.lblNak.Caption, "NAK");
}

TEST_F(SingleByte, EachButtonWritesItsOwnValue) {
  bench.txtUserRegAdr.Text = "05";
  click(bench.cmdWrite1Byte(0));
  EXPECT_EQ(recorder.packets, (Packets{request({1, 0x88, 5, 0xAA}), reply({3}, 2)}));
  EXPECT_EQ(bench.Shape2(0).FillColor.get(), light_green);
  EXPECT_NE(bench.Shape2(1).FillColor.get(), light_green);
  forget();
  click(bench.cmdWrite1Byte(1));
  EXPECT_EQ(recorder.packets, (Packets{request({1, 0x88, 5, 0x55}), reply({3}, 2)}));
  EXPECT_EQ(bench.Shape2(1).FillColor.get(), light_green);
  EXPECT_EQ(bench.lblReadCount.Caption, " 3");
  EXPECT_EQ(bench.Shape3.FillColor.get(), light_green);
  EXPECT_EQ(calls("WDU_VB_Init"), 1);
  EXPECT_EQ(store.Usb_Open, 0);
}

TEST_F(SingleByte, GoodWritesAlternateWhileTheAcknowledgeLampStays) {
  for (const forms::Color color : {light_green, dark_green, light_green}) {
    click(bench.cmdWrite1Byte(0));
    EXPECT_EQ(bench.Shape2(0).FillColor.get(), color);
    EXPECT_EQ(bench.Shape3.FillColor.get(), light_green);
  }
}

TEST_F(SingleByte, AWriteThatIsNotAcknowledgedIsRedAndShowsTheLamp) {
  board.set_sensor_answers(false);
  bench.Shape3.Visible = false;
  bench.lblNak.Visible = false;
  bench.txtReadByte.Text = "12";
  click(bench.cmdWrite1Byte(1));
  EXPECT_EQ(bench.txtReadByte.Text, "--");
  EXPECT_EQ(bench.Shape2(1).FillColor.get(), red);
  EXPECT_EQ(bench.Shape3.FillColor.get(), red);
  EXPECT_TRUE(bench.Shape3.Visible);
  EXPECT_TRUE(bench.lblNak.Visible);
  EXPECT_EQ(bench.txtsbwr(1).Text, "55");

  board.set_sensor_answers(true);
  bench.Shape3.Visible = false;
  bench.lblNak.Visible = false;
  click(bench.cmdWrite1Byte(1));
  EXPECT_EQ(bench.Shape2(1).FillColor.get(), light_green);
  EXPECT_EQ(bench.txtReadByte.Text, "--");
  EXPECT_TRUE(bench.Shape3.Visible);
  EXPECT_TRUE(bench.lblNak.Visible);
}

TEST_F(SingleByte, ABadValueIsRefusedBeforeTheConnect) {
  for (const char* text : {"100", "FFFF", "--"}) {
    forget();
    bench.txtsbwr(0).Text = text;
    click(bench.cmdWrite1Byte(0));
    EXPECT_EQ(recorder.calls, std::vector<std::string>{}) << text;
    EXPECT_EQ(bench.txtsbwr(0).Text, "--");
    EXPECT_EQ(logged(invalid_value), 1);
  }
}

TEST_F(SingleByte, EnterChecksTheValueAndWritesIt) {
  press_enter(bench.txtsbwr(1), "xy");
  EXPECT_EQ(recorder.packets, (Packets{request({1, 0x88, 0, 0}), reply({3}, 2)}));
  EXPECT_EQ(bench.txtsbwr(1).Text, "00");
  forget();
  press_enter(bench.txtsbwr(1), "f0");
  EXPECT_EQ(recorder.packets, (Packets{request({1, 0x88, 0, 0xF0}), reply({3}, 2)}));
  forget();
  press_enter(bench.txtsbwr(1), "100");
  EXPECT_EQ(recorder.calls, std::vector<std::string>{});
  EXPECT_EQ(bench.txtsbwr(1).Text, "--");
  EXPECT_EQ(logged(invalid_value), 1);
}

TEST_F(SingleByte, FiveDigitsOverflowInEitherBox) {
  bench.txtsbwr(0).Text = "12345";
  click(bench.cmdWrite1Byte(0));
  EXPECT_EQ(store.Usb_Open, 0);
  bench.txtsbwr(0).Text = "AA";
  bench.txtUserRegAdr.Text = "12345";
  click(bench.cmdWrite1Byte(0));
  EXPECT_EQ(user.errors, (std::vector<int>{forms::overflow, forms::overflow}));
  EXPECT_EQ(recorder.packets, Packets{});
  EXPECT_NE(store.Usb_Open, 0);
}

TEST_F(SingleByte, ReadsTheRegisterOfTheAddressBox) {
  board.set_register(8, 0x0C);
  bench.txtUserRegAdr.Text = "8";
  for (const forms::Color color : {light_green, dark_green, light_green}) {
    forget();
    click(bench.cmdRead);
    EXPECT_EQ(recorder.packets, (Packets{request({1, 0x89, 8}), reply({1, 0x0C}, 2)}));
    EXPECT_EQ(bench.txtReadByte.Text, "0C");
    EXPECT_EQ(bench.lblReadCount.Caption, " 1");
    EXPECT_EQ(bench.Shape2(2).FillColor.get(), color);
    EXPECT_EQ(bench.Shape3.FillColor.get(), light_green);
  }
}

TEST_F(SingleByte, AReadThatIsNotAcknowledgedIsRed) {
  board.unmount();
  click(bench.cmdRead);
  EXPECT_EQ(recorder.packets, (Packets{request({1, 0x89, 0}), reply({0}, 2)}));
  EXPECT_EQ(bench.txtReadByte.Text, "--");
  EXPECT_EQ(bench.lblReadCount.Caption, " 0");
  EXPECT_EQ(bench.Shape2(2).FillColor.get(), red);
  EXPECT_EQ(bench.Shape3.FillColor.get(), red);
}

// Only a write brings the acknowledge lamp and its label back.
TEST_F(SingleByte, AReadLeavesTheAcknowledgeLampHidden) {
  bench.Shape3.Visible = false;
  bench.lblNak.Visible = false;
  click(bench.cmdRead);
  EXPECT_EQ(bench.Shape3.FillColor.get(), light_green);
  EXPECT_FALSE(bench.Shape3.Visible);
  EXPECT_FALSE(bench.lblNak.Visible);
}

// The status is preset: a reply that never comes reads as a good zero, where a row shows "--".
TEST_F(SingleByte, AReplyThatFailsReadsAsAGoodZero) {
  board.set_register(0, 0x99);
  board.fail_transfers(1, boards::statuses::transfer_failed, 1);
  click(bench.cmdRead);
  EXPECT_EQ(recorder.packets,
            (Packets{request({1, 0x89, 0}), {0x82, {}, boards::statuses::transfer_failed, 2}}));
  EXPECT_EQ(bench.txtReadByte.Text, "00");
  EXPECT_EQ(bench.lblReadCount.Caption, " 1");
  EXPECT_EQ(bench.Shape2(2).FillColor.get(), light_green);
  EXPECT_EQ(bench.Shape3.FillColor.get(), light_green);
  EXPECT_EQ(logged("ReadPipe: WDU_Transfer() failed: error &H20000005 (The transfer failed)"), 1);
}

TEST_F(SingleByte, InManualModeAClosedSessionReadsAsAGoodZeroToo) {
  bench.ChKManUsbConn.Value = 1;
  click(bench.cmdRead);
  EXPECT_EQ(recorder.calls, std::vector<std::string>{});
  EXPECT_EQ(logged("Write GPIOPipe .. USB Not opened"), 1);
  EXPECT_EQ(logged("ReadPipe .. USB Not opened"), 1);
  EXPECT_EQ(bench.txtReadByte.Text, "00");
  EXPECT_EQ(bench.Shape2(2).FillColor.get(), light_green);

  click(bench.cmdWrite1Byte(0));
  EXPECT_EQ(bench.Shape2(0).FillColor.get(), red);
  EXPECT_EQ(bench.txtReadByte.Text, "--");
}

TEST_F(SingleByte, AnEmptyReadBoxIsZeroWhileItIsRead) {
  std::string seen;
  at_yield([] { return true; }, [&] { seen = bench.txtReadByte.Text; });
  click(bench.cmdRead);
  EXPECT_EQ(seen, "00");
}

TEST_F(SingleByte, EnterInTheAddressBoxTidiesItAndSendsNothing) {
  press_enter(bench.txtUserRegAdr, "a");
  EXPECT_EQ(bench.txtUserRegAdr.Text, "A");
  for (const char* text : {"", "zz", "0"}) {
    press_enter(bench.txtUserRegAdr, text);
    EXPECT_EQ(bench.txtUserRegAdr.Text, "00");
  }
  press_enter(bench.txtUserRegAdr, "1ff");
  EXPECT_EQ(bench.txtUserRegAdr.Text, "1FF");
  EXPECT_EQ(recorder.calls, std::vector<std::string>{});
  EXPECT_EQ(bench.Txtlog.Text, "");
}

// As the rows: a read yields after its connect, a write doesn't.
TEST_F(SingleByte, TheWriteGoesOnWithoutAYieldAfterTheConnect) {
  const int read = yields_of([&] { click(bench.cmdRead); });
  const int write = yields_of([&] { click(bench.cmdWrite1Byte(0)); });
  EXPECT_EQ(write, read - 1);
}

}  // namespace
}  // namespace varzelin::testing
