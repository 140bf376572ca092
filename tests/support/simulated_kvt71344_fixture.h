// KVT71344/5 or KVT71356 in the socket of the simulated board, and a host on its bus.
#pragma once

#include "support/simulated_board_fixture.h"

// Transfers take no time here, so that the clock moves by the test alone.
class Kvt71344Test : public ConnectedBoardTest {
 protected:
  static constexpr std::uint8_t run = 0x80, power_down = 0x40, external = 0x20;
  static constexpr std::uint8_t diode2 = 0x04, difference = 0x08, no_diode = 0x0C;
  static constexpr std::uint8_t flag = 0x20;
  static constexpr std::uint8_t end_of_conversion = 0x80, clear_interrupt = 0x40;

  void SetUp() override {
    ConnectedBoardTest::SetUp();
    board.set_timing(false);
    mount("KVT71344/5");
  }

  void mount(const char* model) {
    ASSERT_TRUE(board.mount(model));
    board.scene() = {.light_lux = 500, .ir_counts = 0};
  }

  void write(std::uint8_t address, std::uint8_t value) {
    EXPECT_EQ(i2c({0, 0x88, address, value}), boards::success);
  }
  void command(std::uint8_t byte) { EXPECT_EQ(i2c({0, 0x88, byte}), boards::success); }

  Bytes read(std::uint8_t address, std::uint8_t size) {
    i2c({size, 0x89, address});
    Bytes reply = i2c_reply(size + 1u).buffer;
    EXPECT_EQ(reply.front(), size);
    reply.erase(reply.begin());
    return reply;
  }
  int pair(std::uint8_t address) {
    const Bytes bytes = read(address, 2);
    return bytes[1] * 256 + bytes[0];
  }
  int result() { return pair(4); }
  int cycles() { return pair(6); }
  bool flagged() { return (read(1, 1)[0] & flag) != 0; }
  bool pin_is_low() { return (*board.port('B') & 0x80) == 0; }

  // As after a reset: results of 0, and a first conversion that begins now.
  void restart(std::uint8_t command_byte) {
    write(0, 0);
    write(0, command_byte);
  }

  void integrate_externally(std::chrono::nanoseconds time) {
    clock.pass(time);
    command(end_of_conversion);
  }
};
