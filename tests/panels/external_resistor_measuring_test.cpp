// How the KVT71338 panel samples and collects, and its single accesses.
#include "support/kvt71338_fixture.h"
#include "waveform/trace.h"

namespace varzelin::testing {
namespace {

using Kvt71338Measuring = Kvt71338;

// --- single accesses ---

TEST_F(Kvt71338Measuring, TheReadBackReadsTheDataPairFirst) {
  make_ready();
  for (const Flag single : {true_flag, false_flag}) {
    forget_traffic();
    store.SingleReading = single;
    store.PendingReadRegs = -1;
    store.BridgeStatus = 9;
    const auto lamp_before = panel->ShpInd(4).FillColor.get();
    program.runtime.dispatch([&] { panel->cmdRead_All_Click(); });
    EXPECT_EQ(sent(), (ByteLists{{2, 0x89, 2}, {2, 0x89, 0}}));
    EXPECT_EQ(recorder.packets[1].size, 3u);
    EXPECT_EQ(recorder.packets[3].size, 3u);
    EXPECT_EQ(store.BridgeStatus, 2);
    EXPECT_EQ(panel->txtRegRd(0).Text, "C4");
    EXPECT_EQ(panel->ShpInd(4).FillColor.get(), lamp_before);  // turned over twice
    EXPECT_EQ(store.I2C_RdCnt, single ? 2 : 4);
    EXPECT_EQ(store.PendingReadRegs, 0);
    EXPECT_EQ(store.Usb_Open, 0);
  }
}

TEST_F(Kvt71338Measuring, TheReadButtonReadsOneByte) {
  for (const Flag single : {true_flag, false_flag}) {
    store.SingleReading = single;
    forget_traffic();
    click(panel->cmdSetControl);
    EXPECT_EQ(sent(), (ByteLists{{1, 0x89, 0}}));
    EXPECT_EQ(recorder.packets[1].size, 3u);
    EXPECT_EQ(store.I2C_RdCnt, single ? 1 : 4);
  }
  board.set_register(0, 0x07);
  click(panel->cmdSetControl);
  EXPECT_EQ(panel->txtRegRd(0).Text, "07");
  EXPECT_EQ(panel->ShpInd(4).FillColor.get(), lamp(12));
  board.set_register(0, 0x04);
  click(panel->cmdSetControl);
  EXPECT_EQ(panel->ShpInd(4).FillColor.get(), lamp(10));
}

TEST_F(Kvt71338Measuring, TheWriteTakesItsByteFromTheBox) {
  panel->txtRegHex(0).Text = "8f";
  click(panel->cmdSetCommand);
  EXPECT_EQ(sent(), written(0x8F));
  EXPECT_EQ(store.RegImage[0], 0x8F);
  EXPECT_EQ(panel->ShpInd(4).FillColor.get(), lamp(12));  // "8f" and "8F" differ as texts
}

// The session closes before the read-back, which opens one of its own.
TEST_F(Kvt71338Measuring, AWriteHasItsReadBackInASessionOfItsOwn) {
  click(panel->cmdSetCommand);
  EXPECT_EQ(calls("WDU_VB_Init"), 2u);
}

TEST_F(Kvt71338Measuring, TheDataPairIsReadIntoTheBoxesOfItsButton) {
  make_ready();
  replying({2, 0x34, 0x02}, 5);
  click(panel->cmdRead_ADC);
  EXPECT_EQ(sent(), (ByteLists{{2, 0x89, 1}}));
  EXPECT_EQ(panel->txtRegRd(4).Text, "34");
  EXPECT_EQ(panel->txtRegRd(5).Text, "02");
  EXPECT_EQ(panel->txtRegRd(6).Text, "");
  for (const int i : {8, 9}) EXPECT_EQ(panel->ShpInd(i).FillColor.get(), lamp(10));
  for (const int i : {10, 11}) EXPECT_EQ(panel->ShpInd(i).FillColor.get(), lamp(0));
  forget_traffic();
  click(panel->OptITime(5));
  forget_traffic();
  click(panel->cmdReadTB);
  EXPECT_EQ(sent(), (ByteLists{{2, 0x89, 1}}));
  EXPECT_EQ(panel->txtRegRd(6).Text, "34");
  EXPECT_EQ(panel->txtRegRd(7).Text, "02");
  for (const int i : {10, 11}) EXPECT_EQ(panel->ShpInd(i).FillColor.get(), lamp(10));
  EXPECT_EQ(store.I2C_RdCnt, 2);
  EXPECT_EQ(store.Usb_Open, 0);
}

TEST_F(Kvt71338Measuring, TheSyncIsACommandOfThreeBytes) {
  click(panel->cmdSync);
  EXPECT_EQ(sent(), (ByteLists{{0, 0x88, 0x80}}));
  EXPECT_EQ(panel->ShpInd(12).FillColor.get(), lamp(10));
  EXPECT_EQ(store.Usb_Open, 0);
}

TEST_F(Kvt71338Measuring, TheTimerReadsAndLooksAtNothing) {
  program.runtime.dispatch([&] { panel->TimerIPol_Timer(); });
  EXPECT_EQ(sent(), (ByteLists{{2, 0x89, 0}}));
  EXPECT_EQ(panel->txtRegRd(0).Text, "04");
  EXPECT_EQ(store.Usb_Open, 0);
}

// A held session keeps the yields of the connecting out.
TEST_F(Kvt71338Measuring, ItYieldsBeforeTheReadOfTheButtonAndBehindThePollAndTheTest) {
  make_ready();
  click(workbench().ChKManUsbConn);
  click(workbench().cmdUSBConnect);
  bool yielded = false;
  const auto post = [&] {
    yielded = false;
    program.runtime.post([&] { yielded = true; });
  };
  forget_traffic();
  recorder.before_call = [&] { EXPECT_TRUE(yielded || !recorder.calls.empty()); };
  program.runtime.dispatch([&] {
    post();
    panel->cmdSetControl_Click();
  });
  EXPECT_FALSE(recorder.calls.empty());
  recorder.before_call = post;  // the last one counts
  program.runtime.dispatch([&] {
    panel->TimerIPol_Timer();
    EXPECT_TRUE(yielded);
    panel->OptMode_Click();
    EXPECT_TRUE(yielded);
  });
}

// --- timed ---

TEST_F(Kvt71338Measuring, SamplingIsRefusedWithoutPower) {
  panel->Label18.Caption = "before";
  click(panel->cmdSample);
  ASSERT_EQ(user.boxes.size(), 1u);
  EXPECT_EQ(user.boxes[0].text, "Device Reset Control bit is active");
  EXPECT_EQ(panel->Label18.Caption, "before");
  EXPECT_TRUE(recorder.calls.empty());
}

// Each group of transfers opens and closes the session by itself.
TEST_F(Kvt71338Measuring, ATimedRunHoldsNoSession) {
  make_ready();
  sample(3);
  const ByteLists out = sent();
  EXPECT_GE(out.size(), 3u);
  EXPECT_TRUE(std::ranges::all_of(out, [](const auto& bytes) { return bytes == std::vector{2, 0x89, 1}; }));
  EXPECT_EQ(recorder.packets[1].size, 5u);
  EXPECT_EQ(calls("WDU_VB_Init"), out.size());
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_EQ(store.Man_Usb_Conn, 0);
}

TEST_F(Kvt71338Measuring, AHeldSessionIsUsedAndGivenUpAtTheEnd) {
  make_ready();
  click(workbench().ChKManUsbConn);
  click(workbench().cmdUSBConnect);
  sample(3);
  EXPECT_EQ(calls("WDU_VB_Init"), 1u);
  EXPECT_EQ(store.Man_Usb_Conn, 0);
  EXPECT_EQ(store.Usb_Open, 0);
}

TEST_F(Kvt71338Measuring, ATriggeredReadingShowsItsBytes) {
  make_ready();
  replying({2, 0x04, 0x1A, 0, 0}, 5);
  sample(2);
  EXPECT_EQ(store.Sample_Value[1], 0x1A04);
  EXPECT_EQ(store.Sample_Value2[1], 1);
  EXPECT_EQ(panel->txtSampleByte(0).Text, "2");
  EXPECT_EQ(panel->txtSampleByte(1).Text, "04");
  EXPECT_EQ(panel->txtSampleByte(2).Text, "1A");
  EXPECT_EQ(panel->txtADHex.Text, "1A04");
  EXPECT_EQ(panel->txtADDec.Text, "6660");
  EXPECT_EQ(panel->cycle_reading.txtICycHex.Text, "");
}

// The second value isn't of the reply: it is what was last stored as a second count.
TEST_F(Kvt71338Measuring, ATriggeredTimeBaseShowsItsBytesAndStoresAnOlderCount) {
  make_ready();
  click(panel->OptITime(5));
  forget_traffic();
  store.RawReading2 = 0x1234;
  replying({4, 0x05, 0x2B, 0, 0}, 5);
  sample(2);
  EXPECT_EQ(store.Sample_Value[1], 1);
  EXPECT_EQ(store.Sample_Value2[1], 0x1234);
  EXPECT_EQ(panel->txtSampleByte(3).Text, "05");
  EXPECT_EQ(panel->txtSampleByte(4).Text, "2B");
  EXPECT_EQ(panel->cycle_reading.txtICycHex.Text, "2B05");
  EXPECT_EQ(panel->cycle_reading.txtICYCDec.Text, "11013");
  EXPECT_EQ(panel->txtADHex.Text, "");
  replying({4, 0, 0, 0, 0}, 5);
  sample(2);
  EXPECT_EQ(panel->cycle_reading.txtICycHex.Text, "00");
  EXPECT_EQ(panel->cycle_reading.txtICYCDec.Text, "0");
}

TEST_F(Kvt71338Measuring, UnderExternalTimingATriggerIsASync) {
  make_ready();
  click(panel->OptITime(4));
  forget_traffic();
  sample(3);
  const ByteLists out = sent();
  ASSERT_GE(out.size(), 4u);
  for (const std::size_t pass : {0u, 2u}) {
    EXPECT_EQ(out[pass], (std::vector{0, 0x88, 0x80}));
    EXPECT_EQ(out[pass + 1], (std::vector{4, 0x89, 1}));
  }
  EXPECT_NE(panel->ShpInd(12).FillColor.get(), lamp(0));
}

TEST_F(Kvt71338Measuring, ATimedRunDoesTheWriteAloneOfWhatWaits) {
  make_ready();
  at_yield(count_reaches(3), [&] {
    forget_traffic();
    store.PendingUpdate = store.PendingWriteR0 = store.PendingWriteR1 = store.PendingReadRegs = -1;
    at_yield(count_reaches(5), clicking(panel->cmdEndSampling));
  });
  click(panel->cmdSample);
  EXPECT_EQ(writes(), (ByteLists{{0, 0x88, 0, 0xC4}}));
  EXPECT_EQ(store.PendingWriteR0, 0);
  EXPECT_EQ(store.PendingWriteR1, -1);
}

// --- real time ---

TEST_F(Kvt71338Measuring, ACollectionSwitchesTheConverterOn) {
  collect(3);
  EXPECT_TRUE(user.boxes.empty());
  EXPECT_TRUE(panel->OptPwr(1).Value);
  EXPECT_EQ(box(), "84");
  EXPECT_EQ(sent()[0], (std::vector{0, 0x88, 0, 0x84}));
  // Switched off by the box, the option doesn't know.
  panel->txtRegHex(0).Text = "04";
  click(panel->cmdSetCommand);
  forget_traffic();
  collect(3);
  EXPECT_EQ(sent()[0], (std::vector{0, 0x88, 0, 0x84}));
  EXPECT_EQ(std::ranges::count(writes(), std::vector{0, 0x88, 0, 0x84}), 1);
}

TEST_F(Kvt71338Measuring, APassUnderInternalTimingOnlyReads) {
  make_ready();
  store.I2C_RdCnt = 4;
  collect(3);
  EXPECT_TRUE(std::ranges::all_of(sent(), [](const auto& bytes) {
    return bytes == std::vector{2, 0x89, 1};
  }));
  EXPECT_EQ(recorder.packets[1].size, 3u);
  EXPECT_EQ(calls("WDU_VB_Init"), 1u);
  EXPECT_EQ(store.Usb_Open, 0);
}

TEST_F(Kvt71338Measuring, StoresTheCountAndShowsLux) {
  make_ready();
  replying({2, 0xFF, 0x07}, 3);
  panel->txtADC_Reading.Text = "x";
  collect(14);
  EXPECT_EQ(store.Sample_Value[13], 2047);
  EXPECT_EQ(store.Sample_Value2[13], 1);
  EXPECT_EQ(store.RawReading, 2047);
  EXPECT_EQ(store.Reading, 2047);
  EXPECT_EQ(panel->txtADC_Reading.Text, "2047");
  EXPECT_EQ(panel->txtCaclulated_Lux.Text, "499.88");
  EXPECT_EQ(panel->txtTimeBaseReading.Text, "");
  EXPECT_EQ(panel->txtReading.Text, "2047");
  EXPECT_EQ(store.Scale_Max, 4096);
  EXPECT_EQ(store.Trace_Y[403], 152);  // 151.93 rows up: the whole part of 152.07
}

TEST_F(Kvt71338Measuring, ACountOfZeroIsAnEmptyText) {
  make_ready();
  replying({2, 0, 0}, 3);
  collect(3);
  EXPECT_EQ(panel->txtADC_Reading.Text, "");
  EXPECT_EQ(panel->txtCaclulated_Lux.Text, ".00");
}

TEST_F(Kvt71338Measuring, AStartEmptiesTheReadings) {
  make_ready();
  bool empty = false;
  for (TextBox* box : {&panel->txtADC_Reading, &panel->txtCaclulated_Lux, &panel->txtTimeBaseReading}) {
    box->Text = "old";
  }
  recorder.before_call = [&] {
    if (store.Sample_Run == 0 || !recorder.packets.empty()) return;
    empty = panel->txtADC_Reading.Text == "" && panel->txtCaclulated_Lux.Text == "" &&
            panel->txtTimeBaseReading.Text == "";
  };
  collect(2);
  EXPECT_TRUE(empty);
}

TEST_F(Kvt71338Measuring, AStartEndsThePolling) {
  make_ready();
  panel->TimerIPol.Enabled = true;
  collect(2);
  EXPECT_FALSE(panel->TimerIPol.Enabled);
}

TEST_F(Kvt71338Measuring, InfraredShowsNoLux) {
  make_ready();
  click(panel->OptMeasure(2));
  collect(3);
  EXPECT_NE(panel->txtADC_Reading.Text, "");
  EXPECT_EQ(panel->txtCaclulated_Lux.Text, "");
}

// --- the scale ---

// Under lux each pass takes the scale of the counts, as the chart shows them.
TEST_F(Kvt71338Measuring, TheScaleIsThatOfTheGraphAndUnderLuxOfTheCounts) {
  make_ready();
  panel->txtScale2.Text = "3000.9";
  panel->txtScale.Text = "700.9";
  std::int32_t at_start = 0;
  recorder.before_call = [&] {
    if (store.Sample_Run != 0 && recorder.packets.empty()) at_start = store.Scale_Max;
  };
  struct Scale {
    int graph;
    int start, in_passes;
  };
  for (const auto& [graph, start, in_passes] : {Scale{0, 3001, 3001}, {1, 701, 3001}}) {
    panel->OptGraph(graph).select_quietly();
    forget_traffic();
    collect(3);
    EXPECT_EQ(at_start, start);
    EXPECT_EQ(store.Scale_Max, in_passes);
  }
  click(panel->OptMeasure(2));
  panel->txtScale.Text = "700";
  panel->OptGraph(1).select_quietly();
  collect(3);
  EXPECT_EQ(store.Scale_Max, 701);
  panel->OptGraph(2).select_quietly();
  store.Scale_Max = 555;
  collect(3);
  EXPECT_EQ(store.Scale_Max, 555);
  EXPECT_EQ(store.Scale_Span, 555);
}

TEST_F(Kvt71338Measuring, TheRowStaysWithinThePlot) {
  make_ready();
  struct Row {
    int count;
    const char* scale;
    int row;
  };
  for (const Row& c : {Row{0, "4095", 304}, Row{1, "4095", 303}, Row{4095, "4095", 1}, Row{60000, "4095", 1},
                       Row{100, "-4095", 304}}) {
    panel->txtScale2.Text = c.scale;
    replying({2, static_cast<std::uint8_t>(c.count), static_cast<std::uint8_t>(c.count >> 8)}, 3);
    collect(2);
    EXPECT_EQ(store.Trace_Y[403], c.row) << c.count << " of " << c.scale;
    board.clear();
  }
}

// The time base has no full count: its counts are over the top of the scale.
TEST_F(Kvt71338Measuring, TheTimeBaseOnTheScaleOfCounts) {
  make_ready();
  click(panel->OptITime(5));
  replying({2, 0x10, 0x27}, 3);
  collect(14);
  EXPECT_EQ(store.Scale_Max, 1);
  EXPECT_EQ(store.Trace_Y[403], 1);
  EXPECT_TRUE(user.errors.empty());
}

// As the graph option leaves it there.
TEST_F(Kvt71338Measuring, WithoutAScaleTheRowStays) {
  make_ready();
  click(panel->OptMeasure(2));
  click(panel->OptITime(5));
  for (const int i : {0, 1}) panel->ChkSync(i).Value = 0;
  replying({2, 0, 0}, 3);
  collect(12, [&] {
    EXPECT_EQ(store.Trace_Y[403], 304);
    replying({2, 0x10, 0x27}, 3);
    forms::user::click(panel->OptGraph(0));
    EXPECT_EQ(store.Scale_Max, 0);
  });
  EXPECT_EQ(store.Trace_Y[403], 304);
  EXPECT_EQ(store.Sample_Count, 15);
  EXPECT_TRUE(user.errors.empty());
}

// --- triggers ---

TEST_F(Kvt71338Measuring, TheTriggersGoOutBeforeTheFirstPassAndBehindEach) {
  make_ready();
  click(panel->OptITime(4));
  click(panel->OptMeasQty(1));
  forget_traffic();
  collect(3);
  const ByteLists out = sent();
  const ByteLists triggers{{0, 0x88, 0, 0x90}, {0, 0x88, 0x80}, {0, 0x88, 0x80}};
  const ByteLists wanted = joined({triggers, {{2, 0x89, 1}}, triggers, {{2, 0x89, 1}}, triggers});
  ASSERT_GE(out.size(), wanted.size());
  EXPECT_EQ(ByteLists(out.begin(), out.begin() + static_cast<std::ptrdiff_t>(wanted.size())), wanted);
  EXPECT_EQ(calls("WDU_VB_Init"), 1u);
}

TEST_F(Kvt71338Measuring, EachTriggerHasItsWait) {
  make_ready();
  board.set_timing(false);
  click(panel->OptITime(4));
  click(panel->OptMeasQty(1));
  panel->txtOneShotDelay.Text = "30";
  panel->txtDelaySync(0).Text = "50";
  panel->txtDelaySync(1).Text = "70";
  forget_traffic();
  // When the first call for each packet was made.
  std::vector<double> times;
  recorder.before_call = [&] {
    if (store.Man_Usb_Conn != 0 && recorder.packets.size() == times.size()) {
      times.push_back(clock.milliseconds());
    }
  };
  collect(2);
  ASSERT_GE(times.size(), 4u);
  EXPECT_NEAR(times[1] - times[0], 30, 0.1);
  EXPECT_NEAR(times[2] - times[1], 50, 0.1);
  EXPECT_GE(times[3] - times[2], 70);
}

// The boxes are looked at on every pass.
TEST_F(Kvt71338Measuring, WhatALoopSendsFollowsItsBoxes) {
  make_ready();
  collect(
      12,
      [&] {
        forget_traffic();
        panel->ChkSync(1).Value = 1;
      },
      2);
  const ByteLists out = writes();
  EXPECT_GE(out.size(), 2u);
  EXPECT_TRUE(std::ranges::all_of(out, [](const auto& bytes) {
    return bytes == std::vector{0, 0x88, 0x80};
  }));
}

TEST_F(Kvt71338Measuring, ACollectionBegunAnewSendsItsTriggersAnew) {
  make_ready();
  click(panel->OptITime(4));
  panel->txtInterval.Text = "100";
  ByteLists anew;
  store.Sample_Count = 0;
  at_yield(count_reaches(12), [&] {
    forget_traffic();
    forms::user::enter(panel->txtInterval);
    EXPECT_EQ(store.Sample_Count, 0);
    at_yield(count_reaches(1), [&] {
      anew = sent();
      at_yield(count_reaches(3), clicking(panel->cmdStopData));
    });
  });
  click(panel->cmdCollectData);
  const ByteLists wanted{{0, 0x88, 0x80}, {0, 0x88, 0x80}, {2, 0x89, 1}};
  ASSERT_GE(anew.size(), wanted.size());
  EXPECT_EQ(ByteLists(anew.begin(), anew.begin() + 3), wanted);
  EXPECT_TRUE(user.errors.empty());
}

// Also while the first triggers go out: at each yield from the click on in turn.
TEST_F(Kvt71338Measuring, ItIsBegunAnewAtAnyYieldOfItsStart) {
  make_ready();
  click(panel->OptITime(4));
  click(panel->OptMeasQty(1));
  panel->txtInterval.Text = "100";
  bool started = false;
  int sent_before = 0;
  for (int offset = 0; !started; ++offset) {
    SCOPED_TRACE(offset);
    user.yields_left = 5'000'000;
    forget_traffic();
    store.Sample_Count = 0;
    int yields = -1;
    bool entered = false;
    user.at_yield = [&] {
      // The connecting alone is ten thousand yields.
      if (store.Man_Usb_Conn != 0 && !entered && ++yields == offset) {
        entered = true;
        started = store.Sample_Count > 0;
        sent_before = static_cast<int>(sent().size());
        program.runtime.post([&] { forms::user::enter(panel->txtInterval); });
        at_yield([&] { return store.Collections % 2 == 0 && store.Sample_Count >= 2; },
                 clicking(panel->cmdStopData));
      }
    };
    store.Collections = 0;
    click(panel->cmdCollectData);
    user.at_yield = nullptr;
    EXPECT_EQ(store.Collections, 2);
    EXPECT_EQ(calls("WDU_VB_Init"), 1u);
    EXPECT_GE(writes().size(), 6u);  // the first three of the new one, and those behind its pass
    EXPECT_TRUE(user.errors.empty());
    EXPECT_EQ(store.Sample_Run, 0);
    EXPECT_EQ(store.Usb_Open, 0);
    EXPECT_TRUE(panel->cmdCollectData.Enabled);
    if (HasFailure()) break;
  }
  EXPECT_GT(sent_before, 3);
}

// --- the time base ---

TEST_F(Kvt71338Measuring, TheTimeBaseGraphReadsByTheFastTransfers) {
  make_ready();
  click(panel->OptITime(5));
  panel->OptGraph(2).select_quietly();
  for (const int i : {0, 1}) panel->ChkSync(i).Value = 0;
  replying({2, 0x10, 0x27}, 3);
  forget_traffic();
  collect(4);
  EXPECT_EQ(panel->txtTimeBaseReading.Text, "10000");
  EXPECT_EQ(panel->txtADC_Reading.Text, "");
  EXPECT_EQ(store.Sample_Value[3], 10000);
  EXPECT_EQ(store.RawReading, 10000);
  EXPECT_EQ(store.Reading, 10000);
  EXPECT_EQ(calls("WDU_GetDeviceInfo"), 1u);  // of the connecting: only the checked ones ask each time
  panel->OptGraph(0).select_quietly();
  forget_traffic();
  collect(4);
  EXPECT_EQ(calls("WDU_GetDeviceInfo"), recorder.packets.size() + 1);
}

// --- the automatic re-scale ---

TEST_F(Kvt71338Measuring, TheAutomaticReScaleGoesByTheLastReading) {
  make_ready();
  replying({2, 0x00, 0x04}, 3);
  collect(20);
  store.Sample_Value[3] = 60000;  // not the greatest one
  at_yield([&] { return store.Sample_Run == -1 && store.Sample_Count > 2; }, clicking(panel->cmdStopData));
  click(panel->cmdAutoScale);
  EXPECT_EQ(panel->txtScale.Text, "1177.6");
  EXPECT_EQ(panel->txtScale2.Text, "1177.6");
  EXPECT_EQ(store.GraphUnit1, "Scaled");
  EXPECT_EQ(store.GraphUnit2, "Scaled");
  EXPECT_EQ(store.Scale_Max, 1178);         // of the collection that it began
  EXPECT_EQ(store.Label_Left[10], "1180");  // ten steps of 118, of 1178
  EXPECT_EQ(store.Label_Right[10], "1180");
  EXPECT_GT(store.Sample_Count, 2);
}

TEST_F(Kvt71338Measuring, TheAutomaticReScaleNeedsSamplesAndALastOneOfUse) {
  struct Try {
    std::int32_t count, last;
    bool acts;
  };
  for (const Try& c : {Try{15, 100, false}, Try{16, 100, true}, Try{16, 0, false}, Try{16, -1, false},
                       Try{16, 69999, true}, Try{16, 70000, false}}) {
    SCOPED_TRACE(std::to_string(c.count) + " " + std::to_string(c.last));
    open_anew();
    make_ready();
    store.Sample_Count = c.count;
    store.Sample_Value[static_cast<std::size_t>(c.count - 1)] = c.last;
    store.Reading = 100;
    at_yield([&] { return store.Sample_Run == -1; }, clicking(panel->cmdStopData));
    click(panel->cmdAutoScale);
    user.at_yield = nullptr;
    EXPECT_EQ(store.GraphUnit2 == "Scaled", c.acts);
    EXPECT_EQ(panel->txtScale.Text, c.acts ? "115" : "1000");
  }
}

}  // namespace
}  // namespace varzelin::testing
