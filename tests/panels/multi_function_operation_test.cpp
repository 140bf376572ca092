// The operation of the multi-function panels: captions, units and frames by position, the scheme and the test
// register by the chip's revision, and the options that are run over again behind it.
#include "support/multi_function_fixture.h"

namespace varzelin::testing {
namespace {

using Kvt71385Operation = Kvt71385Panel;

// --- by position ---

struct Position {
  int position;
  const char* frame;
  const char* graph;  // of OptGraph; null: unchanged
  const char* reading;
  const char* left;
  const char* right;
  int count;  // whether the count is shown: 1 yes, 0 no, -1 unchanged
  bool light;
  bool proximity;
  bool pair;
};
constexpr Position positions[]{
    {0, "No Measurement:Power Down", nullptr, nullptr, nullptr, nullptr, -1, false, false, false},
    {1, "Read ALS Once ", "Lux Count", "Lux Reading", "Lux", "AD Cnt", 1, true, false, false},
    {2, "Read IR Once", "ADC Count", "ADC Reading", "IR Cnt", "IR Cnt", 0, false, false, false},
    {3, "Read Prox. Once", "ADC Count", "ADC Reading", "Prox-IR Cnt", "Prox-IR Cnt", 0, false, true, false},
    {4, "Read Prox-IR Once", "Prox-IR", "Prox-IR", "Prox-IR", "Prox-IR", -1, false, false, true},
    {5, "ALS Continuous", "Lux Count", "Lux Reading", "Lux", "AD Cnt", 1, true, false, false},
    {6, "IR Continuous", "ADC Count", "ADC Reading", "IR Cnt", "IR Cnt", 0, false, false, false},
    {7, "Prox Continuous", "ADC Count", "ADC Reading", "Prox-IR Cnt", "Prox-IR Cnt", 0, false, true, false},
};

struct MultiFunctionOperation : EachMultiFunctionPanel {};

TEST_P(MultiFunctionOperation, EachPositionHasItsTextsAndFlags) {
  for (const Position& row : positions) {
    if (!panel->OptMeasure.has(row.position)) continue;
    for (const bool shown_before : {false, true}) {
      SCOPED_TRACE(row.position);
      panel->OptGraph(0).Caption = panel->Label16.Caption = store.GraphUnit1 = store.GraphUnit2 = "before";
      panel->Label36.Visible = panel->txtADCRaw.Visible = shown_before;
      panel->Frame14.Visible = true;
      panel->Label9(0).Caption = "";
      measure_by(row.position);
      const auto or_before = [](const char* text) { return text ? text : "before"; };
      EXPECT_EQ(panel->Frame3.Caption, row.frame);
      EXPECT_EQ(panel->OptGraph(0).Caption, or_before(row.graph));
      EXPECT_EQ(panel->Label16.Caption, or_before(row.reading));
      EXPECT_EQ(store.GraphUnit1, or_before(row.left));
      EXPECT_EQ(store.GraphUnit2, or_before(row.right));
      const bool count = row.count == -1 ? shown_before : row.count == 1;
      EXPECT_EQ(panel->Label36.Visible, count);
      EXPECT_EQ(panel->txtADCRaw.Visible, count);
      EXPECT_EQ(store.LuxMode, flag(row.light));
      EXPECT_EQ(store.ProxMode, flag(row.proximity));
      EXPECT_EQ(store.ProxIRMode, flag(row.pair));
      EXPECT_EQ(store.OneShotMode, flag(row.position < 5));
      EXPECT_EQ(panel->Label9(0).Caption,
                row.position < 5 ? "Delay Command to Sample" : "Delay Between Samples");
      EXPECT_FALSE(panel->Frame14.Visible);
    }
  }
}

// A pair has boxes of its own in place of the interrupt's, the bytes of it in the full layout alone.
TEST_P(MultiFunctionOperation, APairHasItsFrames) {
  for (const bool full : {false, true}) {
    store.LayoutCompact = flag(full);
    panel->Label13_DblClick();
    for (const Position& row : positions) {
      if (!panel->OptMeasure.has(row.position)) continue;
      SCOPED_TRACE(row.position);
      measure_by(row.position);
      EXPECT_EQ(panel->fraINT.Visible, !row.pair);
      EXPECT_EQ(panel->Frame10.Visible, row.pair);
      EXPECT_EQ(panel->Frame9.Visible, row.pair && full);
    }
  }
}

// Proximity runs under scheme 1, the rest under scheme 0; the other one is out of reach.
TEST_P(MultiFunctionOperation, TheRevisionDecidesOnTheTestRegisterInProximityAlone) {
  for (const char revision : {'A', 'B', 'C'}) {
    open_anew(revision);
    if (revision == 'C') store.Rev_Sel = "C";
    for (const Position& row : positions) {
      if (!panel->OptMeasure.has(row.position)) continue;
      SCOPED_TRACE(revision + std::to_string(row.position));
      panel->txtRegHex(8).Text = "5A";
      forget_traffic();
      measure_by(row.position);
      const int value = !row.proximity ? 0 : revision == 'A' ? 1 : revision == 'B' ? 0 : 0x5A;
      EXPECT_EQ(box(8), forms::Hex2(value));
      EXPECT_EQ(std::ranges::count(sent(), std::vector<int>{0, 0x89, 8, value}), 1);
      EXPECT_EQ(panel->OptIRMode(0).Enabled, !row.proximity);
      EXPECT_EQ(panel->OptIRMode(1).Enabled, row.proximity);
      EXPECT_EQ(panel->OptIRMode(row.proximity ? 1 : 0).Value, true);
      EXPECT_EQ(store.ProxScheme, row.proximity ? 1 : 0);
      EXPECT_EQ(store.SinglePolarity, flag(!row.proximity));
      EXPECT_EQ(store.RegImage[1] & 0x80, row.proximity ? 0x80 : 0);
      EXPECT_EQ(store.RegImage[0] & 0x01, row.proximity ? 1 : 0);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Each, MultiFunctionOperation, ::testing::ValuesIn(multi_function_panels),
                         panel_name);

// --- revision A ---

TEST_F(Kvt71385Operation, OnRevisionAProximityAndBack) {
  open_anew('A');
  measure_by(7);
  EXPECT_EQ(sent(), writes("r1=64 r1=E4 r8=01 r1=E4 r0=E1"));
  forget_traffic();
  // It selects scheme 0 and runs the handler of it, each with a write; then twice more.
  measure_by(5);
  EXPECT_EQ(sent(), writes("r1=64 r1=64 r1=64 r8=00 r1=64 r0=A0"));
  EXPECT_EQ(board.register_value(8), 0);
}

TEST_F(Kvt71385Operation, InALoopTheTestRegisterGoesOutAtOnce) {
  open_anew('A');
  in_a_loop([&] { measure_by(7); });
  EXPECT_EQ(sent(), writes("r8=01"));
  EXPECT_EQ(pending(), "Update R0 R1");
  EXPECT_EQ(box(0) + box(1), "E1E4");
}

// --- the fields beside the operation ---

TEST_F(Kvt71385Operation, TheLowBitOfThePersistenceIsLost) {
  for (const auto& [persistence, left] : {std::pair{0, 0x40}, {1, 0x40}, {2, 0x42}, {3, 0x42}}) {
    choose_option("optINTP", persistence);
    measure_by(2);
    EXPECT_EQ(store.RegImage[0], left);
    EXPECT_TRUE(panel->optINTP(persistence).Value);
  }
  measure_by(3);
  EXPECT_EQ(box(0), "63");  // proximity sets it
}

TEST_F(Kvt71385Operation, TimingAndTimeBaseStay) {
  store.RegImage[0] = 0xFF;
  measure_by(0);
  EXPECT_EQ(box(0), "1E");
  measure_by(6);
  EXPECT_EQ(box(0), "DE");
}

// --- events ---

TEST_F(Kvt71385Operation, TheFocusBringsEventsBack) {
  store.EventsEnabled = false_flag;
  program.runtime.dispatch([&] { forms::user::focus(panel->OptMeasure(3)); });
  EXPECT_EQ(store.EventsEnabled, -1);
  EXPECT_TRUE(sent().empty());
}

// Width and range are run over again behind each operation, without the bus, and events are back then.
TEST_F(Kvt71385Operation, WidthAndRangeFollowWithoutTheBus) {
  choose_option("OptITime", 0);
  choose_option("OptGain", 2);
  store.LimitMax = store.AdcBits = store.SampleDelayMs = 0;
  store.GainMultiplier = 0;
  panel->txtInterval.Text = "";
  forget_traffic();
  measure_by(2);
  EXPECT_EQ(sent(), writes("r1=62 r1=62 r8=00 r0=40"));
  EXPECT_EQ(store.LimitMax, 65536);
  EXPECT_EQ(store.AdcBits, 16);
  EXPECT_EQ(panel->txtInterval.Text, "120");
  EXPECT_EQ(store.GainMultiplier, 16);
  EXPECT_EQ(store.EventsEnabled, -1);
}

TEST_F(Kvt71385Operation, WithoutEventsNothingIsRunOverAgain) {
  store.EventsEnabled = false_flag;
  store.LimitMax = 7;
  store.GainMultiplier = 0;
  panel->txtInterval.Text = "";
  measure_by(2);
  EXPECT_EQ(store.LimitMax, 7);
  EXPECT_EQ(store.GainMultiplier, 0);
  EXPECT_EQ(panel->txtInterval.Text, "");
  EXPECT_EQ(panel->Label9(0).Caption, "Delay Command to Sample");
  EXPECT_EQ(store.EventsEnabled, 0);
}

// In between there are none, so that a handler in the yields of the chart keeps off the bus.
TEST_F(Kvt71385Operation, WhileTheyFollowThereAreNoEvents) {
  bool without = false;
  user.at_yield = [&] { without = without || store.EventsEnabled == 0; };
  measure_by(2);
  user.at_yield = nullptr;
  EXPECT_TRUE(without);
}

}  // namespace
}  // namespace varzelin::testing
