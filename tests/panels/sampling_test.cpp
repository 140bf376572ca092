// Timed sampling on every panel: trigger, delay, reading.
#include <limits>

#include "support/panel_fixture.h"

namespace varzelin::testing {
namespace {

struct PanelSampling : PanelTest {
  void SetUp() override {
    board.set_timing(false);  // what passes is the program's own time
    make_measure();
  }
  // The time of each pass of a run of `count` samples; `at_count` is called as each sample is counted.
  std::vector<double> passes(
      std::int32_t count, const std::function<void()>& at_count = [] {}) {
    std::vector<double> counted;
    store.Sample_Count = 0;
    user.at_yield = [&] {
      if (static_cast<std::int32_t>(counted.size()) == store.Sample_Count) return;
      counted.push_back(clock.milliseconds());
      at_count();
      if (store.Sample_Count == count) program.runtime.post(clicking(panel.cmdEndSampling));
    };
    click(panel.cmdSample);
    user.at_yield = nullptr;
    std::vector<double> times;
    for (std::size_t i = 1; i < counted.size(); ++i) times.push_back(counted[i] - counted[i - 1]);
    return times;
  }
};

// Of those that trigger, wait as their list says, and fetch.
struct PanelSamplingByTrigger : PanelSampling {};

TEST_P(PanelSamplingByTrigger, TheDelayIsTheRowsIndex) {
  panel.CboIntTime(5).ListIndex = 0;
  const double without = passes(3).at(1);
  for (const int row : {1, 8, 100}) {
    panel.CboIntTime(5).ListIndex = row;
    EXPECT_NEAR(passes(3).at(1) - without, row, 0.1) << row;
  }
}

TEST_P(PanelSamplingByTrigger, ACountSetFromOutsideIsShownAsItIs) {
  bool shown = false;
  user.at_yield = [&] {
    if (panel.Label18.Caption == "Data Collection In Process" && store.Sample_Count == 0 && !shown) {
      store.Sample_Count = std::numeric_limits<std::int32_t>::min();
    }
    if (panel.lblLoop_Count.Caption != "-2147483657" || shown) return;
    shown = true;
    store.Sample_Count = 1;
    program.runtime.post(clicking(panel.cmdEndSampling));
  };
  click(panel.cmdSample);
  EXPECT_TRUE(shown);
}

TEST_P(PanelSamplingByTrigger, WithoutADelayItDoesNotYieldForOne) {
  const auto count_yields = [&](int row) {
    panel.CboIntTime(5).ListIndex = row;
    int of_second_pass = 0;
    store.Sample_Count = 0;
    user.at_yield = [&] {
      of_second_pass += store.Sample_Count == 2;
      if (store.Sample_Count == 3 && store.AbortRequested == 0) {
        program.runtime.post(clicking(panel.cmdEndSampling));
      }
    };
    click(panel.cmdSample);
    user.at_yield = nullptr;
    return of_second_pass;
  };
  EXPECT_EQ(count_yields(1) - count_yields(0), 1);
}

TEST_P(PanelSamplingByTrigger, TheDelayFollowsTheListWhileItRuns) {
  const auto times = passes(4, [&] {
    if (store.Sample_Count == 2) panel.CboIntTime(5).ListIndex = 50;
  });
  EXPECT_NEAR(times.at(1) - times.at(0), 50 - 8, 0.1);
}

TEST_P(PanelSampling, ShowsAndHidesItsButtons) {
  store.Sample_Count = 0;
  at_yield(count_reaches(3), [&] {
    EXPECT_EQ(panel.Label18.Caption, "Data Collection In Process");
    EXPECT_FALSE(offered(panel.cmdSample));
    EXPECT_EQ(offered(panel.Command4), panel.model.exit_button.stays_in_loops);
    const forms::Control* reset = panel.find("cbReset");
    EXPECT_FALSE(reset && reset->Visible);
    EXPECT_EQ(panel.shpSample.Visible, panel.model.heartbeat);
    EXPECT_FALSE(panel.cmdCollectData.Enabled);
    EXPECT_TRUE(offered(panel.cmdEndSampling));
    EXPECT_EQ(store.Man_Usb_Conn, flag(panel.model.sampling_holds_session));
    EXPECT_TRUE(store.Usb_Open == -1 || !panel.model.sampling_holds_session);
    EXPECT_FALSE(panel.Tmr_Integration.Enabled);
    forms::user::click(panel.cmdEndSampling);
    EXPECT_FALSE(panel.shpSample.Visible);
    EXPECT_EQ(store.AbortRequested, -1);
    EXPECT_EQ(panel.Label18.Caption, "Data Collection Halted");
  });
  panel.Tmr_Integration.Enabled = true;
  click(panel.cmdSample);
  expect_idle();
  EXPECT_FALSE(offered(panel.cmdAbort));
  EXPECT_EQ(panel.Label18.Caption, "Data Collection Halted");
  EXPECT_TRUE(user.errors.empty());
}

TEST_P(PanelSampling, OpensTheSessionAndLeavesItAsThePanelSays) {
  const std::size_t logged = log().size();
  sample(5);
  if (!panel.model.sampling_holds_session) {
    EXPECT_GE(calls("WDU_VB_Init"), 5u);
    EXPECT_EQ(store.Usb_Open, usb_open_after_sampling());
    return;
  }
  EXPECT_EQ(calls("WDU_VB_Init"), 1u);
  const bool closes = panel.model.sampling_session_end == SessionEnd::disconnect;
  EXPECT_EQ(calls("WDU_VB_Uninit"), closes ? 1 : 0);
  EXPECT_EQ(store.Usb_Open, usb_open_after_sampling());
  // A panel that opens it again finds it open.
  EXPECT_EQ(log().find("Already Opened", logged) != std::string::npos,
            panel.model.sampling_session_end == SessionEnd::connect_again);
}

TEST_P(PanelSampling, StartsFromACleanStore) {
  store.Sample_Value.fill(9);
  store.Sample_Value2.fill(9);
  store.Sample_Count = 77;
  store.AbortRequested = -1;
  store.PendingUpdate = -1;
  at_yield([&] { return !offered(panel.cmdSample) && store.Sample_Count == 1; },
           [&] {
             EXPECT_EQ(store.Sample_Value[0], 1);
             EXPECT_EQ(store.Sample_Value[1010], 1);
             EXPECT_EQ(store.Sample_Value2[0], 1);
             EXPECT_EQ(store.Sample_Value2[1010], 1);
             EXPECT_EQ(store.AbortRequested, 0);
             EXPECT_EQ(store.PendingUpdate, 0);
             forms::user::click(panel.cmdEndSampling);
           });
  click(panel.cmdSample);
  EXPECT_EQ(store.Sample_Count, 1);
}

TEST_P(PanelSampling, TerminateEndsItAndLeavesTheStatusAndTheHeartbeatAlone) {
  store.Sample_Count = 0;
  at_yield(count_reaches(3), clicking(panel.cmdAbort));
  click(panel.cmdSample);
  expect_idle();
  EXPECT_EQ(panel.Label18.Caption, "Data Collection In Process");
  EXPECT_EQ(panel.shpSample.Visible, panel.model.heartbeat);
}

TEST_P(PanelSampling, TheTerminateButtonHidesItselfAndLeavesTheStatusAlone) {
  panel.Label18.Caption = "before";
  click(panel.cmdAbort);
  EXPECT_EQ(store.AbortRequested, -1);
  EXPECT_FALSE(panel.cmdAbort.Visible);
  EXPECT_EQ(panel.Label18.Caption, "before");
}

TEST_P(PanelSampling, TheDormantTimerSamplesWhenItTicks) {
  store.Sample_Count = 0;
  at_yield(count_reaches(2), clicking(panel.cmdEndSampling));
  program.runtime.dispatch([&] { panel.TmrSample.raise(Event::Timer); });
  EXPECT_GE(store.Sample_Count, 2);
}

TEST_P(PanelSampling, TheIntegrationTimerCountsItsTicksWhereThePanelHasIt) {
  store.IntegrationMs = 0;
  program.runtime.dispatch([&] { panel.Tmr_Integration.raise(Event::Timer); });
  EXPECT_EQ(store.IntegrationMs, panel.model.integration_timer ? 25 : 0);
}

TEST_P(PanelSampling, ItsSamplesBeginAtSlotOne) {
  reading(263);
  sample(3);
  EXPECT_EQ(store.Sample_Value[0], 1);
  EXPECT_EQ(store.Sample_Value[1], 263);
  EXPECT_EQ(store.Sample_Value[2], 263);
  EXPECT_EQ(store.Sample_Value[static_cast<std::size_t>(store.Sample_Count) + 1], 1);
  EXPECT_EQ(store.Sample_Value2[1], 1);
  EXPECT_EQ(panel.txtADDec.Text, "263");
  // Some have the box for collections alone.
  const bool alone =
      GetParam() == frmKVT71338::form_name || dynamic_cast<const TwoModePanel*>(&panel) != nullptr;
  EXPECT_EQ(forms::Trim(panel.txtReading.Text), alone ? "" : "263");
}

TEST_P(PanelSampling, ShowsTheCountLessTheSettlingSamples) {
  std::vector<std::string> shown;
  store.Sample_Count = 0;
  user.at_yield = [&] {
    const std::string& text = panel.lblLoop_Count.Caption.get();
    if (shown.empty() || shown.back() != text) shown.push_back(text);
    if (store.Sample_Count == 12 && store.AbortRequested == 0) {
      program.runtime.post(clicking(panel.cmdEndSampling));
    }
  };
  click(panel.cmdSample);
  user.at_yield = nullptr;
  EXPECT_EQ(shown[1], "-9");
  EXPECT_EQ(shown[10], "0");
  EXPECT_EQ(shown[11], "1");
}

TEST_P(PanelSamplingByTrigger, TheHeartbeatGoesBetweenBlackAndLightGreen) {
  panel.shpSample.FillColor = lamp(0);
  sample(1);
  EXPECT_EQ(panel.shpSample.FillColor.get(), lamp(10));
  sample(1);
  EXPECT_EQ(panel.shpSample.FillColor.get(), lamp(0));
}

TEST_P(PanelSampling, TheCountStaysAt1010AndTheLastSlotIsOverwritten) {
  if (!panel.model.sampling_holds_session) user.yields_left *= 20;  // each transfer opens the session
  int count = 1;
  std::vector<std::int32_t> last_slot;
  recorder.before_call = [&] { queue_count(++count); };
  user.at_yield = [&] {
    if (store.Sample_Count < 1010 || store.AbortRequested != 0) return;
    const std::int32_t value = store.Sample_Value[1010];
    if (last_slot.empty() || last_slot.back() != value) last_slot.push_back(value);
    if (last_slot.size() == 5) program.runtime.post(clicking(panel.cmdEndSampling));
  };
  click(panel.cmdSample);
  user.at_yield = nullptr;
  EXPECT_EQ(store.Sample_Count, 1010);
  EXPECT_EQ(panel.lblLoop_Count.Caption, "1000");
  ASSERT_GE(last_slot.size(), 5u);
  EXPECT_TRUE(std::ranges::is_sorted(last_slot));
  EXPECT_TRUE(user.errors.empty());
}

// By itself the loop ends behind its read; a trigger left open there is one that a handler made.
TEST_P(PanelSamplingByTrigger, ATriggerThatIsStillOpenAtTheEndIsFetched) {
  reading(500);
  at_yield([&] { return store.Sample_Count == 2 && store.TriggerDone == 0 && store.Sample_Value[2] == 500; },
           [&] {
             store.TriggerDone = -1;
             board.clear();
             reading(600);
             forms::user::click(panel.cmdEndSampling);
           });
  click(panel.cmdSample);
  EXPECT_EQ(store.TriggerDone, 0);
  EXPECT_EQ(store.Sample_Count, 2);
  EXPECT_EQ(store.Sample_Value[2], 600);
}

INSTANTIATE_TEST_SUITE_P(Each, PanelSampling, ::testing::ValuesIn(every_panel()), panel_name);
INSTANTIATE_TEST_SUITE_P(Each, PanelSamplingByTrigger, ::testing::ValuesIn(every_panel_without_converter()),
                         panel_name);

}  // namespace
}  // namespace varzelin::testing
