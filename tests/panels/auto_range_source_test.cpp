// What the range and the emitter current of a multi-function panel go by, and where they step on from.
#include "support/auto_range_fixture.h"

namespace varzelin::testing {
namespace {

// --- the emitter ---

// Lower positions are larger currents: too much light goes on to less current.
TEST_F(AutoRange, TheCurrentFollowsInBothDirections) {
  follow_by_current();
  ASSERT_EQ(current(), 1);
  results(3700);
  const std::function<int()> of_current = [this] { return current(); };
  EXPECT_EQ(behind_passes<int>(14, of_current), (std::vector{1, 1, 1, 1, 1, 2, 2, 2, 2, 2, 2, 3, 3, 3}));
  EXPECT_EQ(range(), 0);
  EXPECT_EQ(panel->lblRange.Caption, "Over Range Detected... Sensitivity set to : 1");
  measure_by(ir_continuous);
  results(800);
  collect(20);
  EXPECT_EQ(current(), 0);
  EXPECT_EQ(panel->lblRange.Caption, "Under Range Detected.. Sensitivity set to: 1");
}

// The persistence leaves its position where that of the current is.
TEST_F(AutoRange, TheCurrentStepsOnFromThePersistence) {
  follow_by_current();
  for (const auto& [persistence, count, position] :
       {std::tuple{2, 800, 1}, {2, 3700, 3}, {0, 3700, 1}, {1, 800, 0}}) {
    measure_by(ir_continuous);
    choose(panel->optINTP(persistence));
    results(count);
    collect(8);
    EXPECT_EQ(current(), position) << persistence;
  }
}

// At the end of the table the target stays what it was, which may be another's.
TEST_F(AutoRange, TheTargetOfTheCurrentIsThatOfTheSwitchBefore) {
  follow_by_current();
  choose(panel->optINTP(1));
  results(3700);
  collect(8);
  ASSERT_EQ(store.IrdrTarget, 2);
  measure_by(ir_continuous);
  choose(panel->optINTP(3));
  collect(8);
  EXPECT_EQ(current(), 2);
  EXPECT_EQ(store.IrdrTarget, 2);
}

// --- what is held against the limits ---

TEST_F(AutoRange, OfAPairItIsTheProximity) {
  measure_by(pair_position);
  follow_by_range();
  pair(3700, 3000);
  collect(8);
  EXPECT_EQ(range(), 1);
  EXPECT_EQ(store.TripReading, 3700);
  measure_by(pair_position);
  range(1);
  follow_by_range();
  pair(3000, 2900);  // of a difference that would be too low
  collect(8);
  EXPECT_EQ(range(), 1);
}

TEST_F(AutoRange, InLuxTheReadingIsHeldAgainstCounts) {
  measure_by(als_continuous);
  follow_by_range();
  results(4095);  // 1000 lux: neither too much nor too little
  collect(20);
  EXPECT_EQ(range(), 0);
  measure_by(als_continuous);
  range(2);
  follow_by_range();
  results(1000);  // 3905 lux of 16000
  collect(8);
  EXPECT_EQ(range(), 3);
  measure_by(als_continuous);
  range(1);
  follow_by_range();
  results(800);  // 781 lux of 4000
  collect(8);
  EXPECT_EQ(range(), 0);
}

TEST_F(AutoRange, AFractionThatIsNoNumberIsNothing) {
  follow_by_range();
  panel->txtGainTrip(0).Text = "much";
  results(1);
  panel->txtGainTrip(1).Text = "little";
  collect(8);
  EXPECT_EQ(range(), 1);
}

TEST_F(AutoRange, AnUnreadableFractionLeavesTheOtherLimit) {
  follow_by_range();
  panel->txtGainTrip(1).Text = "1e999";
  results(3700);
  collect(8);
  EXPECT_EQ(range(), 1);
  panel->txtGainTrip(0).Text = "1e999";
  panel->txtGainTrip(1).Text = ".20";
  measure_by(ir_continuous);
  results(800);
  collect(8);
  EXPECT_EQ(range(), 0);
  EXPECT_TRUE(user.errors.empty());
}

// Without a multiplier of its own the panel says so.
struct AutoRangeWithoutMultiplier : MultiFunctionLoop, ::testing::WithParamInterface<std::string> {};

TEST_P(AutoRangeWithoutMultiplier, SwitchesAndSaysOne) {
  open(GetParam());
  measure_by(ir_continuous);
  choose(panel->OptGainMode(1));
  results(3700);
  collect(14);
  EXPECT_TRUE(panel->OptGain(2).Value);
  EXPECT_EQ(panel->lblRange.Caption, "Over Range Detected... Sensitivity set to : 1");
}
INSTANTIATE_TEST_SUITE_P(Each, AutoRangeWithoutMultiplier, ::testing::Values("frmKVT71390", "frmKVT71392"),
                         panel_name);

}  // namespace
}  // namespace varzelin::testing
