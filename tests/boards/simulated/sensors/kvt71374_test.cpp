// KVT71374 and KVT71376: registers, emitter, cycles, and what their panels make of it.
#include "registers/kvt71374.h"

#include <cmath>

#include "boards/simulated/sensors/count_format.h"
#include "support/simulated_shared_converter_fixture.h"

using namespace boards;
using namespace std::chrono_literals;

namespace {

class SimulatedKvt71374 : public SharedConverterTest {
 protected:
  // What the panels take for a full count, by width.
  static constexpr std::array full_counts{65535, 4095, 256, 16};

  SimulatedKvt71374() : SharedConverterTest(kvt71374_family) {}

  int held_cycles() { return held_pair(4); }
  int proximity_at(int configuration_byte) {
    write({1, static_cast<std::uint8_t>(configuration_byte)});
    return converted(proximity_once);
  }

  // In the collection, where a high byte of 128 has the sign; in the sampling and the pair it hasn't.
  static int decoded_in_collection(int word) { return decoded(word, 16); }
  static int decoded_in_sampling(int word) { return word >> 8 >= 129 ? decoded(word, 16) : word; }
};

TEST_F(SimulatedKvt71374, BothModelsAreOneSensor) {
  for (const char* model : {"KVT71374", "KVT71376"}) {
    mount(model);
    EXPECT_EQ(read(0, 6), Bytes(6, 0)) << model;
    EXPECT_EQ(converted(als_once), 32768) << model;
    board.scene().ir_counts = 100;
    EXPECT_EQ(converted(ir_once), 1600) << model;
    configure(0);
    board.scene().distance_mm = 0;
    EXPECT_EQ(converted(proximity_once), 16 * (60 + 2048 + 100)) << model;
  }
}

TEST_F(SimulatedKvt71374, HoldsWhatIsWrittenToTheTwoRegistersThatCanBe) {
  write({0, 0xFF, 0xFE, 0xFD, 0xFC, 0xFB, 0xFA, 0xF9});
  EXPECT_EQ(read(0, 7), (Bytes{0xFF, 0xFE, 0, 0, 0, 0, 0}));
  EXPECT_FALSE(board.register_value(6).has_value());
  write({1, 0x01});
  EXPECT_EQ(read(0, 2), (Bytes{0xFF, 0x01}));
}

TEST_F(SimulatedKvt71374, NeverPullsTheInterruptPin) {
  operate(als | 0x04);
  clock.pass(10s);
  EXPECT_EQ(read(0, 1), Bytes{als | 0x04});
  EXPECT_FALSE(pin_is_low());
}

TEST_F(SimulatedKvt71374, ThePlugPutsEverythingBack) {
  configure(1);
  EXPECT_NE(converted(als_once), 0);
  board.unplug();
  board.deliver_notifications();
  board.plug();
  board.deliver_notifications();
  clock.pass(1s);
  EXPECT_EQ(read(0, 6), Bytes(6, 0));
}

// As for a panel that waits for each conversion, reads register 2 and divides by its full count and one.
TEST_F(SimulatedKvt71374, HalfOfTheRangeIsHalfOfIt) {
  struct Row {
    int width, count;
  };
  for (const auto& [width, count] : {Row{0, 32768}, Row{1, 2048}, Row{2, 129}, Row{3, 9}}) {
    configure(width);
    EXPECT_EQ(converted(als_once), count);
    const int divisor = full_counts[static_cast<std::size_t>(width)] + 1;
    EXPECT_EQ(divisor, counts_of_range(width));
    EXPECT_NEAR(std::nearbyint(1000.0 * count / divisor), 500, 1000.0 / divisor);
  }
}

TEST_F(SimulatedKvt71374, OnlyTheTwoLongWidthsReachWhatThePanelsTakeForFull) {
  board.scene() = {.light_lux = 1e9, .ir_counts = 1e9, .distance_mm = 0};
  for (int width = 0; width < 4; ++width) {
    configure(width);
    for (const std::uint8_t once : {als_once, ir_once, proximity_once}) {
      EXPECT_EQ(converted(once) == full_counts[static_cast<std::size_t>(width)], width < 2)
          << width << ' ' << +once;
    }
  }
}

// ---- Emitter. The counts are those of 12 bits.

TEST_F(SimulatedKvt71374, TheFirstCurrentIsTheStrongest) {
  constexpr std::array crosstalk{700, 320, 140, 60};  // 100, 50, 25, 12.5 mA
  for (int value = 0; value < 4; ++value) {
    board.scene().distance_mm = 1e9;
    const int alone = proximity_at(value << 6 | 0x04);
    EXPECT_EQ(alone, crosstalk[static_cast<std::size_t>(value)]) << value;
    board.scene().distance_mm = 140;  // a fiftieth of the nearest target
    EXPECT_NEAR(proximity_at(value << 6 | 0x04) - alone, (2048 << (3 - value)) / 50.0, 0.5) << value;
  }
}

TEST_F(SimulatedKvt71374, EachModulationGivesItsPartOfTheLight) {
  struct Row {
    int value, crosstalk;
    double part;
  };
  for (const auto& [value, crosstalk, part] :
       {Row{0, 320 * 16, 1}, Row{1, 1800, 3 / 8.0}, Row{2, 2100, 7 / 16.0}, Row{3, 150 * 16, 1 / 2.0}}) {
    board.scene().distance_mm = 1e9;
    EXPECT_EQ(proximity_at(0x40 | value << 4), crosstalk) << value;
    board.scene().distance_mm = 140;
    EXPECT_NEAR(proximity_at(0x40 | value << 4) - crosstalk, 2 * 32768 * part * 2 / 50, 0.5) << value;
  }
}

// ---- Scheme

TEST_F(SimulatedKvt71374, TheSchemeIsInTheCommandAndASettingOfTheConversion) {
  board.scene().ir_counts = 1040;
  configure(1, 0, 0, modulated);
  operate(proximity);
  clock.pass(6ms);
  operate(proximity | 0x01);
  clock.pass(6400us - 1ns);
  EXPECT_EQ(held(), 0);
  clock.pass(1ns);
  EXPECT_EQ(held(), 0x10000 - 100);
  operate(proximity);
  clock.pass(6400us);
  EXPECT_EQ(held(), 30 + 1040);
}

TEST_F(SimulatedKvt71374, TheBitsBesideTheSchemeAreHeldAndDoNothing) {
  board.scene().ir_counts = 1040;
  configure(1, 0, 0, modulated);
  EXPECT_EQ(converted(proximity_once | 0x06), 30 + 1040);
  EXPECT_EQ(read(0, 1), Bytes{proximity_once | 0x06});
}

// -100 at 12 bits; a panel decodes in three places, and each takes the sign from other high bytes.
TEST_F(SimulatedKvt71374, ResultsBelowZeroDecodeInAllThreePlaces) {
  board.scene().ir_counts = 1040;
  for (const auto& [width, count] : {std::pair{0, -1600}, std::pair{1, -100}, std::pair{2, -6}}) {
    configure(width, 0, 0, scheme1 | modulated);
    const int word = converted(proximity_once);
    EXPECT_EQ(decoded_in_collection(word), count);
    EXPECT_EQ(decoded_in_sampling(word), count);
    EXPECT_EQ(decoded_in_pair(word), count);
  }
}

// The lowest 256 counts of 16 bits have the high byte that two of the places take for a positive value.
TEST_F(SimulatedKvt71374, AllCountsButTheLowestOf16BitsDecodeInAllThreePlaces) {
  for (int width = 0; width < 4; ++width) {
    const CountFormat format{widths[static_cast<std::size_t>(width)], true};
    for (int count = format.lowest(); count <= format.highest(); ++count) {
      const int word = CountFormat::result(count);
      ASSERT_EQ(decoded_in_collection(word), count);
      ASSERT_EQ(decoded_in_sampling(word), count < -0x7F00 ? word : count);
      ASSERT_EQ(decoded_in_pair(word), count < -0x7F00 ? word : count);
    }
  }
}

// As the panels take a pair: proximity in its scheme, then infrared in scheme 0.
TEST_F(SimulatedKvt71374, APairIsTheLightOfTheEmitter) {
  board.scene() = {.light_lux = 500, .ir_counts = 200, .distance_mm = 20};
  configure(1, 0, 0, modulated);
  EXPECT_EQ(converted(0x60) - converted(0x40), 30 + 512);
  EXPECT_EQ(decoded_in_pair(converted(0x61)) - converted(0x40), 30 + 512 - 25 - 200);
  operate(0x00);
  clock.pass(1h);
  EXPECT_EQ(result(), 200);
}

// ---- Cycles

TEST_F(SimulatedKvt71374, CountsTheCyclesOfEachIntegrationBesideItsResult) {
  for (int width = 0; width < 4; ++width) {
    const int scale = 1 << widths[static_cast<std::size_t>(width)];
    const std::chrono::nanoseconds time = times[static_cast<std::size_t>(width)];
    configure(width);
    operate(als | external);
    command(sync);
    clock.pass(time / 4);
    command(sync);
    EXPECT_EQ(held_cycles(), scale / 4) << width;
    EXPECT_EQ(held(), std::lround(counts_of_range(width) / 8.0)) << width;
    clock.pass(time);
    EXPECT_EQ(held_cycles(), scale - 1) << width;
    EXPECT_EQ(held(), half_range(width)) << width;
  }
}

TEST_F(SimulatedKvt71374, TheTimeBaseHasTheCyclesInBothPairs) {
  operate(als | external | time_base);
  command(sync);
  clock.pass(times[0] / 2);
  command(sync);
  EXPECT_EQ(read(2, 4), (Bytes{0x00, 0x80, 0x00, 0x80}));
}

TEST_F(SimulatedKvt71374, UnderInternalTimingAConversionIsAWholeIntegration) {
  for (int width = 0; width < 4; ++width) {
    mount("KVT71374");
    configure(width);
    operate(als_once);
    EXPECT_EQ(held_cycles(), 0) << width;
    clock.pass(times[static_cast<std::size_t>(width)]);
    EXPECT_EQ(held_cycles(), 0xFFFF >> 4 * width) << width;
    operate(power_down);
    clock.pass(1s);
    EXPECT_EQ(held_cycles(), 0xFFFF >> 4 * width) << width;
  }
}

}  // namespace
