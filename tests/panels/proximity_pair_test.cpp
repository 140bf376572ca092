// Proximity minus infrared on the multi-function panels: the pair of conversions by its button, and what both
// loops take of it.
#include "support/multi_function_loop_fixture.h"

namespace varzelin::testing {
namespace {

struct ProximityPair : MultiFunctionLoop {
  void SetUp() override {
    open("frmKVT71385");
    measure_by(pair_position);
  }
  // Under the scheme with a sign, which the proximity measurements choose.
  void with_sign() { measure_by(proximity_continuous); }
  void press(int proximity, int infrared) {
    pair(proximity, infrared);
    forget_traffic();
    click(panel->cmdProx_IR);
  }
  // Proximity, infrared, and the difference.
  std::string numbers() { return pair_box(4) + " " + pair_box(5) + " " + pair_box(6); }
};
struct EachProximityPair : MultiFunctionLoop, ::testing::WithParamInterface<std::string> {
  void SetUp() override { open(GetParam()); }
};

// --- by its button ---

TEST_P(EachProximityPair, ConvertsProximityThenInfrared) {
  const int write_address = GetParam() == "frmKVT71390" ? 0x88 : 0x89;
  pair(500, 100);
  store.I2C_RdCnt = 4;
  click(panel->cmdProx_IR);
  EXPECT_EQ(sent_on(boards::pipe_i2c_out),
            (std::vector<std::vector<int>>{
                {0, write_address, 0, 0x60}, {2, 0x89, 2}, {0, write_address, 0, 0x40}, {2, 0x89, 2}}));
  EXPECT_EQ(result_size(), 5u);
  EXPECT_EQ(pair_box(6), "400");
  EXPECT_EQ(calls("WDU_VB_Init"), 1u);
  EXPECT_EQ(store.Usb_Open, 0);
}
INSTANTIATE_TEST_SUITE_P(Each, EachProximityPair,
                         ::testing::Values("frmKVT71385", "frmKVT71388", "frmKVT71390", "frmKVT71392"),
                         panel_name);

TEST_F(ProximityPair, TimingTimeBaseAndTheUpperPersistenceGoAlong) {
  choose(panel->OptExtTime(1));
  choose(panel->OptMeasMode(1));
  choose(panel->optINTP(3));
  ASSERT_EQ(store.RegImage[0], 0x7B);
  press(0, 0);
  EXPECT_EQ(traffic(), "r0=7A read2 r0=5A read2");
  EXPECT_EQ(store.RegImage[0], 0x7B);
  EXPECT_EQ(panel->txtRegHex(0).Text, "7B");
}

TEST_F(ProximityPair, TheSchemeWithASignIsInTheProximityAlone) {
  with_sign();
  press(0, 0);
  EXPECT_EQ(traffic(), "r0=61 read2 r0=40 read2");
}

TEST_F(ProximityPair, WaitsForTheDelayOfItsBoxBetweenCommandAndReading) {
  for (const auto& [text, delay] : {std::pair{"25.5", 26}, {"0", 0}, {"-4", 0}, {"none", 0}}) {
    panel->txtSampling_Delay.Text = text;
    press(1, 1);
    EXPECT_NEAR(times_of("read2")[0] - times_of("r0=60")[0], delay, 0.1) << text;
    EXPECT_NEAR(times_of("read2")[1] - times_of("r0=40")[0], delay, 0.1) << text;
  }
  panel->txtSampling_Delay.Text = "33";
  press(1, 1);
  EXPECT_EQ(store.SampleDelayMs, 33);
  EXPECT_EQ(store.I2C_RdCnt, 2);
}

TEST_F(ProximityPair, ShowsTheBytesAndTheNumbers) {
  press(0x0A05, 0x0100);
  EXPECT_EQ(pair_box(0), "0A");
  EXPECT_EQ(pair_box(1), "05");
  EXPECT_EQ(pair_box(2), "01");
  EXPECT_EQ(pair_box(3), "00");
  EXPECT_EQ(numbers(), "2565 256 2309");
  EXPECT_EQ(store.ProxCount, 2565);
  EXPECT_EQ(store.IrCount, 256);
  EXPECT_EQ(store.ProxMinusIr, 2309);
  press(100, 300);
  EXPECT_EQ(numbers(), "100 300 -200");
}

// The sign begins one above 128, and is taken in sixteen bits whatever the width.
TEST_F(ProximityPair, ReadsTheProximityWithItsSign) {
  with_sign();
  for (const auto& [word, count] : {std::pair{0x7F00, 32512},
                                    {0x8000, 32768},
                                    {0x80FF, 33023},
                                    {0x8100, -32512},
                                    {0xFFFF, -1},
                                    {0x0FFF, 4095}}) {
    press(word, 10);
    EXPECT_EQ(store.ProxCount, count) << std::hex << word;
    EXPECT_EQ(numbers(), std::to_string(count) + " 10 " + std::to_string(count - 10));
    EXPECT_EQ(store.ReadingSign, count < 0 ? -1 : 1);
  }
  // The bytes are shown as they came, and infrared has no sign.
  press(0x8100, 0xFFFF);
  EXPECT_EQ(pair_box(0), "81");
  EXPECT_EQ(store.IrCount, 65535);
}

TEST_F(ProximityPair, WithoutTheSchemeThereIsNoSign) {
  press(0x8100, 0);
  EXPECT_EQ(store.ProxCount, 0x8100);
  EXPECT_EQ(store.ReadingSign, 1);
}

// At the full count, which no converter of that width gives, and not one below or above.
TEST_F(ProximityPair, OverRangeIsTheFullCountAlone) {
  for (const int count : {4095, 4097}) {
    press(count, count);
    EXPECT_EQ(over_range_lamp(0), lamp(10));
    EXPECT_EQ(over_range_lamp(1), lamp(10));
    EXPECT_EQ(pair_box(6), "0");
  }
  press(4096, 96);
  EXPECT_EQ(over_range_lamp(0), lamp(12));
  EXPECT_EQ(over_range_lamp(1), lamp(10));
  EXPECT_EQ(numbers(), "4096 96 NA");
  EXPECT_EQ(store.ProxMinusIr, -9999);
  press(96, 4096);
  EXPECT_EQ(over_range_lamp(0), lamp(10));
  EXPECT_EQ(over_range_lamp(1), lamp(12));
  EXPECT_EQ(numbers(), "96 4096 NA");
  EXPECT_EQ(store.ProxMinusIr, -9999);
  choose(panel->OptITime(bits_8));
  press(256, 4096);
  EXPECT_EQ(over_range_lamp(0), lamp(12));
  EXPECT_EQ(over_range_lamp(1), lamp(10));
}

TEST_F(ProximityPair, TheButtonIsOutOfReachMeanwhile) {
  bool seen_disabled = true;
  int packets = 0;
  note = [&] {
    if (recorder.calls.empty()) return;
    ++packets;
    seen_disabled = seen_disabled && !panel->cmdProx_IR.Enabled;
  };
  press(1, 1);
  EXPECT_GT(packets, 4);
  EXPECT_TRUE(seen_disabled);
  EXPECT_TRUE(panel->cmdProx_IR.Enabled);
}

// --- in a collection ---

TEST_F(ProximityPair, ACollectionConvertsAPairAPass) {
  pair(500, 100);
  EXPECT_EQ(traffic_of_a_pass(2), "r0=60 read2 r0=40 read2 r0=60 read2 r0=40 read2");
}

// The pair takes the time that it takes.
TEST_F(ProximityPair, ACollectionHasThePaceOfTheDelays) {
  panel->txtInterval.Text = "5000";
  panel->txtSampling_Delay.Text = "15";
  pair(500, 100);
  collect(4);
  EXPECT_EQ(panel->txtTime1.Text, "30");
}

TEST_F(ProximityPair, ACollectionTakesTheDifference) {
  pair(500, 150);
  collect(4);
  EXPECT_EQ(store.Sample_Value[3], 350);
  EXPECT_EQ(panel->txtADCRaw.Text, "350");
  EXPECT_EQ(store.RawReading, 350);
  EXPECT_EQ(store.Reading, 350);
  EXPECT_EQ(store.TripReading, 350);
  EXPECT_EQ(store.IrCount, 150);
  EXPECT_EQ(store.ProxCount, 500);
  EXPECT_EQ(panel->txtReading.Text, "350");
}

// The second readings have it in front, wherever the first ones are.
TEST_F(ProximityPair, TheSecondReadingsHaveTheLatestDifferenceInFront) {
  int passes = 0;
  result = [&](int operation) { return operation == proximity_once ? 500 + ++passes : 100; };
  collect(
      4, [&] { EXPECT_EQ(store.Sample_Value2[0], 404); }, 0);
  for (const std::size_t later : {1u, 2u, 3u}) EXPECT_EQ(store.Sample_Value2[later], 1);
}

TEST_F(ProximityPair, OutOfRangeTheOldReadingIsSampled) {
  pair(500, 100);
  const auto leave_range = [&] {
    EXPECT_EQ(store.Reading, 400);
    store.RawReading = 77;  // what nothing of this writes
    store.TripReading = 78;
    pair(4096, 100);
  };
  collect(4, leave_range, 2);
  EXPECT_EQ(pair_box(6), "NA");
  EXPECT_EQ(store.Sample_Value[5], 400);
  EXPECT_EQ(store.Reading, 400);
  EXPECT_EQ(store.RawReading, 77);
  EXPECT_EQ(store.TripReading, 78);
  EXPECT_EQ(panel->txtADCRaw.Text, "400");
  EXPECT_EQ(store.Sample_Value2[0], 400);
}

// Before it fails over the box it yields: a loop that fails over it pass by pass can be stopped.
TEST_F(ProximityPair, AnUnreadableDelayIsReportedBehindAYield) {
  panel->txtSampling_Delay.Text = "40000";
  int yields = 0;
  user.at_yield = [&] { ++yields; };
  click(panel->cmdProx_IR);
  user.at_yield = nullptr;
  EXPECT_EQ(user.errors, std::vector<int>{forms::overflow});
  EXPECT_GE(yields, 1);
  EXPECT_EQ(traffic(), "");
}

// The last difference that could be measured stands.
TEST_F(ProximityPair, AnUnreadableDelayLeavesTheLastPair) {
  pair(500, 100);
  EXPECT_EQ(traffic_behind([&] { panel->txtSampling_Delay.Text = "40000"; }, 2), "");
  EXPECT_EQ(store.Sample_Value[4], 400);
  EXPECT_TRUE(user.errors.empty());
}

// A collection of something else begins in the middle of a pair.
TEST_F(ProximityPair, APassThatIsOvertakenGivesTheButtonBack) {
  pair(500, 100);
  bool seen = false;
  const auto overtake = [&] {
    EXPECT_FALSE(panel->cmdProx_IR.Enabled);
    forms::user::click(panel->OptMeasure(ir_continuous));
    forms::user::enter(panel->txtInterval);
    at_yield([&] { return store.Sample_Run == -1 && store.Sample_Count == 3; },
             [&] {
               seen = true;
               EXPECT_TRUE(panel->cmdProx_IR.Enabled);
               EXPECT_EQ(store.Reading, 100);
               forms::user::click(panel->cmdStopData);
             });
  };
  collect(
      4, [&] { at_yield([&] { return traffic().ends_with("r0=60"); }, overtake); }, -1);
  EXPECT_TRUE(seen);
  expect_ended();
}

// --- in a timed run ---

TEST_F(ProximityPair, ATimedRunConvertsAPairASample) {
  pair(500, 100);
  panel->txtReading.Text = "";
  panel->txtSampling_Delay.Text = "8";
  EXPECT_EQ(traffic_of_a_sample(2), "r0=60 read2 r0=40 read2 r0=60 read2 r0=40 read2");
  EXPECT_EQ(store.Sample_Value[4], 400);
  EXPECT_EQ(panel->txtADHex.Text, "400");
  EXPECT_EQ(panel->txtADDec.Text, "400");
  EXPECT_EQ(panel->txtReading.Text, "");
  EXPECT_FALSE(panel->cmdProx_IR.Visible);
  expect_idle();
}

TEST_F(ProximityPair, OutOfRangeATimedRunSamplesNothing) {
  pair(500, 100);
  sample(
      3, [&] { pair(500, 4096); }, 2);
  EXPECT_EQ(store.Sample_Value[3], 400);
  EXPECT_EQ(store.Sample_Value[4], 1);
  EXPECT_EQ(panel->txtADHex.Text, "NA");
  EXPECT_EQ(panel->txtADDec.Text, "1");
}

}  // namespace
}  // namespace varzelin::testing
