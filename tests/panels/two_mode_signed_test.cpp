// Proximity with a sign on the two-mode panels: the three places that decode it, each with a limit of its
// own, and the row of the chart.
#include "support/two_mode_fixture.h"

namespace varzelin::testing {
namespace {

// A count, and what each place makes of it under scheme 1.
struct Count {
  int count;
  std::int32_t in_collection, triggered, pair;
};
constexpr Count counts[]{
    {0x0000, 0, 0, 0},
    {0x0001, 1, 1, 1},
    {0x7FFF, 32767, 32767, 32767},
    // A high byte of 128 has a sign in a collection alone.
    {0x8000, -0x8000, 0x8000, 0x8000},
    {0x80FF, -0x7F01, 0x80FF, 0x80FF},
    {0x8100, -0x7F00, -0x7F00, -0x7F00},
    {0x8101, -0x7EFF, -0x7EFF, -0x7EFF},
    {0xFFFE, -2, -2, -2},
    {0xFFFF, -1, -1, -1},
};

struct TwoModeSigned : TwoModeTest {
  void SetUp() override {
    TwoModeTest::SetUp();
    scheme1();
  }
};

TEST_P(TwoModeSigned, InACollection) {
  for (const int position : {measure::proximity, measure::proximity_once}) {
    select(position);
    for (const Count& c : counts) {
      reading(c.count);
      run(1);
      EXPECT_EQ(store.Sample_Value[0], c.in_collection) << c.count;
      EXPECT_EQ(store.RawReading, c.in_collection) << c.count;
      EXPECT_EQ(store.Reading, c.in_collection) << c.count;
      EXPECT_EQ(store.TripReading, c.in_collection) << c.count;
      EXPECT_EQ(panel->txtADCRaw.Text, std::to_string(c.in_collection));
      EXPECT_EQ(panel->txtReading.Text, std::to_string(c.in_collection));
      EXPECT_EQ(store.ReadingSign, c.in_collection < 0 ? -1 : 1) << c.count;
    }
  }
}

TEST_P(TwoModeSigned, Triggered) {
  select(measure::proximity);
  for (const Count& c : counts) {
    store.TriggerDone = -1;
    board.queue_reply({2, static_cast<std::uint8_t>(c.count), static_cast<std::uint8_t>(c.count >> 8)});
    click(panel->cmdRead);
    EXPECT_EQ(store.Sample_Value[static_cast<std::size_t>(store.Sample_Count)], c.triggered) << c.count;
    EXPECT_EQ(panel->txtADDec.Text, std::to_string(c.triggered));
    EXPECT_EQ(store.ReadingSign, c.triggered < 0 ? -1 : 1) << c.count;
  }
}

TEST_P(TwoModeSigned, InAPair) {
  select(measure::pair);
  replying_pairs();
  for (const Count& c : counts) {
    proximity_count = c.count;
    click(panel->cmdProx_IR);
    EXPECT_EQ(store.ProxCount, c.pair) << c.count;
    EXPECT_EQ(store.IrCount, 50);
    EXPECT_EQ(panel->txtProx_IR(4).Text, std::to_string(c.pair));
    EXPECT_EQ(store.ReadingSign, c.pair < 0 ? -1 : 1) << c.count;
    if (c.count != 0xFFFF) {
      EXPECT_EQ(panel->txtProx_IR(6).Text, std::to_string(c.pair - 50));
    }
  }
}

// The infrared of a pair never has one.
TEST_P(TwoModeSigned, TheInfraredOfAPairHasNone) {
  select(measure::pair);
  replying_pairs();
  infrared_count = 0xFF00;
  click(panel->cmdProx_IR);
  EXPECT_EQ(store.IrCount, 0xFF00);
}

TEST_P(TwoModeSigned, OtherOperationsHaveNone) {
  select(measure::infrared);
  reading(0xC000);
  run(1);
  EXPECT_EQ(store.Reading, 0xC000);
  EXPECT_EQ(store.ReadingSign, 1);
  store.TriggerDone = -1;
  click(panel->cmdRead);
  EXPECT_EQ(panel->txtADDec.Text, std::to_string(0xC000));
}

TEST_P(TwoModeSigned, UnderScheme0ThereIsNone) {
  click(panel->OptIRMode(0));
  select(measure::proximity);
  reading(0xC000);
  run(1);
  EXPECT_EQ(store.Reading, 0xC000);
  store.TriggerDone = -1;
  click(panel->cmdRead);
  EXPECT_EQ(panel->txtADDec.Text, std::to_string(0xC000));
  replying_pairs();
  proximity_count = 0xC000;
  click(panel->cmdProx_IR);
  EXPECT_EQ(store.ProxCount, 0xC000);
}

// --- the row ---

TEST_P(TwoModeSigned, ZeroIsAtMidHeight) {
  select(measure::proximity);
  struct Row {
    int count, row;
  };
  // Of a span of 65536 + 65535 counts: a row is 431.2 counts.
  for (const Row& r : {Row{0, 152}, Row{215, 152}, Row{216, 151}, Row{0x7FFF, 76}, Row{0xFFFF, 152},
                       Row{0x8000, 228}, Row{0xFF00, 153}}) {
    reading(r.count);
    run(2);
    EXPECT_EQ(store.Scale_Span, 131071);
    EXPECT_EQ(store.Trace_Y[403], r.row) << r.count;
  }
}

TEST_P(TwoModeSigned, BeyondTheScaleItStaysAtTheEdge) {
  select(measure::proximity);
  panel->txtScale.Text = "100";
  panel->txtScaleMin.Text = "-100";
  click(panel->cmdScale);
  for (const auto& [count, row] : {std::pair{101, 1}, std::pair{3000, 1}, std::pair{0xF000, 304}}) {
    reading(count);
    run(2);
    EXPECT_EQ(store.Trace_Y[403], row) << count;
  }
}

// Half a row goes to the even one. A span of 304 makes a count a row, one of 608 half a row.
TEST_P(TwoModeSigned, TheRowRoundsHalfToEven) {
  select(measure::proximity);
  panel->txtScale.Text = "303";
  panel->txtScaleMin.Text = "-304";
  click(panel->cmdScale);
  for (const auto& [count, row] : {std::pair{1, 152}, std::pair{3, 150}, std::pair{5, 150},
                                   std::pair{0xFFFF, 152}, std::pair{0xFFFD, 154}}) {
    reading(count);
    run(2);
    ASSERT_EQ(store.Scale_Span, 608);
    EXPECT_EQ(store.Trace_Y[403], row) << count;
  }
}

TEST_P(TwoModeSigned, WithoutASpanTheRowStaysAndTheLoopGoesOn) {
  select(measure::proximity);
  panel->txtScale.Text = "-1";
  panel->txtScaleMin.Text = "0";
  click(panel->cmdScale);
  reading(70);
  run(14);
  EXPECT_EQ(store.Scale_Span, 0);
  EXPECT_EQ(store.Trace_Y[403], 1);
  EXPECT_EQ(store.Sample_Count, 14);
  EXPECT_TRUE(user.errors.empty());
}

// A pair under scheme 1 has a sign, but its row is that of the plain scale.
TEST_P(TwoModeSigned, APairHasThePlainRow) {
  select(measure::pair);
  replying_pairs();
  proximity_count = 1050;
  run(2);
  EXPECT_EQ(store.Reading, 1000);
  // 304 - (1000 + 65535) x 304 / 131071
  EXPECT_EQ(store.Trace_Y[403], 150);
}

TEST_P(TwoModeSigned, TheAutomaticScaleGoesAsFarDown) {
  select(measure::proximity);
  reading(1000);
  collect_and(8, [&] {
    forms::user::click(panel->cmdAutoScale);
    EXPECT_EQ(panel->txtScale.Text, "1150");
    EXPECT_EQ(panel->txtScaleMin.Text, "-1150");
    EXPECT_EQ(store.Label_Right[0], "-1150");
    EXPECT_EQ(store.Label_Right[10], "1150");
  });
  EXPECT_EQ(store.Scale_Span, 2301);
}

ON_BOTH_MODELS(TwoModeSigned);

}  // namespace
}  // namespace varzelin::testing
