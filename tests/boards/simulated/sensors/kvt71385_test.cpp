// KVT71385 and its family: the registers.
#include "support/simulated_kvt71385_fixture.h"

using namespace boards;
using namespace std::chrono_literals;

namespace {

class SimulatedKvt71385 : public Kvt71385Test {};

TEST_F(SimulatedKvt71385, TheFourModelsAreOneSensor) {
  for (const char* model : {"KVT71385", "KVT71388", "KVT71390", "KVT71392"}) {
    mount(model);
    EXPECT_EQ(read(0, 9), (Bytes{0, 0, 0, 0, 0, 0, 0xFF, 0xFF, 0})) << model;
    EXPECT_EQ(converted(als_once), 32769) << model;
    board.scene().ir_counts = 100;
    EXPECT_EQ(converted(ir_once), 1600) << model;
    board.scene().distance_mm = 0;
    EXPECT_EQ(converted(proximity_once), 16 * (60 + 2048 + 100)) << model;
  }
}

TEST_F(SimulatedKvt71385, RegistersHoldWhatIsWritten) {
  write({0, 0xFF, 0xFE, 0xFD, 0xFC, 0xFB, 0xFA, 0xF9, 0xF8, 0xF7});
  EXPECT_EQ(read(0, 9), (Bytes{0xFB, 0xFE, 0, 0, 0xFB, 0xFA, 0xF9, 0xF8, 0xF7}));
  write({8, 0x01});
  EXPECT_EQ(read(8, 1), Bytes{1});
  EXPECT_EQ(read(9, 2), (Bytes{0, 0}));
}

TEST_F(SimulatedKvt71385, AFlagThatTheBenchSetsPullsThePin) {
  board.set_register(0, flag);
  EXPECT_TRUE(pin_is_low());
}

TEST_F(SimulatedKvt71385, ThePlugPutsEverythingBack) {
  limits(0, 0);
  operate(als);
  clock.pass(1s);
  EXPECT_TRUE(pin_is_low());
  board.unplug();
  board.deliver_notifications();
  board.plug();
  board.deliver_notifications();
  EXPECT_FALSE(pin_is_low());
  clock.pass(1s);
  EXPECT_EQ(read(0, 9), (Bytes{0, 0, 0, 0, 0, 0, 0xFF, 0xFF, 0}));
}

}  // namespace
