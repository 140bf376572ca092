// Real-time collection on every panel: pace, session, buttons, samples, trace.
#include <cmath>
#include <limits>

#include "support/panel_fixture.h"

namespace varzelin::testing {
namespace {

struct PanelCollection : PanelTest {
  std::vector<double> asked;  // when the loop began to read each sample, milliseconds

  void SetUp() override {
    board.set_timing(false);
    make_measure();
  }
  void note_when_asked() {
    asked.clear();
    recorder.before_call = [this] {
      const bool in_loop = store.Man_Usb_Conn == -1 && store.Sample_Run == -1;
      if (in_loop && asked.size() == static_cast<std::size_t>(store.Sample_Count)) {
        asked.push_back(clock.milliseconds());
      }
    };
  }
  int interval() const { return std::stoi(panel.txtInterval.Text.get()); }
};
// Of those that take their boxes as a collection begins, and use the bus no more behind it.
struct PanelPlainCollection : PanelCollection {};

// --- session ---

TEST_P(PanelCollection, OpensTheSessionOnceAndClosesItOnce) {
  collect(5);
  EXPECT_EQ(calls("WDU_VB_Init"), sessions_of_a_collection());
  EXPECT_EQ(calls("WDU_VB_Uninit"), sessions_of_a_collection());
  EXPECT_EQ(recorder.calls.back(), "WDU_VB_Uninit");
  expect_ended();
}

TEST_P(PanelCollection, BehindTheHighestNumberOfACollectionComesTheLowest) {
  store.Collections = std::numeric_limits<std::int32_t>::max();
  collect(2);
  EXPECT_EQ(store.Collections, std::numeric_limits<std::int32_t>::min());
  expect_ended();
}

// Between the open session and the loop's hold of it others have their turn.
TEST_P(PanelCollection, YieldsBetweenOpeningTheSessionAndHoldingIt) {
  int yields = 0;
  user.at_yield = [&] {
    yields += store.Sample_Run == -1 && store.Man_Usb_Conn == 0 && !workbench().cmdexit.Enabled;
    if (store.Sample_Count == 2 && store.Man_Usb_Conn == -1) {
      program.runtime.post(clicking(panel.cmdStopData));
      user.at_yield = nullptr;
    }
  };
  store.Sample_Count = 0;
  click(panel.cmdCollectData);
  EXPECT_EQ(yields, 1);
}

// --- pace ---

TEST_P(PanelCollection, ASampleIsReadTheSleepMarginBeforeItIsDueAfterTheTrigger) {
  const int pace = interval();
  note_when_asked();
  collect(4);
  ASSERT_GE(asked.size(), 4u);
  for (std::size_t i = 1; i < 4; ++i) {
    EXPECT_NEAR(asked[i] - asked[i - 1], pace - panel.model.sleep_margin, 0.3);
  }
  EXPECT_EQ(panel.txtTime3.Text, pace_text(pace));
  EXPECT_EQ(panel.txtTime1.Text, pace_text(pace));
}

// A sample whose time has come within the wake margin is read without another wait.
TEST_P(PanelCollection, WithinTheWakeMarginItNeitherYieldsNorSleeps) {
  double due = 0;
  bool passed = false;
  user.at_yield = [&] {
    if (store.Sample_Run != -1 || store.Man_Usb_Conn != 0) return;
    if (due == 0) due = static_cast<double>(program.runtime.timeGetTime()) + interval();
    if (passed || workbench().cmdexit.Enabled) return;
    // The last yield before the loop.
    passed = true;
    const auto left = due - panel.model.wake_margin - static_cast<double>(program.runtime.timeGetTime());
    clock.pass(std::chrono::milliseconds(static_cast<int>(left)));
    at_yield(count_reaches(1), clicking(panel.cmdStopData));
  };
  note_when_asked();
  store.Sample_Count = 0;
  click(panel.cmdCollectData);
  ASSERT_FALSE(asked.empty());
  EXPECT_EQ(std::floor(asked[0]), due - panel.model.wake_margin);
}

// A handler in the wait that ends at the wake margin: the rest up to the sleep margin is slept.
TEST_P(PanelCollection, AWaitThatHasBegunEndsAtTheSleepMargin) {
  double due = 0;
  note_when_asked();
  store.Sample_Count = 0;
  at_yield(count_reaches(3), [&] {
    due = static_cast<double>(program.runtime.timeGetTime()) + interval();
    clock.pass(std::chrono::milliseconds(interval() - panel.model.wake_margin));
    at_yield(count_reaches(4), clicking(panel.cmdStopData));
  });
  click(panel.cmdCollectData);
  ASSERT_GE(asked.size(), 4u);
  EXPECT_EQ(std::floor(asked[3]), due - panel.model.sleep_margin);
}

TEST_P(PanelPlainCollection, ThePaceIsTheBoxAtItsStart) {
  panel.txtInterval.Text = "57.9";
  note_when_asked();
  user.at_yield = [&] {
    if (store.Man_Usb_Conn == -1) panel.txtInterval.Text = "1000";
    if (store.Man_Usb_Conn == -1 && store.Sample_Count == 3) {
      program.runtime.post(clicking(panel.cmdStopData));
      user.at_yield = nullptr;
    }
  };
  click(panel.cmdCollectData);
  ASSERT_GE(asked.size(), 3u);
  EXPECT_NEAR(asked[2] - asked[1], 57 - panel.model.sleep_margin, 0.3);
}

TEST_P(PanelCollection, WithoutAnIntervalItDoesNotPause) {
  const std::string margin = std::to_string(panel.model.wake_margin);
  for (const std::string& text :
       {std::string(), std::string("0"), std::string("abc"), "-500" + margin, margin}) {
    panel.txtInterval.Text = text;
    note_when_asked();
    collect(9);
    ASSERT_GE(asked.size(), 9u) << text;
    EXPECT_LT(asked[8] - asked[0], 0.4) << text;
    EXPECT_TRUE(user.errors.empty()) << text;
  }
}

TEST_P(PanelCollection, AnIntervalOfWeeksIsWaitedFor) {
  panel.txtInterval.Text = "2147483647";
  collect(1);
  EXPECT_EQ(panel.txtTime1.Text, pace_text(2147483647));
  EXPECT_TRUE(user.errors.empty());
}

TEST_P(PanelCollection, AnIntervalBeyondThePlatformsIntegersIsReportedAndStartsNothing) {
  for (const char* text : {"2147483648", "-2147483649", "1e300"}) {
    panel.txtInterval.Text = text;
    user.errors.clear();
    click(panel.cmdCollectData);
    EXPECT_EQ(user.errors, std::vector<int>{forms::overflow}) << text;
    expect_idle();
    EXPECT_TRUE(recorder.calls.empty());
  }
}

// --- scale ---

TEST_P(PanelPlainCollection, TakesTheScaleOfTheBox) {
  panel.txtScale.Text = "2000.9";
  collect(1);
  EXPECT_EQ(store.Scale_Max, static_cast<int>(2000.9 + panel.model.scale_addition));
  EXPECT_EQ(store.Scale_Span, store.Scale_Max);
}

TEST_P(PanelPlainCollection, AScaleBeyondThePlatformsIntegersIsReportedAndStartsNothing) {
  const auto before = store.Scale_Max;
  panel.txtScale.Text = "99999999999";
  click(panel.cmdCollectData);
  EXPECT_EQ(user.errors, std::vector<int>{forms::overflow});
  expect_idle();
  EXPECT_EQ(store.Scale_Max, before);
}

TEST_P(PanelCollection, ASpanBeyondThePlatformsIntegersIsReportedAndStartsNothing) {
  panel.txtScaleMin.Text = "-2147483648";
  click(panel.cmdScale);
  ASSERT_EQ(store.Scale_Min, -2147483647 - 1);
  click(panel.cmdCollectData);
  EXPECT_EQ(user.errors, std::vector<int>{forms::overflow});
  expect_idle();
}

// --- start and end ---

TEST_P(PanelCollection, ShowsAndHidesItsButtons) {
  at_yield(count_reaches(3), [&] {
    EXPECT_EQ(panel.Label18.Caption, "Data Collection In Process");
    EXPECT_EQ(panel.cmdCollectData.Caption,
              "Real Time data display is executing, Click -Stop Real Time- to End");
    EXPECT_FALSE(panel.cmdSample.Enabled);
    EXPECT_FALSE(panel.cmdCollectData.Enabled);
    EXPECT_TRUE(offered(panel.cmdStopData));
    EXPECT_EQ(offered(panel.Command4), panel.model.exit_button.stays_in_loops);
    EXPECT_EQ(store.Usb_Open, -1);
    for (forms::Control* shown : std::initializer_list<forms::Control*>{&panel.Label6, &panel.Label14,
                                                                        &panel.txtTime1, &panel.txtTime3}) {
      EXPECT_TRUE(shown->Visible) << shown->name();
    }
    panel.shpSample.Visible = true;
    forms::user::click(panel.cmdStopData);
    EXPECT_EQ(panel.Label18.Caption, "Data Collection Halted");
    EXPECT_EQ(panel.shpSample.Visible, !panel.model.heartbeat);  // one without leaves the shape alone
    EXPECT_EQ(store.AbortRequested, -1);
  });
  store.Sample_Count = 0;
  click(panel.cmdCollectData);
  expect_ended();
  EXPECT_EQ(panel.cmdCollectData.Caption, "Collect Data Graphical Real Time Data");
}

// At its end the start button comes first: who waits for it has its yields before the timed button.
TEST_P(PanelCollection, YieldsAsOftenAsThePanelSaysBetweenItsOwnButtonAndTheTimedOne) {
  int yields = 0;
  user.at_yield = [&] {
    if (store.Sample_Count == 2 && store.Sample_Run == -1) program.runtime.post(clicking(panel.cmdStopData));
    if (!panel.cmdCollectData.Enabled || panel.cmdSample.Enabled) return;
    ++yields;
    EXPECT_EQ(store.Man_Usb_Conn, 0);
    EXPECT_EQ(store.AbortRequested, 0);
    EXPECT_FALSE(offered(panel.cmdStopData));
    EXPECT_EQ(panel.cmdCollectData.Caption, "Collect Data Graphical Real Time Data");
    // The session is closed by then, or it is left open for as long as events may come.
    EXPECT_EQ(store.Usb_Open, flag(panel.model.yields_before_disconnect != 0));
  };
  store.Sample_Count = 0;
  click(panel.cmdCollectData);
  user.at_yield = nullptr;
  EXPECT_EQ(yields, panel.model.yields_at_end);
}

TEST_P(PanelPlainCollection, YieldsAsOftenAsThePanelSaysBeforeItCloses) {
  int yields = 0;
  user.at_yield = [&] {
    if (store.Sample_Count == 2 && store.Sample_Run == -1) program.runtime.post(clicking(panel.cmdStopData));
    yields += panel.cmdSample.Enabled && store.Usb_Open == -1 && calls("WDU_ResetDevice") == 0;
  };
  store.Sample_Count = 0;
  click(panel.cmdCollectData);
  user.at_yield = nullptr;
  EXPECT_EQ(yields, panel.model.yields_before_disconnect);
}

TEST_P(PanelCollection, StartsFromACleanStore) {
  store.Trace_Y.fill(77);
  store.Sample_Value.fill(9);
  store.Sample_Value2.fill(9);
  panel.Picture1.SetPixelV(3, 5, 0x0000FF);
  store.PendingUpdate = -1;
  store.AbortRequested = -1;
  at_yield([&] { return store.Sample_Run == -1 && store.Man_Usb_Conn == -1; },
           [&] {
             EXPECT_EQ(store.Trace_Y[403], 1);
             EXPECT_EQ(store.Trace_Y[404], 77);
             EXPECT_EQ(store.Trace_Pos, 403);
             EXPECT_EQ(store.Sample_Count, 0);
             EXPECT_EQ(store.Sample_Value[1010], 1);
             EXPECT_EQ(store.Sample_Value2[0], 1);
             EXPECT_EQ(store.PendingUpdate, 0);
             EXPECT_EQ(store.AbortRequested, 0);
             EXPECT_EQ(panel.Picture1.GetPixel(3, 5), 0xFFFFFF);
             forms::user::click(panel.cmdStopData);
           });
  click(panel.cmdCollectData);
  // The pass in hand still reads, but doesn't trigger.
  EXPECT_EQ(store.Sample_Count, 0);
  EXPECT_FALSE(recorder.packets.empty());
  EXPECT_EQ(store.TriggerDone, 0);
}

// --- samples and trace ---

TEST_P(PanelCollection, EverySampleHasItsSlotFromTheFirstOn) {
  recorder.before_call = [&] { queue_count(500 + store.Sample_Count); };
  collect(20);
  ASSERT_EQ(store.Sample_Count, 20);
  for (std::size_t i = 1; i < 20; ++i) {
    EXPECT_GT(store.Sample_Value[i], store.Sample_Value[i - 1]) << i;
  }
  EXPECT_EQ(store.Sample_Value[21], 1);
  EXPECT_EQ(store.Sample_Value2[5], 1);
}

TEST_P(PanelCollection, TheTraceBeginsWithTheEleventhSample) {
  std::vector<int> positions;
  std::vector<std::string> counts;
  user.at_yield = [&] {
    if (store.Sample_Run == 0) return;
    while (static_cast<int>(positions.size()) <= store.Sample_Count) {
      positions.push_back(store.Trace_Pos);
      counts.push_back(panel.lblLoop_Count.Caption);
    }
    if (store.Sample_Count == 13) program.runtime.post(clicking(panel.cmdStopData));
  };
  panel.lblLoop_Count.Caption = "";
  click(panel.cmdCollectData);
  EXPECT_EQ(positions[10], 403);
  EXPECT_EQ(positions[11], 402);
  EXPECT_EQ(positions[12], 401);
  EXPECT_EQ(counts[10], "");
  EXPECT_EQ(counts[11], "1");
  EXPECT_EQ(counts[12], "2");
}

TEST_P(PanelCollection, TheRowIsTheReadingsPartOfTheScaleFromTheBottom) {
  reading(4000);
  collect(2);
  const std::int32_t shown = store.Reading;
  ASSERT_GT(shown, 0);
  panel.txtScale.Text = std::to_string(2 * shown);
  click(panel.cmdScale);
  collect(2);
  EXPECT_EQ(store.Trace_Y[403], 152);
  // Above the scale the trace stays at the top.
  for (const std::int32_t scale : {shown, shown / 2}) {
    panel.txtScale.Text = std::to_string(scale);
    click(panel.cmdScale);
    collect(2);
    EXPECT_EQ(store.Trace_Y[403], 1) << scale;
  }
}

TEST_P(PanelCollection, TheFullChartScrollsAndSleeps) {
  panel.txtInterval.Text = "0";
  std::vector<double> at_count(1011);
  user.at_yield = [&] {
    if (store.Sample_Run == 0) return;
    double& time = at_count[static_cast<std::size_t>(store.Sample_Count)];
    if (time == 0) time = clock.milliseconds();
    if (store.Sample_Count == 420) program.runtime.post(clicking(panel.cmdStopData));
  };
  click(panel.cmdCollectData);
  EXPECT_EQ(store.Trace_Pos, 1);
  // 402 columns lead from 403 to 1: samples 11 to 412. From the next one on the chart is full.
  EXPECT_LT(at_count[412] - at_count[411], 0.5);
  for (std::size_t i = 413; i < 420; ++i) {
    EXPECT_NEAR(at_count[i] - at_count[i - 1], panel.model.full_trace_sleep, 0.5) << i;
  }
}

TEST_P(PanelCollection, TheCountStaysAt1010AndTheLastSlotIsOverwritten) {
  panel.txtInterval.Text = "0";
  int count = 1;
  std::vector<std::int32_t> last_slot;
  recorder.before_call = [&] { queue_count(++count); };
  user.at_yield = [&] {
    if (store.Sample_Count < 1010 || store.Sample_Run == 0) return;
    const std::int32_t value = store.Sample_Value[1010];
    if (last_slot.empty() || last_slot.back() != value) last_slot.push_back(value);
    if (last_slot.size() == 20) program.runtime.post(clicking(panel.cmdStopData));
  };
  click(panel.cmdCollectData);
  user.at_yield = nullptr;
  EXPECT_EQ(store.Sample_Count, 1010);
  EXPECT_EQ(panel.lblLoop_Count.Caption, "1000");
  ASSERT_GE(last_slot.size(), 20u);
  EXPECT_TRUE(std::ranges::is_sorted(last_slot));
  EXPECT_GT(last_slot[1], store.Sample_Value[1009]);
  EXPECT_TRUE(user.errors.empty());
}

INSTANTIATE_TEST_SUITE_P(Each, PanelCollection, ::testing::ValuesIn(every_panel()), panel_name);
INSTANTIATE_TEST_SUITE_P(Each, PanelPlainCollection, ::testing::ValuesIn(every_panel_without_converter()),
                         panel_name);

}  // namespace
}  // namespace varzelin::testing
