// KVT71344/5 and KVT71356: interrupt limits, persistence, flag and pin.
#include <array>

#include "support/simulated_kvt71344_fixture.h"

using namespace boards;
using namespace std::chrono_literals;

namespace {

class SimulatedKvt71344Interrupt : public Kvt71344Test {
 protected:
  // Sixteen bits in the first range: upper bytes of 0x80 and 0x19, on both sides of the limits.
  void outside() { board.scene().light_lux = 500; }
  void inside() { board.scene().light_lux = 100; }
  void watch(std::uint8_t trips) {
    write(2, 0x40);
    write(3, 0x10);
    write(1, trips);
    outside();
    restart(run);
  }
};

TEST_F(SimulatedKvt71344Interrupt, InterruptsAfterTheTripsAndNotOneEarlier) {
  const std::array trips{1, 4, 8, 16};
  for (const bool watching : {false, true}) {
    for (std::uint8_t i = 0; i < 4; ++i) {
      watch(i);
      command(clear_interrupt);
      for (int n = 1; n < trips[i]; ++n) {
        clock.pass(102400us);
        EXPECT_FALSE(watching && flagged()) << trips[i] << ' ' << n;
      }
      clock.pass(102400us - 1us);
      EXPECT_FALSE(flagged()) << trips[i];
      EXPECT_FALSE(pin_is_low());
      clock.pass(1us);
      EXPECT_TRUE(pin_is_low()) << trips[i];
      EXPECT_TRUE(flagged());
      EXPECT_EQ(read(1, 1)[0], flag | i);
    }
  }
}

TEST_F(SimulatedKvt71344Interrupt, OneConversionInsideBeginsTheRowAnew) {
  watch(1);
  clock.pass(3 * 102400us);
  inside();
  clock.pass(102400us);
  outside();
  clock.pass(3 * 102400us);
  EXPECT_FALSE(flagged());
  clock.pass(102400us);
  EXPECT_TRUE(flagged());
}

TEST_F(SimulatedKvt71344Interrupt, ConversionsCountByTheLightOfTheirTime) {
  watch(3);
  inside();
  clock.pass(1h);
  outside();
  EXPECT_FALSE(flagged());
  clock.pass(1h);
  inside();
  clock.pass(1h);
  EXPECT_TRUE(flagged());
}

TEST_F(SimulatedKvt71344Interrupt, TheUpperByteIsComparedAndTheLimitsAreInside) {
  write(2, 0x40);
  write(3, 0x10);
  const auto trips_at = [&](int count) {
    board.scene().light_lux = count * 1000 / 65535.0;
    restart(run);
    command(clear_interrupt);
    clock.pass(102400us);
    EXPECT_EQ(result(), count);
    return flagged();
  };
  EXPECT_TRUE(trips_at(0x0FFF));
  EXPECT_FALSE(trips_at(0x1000));
  EXPECT_FALSE(trips_at(0x40FF));
  EXPECT_TRUE(trips_at(0x4100));
}

TEST_F(SimulatedKvt71344Interrupt, TheFlagStaysUntilTheHostClearsIt) {
  watch(1);
  clock.pass(4 * 102400us);
  EXPECT_TRUE(flagged());
  EXPECT_TRUE(flagged());
  inside();
  clock.pass(1s);
  write(1, 1);
  EXPECT_TRUE(flagged());
  write(0, 0);
  EXPECT_TRUE(flagged());
  write(0, run | power_down);
  EXPECT_TRUE(flagged());
  EXPECT_TRUE(pin_is_low());
  command(clear_interrupt);
  EXPECT_FALSE(flagged());
  EXPECT_FALSE(pin_is_low());
}

TEST_F(SimulatedKvt71344Interrupt, OtherBytesBeyondTheRegistersClearNothing) {
  watch(0);
  clock.pass(102400us);
  command(end_of_conversion);
  command(0x55);
  EXPECT_TRUE(flagged());
  // With data it isn't a command.
  i2c({1, 0x88, clear_interrupt, 0x00});
  EXPECT_EQ(i2c_reply(1).buffer, Bytes{3});
  EXPECT_TRUE(flagged());
}

TEST_F(SimulatedKvt71344Interrupt, AfterAClearItTakesAllTheTripsAgain) {
  watch(1);
  clock.pass(10 * 102400us);
  command(clear_interrupt);
  clock.pass(4 * 102400us - 1us);
  EXPECT_FALSE(flagged());
  EXPECT_FALSE(pin_is_low());
  clock.pass(1us);
  EXPECT_TRUE(pin_is_low());
  EXPECT_TRUE(flagged());
}

TEST_F(SimulatedKvt71344Interrupt, AResetBeginsTheRowAnew) {
  watch(1);
  clock.pass(3 * 102400us);
  restart(run);
  clock.pass(3 * 102400us);
  EXPECT_FALSE(flagged());
  clock.pass(102400us);
  EXPECT_TRUE(flagged());
}

TEST_F(SimulatedKvt71344Interrupt, IntegrationsOfTheHostTripToo) {
  write(3, 0x01);
  write(1, 0x01);
  write(0, run | external);
  command(end_of_conversion);
  for (int i = 0; i < 3; ++i) integrate_externally(10ms);
  EXPECT_FALSE(flagged());
  integrate_externally(10ms);
  EXPECT_TRUE(flagged());
}

TEST_F(SimulatedKvt71344Interrupt, TheInterruptIsOnBit7OfPortB) {
  watch(0);
  EXPECT_EQ(board.port('B'), 0xFF);
  clock.pass(102400us);
  EXPECT_EQ(board.port('B'), 0x7F);
  EXPECT_EQ(board.port('C'), 0xFF);
  send(pipe_gpio_out, {0, 0, 0, 0, 2});
  EXPECT_EQ(receive(pipe_gpio_in, 25).buffer[0], 0x7F);
  inside();
  command(clear_interrupt);
  send(pipe_gpio_out, {0, 0, 0, 0, 2});
  EXPECT_EQ(receive(pipe_gpio_in, 25).buffer[0], 0xFF);
}

}  // namespace
