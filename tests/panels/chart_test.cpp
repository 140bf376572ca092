// The buttons around every panel's chart.
#include "support/panel_fixture.h"

#include "waveform/trace.h"

namespace varzelin::testing {
namespace {

constexpr std::int32_t red = 0x0000FF;

struct PanelChart : PanelTest {
  int yields = 0;

  void samples(std::initializer_list<std::int32_t> values) {
    store.Sample_Value.fill(1);
    std::ranges::copy(values, store.Sample_Value.begin());
    store.Sample_Count = static_cast<std::int32_t>(values.size());
  }
  // A collection that isn't to start is stopped at once.
  void count_yields() {
    user.at_yield = [this] {
      ++yields;
      if (store.Sample_Run == -1) program.runtime.post(clicking(panel.cmdStopData));
    };
  }
};
// Of those that go by the greatest sample.
struct PanelAutomaticScale : PanelChart {
  void SetUp() override { make_measure(); }
};

TEST_P(PanelChart, InitDrawsAndSavesOverWhatIsThere) {
  panel.Picture1.Cls();
  panel.Picture1.SetPixelV(41, 5, red);
  store.Label_Left[0] = "77";
  click(panel.cmdWaveformINit);
  EXPECT_EQ(panel.Picture1.GetPixel(40, 5), 0);
  EXPECT_EQ(store.Screen_Pixels[41][5], red);
  EXPECT_EQ(store.Screen_Pixels[40][5], 0);
  EXPECT_EQ(panel.Picture2.printed()[0].text, "00077");
}

TEST_P(PanelChart, TheTestPatternIsEightSteps) {
  store.Trace_Y.fill(5);
  click(panel.cmdDrawTrace);
  const std::array rows{274, 243, 213, 182, 152, 122, 91, 61};
  for (std::size_t column = 0; column < 411; ++column) {
    const int row = column < 400 ? rows[column / 50] : 1;
    ASSERT_EQ(store.Trace_Y[column], row) << column;
    if (column < 403) {
      for (const int y : {row - 1, row, row + 1}) {
        ASSERT_EQ(panel.Picture1.GetPixel(static_cast<int>(column), y), red) << column;
      }
    }
  }
}

TEST_P(PanelChart, ManualScaleTakesTheBoxes) {
  panel.txtScale.Text = "9994.5";  // 9995.5 goes to the even 9996
  panel.txtScaleMin.Text = "100";
  store.Label_Right.fill("5");
  panel.Picture1.SetPixelV(41, 5, red);
  store.Trace_Y[7] = 99;
  click(panel.cmdScale);
  EXPECT_EQ(store.Scale_Max, 9996);
  EXPECT_EQ(store.Scale_Min, 100);
  EXPECT_EQ(store.Scale_Span, 9896);
  EXPECT_EQ(store.Label_Left[0], "100");
  EXPECT_EQ(store.Label_Left[10], "10000");  // 100 + 10 x 990
  EXPECT_EQ(store.Label_Right[3], "5");
  EXPECT_EQ(panel.Picture2.printed()[0].text, "00100");
  EXPECT_EQ(panel.Picture1.GetPixel(41, 5), 0xFFFFFF);
  EXPECT_EQ(store.Trace_Y[7], 99);
  EXPECT_TRUE(recorder.calls.empty());
}

TEST_P(PanelChart, ANegativeMinimumNarrowsTheManualSpan) {
  panel.txtScale.Text = "999";
  panel.txtScaleMin.Text = "-250";
  click(panel.cmdScale);
  EXPECT_EQ(store.Scale_Min, -250);
  EXPECT_EQ(store.Scale_Span, 750);
  EXPECT_EQ(store.Label_Left[0], "-250");
  EXPECT_EQ(store.Label_Left[10], "500");
  EXPECT_EQ(panel.Picture2.printed()[0].text, "-00250");
}

TEST_P(PanelChart, TheStepOfTheLabelsIsRoundedToTheEvenNumber) {
  panel.txtScale.Text = "24";
  click(panel.cmdScale);
  EXPECT_EQ(store.Label_Left[1], "2");
  panel.txtScale.Text = "34";
  click(panel.cmdScale);
  EXPECT_EQ(store.Label_Left[1], "4");
}

TEST_P(PanelChart, TextsThatAreNoScaleCountAsZero) {
  panel.txtScale.Text = "";
  panel.txtScaleMin.Text = "none";
  click(panel.cmdScale);
  EXPECT_EQ(store.Scale_Max, 1);
  EXPECT_EQ(store.Scale_Min, 0);
  EXPECT_EQ(store.Scale_Span, 1);
  EXPECT_TRUE(user.errors.empty());
}

TEST_P(PanelChart, ScalesBeyondThePlatformsIntegersAreReported) {
  panel.txtScale.Text = "2147483647";
  click(panel.cmdScale);
  panel.txtScale.Text = "1";
  panel.txtScaleMin.Text = "-99999999999";
  click(panel.cmdScale);
  panel.txtScale.Text = "-2147483649";
  panel.txtScaleMin.Text = "-2147483648";
  click(panel.cmdScale);
  EXPECT_EQ(user.errors, (std::vector<int>{forms::overflow, forms::overflow, forms::overflow}));
}

TEST_P(PanelChart, AutomaticScaleNeedsSixSamples) {
  samples({1, 2, 3, 4, 5});
  const std::string scale = panel.txtScale.Text.get();
  const std::string unit = store.GraphUnit1;
  count_yields();
  click(panel.cmdAutoScale);
  EXPECT_EQ(yields, 1);
  EXPECT_EQ(store.GraphUnit1, unit);
  EXPECT_EQ(panel.txtScale.Text, scale);
  EXPECT_TRUE(recorder.calls.empty());
}

TEST_P(PanelChart, AutomaticScaleNeedsALastSampleThatIsNotZero) {
  samples({1, 2, 3, 4, 5, 6, 0});
  count_yields();
  click(panel.cmdAutoScale);
  EXPECT_EQ(yields, 1);
  EXPECT_TRUE(recorder.calls.empty());
}

TEST_P(PanelChart, AutomaticScaleWithoutAnySampleDoesNothing) {
  store.Sample_Count = 0;
  store.Sample_Value.fill(0);
  click(panel.cmdAutoScale);
  EXPECT_TRUE(recorder.calls.empty());
  EXPECT_TRUE(user.errors.empty());
}

// The last sample is the slot below the count, slot 0 stays out of the maximum, the slot of the count
// is in it.
TEST_P(PanelAutomaticScale, IsAFifteenthAboveTheGreatestSample) {
  samples({9000, 0, 0, 0, 0, 200});
  store.Sample_Value[6] = 1003;
  store.Scale_Min = -5;
  bool begun = false;
  at_yield([&] { return store.Man_Usb_Conn == -1; },
           [&] {
             begun = true;
             EXPECT_EQ(store.Sample_Value[0], 1);
             EXPECT_EQ(panel.txtScale.Text, "1153");  // 1.15 x 1003 = 1153.45
             EXPECT_EQ(panel.txtScaleMin.Text, "0");
             EXPECT_EQ(store.Scale_Min, 0);
             EXPECT_EQ(store.Label_Left[0], "0");
             EXPECT_EQ(store.Label_Left[10], "1150");  // the step is 1154 / 10
             EXPECT_EQ(store.Label_Right, store.Label_Left);
             EXPECT_EQ(store.GraphUnit1, "Scaled");
             EXPECT_EQ(store.GraphUnit2, "Scaled");
             EXPECT_EQ(panel.Picture2.printed()[20].text, "01150");
             // What the collection took from the box.
             EXPECT_EQ(store.Scale_Max, static_cast<int>(1153 + panel.model.scale_addition));
             forms::user::click(panel.cmdStopData);
           });
  click(panel.cmdAutoScale);
  EXPECT_TRUE(begun);
  expect_ended();
}

TEST_P(PanelAutomaticScale, LetsTheLoopLeaveForAHundredYields) {
  samples({1, 1, 1, 1, 1, 1});
  store.Sample_Run = -1;
  int stopped = 0;
  user.at_yield = [&] {
    if (offered(panel.cmdStopData)) {
      if (store.Man_Usb_Conn == -1 && store.Sample_Run == -1) {
        program.runtime.post(clicking(panel.cmdStopData));
      }
    } else if (panel.Label18.Caption == "") {
      stopped += store.Sample_Run == 0 && recorder.calls.empty();
    }
  };
  click(panel.cmdAutoScale);
  // A panel that sets its sensor up yields some more before that reaches the bus.
  EXPECT_EQ(stopped, has_converter() ? 103 : 100);
}

TEST_P(PanelChart, SaveKeepsMarksThatClearLeaves) {
  panel.Picture1.SetPixelV(41, 5, red);
  click(panel.cmdSaveScreen);
  EXPECT_TRUE(panel.cmdSaveScreen.Enabled);
  panel.Picture1.SetPixelV(41, 6, red);
  click(panel.cmdRestoreScreen);
  EXPECT_EQ(panel.Picture1.GetPixel(41, 5), red);
  EXPECT_EQ(panel.Picture1.GetPixel(41, 6), 0xFFFFFF);
}

TEST_P(PanelChart, ClearWaitsThenEnablesOnlyTheStartButton) {
  count_yields();
  const double start = clock.milliseconds();
  click(panel.cmdRestoreScreen);
  EXPECT_EQ(yields, 2000);
  EXPECT_NEAR(clock.milliseconds() - start, 102, 0.01);
  EXPECT_TRUE(panel.cmdRestoreScreen.Enabled);
  EXPECT_TRUE(panel.cmdCollectData.Enabled);
  EXPECT_FALSE(panel.cmdStopData.Enabled);
}

TEST_P(PanelChart, ClearStopsACollection) {
  make_measure();
  at_yield(count_reaches(15), [&] {
    forms::user::click(panel.cmdRestoreScreen);
    EXPECT_TRUE(panel.cmdCollectData.Enabled);
  });
  click(panel.cmdCollectData);
  expect_ended();
  EXPECT_FALSE(panel.cmdStopData.Enabled);
}

INSTANTIATE_TEST_SUITE_P(Each, PanelChart, ::testing::ValuesIn(every_panel()), panel_name);
INSTANTIATE_TEST_SUITE_P(Each, PanelAutomaticScale,
                         ::testing::ValuesIn(every_panel_but(frmKVT71338::form_name)), panel_name);

}  // namespace
}  // namespace varzelin::testing
