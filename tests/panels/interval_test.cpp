// The interval and the scale box of every panel.
#include "support/panel_fixture.h"

namespace varzelin::testing {
namespace {

struct PanelInterval : PanelTest {
  void SetUp() override {
    board.set_timing(false);
    make_measure();
  }
};

TEST_P(PanelInterval, ClickingIntoTheScaleBoxStopsACollection) {
  const bool stops = !dynamic_cast<const TwoModePanel*>(&panel);  // theirs does nothing
  at_yield(count_reaches(3), [&] {
    forms::user::click(panel.txtScale);
    at_yield(count_reaches(6), clicking(panel.cmdStopData));
  });
  store.Sample_Count = 0;
  click(panel.cmdCollectData);
  user.at_yield = nullptr;
  EXPECT_EQ(store.Sample_Count < 6, stops);
  expect_ended();
}

TEST_P(PanelInterval, LeavingTheBoxStopsACollectionAndKeepsThePace) {
  const auto before = store.IntervalMs;
  at_yield(count_reaches(3), [&] {
    panel.txtInterval.Text = "1000";
    forms::user::leave(panel.txtInterval);
  });
  click(panel.cmdCollectData);
  expect_ended();
  EXPECT_EQ(store.IntervalMs, before);
  EXPECT_EQ(store.Label_Time[10], "400.00");
}

TEST_P(PanelInterval, LeavingTheBoxWhileIdleStartsNothing) {
  const auto before = store.IntervalMs;
  panel.txtInterval.Text = "250";
  panel.Picture1.SetPixelV(3, 5, 0x0000FF);
  store.Trace_Y.fill(9);
  leave(panel.txtInterval);
  EXPECT_TRUE(recorder.calls.empty());
  EXPECT_EQ(store.IntervalMs, before);
  EXPECT_EQ(store.Label_Time,
            (std::array<std::string, 11>{"0.00", "10.00", "20.00", "30.00", "40.00", "50.00", "60.00",
                                         "70.00", "80.00", "90.00", "100.00"}));
  EXPECT_EQ(store.Trace_Y[0], 1);
  EXPECT_EQ(store.Trace_Y[403], 1);
  EXPECT_EQ(store.Trace_Y[404], 9);
  EXPECT_EQ(panel.Picture1.GetPixel(3, 5), 0xFFFFFF);
  EXPECT_EQ(panel.Picture2.printed()[24].text, "100.00");
  // The next collection reads the box itself.
  collect(2);
  EXPECT_EQ(panel.txtTime1.Text, pace_text(250));
}

TEST_P(PanelInterval, OnlyEnterActs) {
  const auto before = store.IntervalMs;
  const std::string text = panel.txtInterval.Text.get();
  program.runtime.dispatch([&] { forms::user::type(panel.txtInterval, "5"); });
  EXPECT_EQ(panel.txtInterval.Text, text + "5");
  EXPECT_TRUE(recorder.calls.empty());
  EXPECT_EQ(store.IntervalMs, before);
}

TEST_P(PanelInterval, EnterStartsACollectionAlsoWhenIdle) {
  panel.txtInterval.Text = "100.7";
  store.Sample_Count = 0;
  at_yield(count_reaches(2), clicking(panel.cmdStopData));
  press_enter(panel.txtInterval);
  EXPECT_GE(store.Sample_Count, 2);
  EXPECT_EQ(store.IntervalMs, 100);
  EXPECT_EQ(store.Label_Time[1], "4.00");
  EXPECT_EQ(store.Label_Time[10], "40.00");
  EXPECT_EQ(panel.Picture2.printed()[24].text, "40.00");
  EXPECT_EQ(panel.txtTime1.Text, pace_text(has_converter() ? 101 : 100));  // which round it
  expect_ended();
}

TEST_P(PanelInterval, EnterInAnEmptyBoxRunsWithoutPause) {
  panel.txtInterval.Text = "";
  store.Sample_Count = 0;
  at_yield(count_reaches(2), clicking(panel.cmdStopData));
  press_enter(panel.txtInterval);
  EXPECT_EQ(store.IntervalMs, 0);
  EXPECT_EQ(store.Label_Time[0], "0.00");
  EXPECT_EQ(store.Label_Time[10], ".00");
  EXPECT_EQ(panel.txtTime1.Text, "0");
}

INSTANTIATE_TEST_SUITE_P(Each, PanelInterval, ::testing::ValuesIn(every_panel()), panel_name);

}  // namespace
}  // namespace varzelin::testing
