// What may go wrong on the bus in a run, at each of its transfers in turn and on every panel: the run is over
// in time, the samples taken so far are kept and can be written, and the next run works.
#include "support/fault_fixture.h"

namespace varzelin::testing {
namespace {

TEST_P(PanelFaults, PlugPulledInARealTimeRun) {
  pull_the_plug_everywhere(true);
}
TEST_P(PanelFaults, PlugPulledInATimedRun) {
  pull_the_plug_everywhere(false);
}
TEST_P(PanelFaults, TimeOutInARealTimeRun) {
  fail_everywhere(true, boards::statuses::time_out);
}
TEST_P(PanelFaults, TimeOutInATimedRun) {
  fail_everywhere(false, boards::statuses::time_out);
}
TEST_P(PanelFaults, ErrorInARealTimeRun) {
  fail_everywhere(true, boards::statuses::transfer_failed);
}
TEST_P(PanelFaults, ErrorInATimedRun) {
  fail_everywhere(false, boards::statuses::transfer_failed);
}

TEST_P(PanelFaults, ASensorThatDoesNotAnswerReadsAsZero) {
  run_undisturbed(true);
  measure_again();
  board.set_sensor_answers(false);
  run(true);
  EXPECT_EQ(store.Sample_Count, run_length);
  EXPECT_EQ(store.Sample_Value[5], 0);
  EXPECT_FALSE(failed());
  board.set_sensor_answers(true);
  expect_usable(true);
}

TEST_P(PanelFaults, WithoutABoardARunEndsAtOnce) {
  run_undisturbed(true);
  board.unplug();
  EXPECT_LE(run(true), 200);
  EXPECT_EQ(store.Sample_Count, 0);
  EXPECT_EQ(panel.ShpAttach.FillColor.get(), lamp(12));
  board.plug();
  expect_usable(true);
}

TEST_P(PanelFaults, WithoutABoardATimedRunWaitsForItsButtonUnlessItsReadsAreChecked) {
  run_undisturbed(false);
  board.unplug();
  run(false);
  EXPECT_EQ(store.Sample_Count, checked() ? 1 : run_length);
  EXPECT_EQ(store.Sample_Value[1], 0);
  board.plug();
  expect_usable(false);
}

TEST_P(PanelFaults, WithoutADriverARunEndsAtOnce) {
  run_undisturbed(true);
  board.set_driver_present(false);
  EXPECT_LE(run(true), 200);
  EXPECT_EQ(store.Sample_Count, 0);
  EXPECT_EQ(workbench().cbNoc.Caption, "USB Board won't intialize");
  board.set_driver_present(true);
  expect_usable(true);
}

TEST_P(PanelFaults, TheBoardComesBackWhileATimedRunGoesOn) {
  run_undisturbed(false);
  store.Sample_Count = 0;
  at_yield(count_reaches(5), [&] {
    board.unplug();
    at_yield([&] { return store.Sample_Count >= 10 || store.AbortRequested != 0; },
             [&] {
               board.plug();
               at_yield(count_reaches(run_length), clicking(panel.cmdEndSampling));
             });
  });
  click(panel.cmdSample);
  user.at_yield = nullptr;
  board.plug();
  EXPECT_LE(store.Sample_Count, checked() ? 6 : run_length);
  EXPECT_TRUE(user.errors.empty());
  expect_usable(false);
}

INSTANTIATE_TEST_SUITE_P(Each, PanelFaults, ::testing::ValuesIn(every_panel()), panel_name);

}  // namespace
}  // namespace varzelin::testing
