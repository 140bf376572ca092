// Timed runs on the multi-function panels, and the reading that one takes.
#include "support/multi_function_loop_fixture.h"
#include "workbench/gpio_panel.h"

namespace varzelin::testing {
namespace {

struct MultiFunctionSampling : MultiFunctionLoop, ::testing::WithParamInterface<std::string> {
  void SetUp() override {
    open(GetParam());
    measure_by(ir_continuous);
    results(500);
  }
  bool is(const char* form_name) const { return GetParam() == form_name; }
  // The traffic from one count of the samples to the next, the reading first, behind what the user does
  // there.
  std::string traffic_of_a_sample_behind(const std::function<void()>& action) {
    return traffic_behind(action, 1, {}, false);
  }
};

// --- how it begins and ends ---

TEST_P(MultiFunctionSampling, AContinuousSampleWaitsAndReads) {
  panel->txtSampling_Delay.Text = "25";
  EXPECT_EQ(traffic_of_a_sample(2), "read2 read2");
  EXPECT_EQ(result_size(), 5u);
  sample(
      4, [&] { forget_traffic(); }, 3);
  const std::vector<double> times = times_of("read2");
  ASSERT_GE(times.size(), 3u);
  EXPECT_NEAR(times[2] - times[1], 25, 0.1);
  EXPECT_EQ(store.Sample_Value[3], 500);
  EXPECT_EQ(panel->lblLoop_Count.Caption, "-3");
  EXPECT_TRUE(panel->OptMeasure(ir_continuous).Value);  // it stays
}

TEST_P(MultiFunctionSampling, AOneShotSampleIsCommandedBefore) {
  measure_by(ir_once);
  panel->txtSampling_Delay.Text = "25";
  EXPECT_EQ(traffic_of_a_sample(2), "read2 r0=40 read0 read2 r0=40 read0");
  sample(3);
  EXPECT_NEAR(times_of("read2")[0] - times_of("read0")[0], 25, 0.2);
}

TEST_P(MultiFunctionSampling, UnderExternalTimingItSyncsBehindItsDelay) {
  measure_by(ir_once);
  choose(panel->OptExtTime(1));
  panel->txtSync1Delay(0).Text = "20";
  panel->txtSampling_Delay.Text = "7";
  EXPECT_EQ(panel->ChkEOC1(0).Value, 0);
  EXPECT_EQ(traffic_of_a_sample(), "read2 r0=50 read0 sync");
  EXPECT_EQ(panel->ChkEOC1(0).Value, 1);
  sample(3);
  EXPECT_NEAR(times_of("sync")[0] - times_of("read0")[0], 20, 0.2);
  EXPECT_NEAR(times_of("read2")[0] - times_of("sync")[0], 7, 0.2);
  EXPECT_EQ(traffic_of_a_sample_behind([&] { panel->ChkEOC1(0).Value = 0; }), "read2 r0=50 read0");
}

TEST_P(MultiFunctionSampling, WithoutAMeasurementTakesLightWhereThereIsLight) {
  measure_by(power_down);
  if (is("frmKVT71390")) {
    const auto samples = store.Sample_Count;
    click(panel->cmdSample);
    EXPECT_EQ(user.errors, std::vector<int>{forms::no_such_element});
    EXPECT_EQ(store.Sample_Count, samples);
    EXPECT_EQ(traffic(), "");
    expect_idle();
    return;
  }
  sample(3);
  EXPECT_TRUE(panel->OptMeasure(als_continuous).Value);
  EXPECT_NE(traffic().find("r0=A0"), std::string::npos);
}

TEST_P(MultiFunctionSampling, SaysWhatItReads) {
  panel->txtADHex.Visible = false;
  const auto look_for = [&](const std::string& words) {
    return [this, words] {
      EXPECT_EQ(panel->Label3(0).Caption, words);
      EXPECT_TRUE(panel->txtADHex.Visible);
    };
  };
  sample(2, look_for("ADC"), 0);
  store.ReadTimeBase = true_flag;
  sample(2, look_for("TB"), 0);
  // The words of the delay are those of a one-shot, or what they were.
  panel->Label9(0).Caption = "as it was";
  sample(2);
  EXPECT_EQ(panel->Label9(0).Caption, "as it was");
  store.OneShotMode = true_flag;
  sample(2);
  EXPECT_EQ(panel->Label9(0).Caption, "Delay Command to Sample");
}

TEST_P(MultiFunctionSampling, AnUnreadableDelayIsReported) {
  panel->txtSampling_Delay.Text = "99999999999";
  click(panel->cmdSample);
  EXPECT_EQ(user.errors, std::vector<int>{forms::overflow});
}

// The last reading of the run is that of its last pass.
TEST_P(MultiFunctionSampling, EndsWithoutAnotherReading) {
  sample(
      3,
      [&] {
        forget_traffic();
        store.TriggerDone = true_flag;
      },
      0);
  EXPECT_EQ(traffic(), "read2");
  EXPECT_EQ(store.TriggerDone, 0);
  store.TriggerDone = true_flag;
  store.ProxIRMode = true_flag;  // of which nothing takes the trigger away
  sample(3);
  EXPECT_EQ(store.TriggerDone, -1);
  expect_idle();
}

// --- what was left to it ---

TEST_P(MultiFunctionSampling, WritesR1ThenR0ThenReadsBack) {
  const std::string words = traffic_of_a_sample_behind([&] {
    forms::user::click(panel->cmdStopData);  // as a stop does: the options leave their work
    store.AbortRequested = false_flag;
    store.Sample_Run = true_flag;
    forms::user::click(panel->OptGain(3));
    forms::user::click(panel->cmdRead_All);
    store.Sample_Run = false_flag;
  });
  // Each write reads back by itself, as no collection runs.
  EXPECT_EQ(words, "read2 r1=67 read0 r0=C0 read0");
  EXPECT_EQ(store.PendingReadRegs, 0);
}

TEST_P(MultiFunctionSampling, ReadsBackWhatNoWriteHas) {
  EXPECT_EQ(traffic_of_a_sample_behind([&] {
              store.PendingReadRegs = true_flag;
              store.PendingUpdate = true_flag;
            }),
            "read2 read0");
  EXPECT_EQ(traffic_of_a_sample_behind([&] { store.PendingReadRegs = true_flag; }), "read2");
  store.PendingReadRegs = false_flag;
}

TEST_P(MultiFunctionSampling, PollsThePinBehindEachSample) {
  std::string order;
  traffic_behind(
      [&] {
        panel->pin.ChkSampleInt.Value = 1;
        store.PendingReadRegs = store.PendingUpdate = true_flag;
      },
      1,
      [&] {
        for (const Packet& packet : recorder.packets) {
          if (packet.pipe == boards::pipe_gpio_out) order += "pin ";
          if (packet.pipe == boards::pipe_i2c_out) order += "read" + std::to_string(packet.bytes[2]) + " ";
        }
      },
      false);
  EXPECT_EQ(order, "read2 pin read0 ");
}

// --- a reading ---

TEST_P(MultiFunctionSampling, ShowsTheBytesAndTheCount) {
  store.Sample_Count = 7;
  for (const auto& [read_adc, read_time_base] : {std::pair{-1, 0}, {0, -1}}) {
    for (forms::TextBox* box : {&panel->txtReading, &panel->txtADHex, &panel->txtADDec}) box->Text = "";
    store.ReadAdc = static_cast<Flag>(read_adc);
    store.ReadTimeBase = static_cast<Flag>(read_time_base);
    board.queue_reply({0x0A, 0x05, 0x03});
    panel->Record_Triggered_Light_Count();
    EXPECT_EQ(panel->txtSampleByte(0).Text, "A");
    EXPECT_EQ(panel->txtSampleByte(1).Text, "05");
    EXPECT_EQ(panel->txtSampleByte(2).Text, "3");
    EXPECT_EQ(panel->txtADHex.Text, "305");
    EXPECT_EQ(panel->txtADDec.Text, "773");
    EXPECT_EQ(panel->txtReading.Text, "773");
    EXPECT_EQ(store.Sample_Value[7], 773);
  }
  EXPECT_EQ(calls("WDU_VB_Init"), 2u);
  EXPECT_EQ(store.Usb_Open, 0);
}

TEST_P(MultiFunctionSampling, OfNeitherKindShowsNothing) {
  store.Sample_Count = 7;
  store.Sample_Value[7] = 1;
  store.ReadAdc = store.ReadTimeBase = false_flag;
  store.TriggerDone = true_flag;
  panel->txtADDec.Text = "as it was";
  panel->Record_Triggered_Light_Count();
  EXPECT_EQ(panel->txtADDec.Text, "as it was");
  EXPECT_EQ(store.Sample_Value[7], 1);
  EXPECT_EQ(store.TriggerDone, 0);
  panel->Record_Prox_IR();
  EXPECT_EQ(panel->txtADDec.Text, "as it was");
}

TEST_P(MultiFunctionSampling, AsksForAsManyRegistersAsTheCountSays) {
  store.I2C_RdCnt = 4;
  panel->Record_Triggered_Light_Count();
  panel->Record_Prox_IR();
  EXPECT_EQ(sent_on(boards::pipe_i2c_out), (std::vector<std::vector<int>>{{4, 0x89, 2}, {4, 0x89, 2}}));
  EXPECT_EQ(result_size(), 5u);
}

// The routine that no control calls: a sign above 128, in sixteen bits at every width, in proximity alone.
TEST_P(MultiFunctionSampling, TheOtherReadingHasTheSignOfAPair) {
  store.Sample_Count = 7;
  store.ReadAdc = true_flag;
  for (const auto& [mode, scheme, word, count] : {std::tuple{-1, 1, 0x8100, -32512},
                                                  {-1, 1, 0x8000, 32768},
                                                  {-1, 1, 0xFFFF, -1},
                                                  {-1, 0, 0x8100, 0x8100},
                                                  {0, 1, 0x8100, 0x8100}}) {
    store.ProxMode = static_cast<Flag>(mode);
    store.ProxScheme = static_cast<std::int16_t>(scheme);
    store.TriggerDone = true_flag;
    results(word);
    panel->Record_Prox_IR();
    EXPECT_EQ(store.Sample_Value[7], count) << mode << scheme << std::hex << word;
    EXPECT_EQ(store.ReadingSign, count < 0 ? -1 : 1);
    EXPECT_EQ(panel->txtReading.Text, std::to_string(count));
    EXPECT_EQ(panel->txtADDec.Text, std::to_string(count));
    EXPECT_EQ(store.TriggerDone, 0);
  }
  EXPECT_EQ(store.Usb_Open, 0);
}

TEST_P(MultiFunctionSampling, TheOtherReadingHasBytesOfItsOwnForTheTimeBase) {
  store.Sample_Count = 7;
  store.Sample_Value[7] = store.Sample_Value2[7] = 1;
  store.ReadAdc = false_flag;
  store.ReadTimeBase = true_flag;
  store.RawReading2 = 4321;
  for (int byte = 0; byte < 3; ++byte) panel->txtSampleByte(byte).Text = "";
  results(0x0305);
  panel->Record_Prox_IR();
  EXPECT_EQ(store.Sample_Value[7], 1);
  EXPECT_EQ(store.Sample_Value2[7], 4321);
  EXPECT_EQ(panel->txtReading2.Text, "4321");
  EXPECT_EQ(panel->txtSampleByte(1).Text, "");
  EXPECT_EQ(panel->txtSampleByte(3).Text, "05");
  EXPECT_EQ(panel->txtSampleByte(4).Text, "3");
}

INSTANTIATE_TEST_SUITE_P(Each, MultiFunctionSampling,
                         ::testing::Values("frmKVT71385", "frmKVT71388", "frmKVT71390", "frmKVT71392"),
                         panel_name);

}  // namespace
}  // namespace varzelin::testing
