// What a panel tells of its run, on every panel.
#include "support/fault_fixture.h"

namespace varzelin::testing {
namespace {

using Kind = RunState::Kind;
using End = RunState::End;

struct PanelRunState : PanelFaults {
  RunState state() const { return panel.run_state(); }
  // The state in the middle of a run.
  RunState state_in(bool real_time) {
    RunState seen;
    at_yield(count_reaches(run_length), [this, &seen, real_time] {
      seen = state();
      forms::user::click(real_time ? panel.cmdStopData : panel.cmdEndSampling);
    });
    panel.txtInterval.Text = "30";
    store.Sample_Count = 0;
    click(real_time ? panel.cmdCollectData : panel.cmdSample);
    return seen;
  }
};

TEST_P(PanelRunState, NothingHasRunBehindTheLoad) {
  EXPECT_EQ(state().kind, Kind::none);
  EXPECT_FALSE(state().runs);
}

TEST_P(PanelRunState, ARunIsOfItsKindAndCountsItsReadings) {
  for (const bool real_time : {true, false}) {
    measure_again();
    const RunState during = state_in(real_time);
    EXPECT_TRUE(during.runs);
    EXPECT_EQ(during.kind, real_time ? Kind::collection : Kind::timed);
    EXPECT_NEAR(during.readings, run_length, 1);
    EXPECT_EQ(during.captured, during.readings - 10);
    EXPECT_EQ(during.unanswered, 0);
    EXPECT_GE(during.ms_a_sample, real_time ? 20 : 1);
    EXPECT_FALSE(during.store_full);
    const RunState behind = state();
    EXPECT_FALSE(behind.runs);
    EXPECT_EQ(behind.end, End::by_user);
    EXPECT_EQ(behind.kind, during.kind);
  }
}

TEST_P(PanelRunState, ReadingsWithoutAnAnswerAreCounted) {
  for (const bool real_time : {true, false}) {
    measure_again();
    board.set_sensor_answers(false);
    const RunState during = state_in(real_time);
    EXPECT_EQ(during.unanswered, during.readings);
    EXPECT_EQ(state().end, End::by_user);
    board.set_sensor_answers(true);
    measure_again();
    EXPECT_EQ(state_in(real_time).unanswered, 0);
  }
}

TEST_P(PanelRunState, APlugThatIsPulledEndsACollection) {
  run_undisturbed(true);
  measure_again();
  board.unplug_after(transfers.size() / 2);
  run(true);
  EXPECT_FALSE(state().runs);
  EXPECT_EQ(state().end, End::board_gone);
  EXPECT_TRUE(state().board_gone);
}

TEST_P(PanelRunState, ATransferThatFailsEndsACollection) {
  run_undisturbed(true);
  measure_again();
  board.fail_transfers(1, boards::statuses::time_out, transfers.size() / 2);
  run(true);
  board.clear();
  EXPECT_EQ(state().end, End::transfer_failed);
  EXPECT_FALSE(state().board_gone);
}

TEST_P(PanelRunState, WithoutABoardATimedRunEndsByItsButtonUnlessItsReadsAreChecked) {
  run_undisturbed(false);
  board.unplug();
  run(false);
  EXPECT_EQ(state().end, checked() ? End::board_gone : End::by_user);
  EXPECT_EQ(state().unanswered, state().readings);
}

TEST_P(PanelRunState, AFullStoreKeeps999Readings) {
  store.Sample_Count = SensorPanel::last_sample;
  EXPECT_TRUE(state().store_full);
  EXPECT_EQ(state().kept, 999);
  store.Sample_Count = SensorPanel::last_sample - 1;
  EXPECT_FALSE(state().store_full);
}

INSTANTIATE_TEST_SUITE_P(Every, PanelRunState, ::testing::ValuesIn(every_panel()), panel_name);

}  // namespace
}  // namespace varzelin::testing
