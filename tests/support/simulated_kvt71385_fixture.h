// KVT71385 in the socket of the simulated board, with its interrupt limits.
#pragma once

#include "support/simulated_shared_converter_fixture.h"

class Kvt71385Test : public SharedConverterTest {
 protected:
  static constexpr std::uint8_t flag = 0x04;

  Kvt71385Test() : SharedConverterTest(kvt71385_family) {}

  void limits(std::uint16_t low, std::uint16_t high) {
    const auto half = [](int value) { return static_cast<std::uint8_t>(value); };
    write({4, half(low), half(low >> 8), half(high), half(high >> 8)});
  }
  bool held_flag() { return (*board.register_value(0) & flag) != 0; }
};
