// An evaluation board as the kernel shows it: the answers to the ioctls of its device node. What the board
// itself does is the bridge device's. All methods may be called on any thread.
#pragma once

#include <umockdev.h>

#include <cstdint>
#include <list>
#include <mutex>
#include <optional>
#include <vector>

#include "usb/bridge_device.h"

namespace usb_testing {

class EmulatedBoard {
 public:
  // What stands behind the USB. `work` runs while no ioctl does.
  template <class Work>
  auto brain(Work&& work) {
    const std::lock_guard lock(mutex_);
    return work(device_.brain());
  }

  // Without power the board is gone from the bus; nobody is told of it. EmulatedUsb switches it.
  void power(bool on);
  // The following three are the bridge device's.
  void pull_within_transfer(int after);
  void stall(std::int32_t pipe);
  void bring_and_hang(std::int32_t pipe, std::vector<std::uint8_t> bytes);
  // Claiming fails with this error of the system, `times` times.
  void refuse_claims(int error, int times = 1'000'000);

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
  static BridgeDevice::Transfer transfer_of(const Urb& urb);
  static void take(Urb& urb, const BridgeDevice::Progress& progress);
  static void finish(Urb& urb, int status, std::size_t length);
  static void put(Urb& urb, const std::vector<std::uint8_t>& bytes);

  std::mutex mutex_;
  BridgeDevice device_;
  int claim_error_ = 0;
  int claims_to_refuse_ = 0;
  std::list<Urb> urbs_;
  Counts counts_;
};

}  // namespace usb_testing
