// KVT71338: when it converts, what it counts, and what the external resistor makes of it.
#include "support/simulated_board_fixture.h"

using namespace boards;
using namespace std::chrono_literals;

namespace {

// Transfers take no time here, so that the clock moves by the test alone.
class SimulatedKvt71338 : public ConnectedBoardTest {
 protected:
  static constexpr std::uint8_t power = 0x80, continuous = 0x40, infrared = 0x20;
  static constexpr std::uint8_t bits12 = 0x04, bits8 = 0x08, bits4 = 0x0C, external = 0x10, time_base = 0x14;
  static constexpr std::array integration_cycles{65536, 4096, 256, 16};

  void SetUp() override {
    ConnectedBoardTest::SetUp();
    board.set_timing(false);
    mount();
  }
  void mount() {
    ASSERT_TRUE(board.mount("KVT71338"));
    board.scene() = {.light_lux = 500, .ir_counts = 0};
  }
  void write(int command) { i2c({0, 0x88, 0, static_cast<std::uint8_t>(command)}); }
  void sync() { i2c({0, 0x88, 0x80}); }
  int data() {
    i2c({2, 0x89, 1});
    const Bytes reply = i2c_reply(3).buffer;
    EXPECT_EQ(reply[0], 2);
    return reply[2] * 256 + reply[1];
  }
  static std::chrono::nanoseconds cycles(double count, double ohms = 500'000) {
    return std::chrono::nanoseconds(static_cast<std::int64_t>(count / 655e3 / 500e3 * ohms * 1e9));
  }
};

TEST_F(SimulatedKvt71338, PowersUpIdle) {
  EXPECT_EQ(board.register_value(0), 0);
  clock.pass(10s);
  EXPECT_EQ(data(), 0);
  write(continuous);
  clock.pass(10s);
  EXPECT_EQ(data(), 0);
}

TEST_F(SimulatedKvt71338, AConversionTakesTheCyclesOfItsResolution) {
  for (const double ohms : {500e3, 250e3, 100e3}) {
    for (int resolution = 0; resolution < 4; ++resolution) {
      SCOPED_TRACE(std::to_string(ohms) + " " + std::to_string(resolution));
      mount();
      board.scene().external_resistor_ohms = ohms;
      const double count = integration_cycles[static_cast<std::size_t>(resolution)];
      write(power | continuous | (resolution << 2));
      clock.pass(cycles(count, ohms) - 1us);
      EXPECT_EQ(data(), 0);
      clock.pass(2us);
      EXPECT_GT(data(), 0);
    }
  }
}

TEST_F(SimulatedKvt71338, CountsAreToTheFullCountAsTheLightToTheRange) {
  for (const double ohms : {500e3, 250e3, 100e3}) {
    board.scene().external_resistor_ohms = ohms;
    for (int range = 0; range < 4; ++range) {
      const double range_lux = 1000.0 * (1 << (2 * range)) * 500e3 / ohms;
      for (int resolution = 0; resolution < 4; ++resolution) {
        const double full = integration_cycles[static_cast<std::size_t>(resolution)] - 1;
        write(power | continuous | (resolution << 2) | range);
        for (const double part : {0.0, 1e-5, 0.01, 1 / 3.0, 0.5, 0.999, 1.0, 1.001, 70.0}) {
          board.scene().light_lux = part * range_lux;
          clock.pass(101ms);
          EXPECT_NEAR(data(), std::min(part, 1.0) * full, 0.5 + 1e-9)
              << ohms << ' ' << range << ' ' << resolution << ' ' << part;
        }
      }
    }
  }
}

TEST_F(SimulatedKvt71338, SeesVisibleLightOrInfrared) {
  board.scene() = {.light_lux = 100, .ir_counts = 1000};
  write(power | continuous);
  clock.pass(101ms);
  EXPECT_EQ(data(), 6554);
  write(power | continuous | infrared);
  clock.pass(101ms);
  EXPECT_EQ(data(), 1000);
  write(power | continuous | infrared | 1);
  clock.pass(101ms);
  EXPECT_EQ(data(), 250);
}

TEST_F(SimulatedKvt71338, OneShotIsOneConversionForEachWrite) {
  write(power);
  clock.pass(101ms);
  EXPECT_EQ(data(), 32768);
  board.scene().light_lux = 250;
  clock.pass(10s);
  EXPECT_EQ(data(), 32768);
  write(power);
  clock.pass(99ms);
  EXPECT_EQ(data(), 32768);
  // The same byte again leaves the conversion alone.
  write(power);
  clock.pass(2ms);
  EXPECT_EQ(data(), 16384);
}

TEST_F(SimulatedKvt71338, ContinuousConvertsOverAndOver) {
  write(power | continuous);
  for (const double lux : {100, 200, 300}) {
    board.scene().light_lux = lux;
    clock.pass(101ms);
    EXPECT_NEAR(data(), lux * 65.535, 0.5);
  }
}

TEST_F(SimulatedKvt71338, AnotherCommandBeginsAnewAndPowerDownKeepsTheData) {
  write(power | continuous);
  clock.pass(99ms);
  write(power | continuous | 1);
  clock.pass(99ms);
  EXPECT_EQ(data(), 0);
  clock.pass(2ms);
  EXPECT_EQ(data(), 8192);
  write(continuous | 1);
  board.scene().light_lux = 1000;
  clock.pass(10s);
  EXPECT_EQ(data(), 8192);
}

TEST_F(SimulatedKvt71338, TheHostTimesTheIntegrationByPairsOfSyncs) {
  write(power | external);
  clock.pass(1s);
  EXPECT_EQ(data(), 0);
  sync();
  clock.pass(20ms);
  EXPECT_EQ(data(), 0);
  sync();
  EXPECT_EQ(data(), 6550);  // 13100 cycles, half of the range
  // The third one begins again: what stands between the second and it isn't counted.
  clock.pass(50ms);
  sync();
  EXPECT_EQ(data(), 6550);
  clock.pass(10ms);
  sync();
  EXPECT_EQ(data(), 3275);
  sync();
  clock.pass(10s);
  sync();
  EXPECT_EQ(data(), 32768);  // over when the time base was full
}

TEST_F(SimulatedKvt71338, TheTimeBaseIsTheCyclesOfTheIntegration) {
  for (const double ohms : {500e3, 100e3}) {
    board.scene().external_resistor_ohms = ohms;
    write(power);
    write(power | time_base);
    sync();
    clock.pass(10ms);
    sync();
    EXPECT_NEAR(data(), 6550 * 500e3 / ohms, 1);
    sync();
    clock.pass(1s);
    sync();
    EXPECT_EQ(data(), 65535);
  }
}

TEST_F(SimulatedKvt71338, UnderInternalTimingASyncDoesNothing) {
  write(power | continuous);
  clock.pass(60ms);
  sync();
  clock.pass(41ms);
  sync();
  EXPECT_EQ(data(), 32768);
}

TEST_F(SimulatedKvt71338, ReservedIntegrationsDontConvert) {
  for (const int integration : {6, 7}) {
    write(power | continuous | (integration << 2));
    sync();
    clock.pass(1s);
    sync();
    EXPECT_EQ(data(), 0);
  }
}

TEST_F(SimulatedKvt71338, AnotherResistorChangesClockAndRangeWhileItConverts) {
  write(power | continuous);
  clock.pass(101ms);
  EXPECT_EQ(data(), 32768);
  board.scene().external_resistor_ohms = 100e3;
  data();
  clock.pass(cycles(65536, 100e3) + 1us);
  EXPECT_EQ(data(), 6554);
}

TEST_F(SimulatedKvt71338, TheBusCantWriteTheData) {
  i2c({0, 0x88, 1, 0x11, 0x22});
  EXPECT_EQ(data(), 0);
  EXPECT_TRUE(board.set_register(1, 0x34));
  EXPECT_TRUE(board.set_register(2, 0x12));
  EXPECT_FALSE(board.set_register(3, 0));
  EXPECT_EQ(data(), 0x1234);
}

// A read sets the register pointer, which isn't a write: it begins no conversion.
TEST_F(SimulatedKvt71338, ReadingBeginsNoConversion) {
  write(power);
  clock.pass(101ms);
  data();
  board.scene().light_lux = 100;
  clock.pass(101ms);
  EXPECT_EQ(data(), 32768);
}

}  // namespace
