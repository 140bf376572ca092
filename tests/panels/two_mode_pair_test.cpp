// Proximity minus infrared on the two-mode panels, measured as a pair.
#include <cmath>

#include "support/two_mode_fixture.h"

namespace varzelin::testing {
namespace {

struct TwoModePair : TwoModeTest {
  void SetUp() override {
    TwoModeTest::SetUp();
    select(measure::pair);
    replying_pairs();
  }
};

TEST_P(TwoModePair, ItCommandsBothAndPowersDown) {
  proximity_count = 0x0A1B;
  infrared_count = 0x0102;
  click(panel->cmdProx_IR);
  EXPECT_EQ(sent(), (ByteLists{write(0, 0x60), {2, 0x89, 2}, write(0, 0x40), {2, 0x89, 2}, write(0, 0)}));
  const char* texts[] = {"0A", "1B", "01", "02", "2587", "258", "2329"};
  for (int i = 0; i < 7; ++i) EXPECT_EQ(panel->txtProx_IR(i).Text, texts[i]) << i;
  EXPECT_EQ(store.ProxMinusIr, 2329);
  EXPECT_EQ(colour_index(panel->ShpOVRange(0)), 10);
  EXPECT_EQ(colour_index(panel->ShpOVRange(1)), 10);
  EXPECT_TRUE(panel->cmdProx_IR.Enabled);
  EXPECT_EQ(store.RegImage[0], 0x60);
  EXPECT_EQ(store.Usb_Open, 0);
}

// Timing, time base and the two bits between go along; infrared is measured in scheme 0.
TEST_P(TwoModePair, ItsCommandsTakeTheMiddleOfTheImage) {
  store.ProxScheme = 1;
  store.RegImage[0] = 0xFF;
  click(panel->cmdProx_IR);
  EXPECT_EQ(writes(), (ByteLists{write(0, 0x7F), write(0, 0x5E), write(0, 0)}));
  EXPECT_EQ(store.Prox_Cmd, 0x7F);
  EXPECT_EQ(store.IR_Cmd, 0x5E);
}

// They are made before it first yields.
TEST_P(TwoModePair, AnOptionWhileItConnectsComesTooLateForIt) {
  at_yield([&] { return !panel->cmdProx_IR.Enabled; }, [&] { store.RegImage[0] = 0x7E; });
  click(panel->cmdProx_IR);
  EXPECT_EQ(writes(), (ByteLists{write(0, 0x60), write(0, 0x40), write(0, 0)}));
}

TEST_P(TwoModePair, ItWaitsBehindEachCommand) {
  hold_session();
  for (const auto& [text, total] : {std::pair{"250", 500}, std::pair{"0", 0}, std::pair{"-5", 0}}) {
    panel->txtSampling_Delay.Text = text;
    const double begun = clock.milliseconds();
    click(panel->cmdProx_IR);
    EXPECT_NEAR(clock.milliseconds() - begun, total, 1) << text;
  }
}

TEST_P(TwoModePair, ItYieldsAroundItsLaterWrites) {
  hold_session();
  std::map<std::size_t, double> called_at;  // by the number of transfers before
  recorder.before_call = [&] { called_at.try_emplace(recorder.packets.size(), clock.milliseconds()); };
  click(panel->cmdProx_IR);
  // A transfer yields before and behind itself; the wait for a conversion yields twice.
  constexpr double yield_ms = 0.001;
  const auto yields = [&](std::size_t transfer) {
    return std::lround((called_at[transfer + 1] - called_at[transfer]) / yield_ms);
  };
  const long between = yields(1);
  EXPECT_EQ(yields(0), between + 2);
  EXPECT_EQ(yields(2), between + 1);
  EXPECT_EQ(yields(3), between + 3);
}

TEST_P(TwoModePair, AFullCountIsOutOfRange) {
  struct Case {
    int proximity, infrared, lamp0, lamp1;
    const char* text;
  };
  for (const Case& c : {Case{65535, 50, 12, 10, "NA"}, Case{50, 65535, 10, 12, "NA"},
                        Case{65535, 65535, 12, 12, "NA"}, Case{65534, 50, 10, 10, "65484"}}) {
    proximity_count = c.proximity;
    infrared_count = c.infrared;
    click(panel->cmdProx_IR);
    EXPECT_EQ(colour_index(panel->ShpOVRange(0)), c.lamp0);
    EXPECT_EQ(colour_index(panel->ShpOVRange(1)), c.lamp1);
    EXPECT_EQ(panel->txtProx_IR(6).Text, c.text);
    EXPECT_EQ(store.ProxMinusIr, c.text == std::string_view("NA") ? -9999 : 65484);
    EXPECT_EQ(panel->txtProx_IR(4).Text, std::to_string(c.proximity));
  }
}

TEST_P(TwoModePair, AtEightBitsTheHighestCountIsInRange) {
  click(panel->OptITime(2));
  proximity_count = 255;
  click(panel->cmdProx_IR);
  EXPECT_EQ(colour_index(panel->ShpOVRange(0)), 10);
  EXPECT_EQ(panel->txtProx_IR(6).Text, "205");
  proximity_count = 256;
  click(panel->cmdProx_IR);
  EXPECT_EQ(colour_index(panel->ShpOVRange(0)), 12);
}

// Nothing behind the transfer that failed; what was read of it isn't shown.
TEST_P(TwoModePair, ItStopsAtATransferThatFails) {
  click(panel->cmdProx_IR);
  const std::size_t whole = recorder.packets.size();
  ASSERT_EQ(whole, 7u);
  for (std::size_t position = 0; position < whole; ++position) {
    panel->txtProx_IR(6).Text = "before";
    forget_traffic();
    board.fail_transfers(1, boards::statuses::transfer_failed, position);
    click(panel->cmdProx_IR);
    board.clear();
    EXPECT_EQ(recorder.packets.size(), position + 1);
    EXPECT_EQ(panel->txtProx_IR(6).Text, "before");
    EXPECT_TRUE(panel->cmdProx_IR.Enabled);
    EXPECT_EQ(store.Usb_Open, 0);
  }
}

TEST_P(TwoModePair, ATimedRunTakesItsDifference) {
  proximity_count = 1000;
  infrared_count = 1300;
  sample(2);
  EXPECT_EQ(store.Sample_Value[1], -300);
  EXPECT_EQ(panel->txtADHex.Text, "-300");
  EXPECT_EQ(panel->txtADDec.Text, "-300");
  const ByteLists pass{write(0, 0x60), {2, 0x89, 2}, write(0, 0x40), {2, 0x89, 2}, write(0, 0)};
  EXPECT_EQ(sent(), joined({pass, pass}));
}

TEST_P(TwoModePair, OutOfRangeATimedRunLeavesItsSlot) {
  proximity_count = 65535;
  panel->txtADDec.Text = "before";
  sample(3);
  EXPECT_EQ(panel->txtADHex.Text, "NA");
  EXPECT_EQ(panel->txtADDec.Text, "before");
  EXPECT_EQ(store.Sample_Value[2], 1);
}

ON_BOTH_MODELS(TwoModePair);

}  // namespace
}  // namespace varzelin::testing
