// The register block of the multi-function panels: each button's transfers, what becomes of the reply, and
// the boxes.
#include "support/multi_function_fixture.h"

namespace varzelin::testing {
namespace {

using MultiFunctionRegisters = EachMultiFunctionPanel;
using Kvt71385Registers = Kvt71385Panel;

// --- what each button puts on the bus ---

struct Button {
  const char* name;
  int index;
  ByteLists sent;  // a write address of -1 is that of the panel's writes
  std::vector<std::size_t> replies;
};
const std::vector<Button> buttons{
    {"cmdRead_All", -1, {{2, 0x89, 0}}, {3}},
    {"cmdSampleIIIntr", -1, {{2, 0x89, 0}}, {3}},
    {"cmdRDReg", 0, {{1, 0x89, 0}}, {6}},
    {"cmdRDReg", 2, {{1, 0x89, 2}}, {6}},
    {"cmdRDReg", 8, {{1, 0x89, 8}}, {6}},
    {"cmdRead_ADC", -1, {{2, 0x89, 2}}, {5}},
    {"cmdReadTB", -1, {{2, 0x89, 2}}, {5}},
    {"cmdWrtReg", 0, {{0, 0x89, 0, 0x00}}, {}},
    {"cmdWrtReg", 1, {{0, 0x89, 1, 0x64}}, {}},
    {"cmdWrtReg", 4, {{0, 0x89, 4, 0x64}}, {}},
    {"cmdWrtReg", 8, {{0, 0x89, 8, 0x00}}, {}},
    {"cmdSetCommand", -1, {{0, -1, 0, 0x00}, {2, 0x89, 0}}, {3}},
    {"cmdSetControl", -1, {{0, -1, 1, 0x64}, {2, 0x89, 0}}, {3}},
    {"OptMode", 2, {{0, -1, 0, 0x00}, {2, 0x89, 0}}, {3}},
    {"cmdSync", -1, {{0, -1, 0x80}}, {}},
    {"cmdProx_IR", -1, {{0, -1, 0, 0x60}, {2, 0x89, 2}, {0, -1, 0, 0x40}, {2, 0x89, 2}}, {5, 5}},
    {"cmdWrtILimits", -1, {{0, -1, 4, 0x64, 0x00, 0xDC, 0x05}}, {}},
    {"cmdReadILimits", -1, {{1, 0x89, 4}, {1, 0x89, 5}, {1, 0x89, 6}, {1, 0x89, 7}}, {6, 6, 6, 6}},
    {"cmdSampleInterrupt", -1, {}, {}},
};

TEST_P(MultiFunctionRegisters, EachButtonHasItsTransfers) {
  for (const Button& button : buttons) {
    SCOPED_TRACE(button.name + std::to_string(button.index));
    forget_traffic();
    click(*panel->find(button.name, button.index));
    ByteLists expected = button.sent;
    for (auto& bytes : expected) {
      if (bytes[1] == -1) bytes[1] = write_address();
    }
    EXPECT_EQ(sent(), expected);
    EXPECT_EQ(reply_sizes(), button.replies);
    EXPECT_EQ(store.Usb_Open, 0);
  }
  EXPECT_TRUE(user.errors.empty());
}

TEST_P(MultiFunctionRegisters, TheyLeaveASessionOpenThatTheUserHolds) {
  for (const Button& button : buttons) {
    SCOPED_TRACE(button.name + std::to_string(button.index));
    store.Man_Usb_Conn = false_flag;
    click(workbench().cmdUSBConnect);
    store.Man_Usb_Conn = true_flag;
    click(*panel->find(button.name, button.index));
    EXPECT_EQ(store.Usb_Open, -1);
  }
}

// The single row of the list raises the reads' address, and with it that of the writes that carry it.
TEST_P(MultiFunctionRegisters, TheDeviceListMovesTheAddressOfTheReads) {
  choose(panel->LstDeviceSel, 0);
  EXPECT_EQ(store.I2C_WrAdr, 0x88);
  EXPECT_EQ(store.I2C_RdAdr, 0x8A);
  EXPECT_EQ(panel->txtI2CAddr.Text, "45");
  EXPECT_EQ(panel->txtI2cXmitAdr.Text, "8A");
  const bool plain = GetParam() == "frmKVT71390";
  for (const Button& button : buttons) {
    SCOPED_TRACE(button.name + std::to_string(button.index));
    forget_traffic();
    click(*panel->find(button.name, button.index));
    ByteLists expected = button.sent;
    for (auto& bytes : expected) bytes[1] = bytes[1] == -1 && plain ? 0x88 : 0x8A;
    EXPECT_EQ(sent(), expected);
  }
  choose(panel->LstDeviceSel, 0);
  EXPECT_EQ(store.I2C_RdAdr, 0x8A);
}

INSTANTIATE_TEST_SUITE_P(Each, MultiFunctionRegisters, ::testing::ValuesIn(multi_function_panels),
                         panel_name);

// --- reads ---

TEST_F(Kvt71385Registers, AReadOfAllShowsBothRegistersAndTheirLamps) {
  for (const int i : {0, 1, 10}) panel->ShpIndrd(i).FillColor = black();
  panel->txtRegHex(1).Text = "0f";
  store.PendingReadRegs = true_flag;
  replying({2, 0x0A, 0x0F});
  panel->txtRegHex(0).Text = "0A";
  click(panel->cmdRead_All);
  EXPECT_EQ(store.BridgeStatus, 2);
  EXPECT_EQ(read_box(0), "0A");
  EXPECT_EQ(read_box(1), "0F");
  EXPECT_EQ(panel->ShpIndrd(0).FillColor, lamp(10));
  EXPECT_EQ(panel->ShpIndrd(1).FillColor, red());  // the texts differ
  EXPECT_EQ(panel->ShpIndrd(10).FillColor, lamp(10));
  EXPECT_EQ(panel->ShpINt.FillColor, black());
  EXPECT_EQ(store.PendingReadRegs, 0);
  click(panel->cmdRead_All);
  EXPECT_EQ(panel->ShpIndrd(0).FillColor, lamp(2));
  EXPECT_EQ(panel->ShpIndrd(10).FillColor, lamp(2));
}

// The interrupt status of r0 has a lamp, and is all that is left of the byte in the transfer buffer.
TEST_F(Kvt71385Registers, TheInterruptStatusTurnsItsLampRed) {
  replying({2, 0xE4, 0x64});
  click(panel->cmdRead_All);
  EXPECT_EQ(panel->ShpINt.FillColor, red());
  EXPECT_EQ(store.Xfer_Buf[1], 0x04);
  EXPECT_EQ(panel->ShpIndrd(0).FillColor, red());
  replying({2, 0xFB, 0xFF});
  click(panel->cmdRead_All);
  EXPECT_EQ(panel->ShpINt.FillColor, black());
  EXPECT_EQ(store.Xfer_Buf[1], 0x00);
  replying({1, 0x04});
  click(panel->cmdRDReg(0));
  EXPECT_EQ(panel->ShpINt.FillColor, red());
  click(panel->cmdRDReg(1));
  EXPECT_EQ(store.Xfer_Buf[1], 0x04);  // it isn't r0's
  replying({1, 0x00, 0x04});
  click(panel->cmdRDReg(0));
  EXPECT_EQ(panel->ShpINt.FillColor, black());
}

TEST_F(Kvt71385Registers, TwoClicksOnTheStatusShowThatReadingClearedIt) {
  ASSERT_TRUE(board.set_register(0, 0x04));
  click(panel->cmdSampleIIIntr);
  EXPECT_EQ(panel->ShpINt.FillColor, red());
  EXPECT_EQ(panel->ShpIndrd(0).FillColor, red());
  click(panel->cmdSampleIIIntr);
  EXPECT_EQ(panel->ShpINt.FillColor, black());
  EXPECT_EQ(read_box(0), "00");
}

TEST_F(Kvt71385Registers, AReadOfTheCommandRegisterHasALampOfItsOwn) {
  store.I2C_RdCnt = 2;
  for (const int i : {0, 10}) panel->ShpIndrd(i).FillColor = black();
  replying({1, 0x04, 0x77});
  panel->txtRegHex(0).Text = "04";
  panel->Read_Command_Register();
  EXPECT_EQ(sent(), (ByteLists{{1, 0x89, 0}}));
  EXPECT_EQ(reply_sizes(), (std::vector<std::size_t>{3}));
  EXPECT_EQ(store.BridgeStatus, 1);
  EXPECT_EQ(read_box(0), "04");
  EXPECT_EQ(read_box(1), "64");
  EXPECT_EQ(panel->ShpInd(4).FillColor, lamp(10));
  EXPECT_EQ(panel->ShpINt.FillColor, black());
  EXPECT_EQ(store.I2C_RdCnt, 2);
  panel->Read_Command_Register();
  EXPECT_EQ(panel->ShpInd(4).FillColor, lamp(2));
  panel->txtRegHex(0).Text = "00";
  store.InternalTiming = false_flag;
  panel->Read_Command_Register();
  EXPECT_EQ(panel->ShpInd(4).FillColor, red());
  EXPECT_EQ(store.I2C_RdCnt, 4);
  for (const int i : {0, 10}) EXPECT_EQ(panel->ShpIndrd(i).FillColor, black());
}

TEST_F(Kvt71385Registers, ASingleReadComparesAllButTheResult) {
  store.I2C_RdCnt = 4;
  replying({1, 0xAB});
  for (int i = 0; i < 9; ++i) {
    SCOPED_TRACE(i);
    panel->ShpIndrd(i).FillColor = black();
    store.BridgeStatus = 0;
    click(panel->cmdRDReg(i));
    EXPECT_EQ(read_box(i), "AB");
    EXPECT_EQ(panel->ShpIndrd(i).FillColor, i == 2 || i == 3 ? lamp(10) : red());
    EXPECT_EQ(store.BridgeStatus, 1);
    panel->txtRegHex(i).Text = "AB";
    click(panel->cmdRDReg(i));
    EXPECT_EQ(panel->ShpIndrd(i).FillColor, i == 2 || i == 3 ? lamp(2) : lamp(10));
    click(panel->cmdRDReg(i));
    EXPECT_EQ(panel->ShpIndrd(i).FillColor, i == 2 || i == 3 ? lamp(10) : lamp(2));
  }
  EXPECT_EQ(store.I2C_RdCnt, 4);
}

TEST_F(Kvt71385Registers, TheResultIsShownInTheBoxesOfTheLowLimit) {
  for (const int i : {2, 3}) panel->ShpIndrd(i).FillColor = black();
  const auto lamps = [this](int i) { return panel->ShpIndrd(i).FillColor.get(); };
  const std::vector<forms::Color> before{lamps(4), lamps(5), lamps(6), lamps(7)};
  replying({2, 0x0B, 0xC1});
  click(panel->cmdRead_ADC);
  EXPECT_EQ(read_box(2), "XX");
  EXPECT_EQ(read_box(3), "XX");
  EXPECT_EQ(read_box(4), "0B");
  EXPECT_EQ(read_box(5), "C1");
  for (const int i : {2, 3}) EXPECT_EQ(lamps(i), lamp(10));
  click(panel->cmdRead_ADC);
  for (const int i : {2, 3}) EXPECT_EQ(lamps(i), lamp(2));

  replying({2, 0x0D, 0xE2});
  click(panel->cmdReadTB);
  EXPECT_EQ(read_box(4), "0B");
  EXPECT_EQ(read_box(6), "0D");
  EXPECT_EQ(read_box(7), "E2");
  for (const int i : {2, 3}) EXPECT_EQ(lamps(i), lamp(2));
  EXPECT_EQ((std::vector<forms::Color>{lamps(4), lamps(5), lamps(6), lamps(7)}), before);
}

TEST_F(Kvt71385Registers, ThePollReadsBothAndShowsNothing) {
  replying({2, 0xFF, 0xFF});
  program.runtime.dispatch([&] { panel->TimerIPol.raise(forms::Event::Timer); });
  EXPECT_EQ(sent(), (ByteLists{{2, 0x89, 0}}));
  EXPECT_EQ(reply_sizes(), (std::vector<std::size_t>{3}));
  EXPECT_EQ(read_box(0), "00");
  EXPECT_EQ(panel->ShpINt.FillColor, black());
  EXPECT_EQ(store.Xfer_Buf[1], 0xFF);
}

TEST_F(Kvt71385Registers, InALoopOrBehindAStopTheReadsOfAllWait) {
  for (Flag Store::*const stops :
       {static_cast<Flag Store::*>(&Store::Sample_Run), static_cast<Flag Store::*>(&Store::AbortRequested)}) {
    for (forms::Control* button : {&panel->cmdRead_All, &panel->cmdSampleIIIntr}) {
      store.PendingReadRegs = store.PendingUpdate = false_flag;
      store.*stops = true_flag;
      click(*button);
      store.*stops = false_flag;
      EXPECT_EQ(pending(), "Update Regs");
    }
  }
  EXPECT_TRUE(sent().empty());
}

// --- writes ---

TEST_F(Kvt71385Registers, AWriteTakesTheBoxAndTheImageFollowsUpToR3) {
  store.RegImage.fill(0x11);
  for (int i = 0; i < 9; ++i) {
    SCOPED_TRACE(i);
    panel->ShpIndwr(i).FillColor = black();
    panel->txtRegHex(i).Text = "3c";
    forget_traffic();
    click(panel->cmdWrtReg(i));
    EXPECT_EQ(sent(), (ByteLists{{0, 0x89, i, 0x3C}}));
    EXPECT_EQ(store.RegImage[static_cast<std::size_t>(i)], i <= 3 ? 0x3C : 0x11);
    EXPECT_EQ(panel->ShpIndwr(i).FillColor, lamp(10));
    click(panel->cmdWrtReg(i));
    EXPECT_EQ(panel->ShpIndwr(i).FillColor, lamp(2));
  }
  EXPECT_TRUE(user.errors.empty());
}

TEST_F(Kvt71385Registers, ABadTextGoesOutAsTheParserTakesIt) {
  for (const auto& [text, value] : {std::pair{"", 0}, {"G1", 0}, {"1G", 1}, {"FFFF", 0xFF}, {"1A2", 0xA2}}) {
    panel->txtRegHex(5).Text = text;
    forget_traffic();
    click(panel->cmdWrtReg(5));
    EXPECT_EQ(sent(), (ByteLists{{0, 0x89, 5, value}})) << text;
    EXPECT_EQ(box(5), text);
  }
  panel->txtRegHex(5).Text = "12345";
  click(panel->cmdWrtReg(5));
  EXPECT_EQ(user.errors, (std::vector<int>{forms::overflow}));
}

TEST_F(Kvt71385Registers, TheButtonsOfR0AndR1TakeTheirBoxes) {
  panel->txtRegHex(0).Text = "a3";
  panel->txtRegHex(1).Text = "5A";
  for (const int i : {0, 1}) panel->ShpIndwr(i).FillColor = black();
  store.PendingWriteR0 = store.PendingWriteR1 = true_flag;
  click(panel->cmdSetCommand);
  EXPECT_EQ(sent(), writes("r0=A3"));
  EXPECT_EQ(store.RegImage[0], 0xA3);
  EXPECT_EQ(pending(), " R1");
  forget_traffic();
  click(panel->cmdSetControl);
  EXPECT_EQ(sent(), writes("r1=5A"));
  EXPECT_EQ(store.RegImage[1], 0x5A);
  EXPECT_EQ(pending(), "");
  for (const int i : {0, 1}) EXPECT_EQ(panel->ShpIndwr(i).FillColor, lamp(10));
  EXPECT_EQ(panel->ShpIndrd(0).FillColor, red());  // the texts, not the bytes
}

TEST_F(Kvt71385Registers, TheyLetTheLoopRunTwiceAndThreeTimesFirst) {
  const auto yields_before_the_bus = [this](forms::Control& button) {
    int yields = 0;
    forget_traffic();
    user.at_yield = [&] { yields += recorder.calls.empty() ? 1 : 0; };
    click(button);
    user.at_yield = nullptr;
    return yields;
  };
  const int others = yields_before_the_bus(panel->cmdRead_All);
  EXPECT_EQ(yields_before_the_bus(panel->cmdSetCommand), others + 2);
  EXPECT_EQ(yields_before_the_bus(panel->cmdSetControl), others + 3);
}

// In a loop they write at once, and don't read back. Behind a stop the read-back waits.
TEST_F(Kvt71385Registers, InALoopTheyWriteWithoutAReadBack) {
  in_a_loop([&] {
    click(panel->cmdSetCommand);
    click(panel->cmdSetControl);
  });
  EXPECT_EQ(sent(), (ByteLists{{0, 0x89, 0, 0x00}, {0, 0x89, 1, 0x64}}));
  EXPECT_EQ(pending(), "");
  store.AbortRequested = true_flag;
  forget_traffic();
  click(panel->cmdSetCommand);
  EXPECT_EQ(sent(), (ByteLists{{0, 0x89, 0, 0x00}}));
  EXPECT_EQ(pending(), "Update Regs");
}

TEST_F(Kvt71385Registers, WithoutEventsTheyDoNothing) {
  store.EventsEnabled = false_flag;
  for (const int i : {0, 1}) panel->ShpIndwr(i).FillColor = black();
  panel->txtRegHex(0).Text = "55";
  store.PendingWriteR0 = store.PendingWriteR1 = true_flag;
  click(panel->cmdSetCommand);
  click(panel->cmdSetControl);
  EXPECT_TRUE(recorder.calls.empty());
  for (const int i : {0, 1}) EXPECT_EQ(panel->ShpIndwr(i).FillColor, black());
  EXPECT_EQ(store.RegImage[0], 0x00);
  EXPECT_EQ(pending(), " R0 R1");
}

TEST_F(Kvt71385Registers, TheSyncTurnsItsLampOver) {
  click(panel->cmdSync);
  EXPECT_EQ(panel->ShpInd(12).FillColor, lamp(10));
  click(panel->cmdSync);
  EXPECT_EQ(panel->ShpInd(12).FillColor, lamp(2));
}

}  // namespace
}  // namespace varzelin::testing
