// The resistor calculator, by numbers worked out by hand: 655 kHz x 500 kOhm / R, its period, the counts of
// the resolution times that period, and the range over the counts.
#include <gtest/gtest.h>

#include "forms/text.h"
#include "panels/single_channel/resistor_calculator.h"

namespace varzelin::testing {
namespace {

struct Clock {
  std::int32_t ohms;
  const char* khz;
  const char* period;
  // By full count: 65535, 4095, 255, 15, and 0 for the time base.
  std::array<const char*, 5> integration;
};
constexpr std::array<std::int32_t, 5> full_counts{65535, 4095, 255, 15, 0};
constexpr std::array<const char*, 5> clock_counts{"65535", "4095", "255", "15", ""};
constexpr Clock clocks[]{
    {500000, "655.000", ".001527", {"100.053", "6.252", ".389", ".023", ".000"}},
    {250000, "1310.000", ".000763", {"50.027", "3.126", ".195", ".011", ".000"}},
    {100000, "3275.000", ".000305", {"20.011", "1.250", ".078", ".005", ".000"}},
};

TEST(ResistorCalculator, TheClockAndTheIntegrationTimeFollowTheResistor) {
  for (const Clock& clock : clocks) {
    for (std::size_t i = 0; i < full_counts.size(); ++i) {
      SCOPED_TRACE(std::to_string(clock.ohms) + " " + std::to_string(full_counts[i]));
      const Calculation result = calculate(clock.ohms, full_counts[i], 1000);
      EXPECT_EQ(result.clock_counts, clock_counts[i]);
      EXPECT_EQ(result.oscillator_khz, clock.khz);
      EXPECT_EQ(result.period_ms, clock.period);
      EXPECT_EQ(result.integration_ms, clock.integration[i]);
    }
  }
}

struct Range {
  std::size_t range;
  std::int32_t ohms;
  const char* caption;
  std::int32_t full_scale;
  // Lux per count, by full count.
  std::array<const char*, 4> factor;
};
constexpr Range ranges[]{
    {0,
     500000,
     "1000",
     1000,
     {"1.52590218966964E-02", "0.244200244200244", "3.92156862745098", "66.6666666666667"}},
    {1,
     500000,
     "4000",
     4000,
     {"6.10360875867857E-02", "0.976800976800977", "15.6862745098039", "266.666666666667"}},
    {2,
     500000,
     "16000",
     16000,
     {"0.244144350347143", "3.90720390720391", "62.7450980392157", "1066.66666666667"}},
    {3,
     500000,
     "64000",
     64000,
     {"0.976577401388571", "15.6288156288156", "250.980392156863", "4266.66666666667"}},
    {0,
     250000,
     "2000",
     2000,
     {"3.05180437933928E-02", "0.488400488400488", "7.84313725490196", "133.333333333333"}},
    {1,
     250000,
     "8000",
     8000,
     {"0.122072175173571", "1.95360195360195", "31.3725490196078", "533.333333333333"}},
    {2,
     250000,
     "32000",
     32000,
     {"0.488288700694285", "7.81440781440781", "125.490196078431", "2133.33333333333"}},
    {3,
     250000,
     "128000",
     128000,
     {"1.95315480277714", "31.2576312576313", "501.960784313725", "8533.33333333333"}},
    {0,
     100000,
     "5000",
     5000,
     {"7.62951094834821E-02", "1.22100122100122", "19.6078431372549", "333.333333333333"}},
    {1,
     100000,
     "20000",
     20000,
     {"0.305180437933928", "4.88400488400488", "78.4313725490196", "1333.33333333333"}},
    {2,
     100000,
     "80000",
     80000,
     {"1.22072175173571", "19.5360195360195", "313.725490196078", "5333.33333333333"}},
    {3,
     100000,
     "320000",
     320000,
     {"4.88288700694286", "78.1440781440782", "1254.90196078431", "21333.3333333333"}},
};

TEST(ResistorCalculator, TheRangesAndTheLuxOfACountFollowTheResistor) {
  for (const Range& range : ranges) {
    EXPECT_EQ(range_caption(range.range, range.ohms), range.caption);
    for (std::size_t i = 0; i < range.factor.size(); ++i) {
      SCOPED_TRACE(std::string(range.caption) + " lux, " + std::to_string(full_counts[i]));
      const Calculation result = calculate(range.ohms, full_counts[i], range.full_scale);
      ASSERT_TRUE(result.lux_factor);
      EXPECT_EQ(forms::CStr(*result.lux_factor), range.factor[i]);
      EXPECT_EQ(result.full_scale_lux, range.caption);
    }
  }
}

TEST(ResistorCalculator, WithoutAFullCountThereIsNoLuxOfACount) {
  EXPECT_FALSE(calculate(500000, 0, 1000).lux_factor);
  EXPECT_EQ(calculate(500000, 1, 1000).lux_factor, 1000);
}

// What is shown is what is reckoned with.
TEST(ResistorCalculator, TheLuxOfACountIsCutToItsText) {
  const double factor = *calculate(500000, 4095, 1000).lux_factor;
  EXPECT_EQ(factor, 0.244200244200244);
  EXPECT_NE(factor, 1000.0 / 4095);
  EXPECT_EQ(through_text(1.0 / 3), 0.333333333333333);
  EXPECT_EQ(through_text(-1e-7), -1e-7);
}

TEST(ResistorCalculator, LuxHasTwoDecimals) {
  EXPECT_EQ(lux_text(0, 0.25), ".00");
  EXPECT_EQ(lux_text(1, 0.25), ".25");
  EXPECT_EQ(lux_text(2047, 0.244200244200244), "499.88");
  EXPECT_EQ(lux_text(65535, 4.88288700694285), "320000.00");
  EXPECT_EQ(lux_text(1, 0.00625), ".01");
}

// The counts go in and out again, which leaves whole numbers whole.
TEST(ResistorCalculator, TheScaleOfARange) {
  EXPECT_EQ(lux_scale(1000, 500000, 4095), 1000);
  EXPECT_EQ(lux_scale(16000, 250000, 65535), 32000);
  EXPECT_EQ(lux_scale(64000, 100000, 15), 320000);
}

}  // namespace
}  // namespace varzelin::testing
