// An evaluation board as the kernel shows it: the answers to the ioctls of its device node. The bridge,
// the ports and the sensor behind it are those of the simulated board, which is also where a test mounts
// sensors. All methods may be called on any thread.
#pragma once

#include <umockdev.h>

#include <chrono>
#include <cstdint>
#include <list>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "boards/simulated/simulated_board.h"

namespace usb_testing {

class EmulatedBoard {
 public:
  EmulatedBoard();

  // What stands behind the USB. `work` runs while no ioctl does.
  template <class Work>
  auto brain(Work&& work) {
    const std::lock_guard lock(mutex_);
    return work(brain_);
  }

  // The device's descriptors: device, then configuration, as the kernel's file has them.
  static std::vector<std::uint8_t> descriptors();

  // Without power the board is gone from the bus; nobody is told of it. EmulatedUsb switches it.
  void power(bool on);
  // The plug is pulled while the next transfer after `transfers` is under way.
  void pull_within_transfer(int after);
  // Claiming fails with this error of the system, `times` times.
  void refuse_claims(int error, int times = 1'000'000);
  // The endpoint answers with a stall until it is cleared.
  void stall(std::int32_t pipe);
  // The next transfer on this pipe brings these bytes and then nothing, so that it times out.
  void bring_and_hang(std::int32_t pipe, std::vector<std::uint8_t> bytes);

  struct Counts {
    int claims = 0;  // successful ones
    int releases = 0;
    int resets = 0;
    int halts_cleared = 0;
    int settings = 0;  // selections of interface 0, alternate 0
    int open_urbs = 0;
  };
  Counts counts();

  // For EmulatedUsb: answers one ioctl. False: not a request that this board knows.
  bool handle(UMockdevIoctlClient* client);

 private:
  struct Free {
    void operator()(UMockdevIoctlData* data) const { umockdev_ioctl_data_unref(data); }
  };
  using Data = std::unique_ptr<UMockdevIoctlData, Free>;
  struct Urb {
    Data request;  // the usbdevfs_urb
    Data buffer;   // null for a transfer of no bytes
    std::int32_t pipe;
    bool hangs = false;
    bool done = false;
  };
  struct Result {
    long value = 0;
    int error = 0;  // errno for a value of -1
  };
  static Result failed(int error) { return {-1, error}; }

  std::optional<Result> answer(UMockdevIoctlClient* client);
  Result claim();
  Result set_interface(UMockdevIoctlData* argument);
  Result clear_halt(UMockdevIoctlData* argument);
  Result reset();
  Result submit(UMockdevIoctlData* argument);
  Result discard(UMockdevIoctlData* argument);
  Result reap(UMockdevIoctlData* argument);
  void try_to_finish(Urb& urb);
  static void finish(Urb& urb, int status, std::size_t length);
  void put(Urb& urb, const std::vector<std::uint8_t>& bytes);
  void connect_brain();

  std::mutex mutex_;
  forms::SystemClock clock_;
  boards::SimulatedBoard brain_{clock_};
  boards::Handle brain_session_ = 0;
  boards::Handle brain_device_ = 0;
  bool powered_ = false;
  int transfers_to_pull_ = -1;  // below 0: none
  int claim_error_ = 0;
  int claims_to_refuse_ = 0;
  std::set<std::int32_t> stalled_;
  std::optional<std::pair<std::int32_t, std::vector<std::uint8_t>>> hanging_;
  std::list<Urb> urbs_;
  Counts counts_;
};

}  // namespace usb_testing
