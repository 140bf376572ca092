// The parts that the simulated sensors are put together from, each by itself.
#include <gtest/gtest.h>

#include <limits>

#include "boards/simulated/sensors/converter.h"
#include "boards/simulated/sensors/interrupt_limits.h"
#include "boards/simulated/sensors/light.h"

using namespace boards;
using namespace std::chrono_literals;

namespace {

constexpr auto never = std::optional<Converter::Time>();

TEST(SimulatedConverter, EachFourBitsLessTakeASixteenthOfTheTime) {
  EXPECT_EQ(integration_time(16), 102400us);
  EXPECT_EQ(integration_time(12), 6400us);
  EXPECT_EQ(integration_time(8), 400us);
  EXPECT_EQ(integration_time(4), 25us);
}

TEST(SimulatedConverter, StartsStopped) {
  Converter converter;
  EXPECT_FALSE(converter.integrating());
  EXPECT_EQ(converter.take_ended(1h), 0u);
  EXPECT_EQ(converter.command(1h), never);
  EXPECT_EQ(converter.command(2h), never);
  EXPECT_FALSE(converter.integrating());
}

TEST(SimulatedConverter, OnceIsOneConversion) {
  Converter converter;
  converter.convert_once(7ms, 100ms);
  EXPECT_TRUE(converter.integrating());
  EXPECT_EQ(converter.take_ended(107ms - 1ns), 0u);
  EXPECT_TRUE(converter.integrating());
  EXPECT_EQ(converter.take_ended(107ms), 1u);
  EXPECT_FALSE(converter.integrating());
  EXPECT_EQ(converter.take_ended(1h), 0u);

  converter.convert_once(1h, 100ms);
  EXPECT_EQ(converter.take_ended(2h), 1u);
  EXPECT_EQ(converter.take_ended(3h), 0u);
}

TEST(SimulatedConverter, ContinuousConversionsFollowOneAnother) {
  Converter converter;
  converter.convert_continuously(7ms, 100ms);
  EXPECT_EQ(converter.take_ended(107ms - 1ns), 0u);
  EXPECT_EQ(converter.take_ended(107ms), 1u);
  EXPECT_EQ(converter.take_ended(107ms), 0u);
  EXPECT_EQ(converter.take_ended(207ms - 1ns), 0u);
  EXPECT_EQ(converter.take_ended(250ms), 1u);
  // Looking late doesn't move the ones that follow.
  EXPECT_EQ(converter.take_ended(307ms - 1ns), 0u);
  EXPECT_EQ(converter.take_ended(507ms), 3u);
  EXPECT_TRUE(converter.integrating());
}

TEST(SimulatedConverter, HoursOfShortConversionsAreCounted) {
  Converter converter;
  converter.convert_continuously(0ms, 25us);
  EXPECT_EQ(converter.take_ended(10h), 1'440'000'000u);
  EXPECT_EQ(converter.take_ended(10h + 24us), 0u);
  EXPECT_EQ(converter.take_ended(10h + 25us), 1u);
}

TEST(SimulatedConverter, TheHostTimesTheConversionsByCommands) {
  Converter converter;
  converter.convert_on_command();
  EXPECT_FALSE(converter.integrating());
  EXPECT_EQ(converter.command(10ms), never);
  EXPECT_TRUE(converter.integrating());
  EXPECT_EQ(converter.take_ended(1h), 0u);
  EXPECT_EQ(converter.command(1h), 1h - 10ms);
  EXPECT_EQ(converter.command(1h + 3us), 3us);
  EXPECT_EQ(converter.command(1h + 3us), 0us);
}

TEST(SimulatedConverter, ACommandDoesNothingToAConversionWithItsOwnTime) {
  Converter converter;
  converter.convert_continuously(0ms, 100ms);
  EXPECT_EQ(converter.command(60ms), never);
  EXPECT_EQ(converter.command(70ms), never);
  EXPECT_EQ(converter.take_ended(100ms), 1u);
}

TEST(SimulatedConverter, ASingleConversionCanBeCutOff) {
  Converter converter;
  EXPECT_EQ(converter.cut_off(5ms), never);
  converter.convert_once(10ms, 100ms);
  EXPECT_EQ(converter.cut_off(70ms), 60ms);
  EXPECT_FALSE(converter.integrating());
  EXPECT_EQ(converter.take_ended(1h), 0u);
  EXPECT_EQ(converter.cut_off(1h), never);
}

TEST(SimulatedConverter, NoOtherConversionCanBeCutOff) {
  Converter converter;
  converter.convert_continuously(0ms, 100ms);
  EXPECT_EQ(converter.cut_off(60ms), never);
  EXPECT_EQ(converter.take_ended(100ms), 1u);
  converter.convert_on_command();
  converter.command(200ms);
  EXPECT_EQ(converter.cut_off(250ms), never);
  EXPECT_EQ(converter.command(300ms), 100ms);
}

TEST(SimulatedConverter, StartingAnewDropsWhatIsUnderWay) {
  Converter converter;
  converter.convert_once(0ms, 100ms);
  converter.convert_once(90ms, 100ms);
  EXPECT_EQ(converter.take_ended(190ms - 1ns), 0u);
  EXPECT_EQ(converter.take_ended(190ms), 1u);

  converter.convert_continuously(1s, 100ms);
  converter.convert_on_command();
  EXPECT_EQ(converter.take_ended(2s), 0u);
  EXPECT_EQ(converter.command(2s), never);
  converter.convert_on_command();
  EXPECT_EQ(converter.command(3s), never);

  converter.convert_continuously(4s, 100ms);
  converter.stop();
  EXPECT_FALSE(converter.integrating());
  EXPECT_EQ(converter.take_ended(5s), 0u);
}

// ---- Light

constexpr LightRange thousand_lux{.lux = 1000, .ir_counts = 65535};

int count(Scene scene, Measurement measurement, std::uint16_t full_scale = 65535, double noise = 0) {
  return light_count(scene, measurement, thousand_lux, full_scale, noise);
}

int visible(double lux, std::uint16_t full_scale, double noise = 0) {
  return count({.light_lux = lux, .ir_counts = 0}, Measurement::diode1, full_scale, noise);
}

TEST(SimulatedLight, VisibleLightIsAPartOfTheRange) {
  EXPECT_EQ(visible(0, 65535), 0);
  EXPECT_EQ(visible(1000, 65535), 65535);
  EXPECT_EQ(visible(500, 4095), 2048);  // 2047.5
  EXPECT_EQ(visible(499.9, 4095), 2047);
  EXPECT_EQ(visible(250, 255), 64);
  EXPECT_EQ(visible(100, 15), 2);
  EXPECT_EQ(visible(99, 15), 1);
  EXPECT_EQ(visible(1000, 0), 0);
  EXPECT_EQ(light_count({.light_lux = 1000, .ir_counts = 0}, Measurement::diode1, {4000, 65535}, 65535, 0),
            16384);
}

TEST(SimulatedLight, TheDiodesSeeTheirPart) {
  const Scene scene{.light_lux = 100, .ir_counts = 1000};
  EXPECT_EQ(count(scene, Measurement::diode1), 7554);  // 6553.5 and 1000
  EXPECT_EQ(count(scene, Measurement::diode2), 1000);
  EXPECT_EQ(count(scene, Measurement::difference), 6554);
  EXPECT_EQ(count(scene, Measurement::none), 0);
}

TEST(SimulatedLight, InfraredScalesWithRangeAndFullScale) {
  const Scene scene{.light_lux = 0, .ir_counts = 1000};
  EXPECT_EQ(light_count(scene, Measurement::diode2, {1000, 4 * 65535.0}, 65535, 0), 250);
  EXPECT_EQ(count(scene, Measurement::diode2, 4095), 62);
}

TEST(SimulatedLight, EachDiodeSaturatesBeforeTheDifference) {
  EXPECT_EQ(visible(1001, 255), 255);
  EXPECT_EQ(visible(std::numeric_limits<double>::infinity(), 255), 255);
  EXPECT_EQ(count({.light_lux = 900, .ir_counts = 32768}, Measurement::diode1), 65535);
  EXPECT_EQ(count({.light_lux = 900, .ir_counts = 32768}, Measurement::difference), 32767);
  EXPECT_EQ(count({.light_lux = 900, .ir_counts = 1e9}, Measurement::diode2), 65535);
  EXPECT_EQ(count({.light_lux = 900, .ir_counts = 1e9}, Measurement::difference), 0);
}

TEST(SimulatedLight, BelowZeroAndNotANumberAreDark) {
  const double not_a_number = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(visible(-5, 65535), 0);
  EXPECT_EQ(visible(not_a_number, 65535), 0);
  EXPECT_EQ(count({.light_lux = 0, .ir_counts = -5}, Measurement::diode2), 0);
  EXPECT_EQ(count({.light_lux = 0, .ir_counts = not_a_number}, Measurement::diode2), 0);
  EXPECT_EQ(count({.light_lux = -5, .ir_counts = 7}, Measurement::diode1), 7);
}

TEST(SimulatedLight, NoiseComesOnTopAndStaysInTheScale) {
  EXPECT_EQ(visible(100, 4095, 3.4), 413);  // 409.5 and 3.4
  EXPECT_EQ(visible(100, 4095, -3.6), 406);
  EXPECT_EQ(visible(0, 4095, -10), 0);
  EXPECT_EQ(visible(0, 4095, 10), 10);
  EXPECT_EQ(visible(2000, 4095, 10), 4095);
  EXPECT_EQ(visible(2000, 4095, -10), 4085);
  EXPECT_EQ(count({.light_lux = 0, .ir_counts = 1e9}, Measurement::diode2, 4095, -10), 4085);
}

TEST(SimulatedLight, APartOfAScaleIsNoMoreThanTheWhole) {
  EXPECT_EQ(part_of_scale(0, 1000), 0);
  EXPECT_EQ(part_of_scale(250, 1000), 0.25);
  EXPECT_EQ(part_of_scale(1000, 1000), 1);
  EXPECT_EQ(part_of_scale(1001, 1000), 1);
  EXPECT_EQ(part_of_scale(std::numeric_limits<double>::infinity(), 1000), 1);
  EXPECT_EQ(part_of_scale(-5, 1000), 0);
  EXPECT_EQ(part_of_scale(std::numeric_limits<double>::quiet_NaN(), 1000), 0);
}

// ---- Interrupt limits

TEST(SimulatedInterruptLimits, AResultOnALimitIsInside) {
  const auto trips = [](int result) { return InterruptLimits().trips(result, 10, 20, 1); };
  EXPECT_TRUE(trips(9));
  EXPECT_FALSE(trips(10));
  EXPECT_FALSE(trips(15));
  EXPECT_FALSE(trips(20));
  EXPECT_TRUE(trips(21));
}

TEST(SimulatedInterruptLimits, AsManyInARowAsThePersistenceAsksFor) {
  EXPECT_EQ(persistences, (std::array{1, 4, 8, 16}));
  for (const int persistence : persistences) {
    InterruptLimits limits;
    for (int i = 1; i < persistence; ++i) EXPECT_FALSE(limits.trips(21, 10, 20, persistence)) << i;
    EXPECT_TRUE(limits.trips(21, 10, 20, persistence)) << persistence;
    EXPECT_TRUE(limits.trips(9, 10, 20, persistence)) << persistence;
  }
}

TEST(SimulatedInterruptLimits, NoMoreConversionsTellThanTheHighestPersistence) {
  EXPECT_EQ(telling(0), 0);
  EXPECT_EQ(telling(15), 15);
  EXPECT_EQ(telling(16), 16);
  EXPECT_EQ(telling(17), 16);
  EXPECT_EQ(telling(1'440'000'000'000), 16);
}

TEST(SimulatedInterruptLimits, OneInsideBeginsTheRowAnew) {
  InterruptLimits limits;
  for (int i = 0; i < 3; ++i) EXPECT_FALSE(limits.trips(21, 10, 20, 4));
  EXPECT_FALSE(limits.trips(15, 10, 20, 4));
  for (int i = 0; i < 3; ++i) EXPECT_FALSE(limits.trips(i % 2 == 0 ? 21 : 9, 10, 20, 4));
  EXPECT_TRUE(limits.trips(21, 10, 20, 4));
}

TEST(SimulatedInterruptLimits, ARestartBeginsTheRowAnew) {
  InterruptLimits limits;
  for (int i = 0; i < 3; ++i) limits.trips(21, 10, 20, 4);
  limits.restart();
  for (int i = 0; i < 3; ++i) EXPECT_FALSE(limits.trips(21, 10, 20, 4));
  EXPECT_TRUE(limits.trips(21, 10, 20, 4));
}

TEST(SimulatedInterruptLimits, TheRowIsNoLongerThanTheHighestPersistence) {
  InterruptLimits limits;
  for (int i = 0; i < 100; ++i) limits.trips(21, 10, 20, 16);
  EXPECT_TRUE(limits.trips(21, 10, 20, 16));
  EXPECT_FALSE(limits.trips(21, 10, 20, 17));
}

}  // namespace
