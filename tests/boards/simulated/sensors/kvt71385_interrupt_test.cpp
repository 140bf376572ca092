// KVT71385 and its family: interrupt limits, persistence, flag and pin.
#include "support/simulated_kvt71385_fixture.h"

using namespace boards;
using namespace std::chrono_literals;

namespace {

constexpr std::array trips{1, 4, 8, 16};

class SimulatedKvt71385Interrupt : public Kvt71385Test {
 protected:
  // Twelve bits in the first range: 2049 and 410 counts, on both sides of the limits.
  void outside() { board.scene().light_lux = 500; }
  void inside() { board.scene().light_lux = 100; }
  void watch() {
    configure(1);
    limits(100, 1500);
    outside();
  }
  void convert(int conversions) { clock.pass(conversions * times[1]); }

  // Whether one conversion in this mode trips.
  bool trips_at(std::uint8_t once, std::uint16_t low, std::uint16_t high) {
    read(0, 1);
    limits(low, high);
    converted(once);
    return (read(0, 1)[0] & flag) != 0;
  }
};

TEST_F(SimulatedKvt71385Interrupt, ContinuousConversionsTripAfterThePersistence) {
  for (int i = 0; i < 4; ++i) {
    mount("KVT71385");
    watch();
    operate(als | i);
    clock.pass(trips[static_cast<std::size_t>(i)] * times[1] - 1ns);
    EXPECT_FALSE(pin_is_low()) << i;
    clock.pass(1ns);
    EXPECT_TRUE(pin_is_low()) << i;
    EXPECT_TRUE(held_flag());
    EXPECT_EQ(read(0, 2), (Bytes{static_cast<std::uint8_t>(als | flag | i), configuration(1)}));
  }
}

TEST_F(SimulatedKvt71385Interrupt, SingleConversionsTripAfterThePersistence) {
  for (int i = 0; i < 4; ++i) {
    mount("KVT71385");
    watch();
    for (int n = 1; n <= trips[static_cast<std::size_t>(i)]; ++n) {
      EXPECT_FALSE(pin_is_low()) << i << ' ' << n;
      operate(als_once | i);
      convert(1);
    }
    EXPECT_TRUE(pin_is_low()) << i;
  }
}

TEST_F(SimulatedKvt71385Interrupt, ReadingTheOperationRegisterClearsFlagAndPin) {
  watch();
  operate(als_once);
  convert(1);
  EXPECT_TRUE(pin_is_low());
  read(1, 8);
  EXPECT_TRUE(pin_is_low());
  EXPECT_EQ(read(0, 1), Bytes{als_once | flag});
  EXPECT_FALSE(pin_is_low());
  EXPECT_EQ(read(0, 1), Bytes{als_once});
  clock.pass(1h);
  EXPECT_FALSE(pin_is_low());
}

TEST_F(SimulatedKvt71385Interrupt, AfterAClearItTakesAllTheTripsAgain) {
  watch();
  operate(als | 1);
  convert(10);
  EXPECT_NE(read(0, 1)[0] & flag, 0);
  convert(3);
  EXPECT_FALSE(pin_is_low());
  convert(1);
  EXPECT_TRUE(pin_is_low());
}

TEST_F(SimulatedKvt71385Interrupt, AReadWithoutAFlagLeavesTheRowAlone) {
  watch();
  operate(als | 1);
  convert(3);
  EXPECT_EQ(read(0, 1)[0] & flag, 0);
  convert(1);
  EXPECT_TRUE(pin_is_low());
}

TEST_F(SimulatedKvt71385Interrupt, OneConversionInsideBeginsTheRowAnew) {
  watch();
  operate(als | 1);
  convert(3);
  inside();
  convert(1);
  outside();
  convert(3);
  EXPECT_FALSE(pin_is_low());
  convert(1);
  EXPECT_TRUE(pin_is_low());
}

TEST_F(SimulatedKvt71385Interrupt, AWriteNeitherSetsNorClearsTheFlag) {
  operate(flag);
  EXPECT_FALSE(held_flag());
  EXPECT_FALSE(pin_is_low());
  watch();
  operate(als_once);
  convert(1);
  operate(power_down);
  EXPECT_TRUE(held_flag());
  inside();
  operate(als);
  convert(20);
  EXPECT_TRUE(pin_is_low());
}

TEST_F(SimulatedKvt71385Interrupt, LightAndInfraredAreComparedFromZeroWhateverTheScheme) {
  for (const int others : {0, +scheme1}) {
    for (const std::uint8_t once : {als_once, ir_once}) {
      for (int width = 0; width < 4; ++width) {
        configure(width, 0, 0, others);
        board.scene() = {.light_lux = 750, .ir_counts = 3072, .distance_mm = 1e9};
        const auto count = static_cast<std::uint16_t>(converted(once));
        EXPECT_FALSE(trips_at(once, count, count)) << +once << ' ' << width;
        EXPECT_TRUE(trips_at(once, static_cast<std::uint16_t>(count + 1), 0xFFFF));
        EXPECT_TRUE(trips_at(once, 0, static_cast<std::uint16_t>(count - 1)));
        EXPECT_FALSE(trips_at(once, 0, 0xFFFF));
        EXPECT_EQ(trips_at(once, 0, 0x1000), width == 0) << width;
      }
    }
  }
}

TEST_F(SimulatedKvt71385Interrupt, ProximityIsComparedFromZeroUnderSchemeZero) {
  configure(1, 0, 0, modulated);
  EXPECT_FALSE(trips_at(proximity_once, 30, 30));
  EXPECT_TRUE(trips_at(proximity_once, 31, 0xFFFF));
  EXPECT_TRUE(trips_at(proximity_once, 0, 29));
  board.scene().distance_mm = 0;
  configure(1, 0, 3);
  EXPECT_FALSE(trips_at(proximity_once, 4095, 4095));
}

TEST_F(SimulatedKvt71385Interrupt, ProximityIsComparedWithItsSignUnderSchemeOne) {
  const auto word = [](int value) { return static_cast<std::uint16_t>(value); };
  // Without a target: 30 less an eighth of the infrared, at twelve bits.
  for (int width = 0; width < 3; ++width) {
    configure(width, 0, 0, scheme1 | modulated);
    for (const double infrared : {0.0, 4096.0}) {
      board.scene().ir_counts = infrared;
      const int count = decoded_in_pair(converted(proximity_once));
      EXPECT_EQ(count<0, infrared> 0);
      EXPECT_FALSE(trips_at(proximity_once, word(count), word(count))) << width << ' ' << count;
      EXPECT_TRUE(trips_at(proximity_once, word(count + 1), word(100)));
      EXPECT_TRUE(trips_at(proximity_once, word(-100), word(count - 1)));
    }
  }
}

TEST_F(SimulatedKvt71385Interrupt, TheBitsAboveTheWidthDontMatterToALimitWithASign) {
  configure(1, 0, 0, scheme1 | modulated);
  board.scene().ir_counts = 1040;  // -100
  for (const int above : {0x0000, 0x7000, 0xF000}) {
    const auto word = [&](int twelve_bits) { return static_cast<std::uint16_t>(twelve_bits | above); };
    EXPECT_FALSE(trips_at(proximity_once, word(0xF9C), word(0xF9C)));
    EXPECT_TRUE(trips_at(proximity_once, word(0xF9D), word(0x100)));
    EXPECT_TRUE(trips_at(proximity_once, word(0x800), word(0xF9B)));
  }
}

// Each write of the mode under scheme 1 sets the lowest bit of the persistence.
TEST_F(SimulatedKvt71385Interrupt, ATargetThatComesNearTrips) {
  configure(1, 0, 2, scheme1 | modulated);
  limits(100, 1500);
  board.scene() = {.light_lux = 500, .ir_counts = 100, .distance_mm = 100};
  operate(proximity | 1);
  convert(100);
  EXPECT_FALSE(pin_is_low());
  board.scene().distance_mm = 10;
  convert(3);
  EXPECT_FALSE(pin_is_low());
  convert(1);
  EXPECT_TRUE(pin_is_low());
}

TEST_F(SimulatedKvt71385Interrupt, AResultThatIsReadEarlyAndTheHostsIntegrationsTripToo) {
  configure(2);
  limits(0, 10);
  outside();
  operate(als_once);
  result();
  EXPECT_EQ(read(0, 1)[0] & flag, flag);
  operate(als | external);
  command(sync);
  clock.pass(times[2] / 2);
  command(sync);
  EXPECT_TRUE(pin_is_low());
}

TEST_F(SimulatedKvt71385Interrupt, TheTimeBaseIsNotCompared) {
  limits(0, 0);
  operate(als | time_base);
  clock.pass(10s);
  EXPECT_FALSE(pin_is_low());
}

TEST_F(SimulatedKvt71385Interrupt, ManyConversionsAtOnceCountAsTheyWould) {
  watch();
  configure(3);
  limits(0, 5);
  inside();
  operate(als | 3);
  clock.pass(10h);
  EXPECT_FALSE(pin_is_low());
  outside();
  clock.pass(10h);
  EXPECT_TRUE(pin_is_low());
  inside();
  clock.pass(10h);
  EXPECT_EQ(read(0, 1)[0] & flag, flag);
  EXPECT_FALSE(pin_is_low());
}

TEST_F(SimulatedKvt71385Interrupt, TheInterruptIsOnBit7OfPortB) {
  watch();
  operate(als_once);
  EXPECT_EQ(board.port('B'), 0xFF);
  convert(1);
  EXPECT_EQ(board.port('B'), 0x7F);
  EXPECT_EQ(board.port('C'), 0xFF);
  send(pipe_gpio_out, {0, 0, 0, 0, 2});
  EXPECT_EQ(receive(pipe_gpio_in, 25).buffer[0], 0x7F);
  read(0, 2);
  send(pipe_gpio_out, {0, 0, 0, 0, 2});
  EXPECT_EQ(receive(pipe_gpio_in, 25).buffer[0], 0xFF);
}

}  // namespace
