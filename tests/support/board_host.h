// A host that talks to a board through the driver interface.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "boards/driver.h"

class BoardHost : public testing::Test {
 protected:
  using Bytes = std::vector<std::uint8_t>;

  struct Received {
    boards::Status status;
    std::size_t transferred;
    Bytes buffer;
  };

  static constexpr boards::MatchRow match{0x7A53, 0x2005};

  virtual boards::Driver& board_driver() = 0;

  boards::Handle session = 0;
  boards::Handle device = 0;  // of the last attach
  std::vector<boards::Handle> detached;
  int attaches = 0;

  boards::Status send(std::int32_t pipe, Bytes packet) {
    std::size_t transferred = 0;
    const boards::Status status = board_driver().WDU_Transfer(device, pipe, false, packet, transferred);
    EXPECT_EQ(transferred, status == boards::success ? packet.size() : 0u);
    return status;
  }

  // The buffer is filled with EE beforehand, so that bytes which didn't come are seen.
  Received receive(std::int32_t pipe, std::size_t size) {
    Received result{0, 0, Bytes(size, 0xEE)};
    result.status = board_driver().WDU_Transfer(device, pipe, true, result.buffer, result.transferred);
    return result;
  }

  boards::Status i2c(Bytes packet) { return send(boards::pipe_i2c_out, std::move(packet)); }
  Received i2c_reply(std::size_t size) { return receive(boards::pipe_i2c_in, size); }
};
