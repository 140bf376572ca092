// One bulk transfer, with turns for the caller while it waits.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

#include "boards/driver.h"

struct libusb_context;
struct libusb_device_handle;

namespace boards::usb {

struct BulkTransfer {
  unsigned char pipe;
  std::span<std::uint8_t> buffer;
  unsigned timeout_ms;
};

// Returns when the transfer has ended, with libusb's status. `transferred` is what went through, whatever the
// status. `on_wait` may be empty; what it throws comes out once the transfer is cancelled.
Status run_transfer(libusb_context* context, libusb_device_handle* device, const BulkTransfer& wanted,
                    std::size_t& transferred, const std::function<void()>& on_wait);

}  // namespace boards::usb
