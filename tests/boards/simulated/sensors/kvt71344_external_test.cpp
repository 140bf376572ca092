// KVT71344/5 and KVT71356 under external timing.
#include <algorithm>

#include "support/simulated_kvt71344_fixture.h"

using namespace boards;
using namespace std::chrono_literals;

namespace {

class SimulatedKvt71344External : public Kvt71344Test {};

TEST_F(SimulatedKvt71344External, TheFirstCommandOnlyBeginsAnIntegration) {
  clock.pass(102400us);
  write(0, run | external);
  clock.pass(1s);
  command(end_of_conversion);
  EXPECT_EQ(result(), 32768);
  EXPECT_EQ(cycles(), 0);
  integrate_externally(100ms);
  EXPECT_EQ(result(), 500);
  EXPECT_EQ(cycles(), 1000);
  clock.pass(1s);
  EXPECT_EQ(cycles(), 1000);
}

TEST_F(SimulatedKvt71344External, TheRatioToTheCyclesIsThePartOfTheRange) {
  for (const char* model : {"KVT71344/5", "KVT71356"}) {
    mount(model);
    const double range = model == std::string("KVT71356") ? 2000 : 1000;
    const int most = model == std::string("KVT71356") ? 32767 : 65535;
    write(0, run | external);
    command(end_of_conversion);
    for (const double part : {0.01, 0.3, 0.5, 1.0, 3.0}) {
      board.scene().light_lux = part * range;
      for (const auto time : {1ms, 5ms, 50ms, 123ms, 1000ms, 3276ms, 6553ms, 3600000ms}) {
        integrate_externally(time);
        const int expected_cycles = static_cast<int>(std::min<long>(time / 100us, most));
        EXPECT_EQ(cycles(), expected_cycles) << model;
        EXPECT_NEAR(result(), std::min(part, 1.0) * expected_cycles, 0.5 + 1e-9)
            << model << ' ' << part << ' ' << time.count();
      }
    }
  }
}

TEST_F(SimulatedKvt71344External, OtherBytesBeyondTheRegistersEndNothing) {
  write(0, run | external);
  command(end_of_conversion);
  clock.pass(50ms);
  command(0x55);
  command(clear_interrupt);
  EXPECT_EQ(cycles(), 0);
  integrate_externally(50ms);
  EXPECT_EQ(cycles(), 1000);
}

TEST_F(SimulatedKvt71344External, ACycleIsCountedWhenItIsWhole) {
  write(0, run | external);
  command(end_of_conversion);
  integrate_externally(100us - 1ns);
  EXPECT_EQ(cycles(), 0);
  EXPECT_EQ(result(), 0);
  integrate_externally(100us);
  EXPECT_EQ(cycles(), 1);
  integrate_externally(0us);
  EXPECT_EQ(cycles(), 0);
}

TEST_F(SimulatedKvt71344External, ResolutionIsNoMatterUnderExternalTiming) {
  for (std::uint8_t resolution = 0; resolution < 4; ++resolution) {
    write(0, run | external | resolution);
    command(end_of_conversion);
    integrate_externally(1s);
    EXPECT_EQ(result(), 5000) << +resolution;
  }
}

TEST_F(SimulatedKvt71344External, TheCyclesStandStillUnderInternalTiming) {
  write(0, run | external);
  command(end_of_conversion);
  integrate_externally(100ms);
  write(0, run);
  clock.pass(102400us);
  EXPECT_EQ(result(), 32768);
  EXPECT_EQ(cycles(), 1000);
  command(end_of_conversion);
  command(end_of_conversion);
  EXPECT_EQ(cycles(), 1000);
}

}  // namespace
