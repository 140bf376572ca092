// KVT71374, KVT71385 and their families: when conversions happen, external timing.
#include "support/simulated_shared_converter_fixture.h"

using namespace boards;
using namespace std::chrono_literals;

namespace {

class SimulatedConverter : public EachConverterFamily {};

TEST_P(SimulatedConverter, PowersUpInPowerDown) {
  clock.pass(1h);
  EXPECT_EQ(result(), 0);
  EXPECT_FALSE(pin_is_low());
}

TEST_P(SimulatedConverter, ASingleConversionTakesItsTime) {
  for (const std::uint8_t once : {als_once, ir_once, proximity_once}) {
    for (int width = 0; width < 4; ++width) {
      board.mount(family.model);
      board.scene() = {.light_lux = 1e9, .ir_counts = 1e9, .distance_mm = 0};
      configure(width);
      operate(once);
      clock.pass(times[static_cast<std::size_t>(width)] - 1ns);
      EXPECT_EQ(held(), 0) << +once << ' ' << width;
      clock.pass(1ns);
      EXPECT_EQ(held(), 0xFFFF >> 4 * width) << +once << ' ' << width;
    }
  }
}

TEST_P(SimulatedConverter, ASingleModeIsOneConversionAWrite) {
  EXPECT_EQ(converted(als_once), half_range());
  board.scene().light_lux = 250;
  clock.pass(1h);
  EXPECT_EQ(result(), half_range());
  EXPECT_EQ(read(0, 1), Bytes{als_once});
  operate(als_once);
  clock.pass(times[0] - 1ns);
  EXPECT_EQ(result(), half_range());
  clock.pass(1ns);
  EXPECT_EQ(result(), 16384);
}

TEST_P(SimulatedConverter, AnotherWriteOfASingleModeBeginsAnew) {
  operate(als_once);
  clock.pass(90ms);
  operate(als_once);
  clock.pass(times[0] - 1ns);
  EXPECT_EQ(result(), 0);
  clock.pass(1ns);
  EXPECT_EQ(result(), half_range());
}

TEST_P(SimulatedConverter, OtherRegistersOrderNoConversion) {
  EXPECT_EQ(converted(als_once), half_range());
  board.scene().light_lux = 250;
  configure(1, 1);
  write({4, 0, 0, 0xFF, 0xFF});
  write({8, 1});
  read(0, 9);
  clock.pass(1s);
  EXPECT_EQ(result(), half_range());
}

TEST_P(SimulatedConverter, ContinuousConversionsFollowOneAnother) {
  for (const std::uint8_t mode : {als, ir, proximity}) {
    for (int width = 0; width < 4; ++width) {
      const auto time = times[static_cast<std::size_t>(width)];
      board.mount(family.model);
      board.scene() = {.light_lux = 1e9, .ir_counts = 1e9, .distance_mm = 0};
      configure(width);
      operate(mode);
      clock.pass(time - 1ns);
      EXPECT_EQ(held(), 0) << +mode << ' ' << width;
      clock.pass(1ns);
      EXPECT_EQ(held(), 0xFFFF >> 4 * width) << +mode << ' ' << width;
      board.scene() = {.light_lux = 0, .ir_counts = 0, .distance_mm = 1e9};
      clock.pass(time - 1ns);
      EXPECT_EQ(held(), 0xFFFF >> 4 * width) << +mode << ' ' << width;
      clock.pass(1ns);
      EXPECT_LE(held(), 960) << +mode << ' ' << width;
    }
  }
}

TEST_P(SimulatedConverter, TheSameSettingAgainLeavesContinuousConversionsAlone) {
  configure(0);
  operate(als);
  clock.pass(90ms);
  operate(als | family.idle_bits);
  configure(0);
  write({4, 0, 0, 0xF0, 0xFF});
  write({8, 1});
  command(sync);
  clock.pass(times[0] - 90ms);
  EXPECT_EQ(result(), half_range());
}

TEST_P(SimulatedConverter, AnotherSettingDropsTheConversionUnderWayAndBeginsAnew) {
  for (const std::uint8_t mode : {als, als_once}) {
    for (const std::uint8_t another : {configuration(0, 1), configuration(0, 0, 1)}) {
      mount(family.model);
      operate(mode);
      clock.pass(90ms);
      write({1, another});
      clock.pass(times[0] - 1ns);
      EXPECT_EQ(held(), 0) << +mode << ' ' << +another;
      clock.pass(1ns);
      EXPECT_NE(held(), 0) << +mode << ' ' << +another;
    }
  }
  mount(family.model);
  operate(als);
  clock.pass(90ms);
  board.scene().ir_counts = 100;
  operate(ir);
  clock.pass(times[0] - 1ns);
  EXPECT_EQ(held(), 0);
  clock.pass(1ns);
  EXPECT_EQ(held(), 1600);
}

TEST_P(SimulatedConverter, TimingAndTimeBaseAreASettingToo) {
  operate(als);
  clock.pass(90ms);
  operate(als | external);
  clock.pass(1h);
  EXPECT_EQ(result(), 0);
  command(sync);
  clock.pass(90ms);
  operate(als);
  clock.pass(times[0] - 1ns);
  EXPECT_EQ(result(), 0);
  operate(als | time_base);
  clock.pass(times[0] - 1ns);
  EXPECT_EQ(result(), 0);
  clock.pass(1ns);
  EXPECT_EQ(result(), 65535);
}

TEST_P(SimulatedConverter, ModeAndConfigurationCanComeInOnePacket) {
  write({0, als_once, configuration(1)});
  clock.pass(6400us - 1ns);
  EXPECT_EQ(result(), 0);
  clock.pass(1ns);
  EXPECT_EQ(result(), half_range(1));
}

TEST_P(SimulatedConverter, PowerDownAndTheReservedModeKeepTheOldResult) {
  for (const std::uint8_t idle : {power_down, reserved}) {
    for (const std::uint8_t mode : {als, als_once}) {
      board.scene().light_lux = 500;
      EXPECT_EQ(converted(als_once), half_range());
      board.scene().light_lux = 250;
      operate(mode);
      clock.pass(90ms);
      operate(idle);
      clock.pass(1h);
      EXPECT_EQ(result(), half_range()) << +idle << ' ' << +mode;
    }
  }
}

TEST_P(SimulatedConverter, SceneAndNoiseCountAsTheyAreAtTheEnd) {
  operate(als);
  clock.pass(50ms);
  board.scene().light_lux = 250;
  clock.pass(times[0] - 50ms);
  board.scene().light_lux = 1000;
  board.set_noise(1000);
  EXPECT_EQ(result(), 16384);
  board.scene().light_lux = 500;
  clock.pass(times[0]);
  EXPECT_NE(result(), half_range());
  EXPECT_NEAR(result(), half_range(), 501);
}

TEST_P(SimulatedConverter, AHostThatWaitsAsThePanelsDoFindsTheResult) {
  constexpr std::array waits{118ms, 8ms, 0ms, 0ms};
  for (const bool timing : {true, false}) {
    board.set_timing(timing);
    for (const int mode : {+als_once, als_once | external}) {
      for (int width = 0; width < 4; ++width) {
        mount(family.model);
        board.scene().light_lux = 1e9;
        configure(width);
        operate(mode);
        command(sync);
        clock.pass(waits[static_cast<std::size_t>(width)]);
        EXPECT_EQ(result(), 0xFFFF >> 4 * width) << timing << ' ' << mode << ' ' << width;
      }
    }
  }
}

TEST_P(SimulatedConverter, TheNextRequestIsAlmostAsLongAsEightBits) {
  board.set_timing(true);
  const double milliseconds = time_of([&] { i2c({2, 0x89, 2}); });
  EXPECT_NEAR(milliseconds, 0.37, 1e-6);
}

TEST_P(SimulatedConverter, OnlyASingleConversionOfEightBitsAndLessHurriesAndOnlyForItsResult) {
  for (int width = 0; width < 4; ++width) {
    const int full = 0xFFFF >> 4 * width;
    mount(family.model);
    board.scene().light_lux = 1e9;
    configure(width);
    operate(als_once);
    read(0, 2);
    read(4, 5);
    EXPECT_EQ(held(), 0) << width;
    EXPECT_EQ(result(), width < 2 ? 0 : full) << width;
    board.scene().light_lux = 0;
    clock.pass(times[0]);
    EXPECT_EQ(result(), width < 2 ? 0 : full) << width;
  }
}

TEST_P(SimulatedConverter, ContinuousConversionsDontHurry) {
  board.scene().light_lux = 1e9;
  for (int width = 0; width < 4; ++width) {
    configure(width);
    operate(als);
    EXPECT_EQ(result(), 0) << width;
    operate(power_down);
  }
}

// ---- External timing

TEST_P(SimulatedConverter, UnderExternalTimingNothingHappensUntilASync) {
  for (const int mode : {als_once | external, als | external}) {
    mount(family.model);
    operate(mode);
    clock.pass(1h);
    EXPECT_EQ(result(), 0) << mode;
    command(sync);
    clock.pass(times[0] - 1ns);
    EXPECT_EQ(result(), 0) << mode;
    clock.pass(1ns);
    EXPECT_EQ(result(), half_range()) << mode;
    board.scene().light_lux = 250;
    clock.pass(1h);
    EXPECT_EQ(result(), half_range()) << mode;
    command(sync);
    clock.pass(times[0]);
    EXPECT_EQ(result(), 16384) << mode;
  }
}

TEST_P(SimulatedConverter, ASyncEndsAnIntegrationEarlyAndBeginsTheNext) {
  operate(als | external);
  command(sync);
  clock.pass(times[0] / 4);
  EXPECT_EQ(result(), 0);
  command(sync);
  EXPECT_EQ(result(), 8192);  // a quarter of what the whole time brings
  clock.pass(times[0] - 1ns);
  EXPECT_EQ(result(), 8192);
  clock.pass(1ns);
  EXPECT_EQ(result(), half_range());
}

TEST_P(SimulatedConverter, TheSameModeAgainLeavesTheHostsIntegrationAlone) {
  operate(als_once | external);
  command(sync);
  clock.pass(50ms);
  operate(als_once | external);
  clock.pass(times[0] - 50ms);
  EXPECT_EQ(result(), half_range());
}

TEST_P(SimulatedConverter, AnotherSettingDropsTheHostsIntegration) {
  operate(als | external);
  command(sync);
  clock.pass(50ms);
  configure(0, 1);
  clock.pass(1s);
  EXPECT_EQ(result(), 0);
  command(sync);
  clock.pass(times[0]);
  EXPECT_EQ(result(), 8192);
}

TEST_P(SimulatedConverter, ASyncDoesNothingWithoutAnIntegrationToTime) {
  for (const int mode : {+power_down, power_down | external, reserved | external}) {
    operate(mode);
    command(sync);
    clock.pass(1s);
    EXPECT_EQ(result(), 0) << mode;
  }
  operate(als_once);
  clock.pass(50ms);
  command(sync);
  EXPECT_EQ(result(), 0);
  clock.pass(times[0] - 50ms);
  EXPECT_EQ(result(), half_range());
  board.scene().light_lux = 250;
  operate(als | external);
  command(0x81);
  command(0x40);
  clock.pass(1s);
  EXPECT_EQ(result(), half_range());
}

TEST_P(SimulatedConverter, TheTimeBaseIsTheCyclesOfTheIntegration) {
  for (int width = 0; width < 4; ++width) {
    const int full = 1 << widths[static_cast<std::size_t>(width)];
    const std::chrono::nanoseconds time = times[static_cast<std::size_t>(width)];
    configure(width);
    operate(als | external | time_base);
    command(sync);
    clock.pass(time / 4);
    command(sync);
    EXPECT_EQ(held(), full / 4) << width;
    clock.pass(time - 1ns);
    command(sync);
    EXPECT_EQ(held(), full - 1) << width;
    clock.pass(time / 2 - 1ns);
    command(sync);
    EXPECT_EQ(held(), full / 2 - 1) << width;
    clock.pass(time);
    EXPECT_EQ(held(), full - 1) << width;
  }
}

TEST_P(SimulatedConverter, TheTimeBaseTakesTheResultsPlace) {
  EXPECT_EQ(converted(als_once), half_range());
  operate(als_once | time_base);
  EXPECT_EQ(result(), half_range());
  clock.pass(times[0]);
  EXPECT_EQ(result(), 65535);
  EXPECT_EQ(converted(als_once), half_range());
}

TEST_P(SimulatedConverter, WhatTheBenchSetsHasTheEffectOfAWrite) {
  board.set_register(1, configuration(1));
  board.set_register(0, als_once);
  clock.pass(6400us);
  EXPECT_EQ(result(), half_range(1));
  board.set_register(2, 0x34);
  board.set_register(3, 0x12);
  EXPECT_EQ(result(), 0x1234);
}

INSTANTIATE_TEST_SUITE_P(Families, SimulatedConverter, converter_families, family_name);

}  // namespace
