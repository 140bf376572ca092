// The parts of the simulated proximity sensors, each by itself: what comes back of the emitter's light, and
// how counts stand in registers.
#include <gtest/gtest.h>

#include <limits>

#include "boards/simulated/sensors/count_format.h"
#include "boards/simulated/sensors/proximity.h"

using namespace boards;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
const double not_a_number = std::numeric_limits<double>::quiet_NaN();

Scene target_at(double distance) {
  return {.light_lux = 0, .ir_counts = 0, .distance_mm = distance};
}
Scene infrared_of(double counts) {
  return {.light_lux = 0, .ir_counts = counts, .distance_mm = infinity};
}

TEST(SimulatedProximity, CrosstalkIsThatOfCurrentAndModulation) {
  constexpr std::array steady{60, 140, 320, 700};
  constexpr std::array half{30, 60, 150, 330};
  for (int current = 0; current < 4; ++current) {
    const auto i = static_cast<std::size_t>(current);
    EXPECT_DOUBLE_EQ(crosstalk({current, Modulation::none}) * 4096, steady[i]);
    EXPECT_DOUBLE_EQ(crosstalk({current, Modulation::khz_328}) * 4096, half[i]);
  }
}

TEST(SimulatedProximity, ReflectionFallsWithTheSquareOfTheDistance) {
  const auto at = [](double distance) {
    return reflection(target_at(distance), {0, Modulation::none}) * 4096;
  };
  EXPECT_DOUBLE_EQ(at(0), 2048);
  EXPECT_DOUBLE_EQ(at(20), 1024);
  EXPECT_DOUBLE_EQ(at(40), 2048 / 5.0);
  EXPECT_DOUBLE_EQ(at(100), 2048 / 26.0);
  EXPECT_NEAR(at(2000) / at(4000), 4, 0.001);
  EXPECT_EQ(at(infinity), 0);
  EXPECT_DOUBLE_EQ(at(-5), 2048);
  EXPECT_DOUBLE_EQ(at(not_a_number), 2048);
}

TEST(SimulatedProximity, ReflectionDoublesWithTheCurrentAndHalvesWithModulation) {
  for (int current = 0; current < 4; ++current) {
    EXPECT_DOUBLE_EQ(reflection(target_at(20), {current, Modulation::none}) * 4096, 1024 << current);
    EXPECT_DOUBLE_EQ(reflection(target_at(20), {current, Modulation::khz_328}) * 4096, 512 << current);
  }
}

TEST(SimulatedProximity, FasterModulationGivesLessLight) {
  const Scene scene = target_at(20);
  for (int current = 0; current < 4; ++current) {
    const Emitter slowest{current, Modulation::khz_328};
    for (const auto& [modulation, part] :
         {std::pair{Modulation::khz_655, 7 / 8.0}, std::pair{Modulation::khz_1311, 3 / 4.0}}) {
      EXPECT_DOUBLE_EQ(crosstalk({current, modulation}), part * crosstalk(slowest));
      EXPECT_DOUBLE_EQ(reflection(scene, {current, modulation}), part * reflection(scene, slowest));
    }
  }
}

TEST(SimulatedProximity, AmbientInfraredFillsTheScaleAtMost) {
  EXPECT_DOUBLE_EQ(ambient_infrared(infrared_of(0), 1), 0);
  EXPECT_DOUBLE_EQ(ambient_infrared(infrared_of(1024), 1), 0.25);
  EXPECT_DOUBLE_EQ(ambient_infrared(infrared_of(1024), 0.25), 1 / 16.0);
  EXPECT_DOUBLE_EQ(ambient_infrared(infrared_of(4096), 1), 1);
  EXPECT_DOUBLE_EQ(ambient_infrared(infrared_of(4097), 1), 1);
  EXPECT_DOUBLE_EQ(ambient_infrared(infrared_of(infinity), 1), 1);
  EXPECT_DOUBLE_EQ(ambient_infrared(infrared_of(-1), 1), 0);
  EXPECT_DOUBLE_EQ(ambient_infrared(infrared_of(not_a_number), 1), 0);
}

TEST(SimulatedProximity, IsTheEmittersLightWithOrWithoutTheAmbient) {
  const Scene scene{.light_lux = 1e9, .ir_counts = 800, .distance_mm = 20};
  const auto counts = [&](Ambient ambient, double sensitivity) {
    return proximity(scene, {1, Modulation::khz_328}, ambient, sensitivity) * 4096;
  };
  EXPECT_DOUBLE_EQ(counts(Ambient::included, 1), 60 + 1024 + 800);
  EXPECT_DOUBLE_EQ(counts(Ambient::subtracted, 1), 60 + 1024 - 100);
  EXPECT_DOUBLE_EQ(counts(Ambient::included, 0.25), 60 + 256 + 200);
  EXPECT_DOUBLE_EQ(counts(Ambient::subtracted, 0.25), 60 + 256 - 25);
}

// ---- Counts

constexpr CountFormat from_zero(int bits) {
  return {bits};
}
constexpr CountFormat with_sign(int bits) {
  return {bits, true};
}

TEST(SimulatedCountFormat, HasTheEndsOfItsWidth) {
  struct Row {
    int bits, from_zero_to, with_sign_from, with_sign_to;
  };
  for (const auto& [bits, from_zero_to, with_sign_from, with_sign_to] :
       {Row{16, 65535, -32768, 32767}, Row{12, 4095, -2048, 2047}, Row{8, 255, -128, 127},
        Row{4, 15, -8, 7}}) {
    EXPECT_EQ(from_zero(bits).lowest(), 0);
    EXPECT_EQ(from_zero(bits).highest(), from_zero_to);
    EXPECT_EQ(with_sign(bits).lowest(), with_sign_from);
    EXPECT_EQ(with_sign(bits).highest(), with_sign_to);
  }
}

TEST(SimulatedCountFormat, ConvertsToTheNearestCountAndSaturates) {
  EXPECT_EQ(from_zero(8).converted(2.49, 0), 2);
  EXPECT_EQ(from_zero(8).converted(2.5, 0), 3);
  EXPECT_EQ(from_zero(8).converted(-0.6, 0), 0);
  EXPECT_EQ(from_zero(8).converted(255, 0), 255);
  EXPECT_EQ(from_zero(8).converted(1e12, 0), 255);
  EXPECT_EQ(with_sign(8).converted(-2.5, 0), -2);
  EXPECT_EQ(with_sign(8).converted(-2.51, 0), -3);
  EXPECT_EQ(with_sign(8).converted(127.6, 0), 127);
  EXPECT_EQ(with_sign(8).converted(-1e12, 0), -128);
}

TEST(SimulatedCountFormat, NoiseComesOnTopAndStaysInTheScale) {
  EXPECT_EQ(from_zero(8).converted(100.2, 1.3), 102);
  EXPECT_EQ(from_zero(8).converted(300, -10), 245);
  EXPECT_EQ(from_zero(8).converted(-300, 10), 10);
  EXPECT_EQ(from_zero(8).converted(250, 10), 255);
  EXPECT_EQ(from_zero(8).converted(5, -10), 0);
  EXPECT_EQ(with_sign(8).converted(-300, 10), -118);
  EXPECT_EQ(with_sign(8).converted(300, -10), 117);
}

TEST(SimulatedCountFormat, ResultsCarryTheirSignUpToTheSixteenthBit) {
  EXPECT_EQ(CountFormat::result(0), 0);
  EXPECT_EQ(CountFormat::result(4095), 0x0FFF);
  EXPECT_EQ(CountFormat::result(65535), 0xFFFF);
  EXPECT_EQ(CountFormat::result(-1), 0xFFFF);
  EXPECT_EQ(CountFormat::result(-100), 0xFF9C);
  EXPECT_EQ(CountFormat::result(-2048), 0xF800);
}

TEST(SimulatedCountFormat, LimitsAreAsTheyAreWritten) {
  for (const int bits : {4, 8, 12, 16}) {
    for (const std::uint16_t written : {std::uint16_t{0}, std::uint16_t{0x8000}, std::uint16_t{0xFFFF}}) {
      EXPECT_EQ(from_zero(bits).limit(written), written);
    }
  }
  EXPECT_EQ(with_sign(16).limit(0x7FFF), 32767);
  EXPECT_EQ(with_sign(16).limit(0x8000), -32768);
  EXPECT_EQ(with_sign(16).limit(0xFF9C), -100);
  EXPECT_EQ(with_sign(12).limit(0x07FF), 2047);
  EXPECT_EQ(with_sign(12).limit(0x0800), -2048);
  EXPECT_EQ(with_sign(12).limit(0x0F9C), -100);
  EXPECT_EQ(with_sign(12).limit(0xFF9C), -100);
  EXPECT_EQ(with_sign(12).limit(0xF064), 100);
  EXPECT_EQ(with_sign(8).limit(0xFF9C), -100);
  EXPECT_EQ(with_sign(4).limit(0xFFF8), -8);
  EXPECT_EQ(with_sign(4).limit(0x0007), 7);
}

TEST(SimulatedCountFormat, EveryCountIsALimitToo) {
  for (const int bits : {4, 8, 12, 16}) {
    const CountFormat format = with_sign(bits);
    for (int count = format.lowest(); count <= format.highest(); ++count) {
      ASSERT_EQ(format.limit(CountFormat::result(count)), count) << bits;
    }
  }
}

}  // namespace
