// KVT71344/5 and KVT71356: what they convert under internal timing, and their registers.
#include <algorithm>
#include <cmath>

#include "registers/kvt71344.h"
#include "support/simulated_kvt71344_fixture.h"

using namespace boards;
using namespace std::chrono_literals;

namespace {

constexpr std::array integration_times{102400us, 6400us, 400us, 25us};  // by resolution

class SimulatedKvt71344 : public Kvt71344Test {};

TEST_F(SimulatedKvt71344, ConvertsFromPowerOn) {
  board.mount("KVT71344/5");
  board.scene() = {};
  EXPECT_EQ(read(0, 8), (Bytes{0x80, 0, 0xFF, 0, 0, 0, 0, 0}));
  clock.pass(102400us - 1us);
  EXPECT_EQ(result(), 0);
  clock.pass(1us);
  EXPECT_EQ(result(), 32868);  // half of 65535, and the infrared

  board.mount("KVT71356");
  EXPECT_EQ(read(0, 8), (Bytes{0x88, 0, 0xFF, 0, 0, 0, 0, 0}));
  clock.pass(102400us);
  EXPECT_EQ(result(), 8192);  // a quarter of 32767, without the infrared
}

TEST_F(SimulatedKvt71344, ResultsAgreeWithTheBench) {
  const auto check = [&](const char* model, const auto& map) {
    mount(model);
    const auto field = [&](std::string_view name) {
      return *std::ranges::find(map.fields, name, &registers::Field::name);
    };
    for (int range = 0; range < 4; ++range) {
      const double range_lux = std::stod(std::string(field("Range").words[static_cast<std::size_t>(range)]));
      write(1, field("Range").in(0, range));
      for (int resolution = 0; resolution < 4; ++resolution) {
        const int bits =
            std::stoi(std::string(field("Resolution").words[static_cast<std::size_t>(resolution)]));
        const double full_scale = std::exp2(bits) - 1;
        write(0, field("Resolution").in(run, resolution));
        for (const double part : {0.0, 1e-5, 0.01, 1 / 3.0, 0.5, 0.7, 0.999, 1.0, 1.001, 70.0}) {
          board.scene().light_lux = part * range_lux;
          clock.pass(102400us);
          const int count = result();
          EXPECT_NEAR(count, std::min(part, 1.0) * full_scale, 0.5 + 1e-9)
              << model << ' ' << range << ' ' << resolution << ' ' << part;
        }
      }
    }
  };
  check("KVT71344/5", registers::kvt71344::kvt71344_map);
  check("KVT71356", registers::kvt71344::kvt71356_map);
}

TEST_F(SimulatedKvt71344, TheMeasurementsSeeTheirPartOfTheLight) {
  board.scene() = {.light_lux = 100, .ir_counts = 1000};
  const auto measured = [&](std::uint8_t measurement) {
    write(0, run | measurement);
    clock.pass(102400us);
    return result();
  };
  EXPECT_EQ(measured(0), 7554);
  EXPECT_EQ(measured(diode2), 1000);
  EXPECT_EQ(measured(difference), 6554);
  EXPECT_EQ(measured(no_diode), 0);
}

TEST_F(SimulatedKvt71344, InfraredCountsAreThoseOfTheHighestResolutionInTheFirstRange) {
  board.scene() = {.light_lux = 0, .ir_counts = 1000};
  const auto infrared = [&](std::uint8_t range, std::uint8_t resolution) {
    write(1, static_cast<std::uint8_t>(range << 2));
    restart(run | diode2 | resolution);
    clock.pass(102400us);
    return result();
  };
  EXPECT_EQ(infrared(0, 0), 1000);
  EXPECT_EQ(infrared(1, 0), 250);
  EXPECT_EQ(infrared(2, 0), 63);  // 62.5
  EXPECT_EQ(infrared(3, 0), 16);
  EXPECT_EQ(infrared(0, 1), 62);
  mount("KVT71356");
  board.scene() = {.light_lux = 0, .ir_counts = 1000};
  EXPECT_EQ(infrared(0, 0), 1000);
  EXPECT_EQ(infrared(1, 0), 250);
}

TEST_F(SimulatedKvt71344, AConversionTakesItsTimeAndTheNextOneFollows) {
  for (std::uint8_t resolution = 0; resolution < 4; ++resolution) {
    const auto time = integration_times[resolution];
    board.scene().light_lux = 1000;
    restart(run | resolution);
    clock.pass(time - 1us);
    EXPECT_EQ(result(), 0) << +resolution;
    clock.pass(1us);
    EXPECT_EQ(result(), 0xFFFF >> 4 * resolution);
    board.scene().light_lux = 0;
    clock.pass(time - 1us);
    EXPECT_EQ(result(), 0xFFFF >> 4 * resolution);
    clock.pass(1us);
    EXPECT_EQ(result(), 0);
  }
}

TEST_F(SimulatedKvt71344, TheDifferenceTakesNoLonger) {
  restart(run | difference);
  clock.pass(102400us);
  EXPECT_EQ(result(), 32768);
}

TEST_F(SimulatedKvt71344, TheSceneCountsAsItIsAtTheEndOfAConversion) {
  restart(run);
  clock.pass(50ms);
  board.scene().light_lux = 250;
  clock.pass(102400us - 50ms);
  board.scene().light_lux = 1000;
  EXPECT_EQ(result(), 16384);
}

TEST_F(SimulatedKvt71344, TheNoiseCountsAsItIsAtTheEndOfAConversion) {
  restart(run);
  clock.pass(102400us);
  board.set_noise(1000);
  EXPECT_EQ(result(), 32768);
  clock.pass(102400us);
  EXPECT_NE(result(), 32768);
  EXPECT_NEAR(result(), 32768, 501);
}

TEST_F(SimulatedKvt71344, AnotherSettingStartsAnew) {
  const std::vector<std::pair<std::uint8_t, std::uint8_t>> settings{
      {1, 0x04}, {0, run | diode2}, {0, run | 0x10}};
  for (const auto& [address, value] : settings) {
    write(1, 0);
    restart(run);
    board.scene() = {.light_lux = 500, .ir_counts = 500};
    clock.pass(90ms);
    write(address, value);
    clock.pass(102400us - 1us);
    EXPECT_EQ(result(), 0) << +address;
    clock.pass(1us);
    EXPECT_NE(result(), 0) << +address;
  }
}

TEST_F(SimulatedKvt71344, AResultStaysUntilTheNextInTheNewSetting) {
  clock.pass(102400us);
  write(1, 0x04);
  EXPECT_EQ(result(), 32768);
  clock.pass(102400us);
  EXPECT_EQ(result(), 8192);
}

TEST_F(SimulatedKvt71344, WritesThatSetNothingNewLeaveTheConversionAlone) {
  restart(run);
  clock.pass(90ms);
  write(0, run);
  write(1, 0x03);
  write(2, 0xFE);
  write(3, 0x00);
  command(end_of_conversion);
  command(clear_interrupt);
  clock.pass(102400us - 90ms);
  EXPECT_EQ(result(), 32768);
}

TEST_F(SimulatedKvt71344, ResetClearsTheResultsAndConvertsNothing) {
  write(0, run | external);
  command(end_of_conversion);
  integrate_externally(100ms);
  EXPECT_EQ(read(4, 4), (Bytes{500 & 0xFF, 500 >> 8, 1000 & 0xFF, 1000 >> 8}));
  write(0, external);
  EXPECT_EQ(read(4, 4), Bytes(4, 0));
  command(end_of_conversion);
  integrate_externally(100ms);
  EXPECT_EQ(read(4, 4), Bytes(4, 0));
  for (const std::uint8_t reset : {std::uint8_t{0}, power_down}) {
    restart(run);
    clock.pass(103ms);
    EXPECT_EQ(result(), 32768);
    write(0, reset);
    EXPECT_EQ(result(), 0);
    clock.pass(1h);
    EXPECT_EQ(result(), 0);
  }
}

TEST_F(SimulatedKvt71344, PowerDownKeepsTheOldResultAndConvertsNothing) {
  restart(run);
  clock.pass(102400us + 90ms);
  board.scene().light_lux = 1000;
  write(0, run | power_down);
  clock.pass(1h);
  EXPECT_EQ(result(), 32768);
  write(0, run);
  clock.pass(102400us - 1us);
  EXPECT_EQ(result(), 32768);
  clock.pass(1us);
  EXPECT_EQ(result(), 65535);

  write(0, run | power_down | external);
  command(end_of_conversion);
  integrate_externally(100ms);
  EXPECT_EQ(result(), 65535);
  EXPECT_EQ(cycles(), 0);
}

TEST_F(SimulatedKvt71344, TheResultRegistersAndTheFlagAreReadOnly) {
  write(0, run | power_down);
  EXPECT_EQ(i2c({0, 0x88, 3, 0x11, 0x22, 0x33, 0x44, 0x55}), success);
  EXPECT_EQ(read(3, 5), (Bytes{0x11, 0, 0, 0, 0}));
  write(1, 0xFF);
  EXPECT_EQ(read(1, 1), Bytes{0xDF});
  EXPECT_FALSE(pin_is_low());
}

TEST_F(SimulatedKvt71344, ThePointerStepsOnAtEveryByte) {
  i2c({1, 0x88, 0, run | power_down, 0x0F, 0xC0, 0x10});
  EXPECT_EQ(i2c_reply(1).buffer, Bytes{6});
  EXPECT_EQ(read(0, 4), (Bytes{run | power_down, 0x0F, 0xC0, 0x10}));
  i2c({1, 0x88, 2});
  i2c({3, 0x89});
  EXPECT_EQ(i2c_reply(4).buffer, (Bytes{3, 0xC0, 0x10, 0}));
}

TEST_F(SimulatedKvt71344, AReadWithoutAPointerBringsTheLatestResult) {
  i2c({1, 0x88, 4});
  clock.pass(102400us);
  i2c({2, 0x89});
  EXPECT_EQ(i2c_reply(3).buffer, (Bytes{2, 0x00, 0x80}));
}

TEST_F(SimulatedKvt71344, CommandsLeaveThePointerAlone) {
  i2c({1, 0x88, 2});
  for (const std::uint8_t byte : {end_of_conversion, clear_interrupt, std::uint8_t{0x55}}) {
    i2c({1, 0x88, byte});
    EXPECT_EQ(i2c_reply(1).buffer, Bytes{2});
  }
  i2c({1, 0x89});
  EXPECT_EQ(i2c_reply(2).buffer, (Bytes{1, 0xFF}));
}

TEST_F(SimulatedKvt71344, OfManyConversionsBetweenTwoAccessesOnlyTheLastAreWorkedOut) {
  const auto noisy_result_after = [&](int conversions) {
    forms::VirtualClock own_clock;
    SimulatedBoard own{own_clock};
    own.mount("KVT71344/5");
    own.set_register(0, run | 3);
    own.set_noise(20);
    own_clock.pass(conversions * 25us);
    return *own.register_value(4);
  };
  EXPECT_EQ(noisy_result_after(16), noisy_result_after(17));
  EXPECT_EQ(noisy_result_after(16), noisy_result_after(144'000'000));
  EXPECT_NE(noisy_result_after(15), noisy_result_after(16));
}

TEST_F(SimulatedKvt71344, HoursOfShortConversionsEndInTime) {
  board.scene().light_lux = 1000;
  restart(run | 3);
  clock.pass(24h + 20us);
  board.scene().light_lux = 0;
  clock.pass(4us);
  EXPECT_EQ(result(), 15);
  clock.pass(1us);
  EXPECT_EQ(result(), 0);
}

TEST_F(SimulatedKvt71344, ThePlugTakesThePowerAndTheFirstConversionBeginsWithIt) {
  write(2, 0x40);
  clock.pass(1s);
  EXPECT_TRUE(pin_is_low());
  board.unplug();
  EXPECT_FALSE(pin_is_low());
  clock.pass(1s);
  board.plug();
  clock.pass(102400us - 1us);
  board.deliver_notifications();
  EXPECT_EQ(read(0, 8), (Bytes{0x80, 0, 0xFF, 0, 0, 0, 0, 0}));
  clock.pass(1us);
  EXPECT_EQ(result(), 32768);
  // It is plugged already: nothing happens.
  board.plug();
  EXPECT_EQ(result(), 32768);
}

TEST_F(SimulatedKvt71344, TheBenchSetsRegistersAsTheBusDoesAndReadOnlyOnesToo) {
  clock.pass(102400us);
  EXPECT_TRUE(board.set_register(0, run | power_down));
  EXPECT_TRUE(board.set_register(4, 0x34));
  EXPECT_TRUE(board.set_register(7, 0x12));
  EXPECT_FALSE(board.set_register(8, 0));
  EXPECT_EQ(board.register_value(8), std::nullopt);
  clock.pass(1s);
  EXPECT_EQ(read(4, 4), (Bytes{0x34, 0x80, 0, 0x12}));
  EXPECT_EQ(board.register_value(4), 0x34);
  EXPECT_TRUE(board.set_register(1, flag));
  EXPECT_TRUE(pin_is_low());
  EXPECT_TRUE(board.set_register(0, run));
  clock.pass(102400us);
  EXPECT_EQ(board.register_value(5), 0x80);
}

}  // namespace
