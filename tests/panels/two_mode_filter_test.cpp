// The proximity filter of the two-mode panels in their real-time loop: what it makes of the sensor's replies,
// in boxes, lamps and samples.
#include "support/two_mode_fixture.h"

namespace varzelin::testing {
namespace {

struct TwoModeFilter : TwoModeTest {
  // As it was when a sample began, by its number: behind the pass of the sample before.
  struct Seen {
    std::map<int, int> lamps;
    std::string max_change, rejections, corrected;
    bool delta_lamp_shown;
    std::int32_t reading;
  };
  std::map<int, Seen> seen;

  void SetUp() override {
    TwoModeTest::SetUp();
    select(measure::filtered);
  }
  // A collection in which each sample's pair comes of its number: proximity and infrared.
  void filter(std::int32_t count, const std::function<std::pair<int, int>(int)>& pair_of) {
    replying_pairs();
    recorder.before_call = [this, &pair_of, reply = recorder.before_call] {
      const auto [proximity, infrared] = pair_of(store.Sample_Count);
      proximity_count = proximity;
      infrared_count = infrared;
      if (store.Man_Usb_Conn == -1) look();
      reply();
    };
    run(count);
    recorder.before_call = nullptr;
  }
  void look() {
    if (seen.contains(store.Sample_Count)) return;
    Seen& now = seen[store.Sample_Count];
    for (const int lamp : {6, 7, 13, 14, 15, 16, 17, 18, 19}) now.lamps[lamp] = lamp_of(lamp);
    now.max_change = panel->filter.txtMaxChange.Text;
    now.rejections = panel->filter.lblProxOvercount.Caption;
    now.corrected = panel->filter.txtProxADJ.Text;
    now.delta_lamp_shown = panel->ShpInd(14).Visible;
    now.reading = store.Reading;
  }
  std::int32_t value(int sample) const { return store.Sample_Value[static_cast<std::size_t>(sample)]; }
  // As sample `number` left it.
  Seen& behind(int number) { return seen.at(number + 1); }
};

TEST_P(TwoModeFilter, FirstLook) {
  const FilterBlock& f = panel->filter;
  EXPECT_EQ(f.txtProxLowLimit.Text, "5");
  EXPECT_EQ(f.txtProxLowLimit.ToolTipText, "Minimum Proximity Level");
  EXPECT_EQ(f.txtProxHighLimit.Text, "4000");
  EXPECT_EQ(f.txtProxHighLimit.ToolTipText, "Maximum Proximity Level ");
  EXPECT_EQ(f.txtProxDelta.Text, "30");
  EXPECT_EQ(f.txtProxDelta.ToolTipText, "Maximum acceptable change in Prox-IR from one reading to the next.");
  EXPECT_EQ(f.txtProxConstant.Text, ".200");
  EXPECT_EQ(f.txtProxConstant.ToolTipText, "IR Compensation amount");
  EXPECT_EQ(f.txtCorrectThreshold.Text, "100");
  EXPECT_EQ(f.txtCorrectThreshold.ToolTipText, "IR level for calculated vs. Fixed IR Correction");
  EXPECT_EQ(f.txtCorrectionConstant.Text, "-50");
  EXPECT_EQ(f.txtProx_Weight.Text, "4");
  EXPECT_EQ(f.txtProx_Weight.ToolTipText, "Constant used for Weighted average Calcuations ");
  EXPECT_EQ(f.txtProxGrossDelta.Text, "10");
  EXPECT_EQ(f.txtHighThreshold.Text, "3500");
  EXPECT_EQ(f.txtLowThreshold.Text, "1800");
}

TEST_P(TwoModeFilter, TheFirstFourPassesOnlyPrimeIt) {
  store.Reading = 7;
  filter(6, [](int sample) { return std::pair{1000 + sample, 50}; });
  for (int sample = 0; sample < 4; ++sample) {
    EXPECT_EQ(value(sample), 1) << sample;
    EXPECT_EQ(behind(sample).corrected, std::to_string(940 + sample) + ".");
    EXPECT_EQ(behind(sample).lamps[6], behind(0).lamps[6]);
    EXPECT_EQ(behind(sample).reading, 7);
  }
  EXPECT_EQ(value(4), 944);
  EXPECT_EQ(behind(4).lamps[6], 10);
}

TEST_P(TwoModeFilter, InfraredIsTakenOutByFormulaOrByAFixedAmount) {
  filter(8, [](int sample) { return std::pair{1000, sample < 6 ? 99 : 100}; });
  EXPECT_EQ(behind(4).corrected, "881.");  // 901 - 19.8
  EXPECT_EQ(behind(4).lamps[13], 10);
  EXPECT_EQ(behind(4).lamps[19], 0);
  EXPECT_EQ(behind(6).corrected, "850.");
  EXPECT_EQ(behind(6).lamps[13], 0);
  EXPECT_EQ(behind(6).lamps[19], 10);
}

TEST_P(TwoModeFilter, ReadingsAreAveragedByTheirWeight) {
  filter(6, [](int sample) { return sample < 5 ? std::pair{1000, 50} : std::pair{1100, 70}; });
  EXPECT_EQ(value(4), 940);
  // (940 x 4 + 1030 - 14) / 5
  EXPECT_EQ(value(5), 955);
  EXPECT_NEAR(store.ProxAdjPrev, 967.36, 1e-9);  // and once more in the pass that is stopped
  filter(6, [](int sample) { return sample < 5 ? std::pair{1000, 50} : std::pair{1100, 70}; });
  EXPECT_EQ(value(4), 940);
}

TEST_P(TwoModeFilter, TheAveragesAreShown) {
  panel->filter.txtProx_Weight.Text = "1";
  filter(5, [](int sample) { return sample < 5 ? std::pair{1000, 50} : std::pair{1101, 70}; });
  // The pass that is stopped is the fifth.
  EXPECT_EQ(panel->filter.txtPROXGross(0).Text, "979");  // (940 + 1017) / 2
  EXPECT_EQ(panel->filter.txtPROXGross(1).Text, "1050");
  EXPECT_EQ(panel->filter.txtPROXGross(2).Text, "60");
  EXPECT_EQ(store.Reading, 978);
  EXPECT_EQ(panel->txtADCRaw.Text, "978");
  EXPECT_EQ(store.TripReading, 1017);
}

TEST_P(TwoModeFilter, TheReadingIsTheSampleTimesItsFactor) {
  store.GainMultiplier = 2;
  filter(5, [](int) { return std::pair{1000, 50}; });
  EXPECT_EQ(value(4), 940);
  EXPECT_EQ(store.Reading, 1880);
  EXPECT_EQ(store.RawReading, 1880);
}

// --- rejection ---

TEST_P(TwoModeFilter, OutsideItsLimitsTheLastAcceptedReadingIsTaken) {
  filter(9, [](int sample) {
    if (sample == 5) return std::pair{4001, 0};
    if (sample == 6) return std::pair{4000, 4001};
    if (sample == 7) return std::pair{40, 35};
    return std::pair{1000, 50};
  });
  for (const int sample : {4, 5, 6, 7, 8}) EXPECT_EQ(value(sample), 940) << sample;
  EXPECT_EQ(behind(4).lamps[6], 10);
  EXPECT_EQ(behind(4).lamps[7], 10);
  EXPECT_EQ(behind(5).lamps[6], 12);
  EXPECT_EQ(behind(5).lamps[7], 10);
  EXPECT_EQ(behind(6).lamps[6], 12);
  EXPECT_EQ(behind(6).lamps[7], 12);
  EXPECT_EQ(behind(7).lamps[6], 10);
  EXPECT_EQ(behind(7).lamps[7], 12);
  EXPECT_EQ(behind(8).lamps[7], 10);
  EXPECT_EQ(behind(7).rejections, "0");
}

TEST_P(TwoModeFilter, AChangeThatIsTooLargeIsRejectedUntilItLasts) {
  filter(18, [](int sample) { return std::pair{sample < 6 ? 1000 : 3000, 50}; });
  EXPECT_EQ(behind(5).max_change, "282.");
  EXPECT_EQ(behind(5).lamps[14], 10);
  EXPECT_FALSE(behind(5).delta_lamp_shown);
  for (int sample = 6; sample < 16; ++sample) {
    EXPECT_EQ(value(sample), 940) << sample;
    EXPECT_EQ(behind(sample).rejections, std::to_string(sample - 5));
    EXPECT_EQ(behind(sample).lamps[14], 12);
    EXPECT_TRUE(behind(sample).delta_lamp_shown);
  }
  // Ten are the gross delta. One more is a new base.
  EXPECT_EQ(value(16), 2940);
  EXPECT_EQ(behind(16).rejections, "0");
  EXPECT_NE(behind(16).lamps[15], behind(15).lamps[15]);
  EXPECT_EQ(behind(16).lamps[15], 10);
  EXPECT_EQ(value(17), 2940);
  EXPECT_EQ(behind(17).max_change, "882.");
}

TEST_P(TwoModeFilter, AChangeWithinItsPartSetsTheCountBack) {
  filter(10, [](int sample) { return std::pair{sample == 6 || sample == 7 ? 3000 : 1000, 50}; });
  EXPECT_EQ(behind(7).rejections, "2");
  EXPECT_EQ(behind(8).rejections, "0");
  EXPECT_EQ(value(8), 940);
}

// Thirty percent of 200 are below 100 counts.
TEST_P(TwoModeFilter, SmallReadingsAreNeverRejectedForTheirChange) {
  filter(7, [](int sample) { return std::pair{sample < 5 ? 200 : 3000, 0}; });
  EXPECT_EQ(value(4), 200);
  EXPECT_EQ(value(5), 760);  // (200 x 4 + 3000) / 5
  EXPECT_EQ(behind(5).max_change, "60.");
  EXPECT_EQ(behind(5).rejections, "0");
}

// Its difference counts as 0, and its counts are beyond the limit.
TEST_P(TwoModeFilter, OutOfRangeAPairIsRejected) {
  filter(8, [](int sample) { return std::pair{sample == 6 ? 65535 : 1000, 50}; });
  EXPECT_EQ(behind(6).corrected, "-10.");
  EXPECT_EQ(behind(6).lamps[6], 12);
  EXPECT_EQ(value(6), 940);
  EXPECT_EQ(value(7), 940);
}

TEST_P(TwoModeFilter, ItsSettingsAreReadInEachPass) {
  filter(9, [&](int sample) {
    panel->filter.txtProxHighLimit.Text = sample == 6 ? "999" : "1000";
    return std::pair{1000, 50};
  });
  EXPECT_EQ(behind(5).lamps[6], 10);
  EXPECT_EQ(behind(6).lamps[6], 12);
  EXPECT_EQ(behind(7).lamps[6], 10);
}

TEST_P(TwoModeFilter, ACollectionBeginsWithoutAnAcceptedReading) {
  filter(6, [](int) { return std::pair{3000, 0}; });
  seen.clear();
  // A change that would be rejected, had the collection before counted.
  filter(6, [](int) { return std::pair{500, 0}; });
  EXPECT_EQ(value(4), 500);
}

// --- thresholds ---

TEST_P(TwoModeFilter, ThresholdLamps) {
  struct Case {
    int proximity, below, between, above;  // 9: unchanged
  };
  for (const Case& c : {Case{3501, 0, 0, 10}, Case{3500, 9, 9, 9}, Case{3499, 0, 10, 0}, Case{1801, 0, 10, 0},
                        Case{1800, 9, 9, 9}, Case{1799, 10, 0, 0}}) {
    seen.clear();
    for (const int lamp : {16, 17, 18}) panel->ShpInd(lamp).FillColor = forms::QBColor(9);
    filter(6, [&c](int) { return std::pair{c.proximity, 0}; });
    EXPECT_EQ(behind(3).lamps[16], 9);
    EXPECT_EQ(behind(4).lamps[16], c.below) << c.proximity;
    EXPECT_EQ(behind(4).lamps[17], c.between) << c.proximity;
    EXPECT_EQ(behind(4).lamps[18], c.above) << c.proximity;
  }
}

TEST_P(TwoModeFilter, TheLampOfItsPlaceMoves) {
  filter(8, [](int) { return std::pair{3600, 0}; });
  EXPECT_EQ(behind(4).lamps[18], 10);
  EXPECT_EQ(behind(5).lamps[18], 2);
  EXPECT_EQ(behind(6).lamps[18], 10);
}

ON_BOTH_MODELS(TwoModeFilter);

}  // namespace
}  // namespace varzelin::testing
