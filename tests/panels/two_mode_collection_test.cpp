// Real-time collection on the two-mode panels: how it sets up, what a pass sends, how it ends.
#include "support/two_mode_fixture.h"

namespace varzelin::testing {
namespace {

const std::vector<int> fetch{2, 0x89, 2};
const std::vector<int> sync_command{0, 0x89, 0x80};

struct TwoModeCollection : TwoModeTest {};

// --- start ---

TEST_P(TwoModeCollection, ItWritesBothRegistersBeforeItsPasses) {
  select(measure::infrared);
  run(2);
  EXPECT_EQ(sent(), joined({written(0, 0xC0), written(1, 0x70), {fetch, fetch, fetch}}));
  EXPECT_EQ(recorder.packets.back().size, 3u);
}

TEST_P(TwoModeCollection, InPowerDownItMovesToContinuousLightWhereThereIsThat) {
  run(2);
  EXPECT_TRUE(user.errors.empty());
  EXPECT_GE(store.Sample_Count, 2);
  if (GetParam() == "frmKVT71376") {
    // Without an operation a pass is a single one, which commands anew.
    EXPECT_EQ(writes(),
              (ByteLists{write(0, 0x00), write(1, 0x70), write(0, 0x00), write(0, 0x00), write(0, 0x00)}));
    EXPECT_EQ(store.RegImage[0], 0);
  } else {
    EXPECT_EQ(writes(), (ByteLists{write(0, 0x00), write(1, 0x70), write(0, 0xA0)}));
    EXPECT_TRUE(panel->OptMeasure(measure::light).Value);
  }
}

TEST_P(TwoModeCollection, ItStartsFromCleanCounters) {
  select(measure::infrared);
  click(panel->OptGain(2));
  store.OverCount = store.UnderCount = 5;
  store.ProxOverCount = 7;
  store.ProxAdjStarted = store.RangeChanged = -1;
  store.PeakReading = 12345;
  store.GainTarget = 0;
  store.I2C_RdCnt = 4;
  panel->lblRange.Visible = true;
  panel->ShpInd(2).Visible = false;
  panel->txtSampling_Delay.Text = "77";
  for (forms::TextBox* box : {&panel->txtReading, &panel->txtReading2, &panel->txtReading3}) {
    box->Text = "old";
  }
  at_yield(
      [&] { return in_loop(); },
      [&] {
        EXPECT_EQ(store.OverCount, 0);
        EXPECT_EQ(store.UnderCount, 0);
        EXPECT_EQ(store.ProxOverCount, 0);
        EXPECT_EQ(store.ProxAdjStarted, 0);
        EXPECT_EQ(store.RangeChanged, 0);
        EXPECT_EQ(store.PeakReading, -999999);
        EXPECT_EQ(store.GainTarget, 2);
        EXPECT_EQ(store.SampleDelayMs, 77);
        EXPECT_EQ(store.I2C_RdCnt, 2);
        EXPECT_FALSE(panel->lblRange.Visible);
        EXPECT_TRUE(panel->ShpInd(2).Visible);
        for (const forms::TextBox* box : {&panel->txtReading, &panel->txtReading2, &panel->txtReading3}) {
          EXPECT_EQ(box->Text, "") << box->name();
        }
        EXPECT_EQ(store.Scale_Span, store.Scale_Max - store.Scale_Min);
        forms::user::click(panel->cmdStopData);
      });
  panel->txtInterval.Text = "50";
  click(panel->cmdCollectData);
}

TEST_P(TwoModeCollection, TheSpanOfASignedScaleIsItsWhole) {
  scheme1();
  select(measure::proximity);
  ASSERT_EQ(store.Scale_Span, 1);
  run(1);
  EXPECT_EQ(store.Scale_Span, 131071);
}

TEST_P(TwoModeCollection, TheIntervalIsOfUseUnlessAPairTakesItsOwnTime) {
  for (const auto& [position, used] : {std::pair{measure::pair, false}, std::pair{measure::infrared, true},
                                       std::pair{measure::filtered, false}}) {
    select(position);
    run(1);
    EXPECT_EQ(panel->txtInterval.Enabled, used);
    EXPECT_TRUE(panel->txtInterval.Visible);
  }
}

TEST_P(TwoModeCollection, ItsButtonsAreEnabledAndDisabled) {
  select(measure::infrared);
  collect_and(1, [&] {
    for (const forms::Control* off : std::initializer_list<forms::Control*>{
             &panel->cmdSample, &panel->Command4, &panel->cmdCollectData}) {
      EXPECT_TRUE(off->Visible && !off->Enabled) << off->name();
    }
    EXPECT_TRUE(panel->cmdStopData.Enabled);
    EXPECT_FALSE(panel->TimerIPol.Enabled);
  });
  for (const forms::Control* on :
       std::initializer_list<forms::Control*>{&panel->cmdSample, &panel->Command4, &panel->cmdCollectData}) {
    EXPECT_TRUE(on->Visible && on->Enabled) << on->name();
  }
  EXPECT_FALSE(panel->cmdStopData.Enabled);
  expect_ended();
}

TEST_P(TwoModeCollection, ItTurnsTheInterruptTimerOff) {
  select(measure::infrared);
  panel->TimerIPol.Enabled = true;
  run(1);
  EXPECT_FALSE(panel->TimerIPol.Enabled);
}

// Between opening the session and holding it.
TEST_P(TwoModeCollection, AStopWhileItsSessionOpensIsLost) {
  select(measure::infrared);
  bool stopped = false;
  user.at_yield = [&] {
    if (!stopped && store.Sample_Run == -1 && store.Man_Usb_Conn == 0) {
      stopped = true;
      program.runtime.post(clicking(panel->cmdStopData));
    }
    if (stopped && store.Sample_Count == 4 && in_loop()) program.runtime.post(clicking(panel->cmdStopData));
  };
  store.Sample_Count = 0;
  click(panel->cmdCollectData);
  user.at_yield = nullptr;
  EXPECT_TRUE(stopped);
  EXPECT_GE(store.Sample_Count, 4);
  expect_ended();
}

// --- a pass ---

TEST_P(TwoModeCollection, ASinglePassCommandsAnewAndIsPacedByItsDelay) {
  select(measure::infrared_once);
  panel->txtInterval.Text = "100000";
  panel->txtSampling_Delay.Text = "300";
  double begun = 0;
  at_yield([&] { return in_loop() && store.Sample_Count == 1; },
           [&] {
             begun = clock.milliseconds();
             at_yield(count_reaches(3), clicking(panel->cmdStopData));
           });
  store.Sample_Count = 0;
  click(panel->cmdCollectData);
  EXPECT_GT(clock.milliseconds() - begun, 2 * 300 - 10);
  EXPECT_LT(clock.milliseconds() - begun, 4 * 300);
  const ByteLists pass{write(0, 0x40), fetch};
  EXPECT_EQ(sent(), joined({written(0, 0x40), written(1, 0x70), pass, pass, pass, pass}));
}

TEST_P(TwoModeCollection, UnderExternalTimingASinglePassLastsBothDelays) {
  click(panel->OptExtTime(1));
  select(measure::infrared_once);
  panel->txtInterval.Text = "100000";
  panel->txtSync1Delay(0).Text = "200";
  panel->txtSync1Delay(1).Text = "4000";
  panel->txtSampling_Delay.Text = "70";
  panel->ChkEOC1(1).Value = 1;  // of the timed loop alone
  std::vector<double> asked;
  recorder.before_call = [&] {
    if (in_loop() && store.Pipe_Num == boards::pipe_i2c_in) asked.push_back(clock.milliseconds());
  };
  run(3);
  EXPECT_EQ(panel->ChkEOC1(0).Value, 1);
  ASSERT_GE(asked.size(), 3u);
  EXPECT_NEAR(asked[2] - asked[1], 270, 2);
  // A pass ends with the trigger of the next conversion.
  const ByteLists pass{write(0, 0x50), sync_command, fetch};
  EXPECT_EQ(sent(), joined({written(0, 0x50),
                            written(1, 0x70),
                            pass,
                            {sync_command},
                            pass,
                            {sync_command},
                            pass,
                            {sync_command},
                            pass}));
}

TEST_P(TwoModeCollection, UnderExternalTimingAContinuousPassSyncsWhereItIsTicked) {
  click(panel->OptExtTime(1));
  select(measure::infrared);
  panel->ShpInd(6).FillColor = forms::QBColor(9);
  panel->ShpInd(12).FillColor = forms::QBColor(9);
  collect_and(
      2,
      [&] {
        panel->ChkEOC1(0).Value = 0;
        forget_traffic();
      },
      1);
  EXPECT_EQ(sent(), (ByteLists{sync_command, fetch, sync_command, fetch}));
  EXPECT_EQ(lamp_of(6), 10);   // three triggers
  EXPECT_EQ(lamp_of(12), 10);  // three steps, the last of them begun when the tick was taken away
  EXPECT_EQ(store.TriggerDone, -1);
}

TEST_P(TwoModeCollection, UnderInternalTimingATriggerSendsNothing) {
  select(measure::infrared);
  store.TriggerDone = 0;
  panel->ChkEOC1(0).Value = 1;
  run(2);
  EXPECT_EQ(std::ranges::count(sent(), sync_command), 0);
  EXPECT_EQ(store.TriggerDone, -1);
}

TEST_P(TwoModeCollection, TheIntervalIsReadAnewInEachPass) {
  select(measure::infrared);
  panel->txtInterval.Text = "50";
  collect_and(
      3, [&] { panel->txtInterval.Text = "400"; }, 4);
  EXPECT_EQ(panel->txtTime1.Text, pace_text(400));
}

TEST_P(TwoModeCollection, AnIntervalThatIsNoIntegerLeavesThePace) {
  select(measure::infrared);
  panel->txtInterval.Text = "50";
  collect_and(
      3, [&] { panel->txtInterval.Text = "99999999999"; }, 4);
  EXPECT_EQ(panel->txtTime1.Text, pace_text(50));
  EXPECT_TRUE(user.errors.empty());
}

TEST_P(TwoModeCollection, WhatWaitsIsDoneInAFixedOrder) {
  select(measure::infrared);
  collect_and(
      12,
      [&] {
        forget_traffic();
        forms::user::click(panel->OptGain(1));
        forms::user::click(panel->cmdRead_All);
      },
      1);
  ByteLists work = sent();
  std::erase(work, fetch);
  EXPECT_EQ(work, (ByteLists{{2, 0x89, 0}, write(1, 0x71), write(0, 0xC0)}));
  EXPECT_EQ(sent().front(), fetch);
}

TEST_P(TwoModeCollection, BehindAStopNothingIsDoneAnyMore) {
  select(measure::infrared);
  store.Sample_Count = 0;
  at_yield([&] { return in_loop() && store.Sample_Count == 3; },
           [&] {
             forget_traffic();
             forms::user::click(panel->cmdStopData);
             forms::user::click(panel->OptGain(1));
           });
  click(panel->cmdCollectData);
  EXPECT_TRUE(writes().empty());
  EXPECT_EQ(store.PendingWriteR1, -1);
}

TEST_P(TwoModeCollection, AMultipleReadingShowsTheSecondOne) {
  click(panel->OptMeasMode(1));
  select(measure::infrared);
  store.RawReading2 = 77;
  run(1);
  EXPECT_EQ(panel->txtReading2.Text, "77");
  EXPECT_EQ(store.RawReading2, 77);
}

// --- end ---

// The stop is in force for a yield behind the close.
TEST_P(TwoModeCollection, AnOptionBehindTheCloseOfTheSessionStillWaits) {
  select(measure::infrared);
  const std::size_t closes = sessions_of_a_collection();
  bool clicked = false;
  user.at_yield = [&] {
    if (in_loop() && store.Sample_Count == 2) program.runtime.post(clicking(panel->cmdStopData));
    if (clicked || calls("WDU_VB_Uninit") < closes || !workbench().cmdUSBConnect.Enabled ||
        store.Usb_Open != 0) {
      return;
    }
    clicked = store.AbortRequested == -1;
    EXPECT_EQ(store.Man_Usb_Conn, 0);
    EXPECT_FALSE(panel->cmdCollectData.Enabled);
  };
  store.Sample_Count = 0;
  click(panel->cmdCollectData);
  user.at_yield = nullptr;
  EXPECT_TRUE(clicked);
  expect_ended();
}

TEST_P(TwoModeCollection, ItYieldsOnceMoreBehindTheCloseWithTheStopInForce) {
  click(workbench().cmdUSBConnect);
  const int of_the_close = yields_behind_close(clicking(workbench().cmdUSBDisconnect));
  select(measure::infrared);
  store.Sample_Count = 0;
  at_yield([&] { return in_loop() && store.Sample_Count == 2; },
           [&] {
             forget_traffic();
             program.runtime.post([&] { count_yields_behind_close(); });
             forms::user::click(panel->cmdStopData);
           });
  click(panel->cmdCollectData);
  user.at_yield = nullptr;
  EXPECT_EQ(yields_counted, of_the_close + 1);
}

ON_BOTH_MODELS(TwoModeCollection);

}  // namespace
}  // namespace varzelin::testing
