// The board's two GPIO ports and their packets: what comes on pipe 1, and what is answered on 0x81.
//
// A packet is data of B, data of C, output enables of B, output enables of C. A fifth byte of 2 asks
// for the pins alone and changes nothing. The answer is the level of the pins of B and of C, the two
// enables, and 21 zero bytes. A packet of less than four bytes is ignored.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

#include "boards/simulated/in_pipe.h"

namespace boards {

class Ports {
 public:
  // Level of the input pins of port 'B' or 'C' from outside. False: no such port.
  bool set_level(char port, std::uint8_t level);
  // Bit 7 of B is the interrupt pin, low while the sensor interrupts, as long as no level was set for
  // B. 0xFF at start. No value: no such port.
  std::optional<std::uint8_t> level(char port, bool interrupt) const;

  std::optional<Reply> serve(std::span<const std::uint8_t> packet, bool interrupt);

  // As after power-on: no outputs. What the outside puts on the pins stays.
  void power_on() { outputs_ = {}; }

 private:
  // One element for port B and one for port C.
  struct Outputs {
    std::array<std::uint8_t, 2> data{};
    std::array<std::uint8_t, 2> enables{};
  };

  Outputs outputs_;
  std::array<std::optional<std::uint8_t>, 2> set_levels_;
};

}  // namespace boards
