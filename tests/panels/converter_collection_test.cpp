// Real-time collection on the multi-function panels: how it begins, paces itself, does what was left to it,
// and ends.
#include "support/multi_function_loop_fixture.h"

namespace varzelin::testing {
namespace {

struct ConverterCollection : MultiFunctionLoop, ::testing::WithParamInterface<std::string> {
  void SetUp() override {
    open(GetParam());
    measure_by(ir_continuous);
    results(500);
  }
  bool is(const char* form_name) const { return GetParam() == form_name; }
  // What `seen` does once the set-up is over, before the first pass.
  void at_the_start(std::function<void()> seen) {
    at_yield([this] { return store.Sample_Run == -1; },
             [this, seen = std::move(seen)] {
               seen();
               forms::user::click(panel->cmdStopData);
             });
    click(panel->cmdCollectData);
  }
};

// --- how it begins ---

TEST_P(ConverterCollection, BringsThePanelsStateToTheSensorFirst) {
  collect(2);
  EXPECT_TRUE(traffic().starts_with("r0=C0 read0 r1=64 read0 read2 read2")) << traffic();
}

TEST_P(ConverterCollection, TheWritesHaveTheirFormOfTheAddressAndTheReadsTheirs) {
  const int write_address = is("frmKVT71390") ? 0x88 : 0x89;
  collect(2);
  const auto sent = sent_on(boards::pipe_i2c_out);
  ASSERT_GE(sent.size(), 5u);
  EXPECT_EQ(sent[0], (std::vector{0, write_address, 0, 0xC0}));
  EXPECT_EQ(sent[1], (std::vector{2, 0x89, 0}));
  EXPECT_EQ(sent[2], (std::vector{0, write_address, 1, 0x64}));
  EXPECT_EQ(sent[4], (std::vector{2, 0x89, 2}));
  EXPECT_EQ(result_size(), 3u);
}

TEST_P(ConverterCollection, WithoutAMeasurementChoosesTheContinuousOneOfThePanel) {
  measure_by(power_down);
  const bool of_proximity = is("frmKVT71390");
  at_the_start([&] {
    EXPECT_TRUE(panel->OptMeasure(of_proximity ? proximity_continuous : als_continuous).Value);
    EXPECT_EQ(store.RegImage[0], of_proximity ? 0xE1 : 0xA0);
  });
  EXPECT_TRUE(traffic().starts_with("r0=00 read0 r1=64 read0 ")) << traffic();
  EXPECT_NE(traffic().find(of_proximity ? " r0=E1 read0" : " r0=A0 read0"), std::string::npos) << traffic();
  // Any other is left.
  measure_by(ir_once);
  at_the_start([&] { EXPECT_EQ(store.RegImage[0], 0x40); });
}

TEST_P(ConverterCollection, BeginsItsCountsAnew) {
  click(panel->OptGain(2));
  store.OverCount = store.UnderCount = 4;
  store.PeakReading = 5;
  store.RangeChanged = true_flag;
  store.GainTarget = 0;
  store.AdMax = store.AdMin = 7;
  panel->lblRange.Visible = true;
  panel->TimerIPol.Enabled = true;
  for (int box = 0; box < 8; ++box) panel->history.txtADMax(box).Text = "7";
  for (forms::TextBox* box : {&panel->txtReading, &panel->txtReading2, &panel->txtReading3}) box->Text = "7";
  at_the_start([&] {
    EXPECT_EQ(store.OverCount, 0);
    EXPECT_EQ(store.UnderCount, 0);
    EXPECT_EQ(store.PeakReading, -999999.0);
    EXPECT_EQ(store.RangeChanged, 0);
    EXPECT_EQ(store.GainTarget, 2);
    EXPECT_EQ(store.AdMax, -9999999);
    EXPECT_EQ(store.AdMin, 9999999);
    EXPECT_FALSE(panel->lblRange.Visible);
    EXPECT_FALSE(panel->TimerIPol.Enabled);
    for (int box = 0; box < 6; ++box) EXPECT_EQ(history(box), "");
    for (const int box : {6, 7}) EXPECT_EQ(history(box), "7");
    for (forms::TextBox* box : {&panel->txtReading, &panel->txtReading2, &panel->txtReading3})
      EXPECT_EQ(box->Text, "") << box->name();
  });
}

// Also where nothing was written before, which reads back so many.
TEST_P(ConverterCollection, ReadsTwoRegistersAtATime) {
  store.EventsEnabled = false_flag;
  store.I2C_RdCnt = 4;
  at_the_start([&] { EXPECT_EQ(store.I2C_RdCnt, 2); });
}

TEST_P(ConverterCollection, TakesTheSampleDelayOfItsBoxRounded) {
  for (const auto& [text, delay] : {std::pair{"16.5", 16}, {"17.5", 18}, {"abc", 0}, {"-3", -3}}) {
    panel->txtSampling_Delay.Text = text;
    at_the_start([&, delay = delay] { EXPECT_EQ(store.SampleDelayMs, delay); });
    measure_by(ir_continuous);
  }
}

TEST_P(ConverterCollection, HidesTheIntervalOfAPairOnly) {
  if (!is("frmKVT71392")) {
    measure_by(pair_position);
    at_the_start([&] { EXPECT_FALSE(panel->txtInterval.Visible); });
  }
  measure_by(ir_once);
  at_the_start([&] { EXPECT_TRUE(panel->txtInterval.Visible); });
}

TEST_P(ConverterCollection, UnderExternalTimingSyncsUnlessTheUserSaysNo) {
  at_the_start([&] { EXPECT_EQ(panel->ChkEOC1(0).Value, 0); });
  measure_by(ir_continuous);
  choose(panel->OptExtTime(1));
  at_the_start([&] { EXPECT_EQ(panel->ChkEOC1(0).Value, 1); });
}

TEST_P(ConverterCollection, AnUnreadableDelayIsReportedAndStartsNothing) {
  panel->txtSampling_Delay.Text = "40000";
  click(panel->cmdCollectData);
  EXPECT_EQ(user.errors, std::vector<int>{forms::overflow});
  expect_idle();
  EXPECT_EQ(traffic(), "r0=C0 read0 r1=64 read0");
}

// --- pace ---

TEST_P(ConverterCollection, TheIntervalIsRoundedHalvesToEven) {
  for (const auto& [text, interval] : {std::pair{"57.9", 58}, {"56.5", 56}, {"57.5", 58}}) {
    panel->txtInterval.Text = text;
    collect(2);
    EXPECT_EQ(panel->txtTime1.Text, pace_text(interval)) << text;
    measure_by(ir_continuous);
  }
}

// As it begins; the wait behind it goes by that.
TEST_P(ConverterCollection, EachPassTakesTheIntervalOfItsBox) {
  panel->txtInterval.Text = "100";
  std::vector<std::string> paces;
  user.at_yield = [&] {
    if (store.Sample_Run == 0) return;
    if (store.Sample_Count == 3) panel->txtInterval.Text = "50";
    if (store.Sample_Count > static_cast<int>(paces.size())) paces.push_back(panel->txtTime1.Text);
    if (store.Sample_Count == 6) program.runtime.post(clicking(panel->cmdStopData));
  };
  store.Sample_Count = 0;
  click(panel->cmdCollectData);
  EXPECT_EQ(paces, (std::vector<std::string>{"97", "97", "97", "97", "97", "47"}));
}

TEST_P(ConverterCollection, AnIntervalThatCannotBeReadLeavesThePaceAsItWas) {
  panel->txtInterval.Text = "60";
  collect(
      3, [&] { panel->txtInterval.Text = "99999999999"; }, 3);
  EXPECT_EQ(store.Sample_Count, 6);
  EXPECT_EQ(panel->txtTime1.Text, pace_text(60));
  EXPECT_TRUE(user.errors.empty());
}

// --- a pass ---

TEST_P(ConverterCollection, AContinuousMeasurementIsReadAndNothingElse) {
  EXPECT_EQ(traffic_of_a_pass(3), "read2 read2 read2");
  EXPECT_EQ(store.TriggerDone, -1);
}

TEST_P(ConverterCollection, TheCountIsTheReading) {
  results({0x1234, 0x0789});
  panel->txtInterval.Text = "30";
  collect(2);
  EXPECT_EQ(store.Sample_Value[0], 0x1234);
  EXPECT_EQ(store.Sample_Value[1], 0x0789);
  EXPECT_EQ(store.RawReading, 0x0789);
  EXPECT_EQ(store.Reading, 0x0789);
  EXPECT_EQ(store.TripReading, 0x0789);
  EXPECT_EQ(store.PeakReading, 0x1234);
  EXPECT_EQ(store.ReadingSign, 1);
  EXPECT_EQ(panel->txtADCRaw.Text, "1929");
  EXPECT_EQ(panel->txtReading.Text, "1929");
}

// Two of them reckon with it, though no option of theirs changes it.
TEST_P(ConverterCollection, TheReadingIsTheCountTimesTheMultiplierWhereThePanelSaysSo) {
  const bool multiplies = is("frmKVT71390") || is("frmKVT71392");
  const auto set_multiplier = [&] { store.GainMultiplier = 4; };
  collect(2, set_multiplier, 2);
  EXPECT_EQ(store.Reading, multiplies ? 2000 : 500);
  EXPECT_EQ(store.TripReading, multiplies ? 2000 : 500);
  EXPECT_EQ(store.RawReading, 500);
  EXPECT_EQ(store.Sample_Value[3], 500);
}

TEST_P(ConverterCollection, ShowsTheTimeBaseUnderExternalTimingOnly) {
  store.RawReading2 = 777;
  collect(2);
  EXPECT_EQ(panel->txtReading2.Text, "");
  measure_by(ir_continuous);
  choose(panel->OptExtTime(1));
  collect(2);
  EXPECT_EQ(panel->txtReading2.Text, "777");
}

TEST_P(ConverterCollection, TheRowIsRoundedHalvesToEven) {
  panel->txtScale.Text = "607";
  click(panel->cmdScale);
  ASSERT_EQ(store.Scale_Max, 608);  // two readings a row
  results({1, 3, 5, 602, 605, 700});
  std::vector<std::int32_t> rows;
  user.at_yield = [&] {
    const auto passes = static_cast<std::size_t>(store.Sample_Count);
    if (store.Sample_Run == -1 && passes > rows.size()) rows.push_back(store.Trace_Y[403]);
    if (passes == 6 && store.Sample_Run == -1) program.runtime.post(clicking(panel->cmdStopData));
  };
  store.Sample_Count = 0;
  click(panel->cmdCollectData);
  EXPECT_EQ(rows, (std::vector{304, 302, 302, 3, 2, 1}));
}

TEST_P(ConverterCollection, WithoutASpanTheRowStays) {
  results(2000);
  std::int32_t row = 0;
  collect(
      12,
      [&] {
        row = store.Trace_Y[403];
        ASSERT_GT(row, 1);
        results(100);
        panel->txtScale.Text = "-1";
        panel->cmdScale_Click();
        ASSERT_EQ(store.Scale_Max, store.Scale_Min);
      },
      3);
  EXPECT_EQ(store.Reading, 100);
  EXPECT_EQ(store.Trace_Y[403], row);
  EXPECT_TRUE(user.errors.empty());
}

// --- what was left to the loop ---

TEST_P(ConverterCollection, ReadsBackThenWritesR1ThenR0) {
  const std::string words = traffic_behind([&] {
    forms::user::click(panel->OptGain(3));
    forms::user::click(panel->cmdRead_All);
    EXPECT_EQ(traffic(), "");
  });
  EXPECT_EQ(words, "read2 read0 r1=67 r0=C0");
  EXPECT_EQ(store.PendingReadRegs, 0);
}

TEST_P(ConverterCollection, AStopLeavesItUndone) {
  const auto act = [&] {
    forget_traffic();
    forms::user::click(panel->optINTP(2));
    forms::user::click(panel->cmdStopData);
    at_yield([&] { return store.Usb_Open == 0; },
             [&] {
               EXPECT_EQ(traffic(), "read2");
               EXPECT_EQ(store.PendingWriteR0, -1);
               EXPECT_EQ(store.PendingWriteR1, -1);
             });
  };
  collect(3, act, -1);
}

TEST_P(ConverterCollection, PollsThePinBetweenTheReadingAndWhatWasLeft) {
  std::string order;
  traffic_behind(
      [&] {
        panel->pin.ChkSampleInt.Value = 1;
        forms::user::click(panel->OptGain(1));
      },
      1,
      [&] {
        for (const Packet& packet : recorder.packets) {
          if (packet.pipe == boards::pipe_gpio_out) order += "pin ";
          if (packet.pipe == boards::pipe_i2c_out) order += packet.bytes[0] == 0 ? "write " : "read ";
        }
      });
  EXPECT_EQ(order, "read pin write write ");
}

// --- how it ends ---

TEST_P(ConverterCollection, EndsWithTheSensorAtRestAfterThreeThousandYields) {
  int yields = 0;
  const auto watch = [&] {
    forget_traffic();
    user.at_yield = [&] {
      if (!panel->cmdCollectData.Enabled || panel->cmdSample.Enabled) return;
      ++yields;
      EXPECT_EQ(traffic(), "read2");
      EXPECT_FALSE(panel->OptMeasure(power_down).Value);
    };
  };
  collect(3, watch, 0);
  EXPECT_EQ(yields, 3000);
  EXPECT_TRUE(panel->OptMeasure(power_down).Value);
  EXPECT_EQ(traffic(), "read2 r1=64 read0 r1=64 read0 r8=00 r0=00 read0");
  expect_ended();
}

TEST_P(ConverterCollection, AFailedTransferAlsoEndsWithTheSensorAtRest) {
  const auto fail = [&] { board.fail_transfers(1, boards::statuses::transfer_failed); };
  collect(3, fail, 100);
  EXPECT_LT(store.Sample_Count, 6);
  EXPECT_EQ(board.register_value(0), 0x00);
  EXPECT_TRUE(panel->OptMeasure(power_down).Value);
  expect_ended();
}

// From outside any range can be set, and the scale in lux takes it.
TEST_P(ConverterCollection, ARangeThatThereIsNotIsAnErrorAsThePlatformTellsIt) {
  store.LuxMode = -1;
  store.RangeIndex = 1000;
  click(panel->OptITime(1));
  EXPECT_EQ(user.errors, std::vector<int>{forms::subscript_out_of_range});
}

INSTANTIATE_TEST_SUITE_P(Each, ConverterCollection,
                         ::testing::Values("frmKVT71385", "frmKVT71388", "frmKVT71390", "frmKVT71392"),
                         panel_name);

}  // namespace
}  // namespace varzelin::testing
