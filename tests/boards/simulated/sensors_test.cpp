#include <algorithm>
#include <limits>

#include "boards/simulated/models.h"
#include "support/simulated_board_fixture.h"

using namespace boards;
using namespace std::chrono_literals;

namespace {

class SimulatedSensors : public ConnectedBoardTest {};

TEST_F(SimulatedSensors, EveryModelOfTheStartListCanBeMounted) {
  const std::vector<std::string_view> start_list{"KVT71346/7", "KVT71344/5", "KVT71388", "KVT71356",
                                                 "KVT71374",   "KVT71385",   "KVT71338", "KVT71390",
                                                 "KVT71376",   "KVT71392"};
  EXPECT_EQ(simulated_models(), start_list);
  for (const std::string_view model : start_list) {
    EXPECT_TRUE(board.mount(model)) << model;
    EXPECT_EQ(board.mounted_model(), model);
    EXPECT_EQ(board.mounted_address(), 0x88);
    i2c({1, 0x88});
    EXPECT_EQ(i2c_reply(1).buffer, Bytes{1}) << model;
  }
}

TEST_F(SimulatedSensors, AnUnknownModelLeavesTheSocketAsItWas) {
  EXPECT_EQ(board.mounted_model(), "");
  EXPECT_FALSE(board.mount("KVT1"));
  board.mount("KVT71385", 0x8A);
  EXPECT_FALSE(board.mount("KVT1"));
  EXPECT_EQ(board.mounted_model(), "KVT71385");
  EXPECT_EQ(board.mounted_address(), 0x8A);
}

TEST_F(SimulatedSensors, ChoosingAModelMountsItAtTheDefaultAddress) {
  board.mount("KVT71385", 0x8A);
  board.model_chosen("KVT71346/7");
  EXPECT_EQ(board.mounted_model(), "KVT71346/7");
  EXPECT_EQ(board.mounted_address(), 0x88);
  board.model_chosen("something else");
  EXPECT_EQ(board.mounted_model(), "");
}

TEST_F(SimulatedSensors, RegistersStartWithTheirPowerOnValues) {
  const auto registers = [&](const char* model) {
    board.mount(model);
    Bytes values;
    while (const auto value = board.register_value(static_cast<std::uint8_t>(values.size()))) {
      values.push_back(*value);
    }
    return values;
  };
  EXPECT_EQ(registers("KVT71344/5"), (Bytes{0x80, 0, 0xFF, 0, 0, 0, 0, 0}));
  EXPECT_EQ(registers("KVT71356"), (Bytes{0x88, 0, 0xFF, 0, 0, 0, 0, 0}));
  EXPECT_EQ(registers("KVT71338"), Bytes(3, 0));
  for (const char* model : {"KVT71374", "KVT71376"}) EXPECT_EQ(registers(model), Bytes(6, 0)) << model;
  for (const char* model : {"KVT71385", "KVT71388", "KVT71390", "KVT71392"}) {
    EXPECT_EQ(registers(model), (Bytes{0, 0, 0, 0, 0, 0, 0xFF, 0xFF, 0})) << model;
  }
}

TEST_F(SimulatedSensors, RegistersStepOnAndEndAtTheLast) {
  board.mount("KVT71385");
  i2c({4, 0x88, 7, 0x11, 0x22, 0x33, 0x44});
  EXPECT_EQ(i2c_reply(1).buffer, Bytes{6});
  EXPECT_EQ(board.register_value(6), 0xFF);
  EXPECT_EQ(board.register_value(7), 0x11);
  EXPECT_EQ(board.register_value(9), std::nullopt);
  i2c({4, 0x89, 7});
  EXPECT_EQ(i2c_reply(5).buffer, (Bytes{4, 0x11, 0x22, 0, 0}));
}

TEST_F(SimulatedSensors, CommandsAreAcknowledgedWithoutEffect) {
  board.mount("KVT71385");
  i2c({1, 0x88, 6});
  for (const std::uint8_t command : Bytes{0x80, 0x40}) {
    i2c({1, 0x88, command});
    EXPECT_EQ(i2c_reply(1).buffer, Bytes{2});
  }
  i2c({1, 0x89});
  EXPECT_EQ(i2c_reply(2).buffer, (Bytes{1, 0xFF}));
}

TEST_F(SimulatedSensors, RegistersCanBeSetBehindTheBus) {
  board.mount("KVT71338");
  EXPECT_TRUE(board.set_register(2, 0x77));
  EXPECT_FALSE(board.set_register(3, 0x77));
  i2c({1, 0x89, 2});
  EXPECT_EQ(i2c_reply(2).buffer, (Bytes{1, 0x77}));
}

TEST_F(SimulatedSensors, TheSceneHasItsStartValues) {
  EXPECT_EQ(board.scene().light_lux, 500);
  EXPECT_EQ(board.scene().ir_counts, 100);
  EXPECT_EQ(board.scene().distance_mm, 100);
  EXPECT_EQ(board.scene().external_resistor_ohms, 500'000);
  EXPECT_EQ(board.noise(), 0);
}

// Transfers take no time here, so that the clock moves by the test alone.
class SimulatedKvt71346 : public ConnectedBoardTest {
 protected:
  static constexpr std::uint8_t diode1 = 0x00, diode2 = 0x04, difference = 0x08, reset = 0x0C,
                                power_down = 0x8C, loop_back = 0xA5;

  void SetUp() override {
    ConnectedBoardTest::SetUp();
    board.set_timing(false);
    board.mount("KVT71346/7");
  }

  void mode(std::uint8_t byte) { EXPECT_EQ(i2c({0, 0x88, byte}), success); }

  int count() {
    i2c({2, 0x89});
    const Received reply = i2c_reply(3);
    EXPECT_EQ(reply.buffer[0], 2);
    return reply.buffer[2] * 256 + reply.buffer[1];
  }

  int converted(std::uint8_t byte) {
    mode(byte);
    clock.pass(200ms);
    return count();
  }
};

TEST_F(SimulatedKvt71346, PowersUpInPowerDownWithACountOfZero) {
  EXPECT_EQ(board.register_value(0), 0x8C);
  clock.pass(1s);
  EXPECT_EQ(count(), 0);
}

TEST_F(SimulatedKvt71346, TheModesMeasureTheirPartOfTheLight) {
  EXPECT_EQ(converted(diode1), 5100);
  EXPECT_EQ(converted(diode2), 100);
  EXPECT_EQ(converted(difference), 5000);
  board.scene().light_lux = 12.34;
  board.scene().ir_counts = 7;
  EXPECT_EQ(converted(diode1), 130);
  EXPECT_EQ(converted(diode2), 7);
  EXPECT_EQ(converted(difference), 123);
}

TEST_F(SimulatedKvt71346, TheResultComesWhenTheIntegrationTimeHasPassed) {
  mode(diode1);
  clock.pass(100ms - 1ns);
  EXPECT_EQ(count(), 0);
  clock.pass(1ns);
  EXPECT_EQ(count(), 5100);
  mode(difference);
  clock.pass(200ms - 1ns);
  EXPECT_EQ(count(), 5100);
  clock.pass(1ns);
  EXPECT_EQ(count(), 5000);
  mode(diode2);
  clock.pass(99ms);
  EXPECT_EQ(count(), 5000);
  clock.pass(1ms);
  EXPECT_EQ(count(), 100);
}

TEST_F(SimulatedKvt71346, OneModeByteIsOneConversion) {
  EXPECT_EQ(converted(diode1), 5100);
  board.scene().light_lux = 100;
  clock.pass(1s);
  EXPECT_EQ(count(), 5100);
  EXPECT_EQ(converted(diode1), 1100);
}

TEST_F(SimulatedKvt71346, TheSceneCountsAsItIsAtTheEndOfTheConversion) {
  mode(diode1);
  clock.pass(50ms);
  board.scene().light_lux = 100;
  clock.pass(60ms);
  board.scene().light_lux = 200;
  EXPECT_EQ(count(), 1100);
}

TEST_F(SimulatedKvt71346, TheNoiseCountsAsItIsAtTheEndOfTheConversion) {
  mode(diode1);
  clock.pass(100ms);
  board.set_noise(1000);
  EXPECT_EQ(count(), 5100);
}

TEST_F(SimulatedKvt71346, RepeatingTheModeLeavesARunningConversionAlone) {
  for (int i = 0; i < 5; ++i) {
    mode(diode1);
    clock.pass(20ms);
  }
  EXPECT_EQ(count(), 5100);
}

TEST_F(SimulatedKvt71346, AnotherModeStartsAnew) {
  mode(diode1);
  clock.pass(90ms);
  mode(diode2);
  clock.pass(90ms);
  EXPECT_EQ(count(), 0);
  clock.pass(10ms);
  EXPECT_EQ(count(), 100);
}

TEST_F(SimulatedKvt71346, PowerDownStopsAndKeepsTheOldCount) {
  EXPECT_EQ(converted(diode1), 5100);
  mode(diode2);
  clock.pass(50ms);
  mode(power_down);
  clock.pass(1s);
  EXPECT_EQ(count(), 5100);
}

TEST_F(SimulatedKvt71346, AFinishedResultIsKeptWhenTheModeChanges) {
  mode(diode1);
  clock.pass(100ms);
  mode(power_down);
  EXPECT_EQ(count(), 5100);
}

TEST_F(SimulatedKvt71346, ResetClearsTheCountAndConvertsNothing) {
  EXPECT_EQ(converted(diode1), 5100);
  mode(diode1);
  mode(reset);
  EXPECT_EQ(count(), 0);
  clock.pass(1s);
  EXPECT_EQ(count(), 0);
}

TEST_F(SimulatedKvt71346, LoopBackReadsA5AndLeavingItRestoresTheCount) {
  EXPECT_EQ(converted(diode1), 5100);
  mode(loop_back);
  EXPECT_EQ(count(), 0xA5A5);
  clock.pass(1s);
  EXPECT_EQ(count(), 0xA5A5);
  EXPECT_EQ(board.register_value(1), 5100 & 0xFF);
  mode(power_down);
  EXPECT_EQ(count(), 5100);
}

TEST_F(SimulatedKvt71346, OtherModeBytesConvertNothing) {
  EXPECT_EQ(converted(0x88), 0);
  EXPECT_EQ(board.register_value(0), 0x88);
}

TEST_F(SimulatedKvt71346, OnlyTheFirstByteOfAWriteCounts) {
  i2c({1, 0x88, diode1, loop_back, reset});
  EXPECT_EQ(i2c_reply(1).buffer, Bytes{4});
  EXPECT_EQ(board.register_value(0), diode1);
  clock.pass(100ms);
  EXPECT_EQ(count(), 5100);
}

TEST_F(SimulatedKvt71346, BytesBehindTheCountAreZero) {
  converted(diode1);
  i2c({4, 0x89});
  EXPECT_EQ(i2c_reply(6).buffer, (Bytes{4, 5100 & 0xFF, 5100 >> 8, 0, 0, 0xEE}));
  mode(loop_back);
  i2c({3, 0x89});
  EXPECT_EQ(i2c_reply(4).buffer, (Bytes{3, 0xA5, 0xA5, 0}));
}

TEST(SensorOfTheBoard, AReadFillsWhateverTheBufferHeld) {
  const forms::VirtualClock clock;
  const Scene scene;
  NoiseSource noise;
  for (const std::string_view model : simulated_models()) {
    const auto sensor = make_sensor(model, {scene, clock, noise});
    std::vector<std::uint8_t> bytes(20, 0xEE);
    sensor->read(bytes);
    EXPECT_EQ(std::ranges::count(bytes, 0xEE), 0) << model;
  }
}

TEST_F(SimulatedKvt71346, ARegisterByteInAReadRequestIsAModeByte) {
  i2c({2, 0x89, diode2});
  EXPECT_EQ(i2c_reply(3).buffer, (Bytes{2, 0, 0}));
  clock.pass(100ms);
  EXPECT_EQ(count(), 100);
}

TEST_F(SimulatedKvt71346, CountsSaturateAndRoundHalfUp) {
  board.scene().light_lux = 1e9;
  EXPECT_EQ(converted(diode1), 65535);
  EXPECT_EQ(converted(difference), 65435);
  board.scene().light_lux = std::numeric_limits<double>::infinity();
  EXPECT_EQ(converted(diode1), 65535);
  board.scene().ir_counts = 1e9;
  EXPECT_EQ(converted(diode2), 65535);
  EXPECT_EQ(converted(difference), 0);
  board.scene() = {.light_lux = 0, .ir_counts = 2.5};
  EXPECT_EQ(converted(diode2), 3);
  board.scene().ir_counts = 2.49;
  EXPECT_EQ(converted(diode2), 2);
}

TEST_F(SimulatedKvt71346, NegativeScenesAreDark) {
  board.scene() = {.light_lux = -5, .ir_counts = -100};
  EXPECT_EQ(converted(diode1), 0);
  board.scene().ir_counts = 100;
  EXPECT_EQ(converted(diode1), 100);
  EXPECT_EQ(converted(difference), 0);
  board.scene().ir_counts = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(converted(diode2), 0);
}

TEST_F(SimulatedKvt71346, NoiseStaysInItsWidthAndFillsIt) {
  board.set_noise(20);
  EXPECT_EQ(board.noise(), 20);
  int lowest = 65535, highest = 0;
  double sum = 0;
  for (int i = 0; i < 1000; ++i) {
    const int value = converted(diode1);
    lowest = std::min(lowest, value);
    highest = std::max(highest, value);
    sum += value;
  }
  EXPECT_GE(lowest, 5090);
  EXPECT_LE(lowest, 5092);
  EXPECT_LE(highest, 5110);
  EXPECT_GE(highest, 5108);
  EXPECT_NEAR(sum / 1000, 5100, 1);
}

TEST_F(SimulatedKvt71346, NoiseIsTheSameOnEveryRun) {
  board.set_noise(1000);
  std::vector<int> counts;
  for (int i = 0; i < 4; ++i) counts.push_back(converted(diode1));
  EXPECT_EQ(counts, (std::vector<int>{4982, 4840, 5436, 5106}));
}

TEST_F(SimulatedKvt71346, NoiseStaysInTheRangeOfTheCount) {
  board.set_noise(1000);
  board.scene() = {.light_lux = 0, .ir_counts = 0};
  for (int i = 0; i < 50; ++i) EXPECT_LE(converted(diode1), 500);
  board.scene() = {.light_lux = 1e6, .ir_counts = 0};
  for (int i = 0; i < 50; ++i) EXPECT_GE(converted(diode1), 65035);
}

TEST_F(SimulatedKvt71346, RegistersForTheBench) {
  mode(diode1);
  clock.pass(100ms);
  EXPECT_EQ(board.register_value(0), diode1);
  EXPECT_EQ(board.register_value(1), 5100 & 0xFF);
  EXPECT_EQ(board.register_value(2), 5100 >> 8);
  EXPECT_EQ(board.register_value(3), std::nullopt);
  EXPECT_TRUE(board.set_register(1, 0x34));
  EXPECT_TRUE(board.set_register(2, 0x12));
  EXPECT_FALSE(board.set_register(3, 0));
  EXPECT_EQ(count(), 0x1234);
}

TEST_F(SimulatedKvt71346, TheModeSetBehindTheBusStartsNothing) {
  mode(diode1);
  clock.pass(50ms);
  EXPECT_TRUE(board.set_register(0, diode2));
  EXPECT_EQ(board.register_value(0), diode2);
  clock.pass(1s);
  EXPECT_EQ(count(), 0);
}

TEST_F(SimulatedKvt71346, TheBenchChangesNothingThatHasEnded) {
  mode(diode1);
  clock.pass(100ms);
  EXPECT_TRUE(board.set_register(0, power_down));
  EXPECT_EQ(count(), 5100);
}

TEST_F(SimulatedKvt71346, NeverInterrupts) {
  mode(diode1);
  clock.pass(1s);
  EXPECT_EQ(board.port('B'), 0xFF);
}

}  // namespace
