// The registers of the two-mode panels: packets, boxes, lamps, the communications test.
#include "support/two_mode_fixture.h"

namespace varzelin::testing {
namespace {

struct TwoModeRegisters : TwoModeTest {
  // What the driver was asked for, from opening the session to closing it.
  std::vector<std::string> way() {
    std::vector<std::string> steps;
    std::size_t transfers = 0;
    for (const std::string& call : recorder.calls) {
      if (call == "WDU_VB_Init") steps.emplace_back("open");
      if (call == "WDU_VB_Uninit") steps.emplace_back("close");
      if (call != "WDU_Transfer") continue;
      const Packet& packet = recorder.packets[transfers++];
      steps.emplace_back(packet.pipe >= 0x80    ? "reply " + std::to_string(packet.size)
                         : packet.bytes[0] == 0 ? "write"
                                                : "request");
    }
    return steps;
  }
  int address() { return store.I2C_RdAdr; }
};
using Way = std::vector<std::string>;

// --- writes ---

TEST_P(TwoModeRegisters, AWriteTakesItsBoxAndReadsBothBack) {
  panel->txtRegHex(0).Text = "c2";
  panel->txtRegHex(1).Text = "35";
  click(panel->cmdSetCommand);
  EXPECT_EQ(sent(), written(0, 0xC2));
  EXPECT_EQ(store.RegImage[0], 0xC2);
  EXPECT_EQ(store.RegImage[1], 0x70);
  forget_traffic();
  click(panel->cmdSetControl);
  EXPECT_EQ(sent(), written(1, 0x35));
  EXPECT_EQ(store.RegImage[1], 0x35);
  EXPECT_EQ(board.register_value(0), 0xC2);
  EXPECT_EQ(board.register_value(1), 0x35);
}

TEST_P(TwoModeRegisters, AWriteClosesItsSessionBeforeTheReadBack) {
  for (forms::CommandButton* button : {&panel->cmdSetCommand, &panel->cmdSetControl}) {
    forget_traffic();
    click(*button);
    EXPECT_EQ(way(), (Way{"open", "write", "close", "open", "request", "reply 3", "close"}));
  }
}

TEST_P(TwoModeRegisters, AHeldSessionStaysOpen) {
  click(workbench().cmdUSBConnect);
  store.Man_Usb_Conn = -1;
  forget_traffic();
  for (forms::CommandButton* button : {&panel->cmdSetCommand, &panel->cmdSync, &panel->cmdRead_ADC}) {
    click(*button);
  }
  EXPECT_EQ(way(), (Way{"write", "request", "reply 3", "write", "request", "reply 5"}));
}

TEST_P(TwoModeRegisters, AWriteYieldsBeforeItConnects) {
  for (const auto& [button, yields] :
       {std::pair{&panel->cmdSetCommand, 2}, std::pair{&panel->cmdSetControl, 3}}) {
    int before = 0;
    forget_traffic();
    user.at_yield = [&] { before += recorder.calls.empty() && workbench().cmdexit.Enabled; };
    const int at_start = before;
    click(*button);
    user.at_yield = nullptr;
    // One more of the click itself, one of opening.
    EXPECT_GE(before - at_start, yields);
    EXPECT_LE(before - at_start, yields + 1);
  }
}

TEST_P(TwoModeRegisters, TextThatIsNoHexCountsUpToItsFirstBadCharacter) {
  for (const auto& [text, value] :
       {std::pair{"4G", 0x04}, std::pair{"xyz", 0}, std::pair{"", 0}, std::pair{"1FF", 0xFF}}) {
    panel->txtRegHex(1).Text = text;
    forget_traffic();
    click(panel->cmdSetControl);
    EXPECT_EQ(writes(), (ByteLists{write(1, value)})) << text;
  }
}

TEST_P(TwoModeRegisters, AWriteClearsItsOwnFlag) {
  store.PendingWriteR0 = store.PendingWriteR1 = -1;
  click(panel->cmdSetCommand);
  EXPECT_EQ(store.PendingWriteR0, 0);
  EXPECT_EQ(store.PendingWriteR1, -1);
  store.PendingWriteR0 = -1;
  click(panel->cmdSetControl);
  EXPECT_EQ(store.PendingWriteR1, 0);
  EXPECT_EQ(store.PendingWriteR0, -1);
}

TEST_P(TwoModeRegisters, EachOperationFlipsItsLamp) {
  struct Lamps {
    forms::CommandButton* button;
    std::vector<int> lamps;
  };
  for (const Lamps& row : {Lamps{&panel->cmdSetCommand, {0, 4, 5}}, Lamps{&panel->cmdSetControl, {1, 4, 5}},
                           Lamps{&panel->cmdRead_All, {4, 5}}, Lamps{&panel->cmdRead_ADC, {8, 9}},
                           Lamps{&panel->cmdReadTB, {10, 11}}, Lamps{&panel->cmdSync, {12}}}) {
    for (int lamp : {0, 1, 2, 4, 5, 6, 8, 9, 10, 11, 12}) panel->ShpInd(lamp).FillColor = forms::QBColor(9);
    for (const int colour : {10, 2, 10}) {
      click(*row.button);
      for (int lamp : {0, 1, 2, 4, 5, 6, 8, 9, 10, 11, 12}) {
        EXPECT_EQ(lamp_of(lamp), std::ranges::count(row.lamps, lamp) != 0 ? colour : 9)
            << row.button->name() << ' ' << lamp;
      }
    }
  }
}

// --- reads ---

TEST_P(TwoModeRegisters, TheReadBackShowsBothAndTheBridgesStatus) {
  store.PendingReadRegs = -1;
  store.I2C_RdCnt = 4;
  board.queue_reply({7, 0x0A, 0xBC});
  click(panel->cmdRead_All);
  EXPECT_EQ(sent(), (ByteLists{{2, 0x89, 0}}));
  EXPECT_EQ(way(), (Way{"open", "request", "reply 3", "close"}));
  EXPECT_EQ(panel->txtRegRd(0).Text, "0A");
  EXPECT_EQ(panel->txtRegRd(1).Text, "BC");
  EXPECT_EQ(store.BridgeStatus, 7);
  EXPECT_EQ(store.PendingReadRegs, 0);
  EXPECT_EQ(store.I2C_RdCnt, 2);
}

TEST_P(TwoModeRegisters, WhatDiffersFromItsBoxTurnsItsLampRed) {
  struct Reply {
    std::uint8_t command, configuration;
    bool red0, red1;
  };
  for (const Reply& r : {Reply{0x00, 0x70, false, false}, Reply{0x01, 0x70, true, false},
                         Reply{0x00, 0x71, false, true}, Reply{0xFF, 0xFF, true, true}}) {
    board.queue_reply({2, r.command, r.configuration});
    click(panel->cmdRead_All);
    EXPECT_EQ(lamp_of(4) == 12, r.red0);
    EXPECT_EQ(lamp_of(5) == 12, r.red1);
  }
}

// As texts: the case counts, and Enter mends it.
TEST_P(TwoModeRegisters, ABoxInLowerCaseDiffersUntilEnter) {
  panel->txtRegHex(0).Text = "c0";
  click(panel->cmdSetCommand);
  EXPECT_EQ(lamp_of(4), 12);
  enter_text(panel->txtRegHex(0), "c0");
  EXPECT_EQ(box(0), "C0");
  EXPECT_NE(lamp_of(4), 12);
}

TEST_P(TwoModeRegisters, ReadAdcAndReadTimeBaseShowTheirBytes) {
  board.queue_reply({2, 0x05, 0x0B, 0, 0});
  click(panel->cmdRead_ADC);
  board.queue_reply({2, 0x0C, 0x1D, 0, 0});
  click(panel->cmdReadTB);
  EXPECT_EQ(sent(), (ByteLists{{2, 0x89, 2}, {2, 0x89, 4}}));
  EXPECT_EQ(panel->txtRegRd(2).Text, "05");
  EXPECT_EQ(panel->txtRegRd(3).Text, "0B");
  EXPECT_EQ(panel->txtRegRd(4).Text, "0C");
  EXPECT_EQ(panel->txtRegRd(5).Text, "1D");
  EXPECT_EQ(way(), (Way{"open", "request", "reply 5", "close", "open", "request", "reply 5", "close"}));
}

TEST_P(TwoModeRegisters, AllFourResultsInOneExchange) {
  panel->ShpInd(8).FillColor = panel->ShpInd(11).FillColor = forms::QBColor(10);
  board.queue_reply({4, 0x01, 0x22, 0x03, 0x44});
  program.runtime.dispatch([&] { panel->Read_Measurements(); });
  EXPECT_EQ(sent(), (ByteLists{{4, 0x89, 2}}));
  EXPECT_EQ(store.I2C_RdCnt, 4);
  EXPECT_EQ(panel->txtRegRd(2).Text, "01");
  EXPECT_EQ(panel->txtRegRd(3).Text, "22");
  EXPECT_EQ(panel->txtRegRd(4).Text, "03");
  EXPECT_EQ(panel->txtRegRd(5).Text, "44");
  EXPECT_EQ(lamp_of(8), 2);
  EXPECT_EQ(lamp_of(11), 2);
}

TEST_P(TwoModeRegisters, TheCommandRegisterAlone) {
  panel->txtRegRd(2).Text = "7";
  panel->txtRegRd(3).Text = "8";
  panel->txtRegRd(5).Text = "9";
  board.queue_reply({1, 0x0C, 0});
  program.runtime.dispatch([&] { panel->Read_Command_Register(); });
  EXPECT_EQ(sent(), (ByteLists{{1, 0x89, 0}}));
  EXPECT_EQ(way(), (Way{"open", "request", "reply 3", "close"}));
  EXPECT_EQ(panel->txtRegRd(0).Text, "0C");
  EXPECT_EQ(panel->txtRegRd(2).Text, "07");
  EXPECT_EQ(panel->txtRegRd(3).Text, "08");
  EXPECT_EQ(panel->txtRegRd(5).Text, "9");
  EXPECT_EQ(lamp_of(4), 12);
  EXPECT_EQ(store.I2C_RdCnt, 1);
  store.SingleReading = 0;
  program.runtime.dispatch([&] { panel->Read_Command_Register(); });
  EXPECT_NE(lamp_of(4), 12);
  EXPECT_EQ(store.I2C_RdCnt, 4);
}

TEST_P(TwoModeRegisters, InALoopTheReadIsLeftToIt) {
  select(measure::infrared);
  ByteLists at_once;
  collect_and(3, [&] {
    forget_traffic();
    forms::user::click(panel->cmdRead_All);
    at_once = sent();
    EXPECT_EQ(store.PendingReadRegs, -1);
    EXPECT_EQ(store.PendingUpdate, -1);
  });
  EXPECT_TRUE(at_once.empty());
  EXPECT_EQ(std::ranges::count(sent(), std::vector<int>{2, 0x89, 0}), 1);
  EXPECT_EQ(store.PendingReadRegs, 0);
}

// --- sync ---

TEST_P(TwoModeRegisters, SyncCarriesTheReadFormOfTheAddress) {
  click(panel->cmdSync);
  EXPECT_EQ(sent(), (ByteLists{{0, 0x89, 0x80}}));
  EXPECT_EQ(way(), (Way{"open", "write", "close"}));
}

// The row raises the address of the reads, which is that of all packets here.
TEST_P(TwoModeRegisters, BehindAClickOnTheDeviceListAllPacketsGoToTheNextAddress) {
  choose(panel->LstDeviceSel, 0);
  EXPECT_EQ(store.I2C_WrAdr, 0x88);
  EXPECT_EQ(store.I2C_RdAdr, 0x8A);
  EXPECT_EQ(panel->txtI2CAddr.Text, "45");
  EXPECT_EQ(panel->txtI2cXmitAdr.Text, "8A");
  forget_traffic();
  click(panel->cmdSync);
  click(panel->cmdSetControl);
  EXPECT_EQ(sent(), (ByteLists{{0, 0x8A, 0x80}, {0, 0x8A, 1, 0x70}, {2, 0x8A, 0}}));
}

// --- Enter ---

// Below 80 the command counts as a single conversion, whatever its operation is.
TEST_P(TwoModeRegisters, EnterInTheCommandBox) {
  for (const auto& [text, once] : {std::pair{"4f", -1}, std::pair{"50", 0}, std::pair{"0", -1},
                                   std::pair{"a0", 0}, std::pair{"60", 0}}) {
    store.OneShotMode = flag(once == 0);
    forget_traffic();
    enter_text(panel->txtRegHex(0), text);
    EXPECT_EQ(store.OneShotMode, once) << text;
    EXPECT_EQ(box(0), forms::UCase(text));
    EXPECT_EQ(sent(), written(0, static_cast<int>(std::stoul(text, nullptr, 16))));
  }
}

TEST_P(TwoModeRegisters, EnterInTheOtherBoxOnlyWrites) {
  store.OneShotMode = 0;
  enter_text(panel->txtRegHex(1), "3c");
  EXPECT_EQ(box(1), "3C");
  EXPECT_EQ(sent(), written(1, 0x3C));
  EXPECT_EQ(store.OneShotMode, 0);
}

TEST_P(TwoModeRegisters, AnotherKeyDoesNothing) {
  panel->txtRegHex(0).Text = "aa";
  program.runtime.dispatch([&] {
    int key = 'b';
    panel->txtRegHex_KeyPress(0, key);
  });
  EXPECT_EQ(box(0), "aa");
  EXPECT_TRUE(sent().empty());
}

// --- modes ---

TEST_P(TwoModeRegisters, TheTestIsGoodWhenTheBridgeGaveBothBytes) {
  EXPECT_FALSE(panel->LblCommTest.Visible);
  click(panel->OptMode(2));
  EXPECT_EQ(sent(), written(0, 0x00));
  EXPECT_TRUE(panel->LblCommTest.Visible);
  EXPECT_EQ(panel->LblCommTest.Caption, "Good");
  for (const int status : {0, 1, 3, 0xFF}) {
    board.queue_reply({static_cast<std::uint8_t>(status), 0, 0});
    click(panel->OptMode(2));
    EXPECT_EQ(panel->LblCommTest.Caption, "Fail") << status;
  }
}

TEST_P(TwoModeRegisters, InALoopTheTestIsThatOfTheLastReadBack) {
  select(measure::infrared);
  collect_and(3, [&] {
    forget_traffic();
    store.BridgeStatus = 9;
    forms::user::click(panel->OptMode(2));
    EXPECT_TRUE(sent().empty());
    EXPECT_EQ(panel->LblCommTest.Caption, "Fail");
    EXPECT_EQ(store.PendingWriteR0, -1);
    EXPECT_EQ(store.PendingUpdate, -1);
  });
  EXPECT_EQ(writes(), (ByteLists{write(0, 0xC0)}));
}

TEST_P(TwoModeRegisters, EachModeTurnsTheOutputEnablesOver) {
  auto& gpio = form<frmGPIO>();
  for (const int mode : {0, 1, 2}) {
    const int first = gpio.chkOutEnc(0).Value;
    const int second = gpio.chkOutEnc(1).Value;
    click(panel->OptMode(mode));
    EXPECT_EQ(gpio.chkOutEnc(0).Value, 1 - first) << mode;
    EXPECT_EQ(gpio.chkOutEnc(1).Value, 1 - second) << mode;
  }
}

// The bit for the time base doesn't reach the box that the write is taken from.
TEST_P(TwoModeRegisters, TheFirstModeWritesTheByteThatIsShown) {
  click(panel->OptMeasure(measure::infrared));
  forget_traffic();
  click(panel->OptMode(0));
  EXPECT_EQ(sent(), written(0, 0xC0));
  EXPECT_EQ(box(0), "C0");
  EXPECT_EQ(store.RegImage[0], 0xC0);
}

TEST_P(TwoModeRegisters, TheSecondModeTakesTheChoiceAway) {
  click(panel->OptMeasure(2));
  forget_traffic();
  click(panel->OptMode(1));
  EXPECT_FALSE(panel->OptMeasure(2).Value);
  EXPECT_TRUE(sent().empty());
}

ON_BOTH_MODELS(TwoModeRegisters);

}  // namespace
}  // namespace varzelin::testing
