// Real-time collection: pace, packets, chart and boxes.
#include "support/kvt71346_fixture.h"

#include "waveform/trace.h"

namespace varzelin::testing {
namespace {

struct Collection : Kvt71346Fixture {
  void SetUp() override {
    Kvt71346Fixture::SetUp();
    board.set_timing(false);
    set_mode(2);
  }
  // Every reply of the run is this count.
  void reading(int count) {
    recorder.before_call = [this, count] {
      if (store.Pipe_Num == 130 && board.queued_replies() == 0) {
        board.queue_reply({2, static_cast<std::uint8_t>(count), static_cast<std::uint8_t>(count >> 8)});
      }
    };
  }
};

TEST_F(Collection, ReadsFirstAndTriggersTheNextConversion) {
  collect(2);
  ASSERT_GE(recorder.packets.size(), 6u);
  for (const std::size_t pass : {0u, 3u}) {
    EXPECT_EQ(recorder.packets[pass], (Packet{2, {0x02, 0x89}, 0, 2}));
    EXPECT_EQ(recorder.packets[pass + 1].pipe, 130);
    EXPECT_EQ(recorder.packets[pass + 1].size, 5u);
    EXPECT_EQ(recorder.packets[pass + 2], (Packet{2, {0x00, 0x88, 0x00}, 0, 3}));
  }
}

TEST_F(Collection, OpensTheSessionOnceAndClosesItOnce) {
  collect(5);
  EXPECT_EQ(std::ranges::count(recorder.calls, "WDU_VB_Init"), 1);
  EXPECT_EQ(std::ranges::count(recorder.calls, "WDU_VB_Uninit"), 1);
  EXPECT_EQ(recorder.calls.back(), "WDU_VB_Uninit");
  expect_idle();
}

// The request goes out 8 ms before the sample is due, and the pace counts from the trigger.
TEST_F(Collection, WakesEightMillisecondsEarly) {
  std::vector<double> requests;
  recorder.before_call = [&] {
    if (store.Xfer_Size == 2 && store.Sample_Run == -1) requests.push_back(clock.milliseconds());
  };
  collect(4);
  ASSERT_GE(requests.size(), 4u);
  for (std::size_t i = 1; i < 4; ++i) EXPECT_NEAR(requests[i] - requests[i - 1], 112, 1.1);
  EXPECT_EQ(panel->txtTime3.Text, "112");
  EXPECT_EQ(panel->txtTime1.Text, "112");
}

TEST_F(Collection, ThePaceIsTheBoxAtItsStart) {
  panel->txtInterval.Text = "57.9";
  std::vector<double> requests;
  recorder.before_call = [&] {
    if (store.Xfer_Size == 2 && store.Sample_Run == -1) requests.push_back(clock.milliseconds());
    panel->txtInterval.Text = "1000";
  };
  collect(3);
  EXPECT_EQ(store.IntervalMs, 57);
  EXPECT_NEAR(requests[2] - requests[1], 49, 1.1);
}

TEST_F(Collection, WithoutAnIntervalItDoesNotPause) {
  for (const char* text : {"", "0", "abc", "-500", "8"}) {
    panel->txtInterval.Text = text;
    std::vector<double> requests;
    recorder.before_call = [&] {
      if (store.Xfer_Size == 2 && store.Sample_Run == -1) requests.push_back(clock.milliseconds());
    };
    collect(9);
    ASSERT_GE(requests.size(), 9u) << text;
    EXPECT_LT(requests[8] - requests[0], 0.2) << text;
    EXPECT_TRUE(user.errors.empty()) << text;
  }
}

TEST_F(Collection, AnIntervalBeyondThePlatformsIntegersIsReportedAndStartsNothing) {
  for (const char* text : {"2147483648", "-2147483649", "1e300"}) {
    panel->txtInterval.Text = text;
    user.errors.clear();
    click(panel->cmdCollectData);
    EXPECT_EQ(user.errors, std::vector<int>{forms::overflow}) << text;
    expect_idle();
  }
}

TEST_F(Collection, AnIntervalOfWeeksIsWaitedFor) {
  panel->txtInterval.Text = "2147483647";
  collect(1);
  EXPECT_EQ(panel->txtTime1.Text, "2147483639");
  EXPECT_TRUE(user.errors.empty());
}

TEST_F(Collection, AScaleBeyondThePlatformsIntegersIsReportedAndStartsNothing) {
  panel->txtScale.Text = "99999999999";
  click(panel->cmdCollectData);
  EXPECT_EQ(user.errors, std::vector<int>{forms::overflow});
  expect_idle();
  EXPECT_EQ(store.Scale_Max, 15000);
}

TEST_F(Collection, ASpanBeyondThePlatformsIntegersIsReportedAndStartsNothing) {
  panel->txtScaleMin.Text = "-2147483648";
  click(panel->cmdScale);
  ASSERT_EQ(store.Scale_Min, -2147483647 - 1);
  click(panel->cmdCollectData);
  EXPECT_EQ(user.errors, std::vector<int>{forms::overflow});
  expect_idle();
}

TEST_F(Collection, TakesTheScaleOfTheBox) {
  panel->txtScale.Text = "2000.9";
  collect(1);
  EXPECT_EQ(store.Scale_Max, 2000);
  EXPECT_EQ(store.Scale_Span, 2000);
}

// The division fails in the first pass. The report is all that comes of it; the panel starts again
// once there is a scale.
TEST_F(Collection, AScaleOfZeroIsReportedAndTheNextEntryStartsAnew) {
  panel->txtScale.Text = "";
  click(panel->cmdCollectData);
  EXPECT_EQ(user.errors, std::vector<int>{forms::division_by_zero});
  panel->txtScale.Text = "15000";
  at(count_reaches(3), clicking(panel->cmdStopData));
  enter(panel->txtInterval);
  EXPECT_GE(store.Sample_Count, 3);
  EXPECT_EQ(user.errors.size(), 1u);
  expect_idle();
}

TEST_F(Collection, ShowsAndHidesItsButtons) {
  at(count_reaches(3), [&] {
    EXPECT_EQ(panel->Label18.Caption, "Data Collection In Process");
    EXPECT_EQ(panel->cmdCollectData.Caption,
              "Real Time data display is executing, Click -Stop Real Time- to End");
    EXPECT_FALSE(panel->cmdSample.Enabled);
    EXPECT_FALSE(panel->cmdCollectData.Enabled);
    EXPECT_TRUE(panel->cmdStopData.Visible);
    for (forms::Control* shown :
         {static_cast<forms::Control*>(&panel->Label6), static_cast<forms::Control*>(&panel->Label14),
          static_cast<forms::Control*>(&panel->txtTime1), static_cast<forms::Control*>(&panel->txtTime3)}) {
      EXPECT_TRUE(shown->Visible) << shown->name();
    }
    panel->shpSample.Visible = true;
    forms::user::click(panel->cmdStopData);
    EXPECT_EQ(panel->Label18.Caption, "Data Collection Halted");
    EXPECT_FALSE(panel->shpSample.Visible);
    EXPECT_EQ(store.AbortRequested, -1);
  });
  click(panel->cmdCollectData);
  expect_idle();
  EXPECT_EQ(panel->cmdCollectData.Caption, "Collect Data Graphical Real Time Data");
}

TEST_F(Collection, StartsFromACleanStore) {
  store.Trace_Y.fill(77);
  store.Sample_Value.fill(9);
  store.Sample_Value2.fill(9);
  panel->Picture1.SetPixelV(3, 5, 0x0000FF);
  store.PendingUpdate = -1;
  at([&] { return store.Sample_Run == -1 && store.Man_Usb_Conn == -1; },
     [&] {
       EXPECT_EQ(store.Trace_Y[403], 1);
       EXPECT_EQ(store.Trace_Y[404], 77);
       EXPECT_EQ(store.Trace_Pos, 403);
       EXPECT_EQ(store.Sample_Count, 0);
       EXPECT_EQ(store.Sample_Value[1010], 1);
       EXPECT_EQ(store.Sample_Value2[0], 1);
       EXPECT_EQ(store.PendingUpdate, 0);
       EXPECT_EQ(panel->Picture1.GetPixel(3, 5), 0xFFFFFF);
       forms::user::click(panel->cmdStopData);
     });
  click(panel->cmdCollectData);
  // The pass in hand still reads, but neither triggers nor counts.
  EXPECT_EQ(recorder.packets.size(), 2u);
  EXPECT_EQ(store.Sample_Count, 0);
}

TEST_F(Collection, TheTraceBeginsWithTheEleventhSample) {
  std::vector<int> positions;
  std::vector<std::string> counts;
  user.at_yield = [&] {
    if (store.Sample_Run == 0) return;
    while (static_cast<int>(positions.size()) <= store.Sample_Count) {
      positions.push_back(store.Trace_Pos);
      counts.push_back(panel->lblLoop_Count.Caption);
    }
    if (store.Sample_Count == 13) program.runtime.post(clicking(panel->cmdStopData));
  };
  panel->lblLoop_Count.Caption = "";
  click(panel->cmdCollectData);
  EXPECT_EQ(positions[10], 403);
  EXPECT_EQ(positions[11], 402);
  EXPECT_EQ(positions[12], 401);
  EXPECT_EQ(counts[10], "");
  EXPECT_EQ(counts[11], "1");
  EXPECT_EQ(counts[12], "2");
}

TEST_F(Collection, ShowsTheReadingBeforeTheCount) {
  reading(5000);
  collect(20);
  EXPECT_EQ(panel->txtReading.Text, "5000");
  EXPECT_EQ(store.Sample_Value[0], 5000);
  EXPECT_EQ(store.Sample_Value[19], 5000);
  EXPECT_EQ(store.Sample_Value2[5], 1);
}

TEST_F(Collection, TheRowIsTheWholePartAndThePlotsTopWhenItIsOutside) {
  struct Case {
    int reading;
    const char* scale;
    int row;
  };
  for (const Case& c :
       {Case{0, "15000", 304}, Case{1, "15000", 303}, Case{49, "15000", 303}, Case{50, "15000", 302},
        Case{7500, "15000", 152}, Case{14950, "15000", 1}, Case{14951, "15000", 1}, Case{15000, "15000", 1},
        Case{65535, "15000", 1}, Case{100, "-15000", 1}, Case{0, "-15000", 304}}) {
    panel->txtScale.Text = c.scale;
    reading(c.reading);
    collect(2);
    EXPECT_EQ(store.Trace_Y[403], c.row) << c.reading << " of " << c.scale;
    board.clear();
  }
}

TEST_F(Collection, TheFullChartScrollsAndSleepsTenMilliseconds) {
  panel->txtInterval.Text = "0";
  std::vector<double> at_count(1011);
  user.at_yield = [&] {
    if (store.Sample_Run == 0) return;
    double& time = at_count[static_cast<std::size_t>(store.Sample_Count)];
    if (time == 0) time = clock.milliseconds();
    if (store.Sample_Count == 420) program.runtime.post(clicking(panel->cmdStopData));
  };
  click(panel->cmdCollectData);
  EXPECT_EQ(store.Trace_Pos, 1);
  // 402 columns lead from 403 to 1: samples 11 to 412. From the next one on the chart is full.
  EXPECT_LT(at_count[413 - 1] - at_count[412 - 1], 1);
  EXPECT_LT(at_count[413] - at_count[412], 11);
  EXPECT_GT(at_count[414] - at_count[413], 10);
  EXPECT_GT(at_count[419] - at_count[418], 10);
  EXPECT_LT(at_count[419] - at_count[418], 11);
}

TEST_F(Collection, TheCountStaysAt1010) {
  panel->txtInterval.Text = "0";
  int replies = 0;
  recorder.before_call = [&] {
    if (store.Pipe_Num != 130 || board.queued_replies() != 0) return;
    ++replies;
    board.queue_reply({2, static_cast<std::uint8_t>(replies), static_cast<std::uint8_t>(replies >> 8)});
  };
  at([&] { return replies >= 1030; }, clicking(panel->cmdStopData));
  click(panel->cmdCollectData);
  EXPECT_EQ(store.Sample_Count, 1010);
  EXPECT_EQ(panel->lblLoop_Count.Caption, "1000");
  EXPECT_EQ(store.Sample_Value[1009], 1010);
  EXPECT_GE(store.Sample_Value[1010], 1030);
  EXPECT_EQ(panel->txtReading.Text, "1010");  // the slot below the count
  EXPECT_TRUE(user.errors.empty());
}

TEST_F(Collection, ClickingIntoTheScaleBoxStopsIt) {
  at(count_reaches(3), clicking(panel->txtScale));
  click(panel->cmdCollectData);
  expect_idle();
}

TEST_F(Collection, LeavingTheIntervalBoxStopsItAndKeepsThePace) {
  at(count_reaches(3), [&] {
    panel->txtInterval.Text = "1000";
    forms::user::leave(panel->txtInterval);
  });
  click(panel->cmdCollectData);
  expect_idle();
  EXPECT_EQ(store.IntervalMs, 120);
  EXPECT_EQ(store.Label_Time[10], "400.00");
}

TEST_F(Collection, LeavingTheIntervalBoxWhileIdleStartsNothing) {
  panel->txtInterval.Text = "250";
  panel->Picture1.SetPixelV(3, 5, 0x0000FF);
  store.Trace_Y[5] = 9;
  leave(panel->txtInterval);
  EXPECT_TRUE(recorder.calls.empty());
  EXPECT_EQ(store.IntervalMs, 120);
  EXPECT_EQ(store.Label_Time,
            (std::array<std::string, 11>{"0.00", "10.00", "20.00", "30.00", "40.00", "50.00", "60.00",
                                         "70.00", "80.00", "90.00", "100.00"}));
  EXPECT_EQ(store.Trace_Y[5], 1);
  EXPECT_EQ(panel->Picture1.GetPixel(3, 5), 0xFFFFFF);
  EXPECT_EQ(panel->Picture2.printed()[24].text, "100.00");
  // The next collection reads the box itself.
  collect(2);
  EXPECT_EQ(store.IntervalMs, 250);
  EXPECT_EQ(panel->txtTime1.Text, "242");
}

TEST_F(Collection, OnlyEnterInTheIntervalBoxActs) {
  program.runtime.dispatch([&] { forms::user::type(panel->txtInterval, "5"); });
  EXPECT_EQ(panel->txtInterval.Text, "1205");
  EXPECT_TRUE(recorder.calls.empty());
  EXPECT_EQ(store.IntervalMs, 120);
}

TEST_F(Collection, EnterInTheIntervalBoxStartsItAlsoWhenIdle) {
  panel->txtInterval.Text = "100.7";
  at(count_reaches(2), clicking(panel->cmdStopData));
  enter(panel->txtInterval);
  EXPECT_GE(store.Sample_Count, 2);
  EXPECT_EQ(store.IntervalMs, 100);
  EXPECT_EQ(store.Label_Time[1], "4.00");
  EXPECT_EQ(store.Label_Time[10], "40.00");
  expect_idle();
}

TEST_F(Collection, EnterInAnEmptyIntervalBoxRunsWithoutPause) {
  panel->txtInterval.Text = "";
  at(count_reaches(2), clicking(panel->cmdStopData));
  enter(panel->txtInterval);
  EXPECT_EQ(store.IntervalMs, 0);
  EXPECT_EQ(store.Label_Time[0], "0.00");
  EXPECT_EQ(store.Label_Time[10], ".00");
  EXPECT_EQ(panel->txtTime1.Text, "0");
}

}  // namespace
}  // namespace varzelin::testing
