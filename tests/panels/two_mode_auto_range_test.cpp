// The range and the emitter current that follow the readings of the two-mode panels, and the scale that does.
#include "support/two_mode_fixture.h"

namespace varzelin::testing {
namespace {

constexpr int in_range = 30000;
// At sixteen bits the fractions are 13107 and 58981.5 counts.
constexpr int below = 13106, above = 58982;

struct TwoModeAutoRange : TwoModeTest {
  void SetUp() override {
    TwoModeTest::SetUp();
    select(measure::infrared);
  }
  // A collection whose samples are these counts, the last one for good; with one pass more, which is stopped.
  void read(std::vector<int> counts) {
    recorder.before_call = [this, counts] {
      if (store.Man_Usb_Conn == 0 || !reply_is_due()) return;
      const auto sample = static_cast<std::size_t>(store.Sample_Count);
      queue_count(counts[std::min(sample, counts.size() - 1)]);
    };
    run(static_cast<std::int32_t>(counts.size()));
    recorder.before_call = nullptr;
  }
  static std::vector<int> times(std::size_t count, int value) { return std::vector<int>(count, value); }
  // Whether a run over such readings switches. The end of a run adds a reading in range.
  bool switches(std::vector<int> counts) {
    counts.push_back(in_range);
    panel->lblRange.Visible = false;
    read(counts);
    return panel->lblRange.Visible;
  }
  std::string words() { return panel->lblRange.Caption; }
};

TEST_P(TwoModeAutoRange, WithoutAnAutomaticModeNothingFollows) {
  panel->lblRange.Caption = "before";
  EXPECT_FALSE(switches(times(20, above)));
  EXPECT_FALSE(switches(times(20, below)));
  EXPECT_EQ(words(), "before");
  EXPECT_EQ(store.OverCount, 0);
  EXPECT_EQ(store.UnderCount, 0);
}

TEST_P(TwoModeAutoRange, TheSixthReadingPastALimitSwitches) {
  click(panel->OptGainMode(1));
  EXPECT_FALSE(switches(times(5, above)));
  EXPECT_EQ(store.OverCount, 5);
  EXPECT_TRUE(switches(times(6, above)));
  EXPECT_EQ(store.OverCount, 0);
  EXPECT_EQ(store.GainIndex, 1);
  EXPECT_EQ(words(), "Over Range Detected... Sensitivity set to : 1");
  EXPECT_FALSE(switches(times(5, below)));
  EXPECT_EQ(store.UnderCount, 5);
  EXPECT_TRUE(switches(times(6, below)));
  EXPECT_EQ(store.GainIndex, 0);
  EXPECT_EQ(words(), "Under Range Detected.. Sensitivity set to: 1");
}

TEST_P(TwoModeAutoRange, ReadingsOnALimitAreWithinIt) {
  click(panel->OptGainMode(1));
  EXPECT_FALSE(switches(times(9, 58981)));
  EXPECT_FALSE(switches(times(9, 13107)));
  panel->txtGainTrip(0).Text = ".8";  // 52428
  EXPECT_FALSE(switches(times(9, 52428)));
  EXPECT_TRUE(switches(times(9, 52429)));
}

// Not necessarily in a row.
TEST_P(TwoModeAutoRange, AReadingInRangeDoesNotSetTheCountBack) {
  click(panel->OptGainMode(1));
  click(panel->OptGain(2));
  EXPECT_TRUE(switches({below, below, below, below, below, in_range, below}));
  EXPECT_EQ(store.GainIndex, 1);
}

TEST_P(TwoModeAutoRange, ASwitchSetsBothCountsBack) {
  click(panel->OptGainMode(1));
  std::vector<int> counts = times(5, below);
  counts.insert(counts.end(), 6, above);
  EXPECT_TRUE(switches(counts));
  EXPECT_EQ(store.GainIndex, 1);
  EXPECT_EQ(store.UnderCount, 0);
  EXPECT_EQ(store.OverCount, 0);
  EXPECT_EQ(store.RangeChanged, 0);
}

// The registers, then three pairs whose readings count for nothing.
TEST_P(TwoModeAutoRange, ASwitchWritesAtOnceAndDropsThreePairs) {
  click(panel->OptGainMode(1));
  read(times(6, above));
  ByteLists expected = joined({{write(0, 0xC0), write(1, 0x70)}, {write(0, 0xC0), write(1, 0x71)}});
  for (int i = 0; i < 3; ++i) {
    const ByteLists pair{write(0, 0x60), write(0, 0x40), write(0, 0x00)};
    expected.insert(expected.end(), pair.begin(), pair.end());
  }
  EXPECT_EQ(writes(), expected);
  EXPECT_EQ(store.Sample_Value[5], above);
  EXPECT_EQ(store.Trace_Red, 255);
  EXPECT_EQ(store.Trace_Blue, 0);
  EXPECT_EQ(store.PendingWriteR0, 0);
  EXPECT_EQ(store.PendingWriteR1, 0);
}

TEST_P(TwoModeAutoRange, EachSwitchTurnsTheTracesColour) {
  click(panel->OptGainMode(1));
  read(times(12, above));
  EXPECT_EQ(store.GainIndex, 2);
  EXPECT_EQ(store.Trace_Red, 0);
  EXPECT_EQ(store.Trace_Blue, 255);
  EXPECT_EQ(store.Trace_Green, 0);
}

TEST_P(TwoModeAutoRange, TheRangeGoesFromEndToEndAndSaysSoThereToo) {
  click(panel->OptGainMode(1));
  read(times(18, above));
  EXPECT_EQ(store.GainIndex, 3);
  EXPECT_TRUE(panel->OptGain(3).Value);
  EXPECT_EQ(box(1), "73");
  EXPECT_TRUE(switches(times(6, above)));
  EXPECT_EQ(store.GainIndex, 3);
  read(times(18, below));
  EXPECT_EQ(store.GainIndex, 0);
  EXPECT_TRUE(switches(times(6, below)));
  EXPECT_EQ(store.GainIndex, 0);
  EXPECT_EQ(store.IrdrIndex, 1);
}

// Less current for readings that are too large.
TEST_P(TwoModeAutoRange, TheCurrentGoesFromEndToEnd) {
  click(panel->OptIRDRMode(1));
  read(times(12, above));
  EXPECT_EQ(store.IrdrIndex, 3);
  EXPECT_EQ(box(1), "F0");
  EXPECT_TRUE(switches(times(6, above)));
  EXPECT_EQ(store.IrdrIndex, 3);
  read(times(18, below));
  EXPECT_EQ(store.IrdrIndex, 0);
  EXPECT_EQ(box(1), "30");
  EXPECT_TRUE(switches(times(6, below)));
  EXPECT_EQ(store.IrdrIndex, 0);
  EXPECT_EQ(store.GainIndex, 0);
}

TEST_P(TwoModeAutoRange, BothGoTogether) {
  click(panel->OptGainMode(1));
  click(panel->OptIRDRMode(1));
  read(times(6, above));
  EXPECT_EQ(store.GainIndex, 1);
  EXPECT_EQ(store.IrdrIndex, 2);
  EXPECT_EQ(box(1), "B1");
  EXPECT_EQ(std::ranges::count(writes(), write(1, 0xB1)), 1);
  read(times(6, below));
  EXPECT_EQ(store.GainIndex, 0);
  EXPECT_EQ(store.IrdrIndex, 1);
  EXPECT_EQ(box(1), "70");
}

// A collection takes the range's target from its position, that of the current is what the last switch left.
TEST_P(TwoModeAutoRange, AtItsEndTheCurrentIsSetToTheLastTarget) {
  click(panel->OptIRDRMode(1));
  click(panel->OptPSrc(3));
  store.IrdrTarget = 2;
  read(times(6, above));
  EXPECT_EQ(store.IrdrIndex, 2);
  click(panel->OptGainMode(1));
  click(panel->OptGain(3));
  store.GainTarget = 1;
  read(times(6, above));
  EXPECT_EQ(store.GainIndex, 3);
}

// The difference would be below the lower limit.
TEST_P(TwoModeAutoRange, OfAPairItsProximityDecides) {
  for (const int position : {measure::pair, measure::filtered}) {
    click(panel->OptGain(0));
    select(position);
    click(panel->OptGainMode(1));
    panel->lblRange.Visible = false;
    replying_pairs();
    proximity_count = 60000;
    infrared_count = 59000;
    run(6);
    recorder.before_call = nullptr;
    EXPECT_TRUE(panel->lblRange.Visible);
    EXPECT_EQ(words(), "Over Range Detected... Sensitivity set to : 1");
    EXPECT_EQ(store.GainIndex, 1);
    EXPECT_EQ(store.TripReading, 60000);
    click(panel->OptGainMode(0));
  }
}

TEST_P(TwoModeAutoRange, TheFractionsAreReadAtEachCheck) {
  click(panel->OptGainMode(1));
  panel->txtGainTrip(0).Text = "";
  EXPECT_TRUE(switches(times(6, in_range)));
  EXPECT_EQ(store.GainIndex, 1);
  panel->txtGainTrip(0).Text = "1";
  EXPECT_FALSE(switches(times(9, above)));
}

// --- the scale ---

TEST_P(TwoModeAutoRange, TheScaleFollowsThePeak) {
  panel->txtScale.Text = "2250";
  click(panel->cmdScale);
  click(panel->chkAutoAuto);
  std::vector<std::string> scales;
  int samples = 0;
  recorder.before_call = [&] {
    if (!in_loop() || !reply_is_due()) return;
    const std::string scale = panel->txtScale.Text;
    if (scales.empty() || scales.back() != scale) scales.push_back(scale);
    queue_count(2000);
    if (++samples == 40) program.runtime.post(clicking(panel->cmdStopData));
  };
  click(panel->cmdCollectData);
  recorder.before_call = nullptr;
  // Exactly 1.15 times the peak isn't beyond it.
  EXPECT_EQ(scales, (std::vector<std::string>{"2250", "2300"}));
  EXPECT_EQ(store.Reading, 2000);
  EXPECT_EQ(panel->txtReading.Text, "2000");
  expect_ended();
}

TEST_P(TwoModeAutoRange, AScaleThatIsMuchTooWideFollowsToo) {
  for (const auto& [count, scale] :
       {std::pair{900, "1035"}, std::pair{1000, "10000"}, std::pair{10, "10000"}}) {
    if (panel->chkAutoAuto.Value == 0) click(panel->chkAutoAuto);
    panel->txtScale.Text = "10000";
    click(panel->cmdScale);
    read(times(30, count));
    EXPECT_EQ(panel->txtScale.Text, scale) << count;
  }
}

TEST_P(TwoModeAutoRange, WithoutItsTickTheScaleStays) {
  panel->txtScale.Text = "10";
  click(panel->cmdScale);
  read(times(20, 2000));
  EXPECT_EQ(panel->txtScale.Text, "10");
}

ON_BOTH_MODELS(TwoModeAutoRange);

}  // namespace
}  // namespace varzelin::testing
