// Light behind a cover, on the two multi-function panels that correct it: the mode, the measurement, and what
// both loops take of it.
#include "support/multi_function_loop_fixture.h"

namespace varzelin::testing {
namespace {

struct Cover : MultiFunctionLoop, ::testing::WithParamInterface<std::string> {
  void SetUp() override { open(GetParam()); }
  CoverWorkbook& cover() { return *panel->cover; }
  void put_on() {
    cover().ChkCover.Value = 1;
    forget_traffic();
  }
  void measure(int light, int infrared) {
    light_and_infrared(light, infrared);
    forget_traffic();
    click(cover().cmdALS_IR);
  }
  void light_and_infrared(int light, int infrared) {
    result = [=](int operation) { return operation == als_once ? light : infrared; };
  }
  std::string label(int element) { return cover().lblCoverRdgs(element).Caption; }
  // Light, infrared, root, result, raw lux.
  std::string labels() {
    return label(0) + " " + label(1) + " " + label(2) + " " + label(3) + " " + label(4);
  }
  std::array<Flag, 4> modes() const {
    return {store.OneShotMode, store.ProxMode, store.ProxIRMode, store.LuxMode};
  }
};

// --- the mode ---

TEST_P(Cover, OnItMeasuresLightAndSaysSo) {
  measure_by(pair_position);
  panel->Label36.Visible = panel->txtADCRaw.Visible = false;
  click(cover().ChkCover);
  EXPECT_TRUE(panel->OptMeasure(als_continuous).Value);
  EXPECT_EQ(board.register_value(0), 0xA0);
  EXPECT_EQ(store.CoverMode, -1);
  EXPECT_EQ(modes(), (std::array<Flag, 4>{0, 0, 0, 0}));
  EXPECT_FALSE(panel->FrmMeasureDetails.Visible);
  EXPECT_TRUE(cover().Frame12.Visible);
  EXPECT_EQ(panel->OptGraph(0).Caption, "Calc Lux");
  EXPECT_EQ(panel->Label16.Caption, "Calc_Lux");
  EXPECT_TRUE(panel->Label36.Visible);
  EXPECT_TRUE(panel->txtADCRaw.Visible);
  EXPECT_EQ(store.GraphUnit1, "Calc Lux");
  EXPECT_EQ(store.GraphUnit2, "Calc Lux");
  EXPECT_TRUE(cover().ChkCover.Enabled);
  EXPECT_TRUE(panel->cmdCollectData.Enabled);
}

TEST_P(Cover, OffItMeasuresLightAsBefore) {
  put_on();
  panel->frmMeasure.Visible = false;
  click(cover().ChkCover);
  EXPECT_EQ(store.CoverMode, 0);
  EXPECT_EQ(modes(), (std::array<Flag, 4>{0, 0, 0, -1}));
  EXPECT_TRUE(panel->frmMeasure.Visible);
  EXPECT_TRUE(panel->FrmMeasureDetails.Visible);
  EXPECT_FALSE(cover().Frame12.Visible);
  EXPECT_EQ(panel->OptGraph(0).Caption, "Lux Count");
  EXPECT_EQ(panel->Label16.Caption, "Lux Reading");
  EXPECT_EQ(store.GraphUnit1, "Lux");
  EXPECT_NE(traffic().find("r0=A0"), std::string::npos);
}

// The handler of the measurement runs though it was selected already.
TEST_P(Cover, TheSensorIsPutToLightInAnyCase) {
  measure_by(als_continuous);
  click(cover().ChkCover);
  EXPECT_NE(traffic().find("r0=A0"), std::string::npos) << traffic();
}

TEST_P(Cover, NeitherItsBoxNorACollectionIsInReachMeanwhile) {
  int yields = 0;
  user.at_yield = [&] {
    ++yields;
    EXPECT_FALSE(cover().ChkCover.Enabled);
    EXPECT_FALSE(panel->cmdCollectData.Enabled);
  };
  program.runtime.dispatch([&] { cover().ChkCover.Value = 1; });
  EXPECT_GT(yields, 10);
}

// The loop has five hundred yields to end in, of which it is given none back: the user starts anew.
TEST_P(Cover, ALoopHasFiveHundredYieldsToLeave) {
  const auto yields_of_a_click = [this](Flag running) {
    store.Sample_Run = running;
    const std::int64_t before = user.yields_left;
    click(cover().ChkCover);
    return before - user.yields_left;
  };
  yields_of_a_click(false_flag);
  yields_of_a_click(false_flag);
  const std::int64_t at_rest = yields_of_a_click(false_flag);
  yields_of_a_click(false_flag);
  EXPECT_EQ(yields_of_a_click(true_flag) - at_rest, 500);
  EXPECT_EQ(store.Sample_Run, 0);
}

TEST_P(Cover, ARunningCollectionIsStopped) {
  measure_by(ir_continuous);
  results(500);
  int yields = 0;
  const auto tick = [&] {
    user.at_yield = [&] {
      if (panel->FrmMeasureDetails.Visible && !cover().ChkCover.Enabled) {
        ++yields;
        EXPECT_EQ(store.Sample_Run, 0);
      }
    };
    forms::user::click(cover().ChkCover);
    EXPECT_EQ(store.CoverMode, -1);
  };
  collect(5, tick, -1);
  EXPECT_EQ(yields, 500);
  EXPECT_EQ(store.Sample_Count, 5);
  EXPECT_EQ(store.CoverMode, -1);
  EXPECT_TRUE(panel->OptMeasure(power_down).Value);
  expect_ended();
}

// --- the measurement ---

TEST_P(Cover, ConvertsLightThenInfrared) {
  measure(1000, 250);
  EXPECT_EQ(
      sent_on(boards::pipe_i2c_out),
      (std::vector<std::vector<int>>{{0, 0x89, 0, 0x20}, {2, 0x89, 2}, {0, 0x89, 0, 0x40}, {2, 0x89, 2}}));
  EXPECT_EQ(result_size(), 5u);
  EXPECT_EQ(store.Usb_Open, 0);
  choose(panel->OptExtTime(1));
  choose(panel->OptMeasMode(1));
  choose(panel->optINTP(3));
  measure(1000, 250);
  EXPECT_EQ(traffic(), "r0=3A read2 r0=5A read2");
  EXPECT_EQ(store.RegImage[0] & 0x1F, 0x1B);
}

TEST_P(Cover, WaitsForTheDelayOfItsBox) {
  panel->txtSampling_Delay.Text = "25.5";
  measure(1, 1);
  EXPECT_NEAR(times_of("read2")[0] - times_of("r0=20")[0], 26, 0.1);
  EXPECT_NEAR(times_of("read2")[1] - times_of("r0=40")[0], 26, 0.1);
}

// Twelve bits of 1000 lux: 1000 counts are 244 lux.
TEST_P(Cover, TheResultIsTheLuxTimesTheFactorTimesTheRoot) {
  measure(1000, 250);
  EXPECT_EQ(labels(), "244 250 2.000 34160 244");
  EXPECT_EQ(store.LuxCover, 244 * 70 * 2.0);
  EXPECT_EQ(store.LuxRaw, 244);
  EXPECT_EQ(store.CoverAlsCount, 1000);
  EXPECT_EQ(store.CoverIrCount, 250);
  EXPECT_EQ(store.ReadingSign, 1);
  cover().txtRatio_Limit(0).Text = "35.5";
  measure(250, 1000);
  EXPECT_EQ(labels(), "61 1000 .500 1083 61");  // 1082.75
  click(panel->OptGain(2));
  measure(250, 1000);
  EXPECT_EQ(labels(), "976 1000 .500 17324 976");
  cover().txtRatio_Limit(0).Text = "seventy";
  measure(250, 1000);
  EXPECT_EQ(labels(), "976 1000 .500  976");
  EXPECT_EQ(store.LuxCover, 0);
}

TEST_P(Cover, InTheDarkBothCountAsOne) {
  measure(0, 0);
  EXPECT_EQ(labels(), "1 1 1.000  0");
  EXPECT_EQ(store.CoverAlsCount, 1);
  EXPECT_EQ(store.CoverIrCount, 1);
  EXPECT_EQ(store.LuxRaw, 0);
  EXPECT_EQ(store.LuxCover, 0);
}

// It is the lux that is held against the counts.
TEST_P(Cover, TheLightIsOverRangeFromTheHighestCountOn) {
  store.RangeLux[0] = 4097;  // a lux a count
  measure(4094, 100);
  EXPECT_EQ(label(0), "4094");
  EXPECT_EQ(over_range_lamp(0), lamp(10));
  measure(4095, 100);
  EXPECT_EQ(label(0), "O-Rnge");
  EXPECT_EQ(label(4), "4095");
  EXPECT_EQ(over_range_lamp(0), lamp(12));
  measure(100, 100);
  EXPECT_EQ(over_range_lamp(0), lamp(10));
}

TEST_P(Cover, TheInfraredIsOverRangeFromTheHighestCountOnAndTheResultKeepsItsText) {
  measure(1000, 4094);
  EXPECT_EQ(label(1), "4094");
  const std::string before = label(3);
  EXPECT_NE(before, "");
  measure(2000, 4095);
  EXPECT_EQ(label(1), "O-Rnge");
  EXPECT_EQ(label(3), before);
  EXPECT_EQ(label(2), ".699");
  EXPECT_EQ(label(4), "488");
}

// Where the scheme with a sign is chosen, the light has one above 128; the lux knows nothing of it.
TEST_P(Cover, TheShownLightMayHaveASign) {
  measure_by(proximity_continuous);
  measure(0x8100, 100);
  EXPECT_EQ(label(0), "-32512");
  EXPECT_EQ(store.ReadingSign, -1);
  EXPECT_EQ(over_range_lamp(0), lamp(10));
  EXPECT_EQ(store.CoverAlsCount, 0x8100);
  EXPECT_EQ(label(4), "8061");
  measure(0x8000, 100);
  EXPECT_EQ(label(0), "O-Rnge");
  EXPECT_EQ(store.ReadingSign, 1);
  measure_by(als_continuous);
  measure(0x8100, 100);
  EXPECT_EQ(store.ReadingSign, 1);
}

TEST_P(Cover, TheButtonIsOutOfReachOnlyWhileNothingRuns) {
  bool enabled = true;
  note = [&] { enabled = cover().cmdALS_IR.Enabled; };
  measure(1, 1);
  EXPECT_FALSE(enabled);
  EXPECT_TRUE(cover().cmdALS_IR.Enabled);
  put_on();
  collect(
      3, [&] { EXPECT_TRUE(enabled); }, 0);
  EXPECT_TRUE(cover().cmdALS_IR.Enabled);
}

// --- in the loops ---

TEST_P(Cover, ACollectionTakesTheResult) {
  put_on();
  light_and_infrared(1000, 250);
  store.RawReading = 77;  // which nothing of this writes
  store.LuxMode = true_flag;
  const auto look = [&] {
    EXPECT_EQ(store.Sample_Value[3], 34160);
    EXPECT_EQ(store.Reading, 34160);
    EXPECT_EQ(store.TripReading, 34160);
    EXPECT_EQ(store.RawReading, 77);
    EXPECT_EQ(store.LuxMode, 0);
    EXPECT_EQ(panel->txtReading.Text, "34160");
    EXPECT_EQ(panel->txtADCRaw.Text, "1000");
  };
  collect(4, look, 0);
  EXPECT_EQ(history(0), "");
  expect_ended();
}

TEST_P(Cover, ACollectionHasThePaceOfTheIntervalAndMeasuresPastTheImage) {
  put_on();
  light_and_infrared(1000, 250);
  panel->txtInterval.Text = "50";
  panel->txtSampling_Delay.Text = "9";
  EXPECT_EQ(traffic_behind([] {}, 2, [&] { EXPECT_EQ(panel->txtTime1.Text, std::to_string(47 + 2 * 9)); }),
            "r0=20 read2 r0=40 read2 r0=20 read2 r0=40 read2");
}

// Before it fails over the box it yields: a loop that fails over it pass by pass can be stopped.
TEST_P(Cover, AnUnreadableDelayIsReportedBehindAYield) {
  panel->txtSampling_Delay.Text = "40000";
  int yields = 0;
  user.at_yield = [&] { ++yields; };
  click(cover().cmdALS_IR);
  user.at_yield = nullptr;
  EXPECT_EQ(user.errors, std::vector<int>{forms::overflow});
  EXPECT_GE(yields, 1);
  EXPECT_EQ(traffic(), "");
}

TEST_P(Cover, AnUnreadableDelayLeavesTheLastResult) {
  put_on();
  light_and_infrared(1000, 250);
  panel->txtInterval.Text = "0";
  EXPECT_EQ(traffic_behind([&] { panel->txtSampling_Delay.Text = "40000"; }, 2), "");
  EXPECT_EQ(store.Sample_Value[4], 34160);
  EXPECT_TRUE(user.errors.empty());
}

TEST_P(Cover, AResultBeyondTheIntegersLeavesTheSlot) {
  put_on();
  light_and_infrared(1000, 250);
  cover().txtRatio_Limit(0).Text = "1e9";
  collect(4);
  EXPECT_EQ(store.Sample_Value[2], 1);
  EXPECT_TRUE(user.errors.empty());
}

// Behind a pair that is out of range there is the covered light.
TEST_P(Cover, APairThatIsChosenUnderACoverComesOnTop) {
  put_on();
  measure_by(pair_position);
  result = [](int operation) { return operation == als_once ? 1000 : operation == ir_once ? 250 : 700; };
  EXPECT_EQ(traffic_of_a_pass(), "r0=20 read2 r0=40 read2 r0=60 read2 r0=40 read2");
  EXPECT_EQ(store.Reading, 450);
  measure_by(pair_position);
  result = [](int operation) { return operation == als_once ? 1000 : operation == ir_once ? 250 : 4096; };
  collect(3);
  EXPECT_EQ(store.Sample_Value[0], 34160);
}

// The workbook works the lux out, so the reading is none any more.
TEST_P(Cover, ALightThatIsChosenUnderACoverIsNoReadingInLuxInACollection) {
  put_on();
  measure_by(Position::als_once);
  EXPECT_EQ(store.LuxMode, -1);
  Flag seen = -1;
  result = [this, &seen](int operation) {
    if (operation == ir_once) seen = store.LuxMode;
    return operation == als_once ? 1000 : 250;
  };
  collect(3);
  EXPECT_EQ(seen, 0);
}

// The last difference of a pair stands in the boxes, where there is one; the covered light is measured behind
// it.
TEST_P(Cover, ATimedRunMeasuresItBehindEachSample) {
  put_on();
  light_and_infrared(1000, 250);
  EXPECT_EQ(traffic_of_a_sample(), "r0=20 read2 r0=40 read2");
  EXPECT_EQ(label(3), "34160");
  EXPECT_FALSE(panel->txtADDec.Visible);
  EXPECT_FALSE(panel->txtADHex.Visible);
  EXPECT_EQ(store.Sample_Value[3], 1);
  EXPECT_EQ(panel->txtADDec.Text, "1");
  panel->txtProx_IR(6).Text = "123";
  sample(3);
  EXPECT_EQ(store.Sample_Value[2], 123);
  EXPECT_EQ(panel->txtADHex.Text, "123");
  EXPECT_EQ(panel->txtADDec.Text, "123");
}

INSTANTIATE_TEST_SUITE_P(Each, Cover, ::testing::Values("frmKVT71385", "frmKVT71388"), panel_name);

struct WithoutCover : MultiFunctionLoop, ::testing::WithParamInterface<std::string> {};

TEST_P(WithoutCover, HasNothingOfIt) {
  open(GetParam());
  for (const char* name : {"ChkCover", "Frame12", "cmdALS_IR"}) EXPECT_EQ(panel->find(name), nullptr) << name;
  EXPECT_FALSE(panel->cover.has_value());
}
INSTANTIATE_TEST_SUITE_P(Each, WithoutCover, ::testing::Values("frmKVT71390", "frmKVT71392"), panel_name);

}  // namespace
}  // namespace varzelin::testing
