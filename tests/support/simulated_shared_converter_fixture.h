// A sensor with one converter for light, infrared and proximity in the socket of the simulated board, and a
// host on its bus that decodes results as the panels do.
#pragma once

#include <array>
#include <ostream>

#include "support/simulated_board_fixture.h"

// In what the families differ.
struct ConverterFamily {
  const char* model;
  std::array<int, 4> counts_of_range;    // by width: what the panels divide by for lux
  std::array<std::uint8_t, 4> currents;  // in R1, from 12.5 mA on
  std::uint8_t modulated;                // in R1: 327.7 kHz
  std::array<std::uint8_t, 2> scheme1;   // in R0 and R1
  std::uint8_t idle_bits;                // of R0: no conversion depends on them
};

inline constexpr ConverterFamily kvt71385_family{
    "KVT71385", {65537, 4097, 257, 17}, {0x00, 0x10, 0x20, 0x30}, 0x40, {0, 0x80}, 0x03};
inline constexpr ConverterFamily kvt71374_family{
    "KVT71374", {65536, 4096, 257, 17}, {0xC0, 0x80, 0x40, 0x00}, 0x30, {0x01, 0}, 0x06};

inline void PrintTo(const ConverterFamily& family, std::ostream* out) {
  *out << family.model;
}

// Transfers take no time here, so that the clock moves by the test alone.
class SharedConverterTest : public ConnectedBoardTest {
 protected:
  static constexpr std::uint8_t power_down = 0x00, reserved = 0x80;
  static constexpr std::uint8_t als_once = 0x20, ir_once = 0x40, proximity_once = 0x60;
  static constexpr std::uint8_t als = 0xA0, ir = 0xC0, proximity = 0xE0;  // continuous
  static constexpr std::uint8_t external = 0x10, time_base = 0x08;
  static constexpr std::uint8_t sync = 0x80;
  // To configure with; where they stand in the registers is the family's.
  static constexpr int scheme1 = 1, modulated = 2;

  static constexpr std::array widths{16, 12, 8, 4};  // by the value of their field
  static constexpr std::array<std::chrono::microseconds, 4> times{
      std::chrono::microseconds(102400), std::chrono::microseconds(6400), std::chrono::microseconds(400),
      std::chrono::microseconds(25)};

  explicit SharedConverterTest(const ConverterFamily& which) : family(which) {}

  void SetUp() override {
    ConnectedBoardTest::SetUp();
    board.set_timing(false);
    mount(family.model);
  }

  void mount(const char* model) {
    ASSERT_TRUE(board.mount(model));
    board.scene() = {.light_lux = 500, .ir_counts = 0, .distance_mm = 1e9};
  }

  void write(Bytes registers) {
    registers.insert(registers.begin(), {0, 0x89});
    EXPECT_EQ(i2c(registers), boards::success);
  }
  // In the scheme that was configured last.
  void operate(int operation) { write({0, static_cast<std::uint8_t>(operation | scheme_bit)}); }
  // `current` counts from 12.5 mA.
  std::uint8_t configuration(int width, int range = 0, int current = 0, int others = 0) const {
    return static_cast<std::uint8_t>(((others & scheme1) != 0 ? family.scheme1[1] : 0) |
                                     ((others & modulated) != 0 ? family.modulated : 0) |
                                     family.currents[static_cast<std::size_t>(current)] | width << 2 | range);
  }
  void configure(int width, int range = 0, int current = 0, int others = 0) {
    scheme_bit = (others & scheme1) != 0 ? family.scheme1[0] : 0;
    write({1, configuration(width, range, current, others)});
  }
  void command(std::uint8_t byte) { EXPECT_EQ(i2c({0, 0x89, byte}), boards::success); }

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
  int held_pair(std::uint8_t low) {
    return *board.register_value(static_cast<std::uint8_t>(low + 1)) * 256 + *board.register_value(low);
  }
  int held() { return held_pair(2); }
  bool pin_is_low() { return (*board.port('B') & 0x80) == 0; }

  int converted(std::uint8_t once) {
    operate(once);
    clock.pass(times[0]);
    return result();
  }

  int counts_of_range(int width) const { return family.counts_of_range[static_cast<std::size_t>(width)]; }
  // The count of the 500 lux that are there at the start, in the first range.
  int half_range(int width = 0) const { return (counts_of_range(width) + 1) / 2; }

  // In the collection. `sign_bits` is the panel's last width of 16 or 12 bits, where it has one: else 16.
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

  const ConverterFamily& family;
  std::uint8_t scheme_bit = 0;
};

// What both families promise.
class EachConverterFamily : public SharedConverterTest, public testing::WithParamInterface<ConverterFamily> {
 protected:
  EachConverterFamily() : SharedConverterTest(GetParam()) {}
};

inline const auto converter_families = testing::Values(kvt71385_family, kvt71374_family);
constexpr auto family_name = [](const auto& each) { return std::string(each.param.model); };
