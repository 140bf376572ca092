// The proximity filter of the two-mode panels, step by step and over passes.
#include "panels/two_mode/proximity_filter.h"

#include <gtest/gtest.h>

namespace varzelin {

void PrintTo(const LampChange& change, std::ostream* out) {
  *out << change.lamp << ':' << static_cast<int>(change.action);
}

namespace testing {
namespace {

using enum LampAction;

// As the panel's boxes have them at load.
constexpr ProximityFilterSettings boxes{.low_limit = 5,
                                        .high_limit = 4000,
                                        .maximum_delta = 0.3,
                                        .ir_factor = 0.2,
                                        .fixed_threshold = 100,
                                        .fixed_correction = -50,
                                        .weight = 4,
                                        .gross_delta = 10};

// A pair without infrared: what is corrected is the proximity.
constexpr ProximityPair pair_of(int proximity) {
  return {proximity, 0, static_cast<double>(proximity)};
}

// ---- Correction

TEST(ProximityFilter, CorrectsByFormulaBelowTheThresholdAndByAFixedAmountFromItOn) {
  const LampChanges formula{{13, green}, {19, off}};
  const LampChanges fixed{{19, green}, {13, off}};
  struct Case {
    ProximityPair pair;
    double ProxAdj;
    LampChanges lamps;
  };
  for (const Case& c : {Case{{500, 0, 500}, 500, formula},
                        {{500, 50, 450}, 440, formula},
                        {{500, 99, 401}, 381.2, formula},
                        {{500, 100, 400}, 350, fixed},
                        {{500, 450, 50}, 0, fixed},
                        {{50, 80, -30}, -46, formula},
                        {{50, -20, 70}, 74, formula}}) {
    const Correction correction = correct(c.pair, boxes);
    EXPECT_DOUBLE_EQ(correction.ProxAdj, c.ProxAdj) << c.pair.IrVal;
    EXPECT_EQ(correction.lamps, c.lamps) << c.pair.IrVal;
  }
}

// ---- Limits

TEST(ProximityFilter, ALimitThatIsMetExactlyIsInside) {
  struct Case {
    int ProxVal, IrVal;
    double ProxAdj;
    LampAction high, low;
  };
  for (const Case& c : {Case{4000, 4000, 5, green, green},
                        {4001, 0, 5, red, green},
                        {0, 4001, 5, red, green},
                        {100, 0, 4.9, green, red},
                        {100, 0, -300, green, red},
                        {4001, 0, 4.9, red, red}}) {
    ProximityFilterState state;
    const Judgement judgement = judge(state, {c.ProxVal, c.IrVal, 0}, c.ProxAdj, boxes);
    EXPECT_EQ(judgement.lamps, (LampChanges{{6, c.high}, {7, c.low}})) << c.ProxVal << ' ' << c.IrVal;
    EXPECT_EQ(judgement.ProxReject, c.high == red || c.low == red) << c.ProxVal << ' ' << c.ProxAdj;
    EXPECT_FALSE(judgement.max_change.has_value());
    EXPECT_FALSE(judgement.over_count_shown);
    EXPECT_EQ(state.ProxOverCount, 0);
  }
}

// ---- Change

const LampChanges within_limits{{6, green}, {7, green}};
LampChanges within_limits_and(const LampChanges& more) {
  LampChanges lamps = within_limits;
  lamps.insert(lamps.end(), more.begin(), more.end());
  return lamps;
}
const LampChanges accepted_change{{14, green}, {14, hide}, {14, green}};
const LampChanges rejected_change{{14, green}, {14, red}, {14, show}};

TEST(ProximityFilter, RejectsAChangeThatIsLargerThanItsPart) {
  struct Case {
    double ProxAdjPrev, ProxAdj;
    const char* max_change;
    bool tested, reject;
  };
  for (const Case& c : {Case{1000, 1300, "300.", true, false},
                        {1000, 1301, "300.", true, true},
                        {1000, 700, "300.", true, false},
                        {1000, 699, "300.", true, true},
                        {1000, 1000, "300.", true, false},
                        // Small readings aren't tested, however much they change.
                        {200, 4000, "60.", false, false},
                        {333, 4000, "100.", false, false},    // 99.9
                        {334, 4000, "100.", false, false},    // 100.2
                        {334.5, 4000, "100.", false, false},  // 100.35
                        {335, 4000, "101.", true, true},      // 100.5
                        {335, 435.5, "101.", true, false},
                        {335, 435.6, "101.", true, true},
                        {0, 4000, ".", false, false},
                        {-1000, 4000, "-300.", false, false}}) {
    ProximityFilterState state{.ProxAdjPrev = c.ProxAdjPrev, .ProxOverCount = 3, .ProxAdjStarted = true};
    const Judgement judgement = judge(state, pair_of(1000), c.ProxAdj, boxes);
    SCOPED_TRACE(::testing::Message() << c.ProxAdjPrev << ' ' << c.ProxAdj);
    EXPECT_EQ(judgement.max_change.value_or("none"), c.max_change);
    EXPECT_EQ(judgement.ProxReject, c.reject);
    EXPECT_EQ(judgement.over_count_shown, c.tested);
    EXPECT_EQ(state.ProxOverCount, !c.tested ? 3 : c.reject ? 4 : 0);
    EXPECT_EQ(judgement.lamps, !c.tested  ? within_limits
                               : c.reject ? within_limits_and(rejected_change)
                                          : within_limits_and(accepted_change));
    EXPECT_EQ(state.ProxAdjPrev, c.ProxAdjPrev);
  }
}

TEST(ProximityFilter, TestsNoChangeBeforeTheFirstReadingNorOfOneOutsideTheLimits) {
  ProximityFilterState state{.ProxAdjPrev = 1000};
  Judgement judgement = judge(state, pair_of(2000), 2000, boxes);
  EXPECT_FALSE(judgement.ProxReject);
  EXPECT_FALSE(judgement.max_change.has_value());
  state.ProxAdjStarted = true;
  for (const auto& [proximity, ProxAdj] : {std::pair{4001, 2000.0}, std::pair{2000, 4.0}}) {
    judgement = judge(state, pair_of(proximity), ProxAdj, boxes);
    EXPECT_TRUE(judgement.ProxReject);
    EXPECT_FALSE(judgement.max_change.has_value());
    EXPECT_FALSE(judgement.over_count_shown);
    EXPECT_EQ(state.ProxOverCount, 0);
  }
}

TEST(ProximityFilter, OneRejectionMoreThanTheGrossDeltaIsANewBase) {
  ProximityFilterState state{.ProxAdjPrev = 1000, .ProxPrev = 1000, .IrPrev = 0, .ProxAdjStarted = true};
  for (int count = 1; count <= 10; ++count) {
    const Judgement judgement = judge(state, pair_of(2000), 2000, boxes);
    EXPECT_EQ(state.ProxOverCount, count);
    EXPECT_EQ(judgement.lamps, within_limits_and(rejected_change));
    EXPECT_EQ(take(state, pair_of(2000), 2000, judgement.ProxReject, boxes).sample, 1000);
  }
  Judgement judgement = judge(state, pair_of(2000), 2000, boxes);
  LampChanges lamps = within_limits_and(rejected_change);
  lamps.push_back({15, alternate});
  EXPECT_EQ(judgement.lamps, lamps);
  EXPECT_TRUE(judgement.ProxReject);
  EXPECT_TRUE(judgement.over_count_shown);
  EXPECT_EQ(state.ProxOverCount, 0);
  EXPECT_EQ(state.ProxAdjPrev, 2000);
  EXPECT_EQ(state.ProxPrev, 1000);
  // The reading is rejected all the same, but the sample is the new base.
  const ProximitySample sample = take(state, pair_of(2000), 2000, judgement.ProxReject, boxes);
  EXPECT_EQ(sample.sample, 2000);
  EXPECT_FALSE(sample.averages.has_value());
  judgement = judge(state, pair_of(2000), 2000, boxes);
  EXPECT_FALSE(judgement.ProxReject);
}

TEST(ProximityFilter, AReadingInBetweenSetsTheCountBack) {
  ProximityFilterState state{.ProxAdjPrev = 1000, .ProxAdjStarted = true};
  for (int i = 0; i < 10; ++i) judge(state, pair_of(2000), 2000, boxes);
  EXPECT_EQ(judge(state, pair_of(1100), 1100, boxes).lamps, within_limits_and(accepted_change));
  EXPECT_EQ(state.ProxOverCount, 0);
  EXPECT_EQ(state.ProxAdjPrev, 1000);
}

// The box may be lowered between two passes.
TEST(ProximityFilter, ALowerGrossDeltaTakesTheNextReadingForTheBase) {
  ProximityFilterSettings lower = boxes;
  lower.gross_delta = 2;
  ProximityFilterState state{.ProxAdjPrev = 1000, .ProxOverCount = 5, .ProxAdjStarted = true};
  const Judgement judgement = judge(state, pair_of(4001), 3000, lower);
  EXPECT_EQ(judgement.lamps, (LampChanges{{6, red}, {7, green}, {15, alternate}}));
  EXPECT_TRUE(judgement.over_count_shown);
  EXPECT_EQ(state.ProxAdjPrev, 3000);
  EXPECT_EQ(state.ProxOverCount, 0);
}

// ---- Averages

TEST(ProximityFilter, TheFirstAcceptedReadingStandsAsItIs) {
  ProximityFilterState state{.ProxAdjPrev = 7, .ProxPrev = 8, .IrPrev = 9, .ProxOverCount = 4};
  const ProximitySample sample = take(state, {500, 60, 440}, 428.5, false, boxes);
  EXPECT_EQ(sample.sample, 428);  // to the even number
  EXPECT_FALSE(sample.averages.has_value());
  EXPECT_TRUE(state.ProxAdjStarted);
  EXPECT_EQ(state.ProxAdjPrev, 428.5);
  EXPECT_EQ(state.ProxPrev, 500);
  EXPECT_EQ(state.IrPrev, 60);
  EXPECT_EQ(state.ProxOverCount, 4);
}

TEST(ProximityFilter, LaterReadingsAreAveragedByTheWeight) {
  struct Case {
    double weight, ProxAdj;
    int ProxVal, IrVal, sample;
    double averaged;
    int ProxAverage, IrAverage;
  };
  for (const Case& c : {Case{4, 1100, 1210, 60, 1020, 1020, 1202, 52},
                        {4, 1002.5, 1202, 52, 1000, 1000.5, 1200, 50},  // 1200.4, 50.4
                        {4, 1007.5, 1203, 53, 1002, 1001.5, 1201, 51},  // 1200.6, 50.6
                        {0, 1234, 1300, 99, 1234, 1234, 1300, 99},
                        {1, 1001, 1201, 51, 1000, 1000.5, 1200, 50},  // 1200.5, 50.5: to the even number
                        {-1, 1100, 1300, 99, 1100, 1100, 1300, 99},
                        {-2, 1100, 1300, 99, 900, 900, 1100, 1}}) {
    ProximityFilterSettings settings = boxes;
    settings.weight = c.weight;
    ProximityFilterState state{
        .ProxAdjPrev = 1000, .ProxPrev = 1200, .IrPrev = 50, .ProxOverCount = 2, .ProxAdjStarted = true};
    const ProximitySample sample = take(state, {c.ProxVal, c.IrVal, 0}, c.ProxAdj, false, settings);
    SCOPED_TRACE(::testing::Message() << c.weight << ' ' << c.ProxAdj);
    EXPECT_EQ(sample.sample, c.sample);
    ASSERT_TRUE(sample.averages.has_value());
    EXPECT_DOUBLE_EQ(sample.averages->ProxAdj, c.averaged);
    EXPECT_EQ(sample.averages->ProxVal, c.ProxAverage);
    EXPECT_EQ(sample.averages->IrVal, c.IrAverage);
    EXPECT_DOUBLE_EQ(state.ProxAdjPrev, c.averaged);
    EXPECT_EQ(state.ProxPrev, c.ProxAverage);
    EXPECT_EQ(state.IrPrev, c.IrAverage);
    EXPECT_EQ(state.ProxOverCount, 2);
  }
}

TEST(ProximityFilter, ARejectedReadingBringsTheLastAcceptedOneAndChangesNothing) {
  ProximityFilterState state{
      .ProxAdjPrev = 1001.5, .ProxPrev = 1200, .IrPrev = 50, .ProxOverCount = 2, .ProxAdjStarted = true};
  const ProximitySample sample = take(state, pair_of(3000), 3000, true, boxes);
  EXPECT_EQ(sample.sample, 1002);
  EXPECT_FALSE(sample.averages.has_value());
  EXPECT_EQ(state.ProxAdjPrev, 1001.5);
  EXPECT_EQ(state.ProxPrev, 1200);
  EXPECT_EQ(state.IrPrev, 50);
  EXPECT_EQ(state.ProxOverCount, 2);
  ProximityFilterState fresh;
  EXPECT_EQ(take(fresh, pair_of(3000), 3000, true, boxes).sample, 0);
  EXPECT_FALSE(fresh.ProxAdjStarted);
}

TEST(ProximityFilter, ANumberBeyondThePlatformsIntegersIsLeftOut) {
  ProximityFilterState state{.ProxAdjPrev = 3e9, .ProxPrev = 3e9, .IrPrev = -3e9, .ProxAdjStarted = true};
  EXPECT_FALSE(take(state, pair_of(3000), 3000, true, boxes).sample.has_value());
  const ProximitySample sample = take(state, {3000, 60, 0}, 3000, false, boxes);
  EXPECT_FALSE(sample.sample.has_value());
  EXPECT_EQ(sample.averages->ProxVal, 3000);
  EXPECT_EQ(sample.averages->IrVal, 60);
  EXPECT_EQ(state.ProxPrev, 3000);
}

TEST(ProximityFilter, ARestartCountsAnewFromTheNextReading) {
  ProximityFilterState state{
      .ProxAdjPrev = 1000, .ProxPrev = 1200, .IrPrev = 50, .ProxOverCount = 9, .ProxAdjStarted = true};
  state.restart();
  EXPECT_EQ(state.ProxOverCount, 0);
  EXPECT_FALSE(state.ProxAdjStarted);
  EXPECT_EQ(state.ProxAdjPrev, 1000);
  EXPECT_FALSE(take(state, pair_of(300), 300, false, boxes).averages.has_value());
  EXPECT_EQ(state.ProxAdjPrev, 300);
}

// A target that comes near, and a hand that passes by.
TEST(ProximityFilter, FollowsSlowlyAndIgnoresWhatPassesBy) {
  ProximityFilterState state;
  std::vector<int> samples;
  for (const int proximity : {1000, 1100, 1100, 3000, 3000, 1100}) {
    const ProximityPair pair{proximity, 50, proximity - 50.0};
    const double ProxAdj = correct(pair, boxes).ProxAdj;
    const bool reject = judge(state, pair, ProxAdj, boxes).ProxReject;
    samples.push_back(take(state, pair, ProxAdj, reject, boxes).sample.value());
  }
  // 940; (4 x 940 + 1040) / 5; ...
  EXPECT_EQ(samples, (std::vector{940, 960, 976, 976, 976, 989}));
}

// ---- Thresholds

TEST(ProximityFilter, AReadingOnAThresholdChangesNoLamp) {
  const LampChanges none;
  const LampChanges below{{17, off}, {18, off}, {16, alternate}};
  const LampChanges between{{16, off}, {18, off}, {17, alternate}};
  const LampChanges above{{16, off}, {17, off}, {18, alternate}};
  for (const auto& [reading, lamps] : {std::pair{1799, below},
                                       {1800, none},
                                       {1801, between},
                                       {3499, between},
                                       {3500, none},
                                       {3501, above}}) {
    EXPECT_EQ(threshold_lamps(reading, 3500, 1800), lamps) << reading;
  }
  LampChanges both = above;
  both.insert(both.end(), below.begin(), below.end());
  EXPECT_EQ(threshold_lamps(2000, 1800, 3500), both);
}

}  // namespace
}  // namespace testing
}  // namespace varzelin
