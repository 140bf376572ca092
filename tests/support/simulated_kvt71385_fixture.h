// KVT71385 in the socket of the simulated board, and a host on its bus that decodes results as the panels do.
#pragma once

#include <cmath>

#include "registers/kvt71385.h"
#include "support/simulated_board_fixture.h"

// Transfers take no time here, so that the clock moves by the test alone.
class Kvt71385Test : public ConnectedBoardTest {
 protected:
  static constexpr std::uint8_t power_down = 0x00, reserved = 0x80;
  static constexpr std::uint8_t als_once = 0x20, ir_once = 0x40, proximity_once = 0x60;
  static constexpr std::uint8_t als = 0xA0, ir = 0xC0, proximity = 0xE0;  // continuous
  static constexpr std::uint8_t external = 0x10, time_base = 0x08, flag = 0x04;
  static constexpr std::uint8_t scheme1 = 0x80, modulated = 0x40;
  static constexpr std::uint8_t sync = 0x80;

  static constexpr std::array widths{16, 12, 8, 4};  // by the value of their field
  static constexpr std::array<std::chrono::microseconds, 4> times{
      std::chrono::microseconds(102400), std::chrono::microseconds(6400), std::chrono::microseconds(400),
      std::chrono::microseconds(25)};

  void SetUp() override {
    ConnectedBoardTest::SetUp();
    board.set_timing(false);
    mount("KVT71385");
  }

  void mount(const char* model) {
    ASSERT_TRUE(board.mount(model));
    board.scene() = {.light_lux = 500, .ir_counts = 0, .distance_mm = 1e9};
  }

  void write(Bytes registers) {
    registers.insert(registers.begin(), {0, 0x89});
    EXPECT_EQ(i2c(registers), boards::success);
  }
  void operate(int operation) { write({0, static_cast<std::uint8_t>(operation)}); }
  // `current` counts from 12.5 mA.
  static std::uint8_t configuration(int width, int range = 0, int current = 0, int others = 0) {
    return static_cast<std::uint8_t>(others | current << 4 | width << 2 | range);
  }
  void configure(int width, int range = 0, int current = 0, int others = 0) {
    write({1, configuration(width, range, current, others)});
  }
  void command(std::uint8_t byte) { EXPECT_EQ(i2c({0, 0x89, byte}), boards::success); }
  void limits(std::uint16_t low, std::uint16_t high) {
    const auto half = [](int value) { return static_cast<std::uint8_t>(value); };
    write({4, half(low), half(low >> 8), half(high), half(high >> 8)});
  }

  Bytes read(std::uint8_t address, std::uint8_t size) {
    i2c({size, 0x89, address});
    Bytes reply = i2c_reply(size + 1u).buffer;
    EXPECT_EQ(reply.front(), size);
    reply.erase(reply.begin());
    return reply;
  }
  int result() {
    const Bytes bytes = read(2, 2);
    return bytes[1] * 256 + bytes[0];
  }
  // What the registers hold, without a read on the bus.
  int held() { return *board.register_value(3) * 256 + *board.register_value(2); }
  bool held_flag() { return (*board.register_value(0) & flag) != 0; }
  bool pin_is_low() { return (*board.port('B') & 0x80) == 0; }

  int converted(std::uint8_t once) {
    operate(once);
    clock.pass(times[0]);
    return result();
  }

  // In the collection. `sign_bits` is the panel's last width of 16 or 12 bits.
  static int decoded(int word, int sign_bits) {
    const int sign_bit = sign_bits == 16 ? 128 : 8;
    const int sign_mask = sign_bits == 16 ? 32767 : 2047;
    const int low = word & 0xFF;
    int high = word >> 8;
    if (sign_bit == 8) high &= 15;
    if (high < sign_bit) return high * 256 + low;
    high -= sign_bit;
    return -(((high * 256 + low) ^ sign_mask) + 1);
  }
  // In the pair of proximity and infrared, whatever the width.
  static int decoded_in_pair(int word) {
    const int high = word >> 8;
    return high > 128 ? -(((word - 128 * 256) ^ 0x7FFF) + 1) : word;
  }
};
