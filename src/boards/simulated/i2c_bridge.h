// The board's I2C packets: what comes on pipe 2, and what is answered on pipe 0x82.
//
// Byte 0 is a count, byte 1 the device address, the rest goes on the bus as it stands:
//   count 0            a write without an answer, whichever form the address has
//   count, write form  a write, answered by the number of bus bytes acknowledged, the address included
//   count, read form   the rest is written as the register pointer, then count bytes are read; answered
//                      by the count and the data, or by a single 0 when not acknowledged
// A packet without an address is ignored.
#pragma once

#include <optional>
#include <span>

#include "boards/simulated/i2c_bus.h"
#include "boards/simulated/in_pipe.h"

namespace boards {

class I2cBridge {
 public:
  explicit I2cBridge(I2cBus& bus) : bus_(bus) {}

  std::optional<Reply> serve(std::span<const std::uint8_t> packet);

 private:
  Reply read(std::uint8_t count, std::uint8_t address, std::span<const std::uint8_t> pointer);

  I2cBus& bus_;
};

}  // namespace boards
