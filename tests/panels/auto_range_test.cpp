// The range that follows the readings by itself on the multi-function panels: when it switches, and what a
// switch does.
#include "support/auto_range_fixture.h"

namespace varzelin::testing {
namespace {

constexpr const char* three_pairs = "r0=60 read2 r0=40 read2 r0=60 read2 r0=40 read2 r0=60 read2 r0=40 read2";

// --- when it switches ---

TEST_F(AutoRange, TheSixthReadingAboveTheLimitSwitchesUp) {
  follow_by_range();
  results(3700);  // twelve bits: the limit is 3686.4
  EXPECT_EQ(ranges_behind(26), "00000111111222222333333333");
}

TEST_F(AutoRange, TheSixthReadingBelowTheLimitSwitchesDown) {
  range(3);
  follow_by_range();
  results(800);  // the limit is 819.2
  EXPECT_EQ(ranges_behind(26), "33333222222111111000000000");
}

TEST_F(AutoRange, BothLimitsAreStrict) {
  follow_by_range();
  range(1);
  panel->txtGainTrip(0).Text = ".5";
  panel->txtGainTrip(1).Text = "0";
  for (const auto& [count, position] : {std::pair{2047, 1}, {2048, 1}, {2049, 2}}) {
    measure_by(ir_continuous);
    results(count);
    EXPECT_EQ(ranges_behind(8).back() - '0', position) << count;
  }
  range(1);
  panel->txtGainTrip(0).Text = "1";
  panel->txtGainTrip(1).Text = ".5";
  for (const auto& [count, position] : {std::pair{2049, 1}, {2048, 1}, {2047, 0}}) {
    measure_by(ir_continuous);
    results(count);
    EXPECT_EQ(ranges_behind(8).back() - '0', position) << count;
  }
}

TEST_F(AutoRange, TheLimitsArePartsOfTheFullCount) {
  follow_by_range();
  range(1);
  for (const auto& [count, position] : {std::pair{820, 1}, {3686, 1}, {3687, 2}, {820, 2}, {819, 1}}) {
    measure_by(ir_continuous);
    results(count);
    EXPECT_EQ(ranges_behind(8).back() - '0', position) << count;
  }
  choose(panel->OptITime(bits_8));
  measure_by(ir_continuous);
  results(231);  // of 256: the limit is 230.4
  EXPECT_EQ(ranges_behind(8).back(), '2');
}

// A reading within the limits doesn't make the others forgotten.
TEST_F(AutoRange, TheSixReadingsNeedNotBeInARow) {
  range(2);
  follow_by_range();
  by_pass({800, 2000, 800, 2000, 800, 2000, 800, 2000, 800, 2000, 800, 2000});
  EXPECT_EQ(ranges_behind(12), "222222222211");
}

TEST_F(AutoRange, EachSideHasItsCountAndASwitchClearsBoth) {
  range(2);
  follow_by_range();
  by_pass({800, 800, 800, 800, 800, 3700, 3700, 3700, 3700, 3700, 3700, 800, 800, 800, 800, 800, 800, 2000});
  EXPECT_EQ(ranges_behind(18), "222222222233333322");
}

TEST_F(AutoRange, ACollectionBeginsWithoutTheCountsOfTheOneBefore) {
  follow_by_range();
  by_pass({3700, 3700, 3700, 3700, 3700, 2000});
  collect(8);
  measure_by(ir_continuous);
  by_pass({3700, 2000});
  collect(4);
  EXPECT_EQ(store.OverCount, 1);
  EXPECT_FALSE(was_switched());
}

TEST_F(AutoRange, WithBothOnManualNothingIsCounted) {
  results(3700);
  collect(20);
  EXPECT_EQ(store.OverCount, 0);
  EXPECT_EQ(range(), 0);
  EXPECT_FALSE(was_switched());
}

TEST_F(AutoRange, TheTwoModesExcludeEachOther) {
  follow_by_current();
  follow_by_range();
  EXPECT_EQ(store.GainAuto, -1);
  EXPECT_EQ(store.IrdrAuto, 0);
  EXPECT_TRUE(panel->OptIRDRMode(0).Value);
  EXPECT_TRUE(panel->Frame14.Visible);
  follow_by_current();
  EXPECT_EQ(store.GainAuto, 0);
  EXPECT_EQ(store.IrdrAuto, -1);
  EXPECT_TRUE(panel->OptGainMode(0).Value);
  EXPECT_TRUE(panel->Frame14.Visible);
}

// --- what a switch does ---

TEST_F(AutoRange, ASwitchSaysWhatItDid) {
  follow_by_range();
  results(3700);
  EXPECT_EQ(behind_passes<std::string>(
                18, [this] { return panel->lblRange.Visible ? panel->lblRange.Caption.get() : ""; })
                .at(5),
            "Over Range Detected... Sensitivity set to : 4");
  EXPECT_EQ(panel->lblRange.Caption, "Over Range Detected... Sensitivity set to : 64");
  measure_by(ir_continuous);
  results(800);
  collect(8);
  EXPECT_TRUE(was_switched());
  EXPECT_EQ(panel->lblRange.Caption, "Under Range Detected.. Sensitivity set to: 16");
  EXPECT_EQ(store.RangeChanged, 0);
}

// At the end of the table nothing is switched any more, and it is said all the same.
TEST_F(AutoRange, AtTheEndOfTheTableItIsSaidAgainEverySixReadings) {
  range(3);
  follow_by_range();
  results(3700);
  collect(
      3, [&] { panel->lblRange.Caption = ""; }, 4);
  EXPECT_EQ(panel->lblRange.Caption, "Over Range Detected... Sensitivity set to : 64");
  EXPECT_EQ(store.GainTarget, 3);
  measure_by(ir_continuous);
  range(0);
  results(800);
  const auto again = [&] {
    panel->lblRange.Caption = "";
    forget_traffic();
  };
  collect(7, again, 7);
  EXPECT_EQ(panel->lblRange.Caption, "Under Range Detected.. Sensitivity set to: 1");
  EXPECT_NE(traffic().find("r0=C0 r1=64 " + std::string(three_pairs)), std::string::npos) << traffic();
  EXPECT_EQ(range(), 0);
}

TEST_F(AutoRange, ASwitchWritesBothRegistersAndDropsThreePairs) {
  follow_by_range();
  results(3700);
  std::string words;
  const auto stop = [&] {
    words = traffic();
    forms::user::click(panel->cmdStopData);
  };
  const auto act = [&] {
    forget_traffic();
    at_yield(count_reaches(7), stop);
  };
  collect(5, act, -1);
  // The pass that switches, and the next one: the options have left it nothing to write.
  EXPECT_EQ(words, std::string("read2 r0=C0 r1=65 ") + three_pairs + " read2");
}

// The pairs are the last thing that the sensor was told: it converts no more.
TEST_F(AutoRange, AContinuousReadingFreezesBehindASwitch) {
  follow_by_range();
  result = nullptr;
  board.scene() = {.light_lux = 0, .ir_counts = 4000, .distance_mm = 1e9};
  choose(panel->OptITime(bits_12));
  std::int32_t frozen = 0;
  const auto darken = [&] {
    EXPECT_EQ(range(), 1);
    EXPECT_EQ(*board.register_value(0) & 0xE0, 0x40);
    frozen = store.Reading;
    board.scene().ir_counts = 8000;
  };
  panel->txtInterval.Text = "10";
  collect(8, darken, 10);
  EXPECT_EQ(frozen, 1000);
  EXPECT_EQ(store.Reading, frozen);
}

TEST_F(AutoRange, ASwitchTurnsTheTraceRedAndTheNextOneBlue) {
  follow_by_range();
  results(3700);
  const auto colours = behind_passes<std::array<int, 3>>(24, [this] {
    return std::array<int, 3>{store.Trace_Red, store.Trace_Green, store.Trace_Blue};
  });
  EXPECT_EQ(colours.at(4), (std::array{0, 0, 0}));
  EXPECT_EQ(colours.at(5), (std::array{255, 0, 0}));
  EXPECT_EQ(colours.at(11), (std::array{0, 0, 255}));
  EXPECT_EQ(colours.at(17), (std::array{255, 0, 0}));
  EXPECT_EQ(colours.at(23), (std::array{0, 0, 255}));  // also where nothing was switched
}

// Wherever in it: at every few of its yields in turn.
TEST_F(AutoRange, APassThatIsOvertakenInASwitchSaysNothing) {
  follow_by_range();
  bool in_switch = true;
  int offset = 0;
  for (; in_switch; offset += 4) {
    SCOPED_TRACE(offset);
    range(0);
    measure_by(ir_continuous);
    by_pass({3700, 3700, 3700, 3700, 3700, 3700, 2000});
    in_switch = false;
    int yields = 0;
    bool said = false;
    user.at_yield = [&] {
      if (store.Sample_Run != -1) return;
      if (store.RangeChanged != 0 && !in_switch && yields++ == offset) {
        in_switch = true;
        results(2000);
        program.runtime.post([&] { forms::user::enter(panel->txtInterval); });
      } else if (store.Sample_Count == (in_switch ? 3 : 9)) {
        said = said || was_switched();
        program.runtime.post(clicking(panel->cmdStopData));
      }
    };
    click(panel->cmdCollectData);
    EXPECT_EQ(said, !in_switch);
    expect_ended();
  }
  EXPECT_GE(offset, 40);
}

}  // namespace
}  // namespace varzelin::testing
