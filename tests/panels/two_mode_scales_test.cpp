// The scales, words and delays of the two-mode panels that follow their options.
#include "support/two_mode_fixture.h"

namespace varzelin::testing {
namespace {

struct TwoModeScales : TwoModeTest {
  void expect_scale(const std::string& maximum, const std::string& minimum) {
    EXPECT_EQ(panel->txtScale.Text, maximum);
    EXPECT_EQ(panel->txtScaleMin.Text, minimum);
    EXPECT_EQ(store.Scale_Max, std::stoi(maximum) + 1);
    EXPECT_EQ(store.Scale_Min, std::stoi(minimum));
  }
};
using TwoModeLightScales = Kvt71374;

// --- width ---

TEST_P(TwoModeScales, TheWidthTakesCountDelayAndScalesWithIt) {
  struct Width {
    int position, bits, full_count, delay;
    const char* tenth;
    const char* end;
  };
  for (const Width& w : {Width{1, 12, 4095, 8, "410", "4100"}, Width{2, 8, 256, 2, "26", "260"},
                         Width{3, 4, 16, 2, "2", "20"}, Width{0, 16, 65535, 118, "6554", "65540"}}) {
    SCOPED_TRACE(w.bits);
    click(panel->OptITime(w.position));
    EXPECT_EQ(store.AdcBits, w.bits);
    EXPECT_EQ(store.FullCount, w.full_count);
    EXPECT_EQ(store.SampleDelayMs, w.delay);
    EXPECT_EQ(panel->txtInterval.Text, std::to_string(w.delay + 2));
    EXPECT_EQ(panel->txtSampling_Delay.Text, std::to_string(w.delay));
    EXPECT_EQ(panel->txtScale2.Text, std::to_string(w.full_count));
    EXPECT_EQ(store.Label_Right[0], "0");
    EXPECT_EQ(store.Label_Right[1], w.tenth);
    EXPECT_EQ(store.Label_Right[10], w.end);
    EXPECT_EQ(store.Label_Left[10], w.end);
    EXPECT_EQ(panel->txtScale.Text, std::to_string(w.full_count));
    EXPECT_EQ(store.Scale_Max, w.full_count + 1);
  }
}

TEST_P(TwoModeScales, AWidthInALoopChangesTheScaleAtOnce) {
  select(measure::infrared);
  collect_and(3, [&] {
    forms::user::click(panel->OptITime(1));
    EXPECT_EQ(panel->txtInterval.Text, "10");
    EXPECT_EQ(panel->txtScale.Text, "4095");
    EXPECT_EQ(store.FullCount, 4095);
  });
}

// --- range ---

TEST_P(TwoModeScales, ARangeWithoutLightKeepsTheCountsAndDrawsTheChartAnew) {
  click(panel->OptITime(1));
  panel->txtScale.Text = "77";
  panel->Picture1.SetPixelV(3, 5, 0x0000FF);
  click(panel->OptGain(2));
  EXPECT_EQ(panel->txtScale.Text, "4095");
  EXPECT_EQ(store.Scale_Max, 4096);
  EXPECT_EQ(panel->Picture1.GetPixel(3, 5), 0xFFFFFF);
}

TEST_F(TwoModeLightScales, ALightReadingHasTheScaleOfItsRange) {
  for (const int once : {measure::light_once, measure::light}) {
    click(panel->OptMeasure(once));
    for (const auto& [position, lux] :
         {std::pair{1, "4000"}, std::pair{2, "16000"}, std::pair{3, "64000"}, std::pair{0, "1000"}}) {
      click(panel->OptGain(position));
      EXPECT_EQ(panel->txtScale.Text, lux);
      EXPECT_EQ(store.Scale_Max, std::stoi(lux) + 1);
    }
    click(panel->OptITime(2));
    EXPECT_EQ(panel->txtScale.Text, "1000");
    EXPECT_EQ(panel->txtScale2.Text, "256");
    EXPECT_EQ(store.Label_Right[10], "260");
  }
}

TEST_F(TwoModeLightScales, TheResistorScalesTheRange) {
  store.ResistorScale = 250000;
  click(panel->OptMeasure(measure::light));
  EXPECT_EQ(panel->txtScale.Text, "2000");
}

// --- operation ---

// What a position makes of the panel, under scheme 0. The words of OptGraph; those of Label16 are the same
// but for the first two.
struct Position {
  int index;
  const char* frame;
  const char* graph;
  const char* reading;
  const char* unit1;
  const char* unit2;
  Flag lux, proximity, pair, filtered;
};
constexpr Position positions[]{
    {0, "No Measurement:Power Down", "ADC Count", "ADC Reading", "AD Cnt", "AD Cnt", 0, 0, 0, 0},
    {1, "Read ALS Once ", "Lux Count", "Lux Reading", "Lux", "AD Cnt", -1, 0, 0, 0},
    {2, "Read IR Once", "ADC Count", "ADC Reading", "AD Cnt", "AD Cnt", 0, 0, 0, 0},
    {3, "Read Prox. Once", "ADC Count", "ADC Reading", "AD Cnt", "AD Cnt", 0, -1, 0, 0},
    {4, "Read Prox-IR Once", "Prox-IR", "Prox-IR", "Prox-IR", "Prox-IR", 0, 0, -1, 0},
    {5, "ALS Continuous", "Lux Count", "Lux Reading", "Lux", "AD Cnt", -1, 0, 0, 0},
    {6, "IR Continuous", "ADC Count", "ADC Reading", "AD Cnt", "AD Cnt", 0, 0, 0, 0},
    {7, "Prox Continuous", "ADC Count", "ADC Reading", "AD Cnt", "AD Cnt", 0, -1, 0, 0},
    {8, "Prox-IR Continuous", "Prox-IR", "Prox-IR", "Prox-IR", "Prox-IR", 0, 0, -1, 0},
    {9, "Prox-IR ADJ Continuous", "Prox-IR-ADJ", "Prox-IR-ADJ", "Prox-IR", "Prox-IR", 0, 0, -1, -1},
};

TEST_P(TwoModeScales, AnOperationTakesFlagsAndWordsWithIt) {
  for (const int stride : {1, 3}) {  // in two orders, so that each has another one before it
    for (int i = 0; i < 10; ++i) {
      const Position& p = positions[i * stride % 10];
      if (!panel->find("OptMeasure", p.index)) continue;
      SCOPED_TRACE(p.index);
      panel->Frame14.Visible = panel->FrProxIRStab.Visible = true;
      click(panel->OptMeasure(p.index));
      EXPECT_EQ(panel->Frame3.Caption, p.frame);
      EXPECT_EQ(panel->OptGraph(0).Caption, p.graph);
      EXPECT_EQ(panel->Label16.Caption, p.reading);
      EXPECT_EQ(store.GraphUnit1, p.unit1);
      EXPECT_EQ(store.GraphUnit2, p.unit2);
      EXPECT_EQ(store.LuxMode, p.lux);
      EXPECT_EQ(store.ProxMode, p.proximity);
      EXPECT_EQ(store.ProxIRMode, p.pair);
      EXPECT_EQ(store.ProxAdjMode, p.filtered);
      EXPECT_EQ(store.OneShotMode, flag(p.index < 5));
      EXPECT_EQ(panel->Label9(0).Caption, p.index < 5 ? "Delay Command to Sample" : "Delay Between Samples");
      EXPECT_EQ(panel->Label36.Visible, p.lux != 0);
      EXPECT_EQ(panel->txtADCRaw.Visible, p.lux != 0);
      EXPECT_EQ(panel->Frame12.Visible, p.filtered != 0);
      EXPECT_EQ(panel->Frame10.Visible, p.pair != 0);
      EXPECT_FALSE(panel->Frame14.Visible);
      EXPECT_FALSE(panel->FrProxIRStab.Visible);
      expect_scale(p.lux ? "1000" : "65535", "0000");
    }
  }
}

TEST_P(TwoModeScales, UnderScheme1ProximityHasASignAndNothingElse) {
  for (const Position& p : positions) {
    if (!panel->find("OptMeasure", p.index)) continue;
    SCOPED_TRACE(p.index);
    scheme1();
    click(panel->OptMeasure(p.index));
    const bool has_sign = p.proximity != 0 || p.pair != 0;
    expect_scale(p.lux ? "1000" : "65535", has_sign ? "-65535" : "0000");
    EXPECT_EQ(store.RegImage[0] & 1, has_sign);
    // As narrow as the manual scale makes it.
    if (has_sign) {
      EXPECT_EQ(store.Scale_Span, 1);
    }
  }
}

TEST_P(TwoModeScales, TheSchemeHasAScaleOfItsOwn) {
  scheme1();
  EXPECT_EQ(store.ProxScheme, 1);
  EXPECT_EQ(panel->txtScaleMin.Text, "-25000");
  EXPECT_EQ(panel->txtScale.Text, "25000");
  EXPECT_EQ(store.Scale_Min, -25000);
  EXPECT_EQ(store.Scale_Max, 25001);
  click(panel->OptIRMode(0));
  EXPECT_EQ(store.ProxScheme, 0);
  EXPECT_EQ(panel->txtScaleMin.Text, "0000");
  EXPECT_EQ(panel->txtScale.Text, "25000");
  EXPECT_EQ(store.Scale_Min, 0);
  EXPECT_EQ(store.Scale_Max, 25001);
}

// --- what follows by itself ---

TEST_P(TwoModeScales, EachAutomaticModeShowsAndHidesTheFractions) {
  click(panel->OptGainMode(1));
  EXPECT_EQ(store.GainAuto, -1);
  EXPECT_EQ(store.IrdrAuto, 0);
  EXPECT_TRUE(panel->Frame14.Visible);
  click(panel->OptIRDRMode(1));
  EXPECT_EQ(store.GainAuto, -1);
  EXPECT_EQ(store.IrdrAuto, -1);
  // Though the other one is still automatic.
  click(panel->OptGainMode(0));
  EXPECT_EQ(store.GainAuto, 0);
  EXPECT_EQ(store.IrdrAuto, -1);
  EXPECT_FALSE(panel->Frame14.Visible);
  click(panel->OptIRDRMode(0));
  EXPECT_EQ(store.IrdrAuto, 0);
  EXPECT_TRUE(sent().empty());
}

TEST_P(TwoModeScales, TheStabilityBoxShowsItsSettings) {
  click(panel->ChStab);
  EXPECT_TRUE(panel->txtStabDif.Visible && panel->txtStabDelay.Visible);
  click(panel->ChStab);
  EXPECT_FALSE(panel->txtStabDif.Visible || panel->txtStabDelay.Visible);
}

TEST_P(TwoModeScales, AClickIntoTheScaleBoxStopsNothing) {
  select(measure::infrared);
  collect_and(3, [&] {
    forms::user::click(panel->txtScale);
    EXPECT_EQ(store.Sample_Run, -1);
  });
  EXPECT_GE(store.Sample_Count, 6);
}

ON_BOTH_MODELS(TwoModeScales);

}  // namespace
}  // namespace varzelin::testing
