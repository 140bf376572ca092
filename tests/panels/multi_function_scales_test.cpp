// The chart's scales and the limits' bounds of the multi-function panels, which follow width, scheme, range
// and operation.
#include "support/multi_function_fixture.h"
#include "waveform/trace.h"

namespace varzelin::testing {
namespace {

// What was clicked since the load, and how boxes, bounds and words stand then.
struct Step {
  const char* control;
  int index;
};
struct Case {
  std::vector<Step> steps;
  const char* scales;  // upper end left and right, lower end left and right
  const char* bounds;
  const char* words;
};
const std::vector<Case> cases{
    {{}, "4096 4096 0 0", "0 4096", "12 Bits"},
    {{{"OptITime", 0}}, "65536 65536 0 0", "0 65536", "16 Bits"},
    {{{"OptITime", 1}}, "4096 4096 0 0", "0 4096", "12 Bits"},
    // The short widths leave bounds and words as they are, and the left side with them.
    {{{"OptITime", 2}}, "4096 256 0 0", "0 4096", "12 Bits"},
    {{{"OptITime", 3}}, "4096 16 0 0", "0 4096", "12 Bits"},
    {{{"OptITime", 0}, {"OptITime", 2}}, "65536 256 0 0", "0 65536", "16 Bits"},
    {{{"OptITime", 0}, {"OptITime", 3}}, "65536 16 0 0", "0 65536", "16 Bits"},
    {{{"OptITime", 0}, {"OptITime", 1}}, "4096 4096 0 0", "0 4096", "12 Bits"},
    // The scheme: half the counts and a fixed lower end. The bounds follow with the next width.
    {{{"OptIRMode", 1}}, "2048 2048 -100 -100", "0 4096", "12 Bits"},
    {{{"OptIRMode", 1}, {"OptITime", 1}}, "2048 4096 -100 -100", "-100 2048", "12 Bits"},
    {{{"OptITime", 0}, {"OptIRMode", 1}}, "32768 32768 -100 -100", "0 65536", "16 Bits"},
    {{{"OptIRMode", 1}, {"OptITime", 0}}, "32768 65536 -100 -100", "-100 32768", "16 Bits"},
    {{{"OptITime", 2}, {"OptIRMode", 1}}, "128 128 -100 -100", "0 4096", "12 Bits"},
    {{{"OptITime", 3}, {"OptIRMode", 1}}, "8 8 -100 -100", "0 4096", "12 Bits"},
    {{{"OptIRMode", 1}, {"OptITime", 2}}, "4096 256 0 0", "0 4096", "12 Bits"},
    {{{"OptIRMode", 1}, {"OptITime", 1}, {"OptITime", 3}}, "2048 16 -100 -100", "-100 2048", "12 Bits"},
    {{{"OptIRMode", 1}, {"OptITime", 1}, {"OptIRMode", 0}}, "4096 4096 0000 0", "-100 2048", "12 Bits"},
    {{{"OptITime", 0}, {"OptIRMode", 0}}, "65536 65536 0000 0", "0 65536", "16 Bits"},
    // The range takes the bounds.
    {{{"OptITime", 2}, {"OptGain", 1}}, "4096 4096 0 0", "0 4096", "12 Bits"},
    {{{"OptIRMode", 1}, {"OptGain", 1}}, "4096 4096 0 0", "0 4096", "12 Bits"},
    {{{"OptIRMode", 1}, {"OptITime", 1}, {"OptGain", 3}}, "2048 2048 -100 -100", "-100 2048", "12 Bits"},
    // An operation runs width and range over again.
    {{{"OptMeasure", 6}}, "4096 4096 0 0", "0 4096", "12 Bits"},
    {{{"OptMeasure", 7}}, "2048 2048 -100 -100", "-100 2048", "12 Bits"},
    {{{"OptITime", 0}, {"OptMeasure", 7}}, "32768 32768 -100 -100", "-100 32768", "16 Bits"},
    {{{"OptITime", 2}, {"OptMeasure", 7}}, "4096 4096 0 0", "0 4096", "12 Bits"},
    {{{"OptMeasure", 7}, {"OptMeasure", 6}}, "4096 4096 0 0", "0 4096", "12 Bits"},
    // Light is in lux at the left.
    {{{"OptMeasure", 5}}, "1000 4096 0 0", "0 4096", "12 Bits"},
    {{{"OptMeasure", 1}}, "1000 4096 0 0", "0 4096", "12 Bits"},
    {{{"OptMeasure", 5}, {"OptGain", 1}}, "4000 4096 0 0", "0 4096", "12 Bits"},
    {{{"OptGain", 3}, {"OptMeasure", 5}}, "64000 4096 0 0", "0 4096", "12 Bits"},
    {{{"OptMeasure", 5}, {"OptITime", 0}}, "1000 65536 0 0", "0 65536", "16 Bits"},
    {{{"OptMeasure", 5}, {"OptITime", 2}}, "1000 256 0 0", "0 4096", "12 Bits"},
    {{{"OptITime", 3}, {"OptMeasure", 5}}, "1000 4096 0 0", "0 4096", "12 Bits"},
    {{{"OptGain", 2}, {"OptMeasure", 5}, {"OptITime", 0}}, "16000 65536 0 0", "0 65536", "16 Bits"},
};

struct MultiFunctionScales : EachMultiFunctionPanel {};

TEST_P(MultiFunctionScales, FollowTheOptions) {
  for (const Case& c : cases) {
    const auto missing = [this](const Step& step) { return !panel->find(step.control, step.index); };
    if (std::ranges::any_of(c.steps, missing)) continue;
    std::string trace;
    for (const Step& step : c.steps) trace += step.control + std::to_string(step.index) + " ";
    SCOPED_TRACE(trace);
    open_anew();
    for (const Step& step : c.steps) choose_option(step.control, step.index);
    std::string expected = c.scales;
    if (GetParam() == "frmKVT71390" && expected.ends_with("0000 0")) expected += "000";
    EXPECT_EQ(scales(), expected);
    EXPECT_EQ(bounds(), c.bounds);
    EXPECT_EQ(limits_format(1), c.words);
    // A choice of the scheme alone leaves the words of the bounds, too: they were right before.
    EXPECT_EQ(limits_format(2), std::to_string(store.LimitMax) + " Max");
    EXPECT_EQ(limits_format(3), std::to_string(store.LimitMin) + " Min");
    EXPECT_EQ(limits_format(0), store.ProxScheme == 1 ? "2s Complement" : "Single Polarity");
    EXPECT_EQ(store.SinglePolarity, flag(store.ProxScheme == 0));
    // The chart has the left side.
    EXPECT_EQ(store.Scale_Max, forms::Val(panel->txtScale.Text) + 1);
    EXPECT_EQ(store.Scale_Min, forms::Val(panel->txtScaleMin.Text));
    EXPECT_EQ(store.Label_Left[0], std::to_string(store.Scale_Min));
  }
}

TEST_P(MultiFunctionScales, TheDelayFollowsTheWidth) {
  struct Delay {
    int position;
    const char* interval;
    const char* delay;
    int bits;
    int full_count;
  };
  for (const Delay& row : {Delay{0, "120", "118", 16, 65536}, Delay{1, "10", "8", 12, 4096},
                           Delay{2, "2", "0", 8, 256}, Delay{3, "2", "0", 4, 16}}) {
    choose_option("OptITime", row.position);
    EXPECT_EQ(panel->txtInterval.Text, row.interval);
    EXPECT_EQ(panel->txtSampling_Delay.Text, row.delay);
    EXPECT_EQ(std::to_string(store.SampleDelayMs), row.delay);
    EXPECT_EQ(store.AdcBits, row.bits);
    EXPECT_EQ(store.FullCount, row.full_count);
  }
}

INSTANTIATE_TEST_SUITE_P(Each, MultiFunctionScales, ::testing::ValuesIn(multi_function_panels), panel_name);

// --- the labels at the right ---

using Kvt71385Scales = Kvt71385Panel;

struct Labels {
  std::vector<Step> steps;
  const char* second;  // the one above 0
  const char* last;
};

TEST_F(Kvt71385Scales, TheRightSideIsInTenthsOfItsBox) {
  for (const Labels& c : {Labels{{}, "410", "4100"},
                          {{{"OptITime", 0}}, "6554", "65540"},
                          {{{"OptITime", 2}}, "26", "260"},
                          {{{"OptITime", 3}}, "2", "20"},
                          {{{"OptITime", 2}, {"OptIRMode", 0}}, "26", "260"},
                          {{{"OptIRMode", 1}}, "410", "4100"},  // left alone
                          {{{"OptIRMode", 1}, {"OptITime", 1}}, "410", "4100"},
                          {{{"OptITime", 2}, {"OptGain", 1}}, "26", "260"},  // left alone
                          {{{"OptMeasure", 7}}, "410", "4100"}}) {
    open_anew();
    for (const Step& step : c.steps) choose_option(step.control, step.index);
    EXPECT_EQ(store.Label_Right[0], "0");
    EXPECT_EQ(store.Label_Right[1], c.second);
    EXPECT_EQ(store.Label_Right[10], c.last);
  }
}

TEST_F(Kvt71385Scales, Scheme0ScalesTheRightSideAndScheme1LeavesIt) {
  for (const auto& [scheme, second] : {std::pair{0, "410"}, {1, "before"}}) {
    store.Label_Right.fill("before");
    choose_option("OptIRMode", scheme);
    EXPECT_EQ(store.Label_Right[1], second);
  }
}

// Before width and range are run over again, the right side is that of the scheme.
TEST_F(Kvt71385Scales, AnOperationScalesTheRightSideByItsScheme) {
  store.EventsEnabled = false_flag;
  measure_by(7);
  EXPECT_EQ(scales(), "2048 2048 -100 -100");
  EXPECT_EQ(store.Scale_Max, 2049);
  EXPECT_EQ(store.Scale_Min, -100);
  EXPECT_EQ(store.Label_Right[1], "205");
  EXPECT_EQ(store.Label_Right[10], "2050");
  measure_by(5);
  EXPECT_EQ(scales(), "1000 4096 0000 0");
  EXPECT_EQ(store.Scale_Max, 4097);
  EXPECT_EQ(store.Scale_Min, 0);
  EXPECT_EQ(store.Label_Right[1], "410");
}

// Under scheme 1 a width shows the left labels at the right, while it writes.
TEST_F(Kvt71385Scales, AWidthCopiesTheLeftLabelsUnderScheme1) {
  for (const int scheme : {0, 1}) {
    choose_option("OptIRMode", scheme);
    store.Label_Left.fill("left");
    store.Label_Right.fill("right");
    std::string seen;
    recorder.before_call = [&] { seen = seen.empty() ? store.Label_Right[3] + store.Label_Right[10] : seen; };
    choose_option("OptITime", 1);
    recorder.before_call = nullptr;
    EXPECT_EQ(seen, scheme == 1 ? "leftleft" : "rightright");
    EXPECT_EQ(store.Label_Right[1], "410");
  }
}

// --- lux ---

TEST_F(Kvt71385Scales, TheLowerEndAtTheLeftStaysInLux) {
  measure_by(5);
  panel->txtScaleMin.Text = "55";
  panel->txtScaleMin2.Text = "66";
  choose_option("OptGain", 1);
  EXPECT_EQ(scales(), "4000 4096 55 0");
}

// The resistor counts where the range or the operation is chosen, not where the width is.
TEST_F(Kvt71385Scales, TheResistorCountsButForTheWidth) {
  store.ResistorScale = 250000;
  store.EventsEnabled = false_flag;
  measure_by(5);
  EXPECT_EQ(panel->txtScale.Text, "2000");
  choose_option("OptITime", 1);
  EXPECT_EQ(panel->txtScale.Text, "1000");
  choose_option("OptGain", 1);
  EXPECT_EQ(panel->txtScale.Text, "8000");
}

// --- the chart ---

TEST_F(Kvt71385Scales, ARangeDrawsTheGridAnew) {
  panel->Picture1.Cls();
  Save_Screen(store, panel->Picture1);
  const auto dark_pixels = [this] {
    int count = 0;
    for (int x = 0; x < plot_columns; ++x) {
      for (int y = 0; y < plot_rows; ++y) count += panel->Picture1.GetPixel(x, y) == 0 ? 1 : 0;
    }
    return count;
  };
  choose_option("OptITime", 1);
  EXPECT_EQ(dark_pixels(), 0);
  choose_option("OptGain", 1);
  EXPECT_GT(dark_pixels(), 1000);
  // Behind an operation the saved chart is put back last.
  measure_by(2);
  EXPECT_EQ(dark_pixels(), 0);
}

// The lamps of the boxes that the result has, too, are out of sight while a width is read back.
TEST_F(Kvt71385Scales, AWidthHidesTheLampsOfTheResultWhileItWrites) {
  const auto shown_on_the_bus = [this](const std::function<void()>& action) {
    std::string seen;
    recorder.before_call = [&] {
      for (const int i : {3, 4, 5, 6}) seen += panel->ShpIndrd(i).Visible ? "1" : "0";
    };
    action();
    recorder.before_call = nullptr;
    return seen.substr(0, 4);
  };
  EXPECT_EQ(shown_on_the_bus([this] { choose_option("OptITime", 0); }), "1001");
  EXPECT_EQ(shown_on_the_bus([this] { choose_option("OptGain", 0); }), "1111");
  for (const int i : {4, 5}) EXPECT_TRUE(panel->ShpIndrd(i).Visible);
}

}  // namespace
}  // namespace varzelin::testing
