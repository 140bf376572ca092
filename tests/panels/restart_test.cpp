// Handlers of every panel that begin a collection anew from inside the running one.
#include "support/panel_fixture.h"

namespace varzelin::testing {
namespace {

struct PanelRestart : PanelTest {
  std::function<void()> before_stop = [] {};

  void SetUp() override {
    board.set_timing(false);
    make_measure();
  }
  // Runs a collection; `action` comes at 15 samples of it, the stop button at `count` samples of the
  // collection that follows.
  void run(std::function<void()> action, std::int32_t count) {
    enum { first, restarting, second, stopped } stage = first;
    user.at_yield = [&, stage]() mutable {
      if (stage == first && store.Sample_Count == 15) {
        stage = restarting;
        program.runtime.post(action);
      } else if (stage == restarting && store.Sample_Count < 15 && store.Sample_Run == -1) {
        stage = second;
      } else if (stage == second && store.Sample_Count == count) {
        stage = stopped;
        before_stop();
        program.runtime.post(clicking(panel.cmdStopData));
      }
    };
    forget_traffic();
    click(panel.cmdCollectData);
    user.at_yield = nullptr;
  }
  void expect_one_session() {
    EXPECT_EQ(calls("WDU_VB_Init"), sessions_of_a_collection());
    EXPECT_EQ(calls("WDU_VB_Uninit"), sessions_of_a_collection());
    EXPECT_TRUE(std::ranges::all_of(recorder.packets, [](const Packet& p) { return p.status == 0; }));
    EXPECT_TRUE(user.errors.empty());
    expect_ended();
  }
};
// Of those whose set-up has nothing for the bus and takes the scale of its box.
struct PanelRestartOfABox : PanelRestart {};
// Of those that go by the greatest sample.
struct PanelRestartByScale : PanelRestart {};

TEST_P(PanelRestart, EnterGoesOnWithTheNewInterval) {
  run(
      [&] {
        panel.txtInterval.Text = "500";
        forms::user::enter(panel.txtInterval);
      },
      4);
  expect_one_session();
  EXPECT_EQ(store.Sample_Count, 4);
  EXPECT_EQ(store.IntervalMs, 500);
  EXPECT_EQ(panel.txtTime1.Text, pace_text(500));
  EXPECT_EQ(store.Trace_Pos, 403);
  EXPECT_EQ(store.Sample_Value[10], 1);
}

TEST_P(PanelRestart, WithoutWorkThatWaitsItAsksForNone) {
  recorder.before_call = [&] { EXPECT_EQ(store.PendingUpdate, 0); };
  run([&] { forms::user::enter(panel.txtInterval); }, 4);
  expect_one_session();
}

TEST_P(PanelRestartOfABox, TheFirstSampleAfterItWaitsForTheNewInterval) {
  double entered = 0;
  double read = 0;
  recorder.before_call = [&] {
    if (entered != 0 && read == 0) read = clock.milliseconds();
  };
  // In the wait for a sample, so that no transfer of the pass before is still to come.
  at_yield([&] { return store.Trace_Pos == 401; },
           [&] {
             entered = clock.milliseconds();
             panel.txtInterval.Text = "3000";
             at_yield([&] { return read != 0; }, clicking(panel.cmdStopData));
             forms::user::enter(panel.txtInterval);
           });
  click(panel.cmdCollectData);
  EXPECT_NEAR(read - entered, 3000 - panel.model.sleep_margin, 1.1);
}

TEST_P(PanelRestartByScale, TheAutomaticScaleGoesOnWithTheNewScale) {
  reading(5100);
  before_stop = [&] {
    EXPECT_EQ(panel.txtScale.Text, "5865");  // 1.15 x 5100
    EXPECT_EQ(store.Scale_Max, static_cast<int>(5865 + panel.model.scale_addition));
    EXPECT_EQ(store.GraphUnit1, "Scaled");
  };
  run(clicking(panel.cmdAutoScale), 20);
  expect_one_session();
  EXPECT_EQ(store.Sample_Count, 20);
}

// Wherever in a pass it comes: at each yield of one in turn.
TEST_P(PanelRestart, AtAnyYieldTheNewCollectionStartsFromItsFirstSample) {
  bool of_next_pass = false;
  int offset = 0;
  for (; !of_next_pass; ++offset) {
    SCOPED_TRACE("entered at yield " + std::to_string(offset));
    measure_again();
    int yields = -1;
    bool entered = false;
    bool seen = false;
    store.Sample_Count = 0;
    user.at_yield = [&] {
      if (store.Sample_Count >= 12 && !entered && ++yields == offset) {
        entered = true;
        of_next_pass = store.Sample_Count > 12;
        program.runtime.post([&] { forms::user::enter(panel.txtInterval); });
      } else if (entered && store.Sample_Count == 3 && !seen) {
        seen = true;
        EXPECT_EQ(store.Sample_Value[3], 1);
        EXPECT_EQ(store.Trace_Pos, 403);
        program.runtime.post(clicking(panel.cmdStopData));
      }
    };
    click(panel.cmdCollectData);
    user.at_yield = nullptr;
    EXPECT_TRUE(entered);
    EXPECT_TRUE(seen);
    expect_ended();
    EXPECT_TRUE(user.errors.empty());
  }
  EXPECT_GE(offset, 3);
}

// Enter, and the stop button before the loop had its turn.
TEST_P(PanelRestart, AStopBehindItIsNotLost) {
  int later = 0;
  at_yield(count_reaches(12), [&] {
    forms::user::enter(panel.txtInterval);
    EXPECT_EQ(store.Sample_Run, -1);
    program.runtime.post(clicking(panel.cmdStopData));
    user.at_yield = [&] {
      // Were it lost, the collection would run on.
      later += store.Sample_Run == -1;
      if (later == 5000) program.runtime.post(clicking(panel.cmdStopData));
    };
  });
  click(panel.cmdCollectData);
  EXPECT_LT(later, 5000);
  EXPECT_LE(store.Sample_Count, 1);
  EXPECT_EQ(panel.Label18.Caption, "Data Collection Halted");
  expect_idle();
}

// An entry that fails in the restart itself is that handler's error; the loop ends as after a stop.
TEST_P(PanelRestartOfABox, AFailedOneLeavesAnIdlePanel) {
  at_yield(count_reaches(12), [&] {
    panel.txtScale.Text = "99999999999";
    forms::user::enter(panel.txtInterval);
  });
  click(panel.cmdCollectData);
  EXPECT_EQ(user.errors, std::vector<int>{forms::overflow});
  expect_idle();
}

// Also while the session is still being opened.
TEST_P(PanelRestart, InTheStartOfACollectionItOpensNoSecondSession) {
  at_yield([&] { return store.Sample_Run == -1; },
           [&] {
             panel.txtInterval.Text = "50";
             forms::user::enter(panel.txtInterval);
             EXPECT_EQ(store.Usb_Open, 0);
             at_yield(count_reaches(3), clicking(panel.cmdStopData));
           });
  click(panel.cmdCollectData);
  EXPECT_EQ(store.Sample_Count, 3);
  EXPECT_EQ(panel.txtTime1.Text, pace_text(50));
  expect_one_session();
}

// While the loop that was stopped still closes its session, the start button begins a new one.
TEST_P(PanelRestart, AStartInTheEndOfACollectionRuns) {
  at_yield(count_reaches(12), [&] {
    forms::user::click(panel.cmdStopData);
    at_yield([&] { return store.Usb_Open == 0; },
             [&] {
               store.Sample_Count = 0;
               at_yield(count_reaches(3), clicking(panel.cmdStopData));
               panel.cmdCollectData_Click();
             });
  });
  click(panel.cmdCollectData);
  EXPECT_EQ(store.Sample_Count, 3);
  EXPECT_EQ(store.Sample_Value[4], 1);
  expect_idle();
}

TEST_P(PanelRestart, ThousandsOfThemDoNotGrowTheStack) {
  panel.txtInterval.Text = "0";
  int restarts = 0;
  int deepest = 0;
  const char* lowest = nullptr;
  const char* highest = nullptr;
  user.at_yield = [&] {
    // The frame's own address: a sanitizer may keep variables elsewhere.
    const auto* address = static_cast<const char*>(__builtin_frame_address(0));
    deepest = std::max(deepest, program.runtime.handlers_on_stack());
    if (!lowest || address < lowest) lowest = address;
    if (!highest || address > highest) highest = address;
    if (store.Man_Usb_Conn != -1 || store.Sample_Run != -1) return;
    if (program.runtime.handlers_on_stack() > 1) return;
    if (restarts < 3000) {
      ++restarts;
      program.runtime.post([&] { forms::user::enter(panel.txtInterval); });
    } else if (store.Sample_Count == 12) {
      program.runtime.post(clicking(panel.cmdStopData));
    }
  };
  click(panel.cmdCollectData);
  EXPECT_EQ(restarts, 3000);
  EXPECT_LE(deepest, 3);
  EXPECT_LT(highest - lowest, 64 * 1024);
  EXPECT_EQ(store.Sample_Count, 12);
  expect_one_session();
}

INSTANTIATE_TEST_SUITE_P(Each, PanelRestart, ::testing::ValuesIn(every_panel()), panel_name);
INSTANTIATE_TEST_SUITE_P(Each, PanelRestartOfABox, ::testing::ValuesIn(every_panel_without_converter()),
                         panel_name);
INSTANTIATE_TEST_SUITE_P(Each, PanelRestartByScale,
                         ::testing::ValuesIn(every_panel_but(frmKVT71338::form_name)), panel_name);

}  // namespace
}  // namespace varzelin::testing
