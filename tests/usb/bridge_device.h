// The evaluation board as a device on the USB, whatever carries its transfers: descriptors, endpoints
// with their stalls, and the simulated board behind them. Not for several threads at a time.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "boards/simulated/simulated_board.h"

namespace usb_testing {

class BridgeDevice {
 public:
  using Bytes = std::vector<std::uint8_t>;

  static constexpr std::uint16_t vendor = 0x7A53;
  static constexpr std::uint16_t product = 0x2005;
  static constexpr std::uint8_t max_packet = 64;
  static constexpr std::array<std::uint8_t, 4> pipes{boards::pipe_gpio_out, boards::pipe_gpio_in,
                                                     boards::pipe_i2c_out, boards::pipe_i2c_in};

  // A bulk transfer that the host wants.
  struct Transfer {
    std::int32_t pipe;
    Bytes sent{};          // to the board
    std::size_t room = 0;  // for bytes to the host
  };
  enum class State {
    Done,
    Waits,    // the board has nothing to bring yet
    Hangs,    // it never will
    Stalled,  // the endpoint is halted
    TooLong,  // the board had more than there is room for
    Pulled,   // the plug was pulled meanwhile
  };
  struct Progress {
    State state;
    Bytes bytes{};  // that came to the host
  };

  BridgeDevice();

  // Device descriptor, then configuration descriptor, as the kernel's file has them.
  static Bytes descriptors();
  static bool has_pipe(std::int32_t pipe) { return std::ranges::find(pipes, pipe) != pipes.end(); }

  // What stands behind the USB; sensors are mounted there.
  boards::SimulatedBoard& brain() { return brain_; }

  // Without power, as at start, the board isn't on the bus.
  void power(bool on);
  bool powered() const { return powered_; }
  // The reset of the USB: stalls and unfetched answers are gone.
  void reset();
  // The endpoint answers with a stall until it is cleared.
  void stall(std::int32_t pipe) { stalled_.insert(pipe); }
  void clear_halt(std::int32_t pipe) { stalled_.erase(pipe); }
  // The plug is pulled while the next transfer to the host after `transfers` of them is under way.
  void pull_within_transfer(int after) { transfers_to_pull_ = after; }
  // The next transfer on this pipe brings these bytes and then nothing.
  void bring_and_hang(std::int32_t pipe, Bytes bytes) { hanging_.emplace(pipe, std::move(bytes)); }

  // A new transfer. One that waits is looked at again when the board may have something for it.
  Progress begin(const Transfer& transfer);
  Progress look_again(const Transfer& transfer);

 private:
  forms::SystemClock clock_;
  boards::SimulatedBoard brain_{clock_};
  boards::Handle session_ = 0;
  boards::Handle device_ = 0;
  bool powered_ = false;
  int transfers_to_pull_ = -1;  // below 0: none
  std::set<std::int32_t> stalled_;
  std::optional<std::pair<std::int32_t, Bytes>> hanging_;
};

}  // namespace usb_testing
