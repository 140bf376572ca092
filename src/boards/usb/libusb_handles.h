// Owners of libusb's objects, so that each is given back exactly once.
#pragma once

#include <memory>

struct libusb_context;
struct libusb_device;
struct libusb_device_handle;

namespace boards::usb {

using ContextPtr = std::shared_ptr<libusb_context>;

// Keeps its context, too. While one is held, no other device has the same address in memory: comparing
// them tells a board from the same board plugged in again.
using DevicePtr = std::shared_ptr<libusb_device>;

// Releases the board's interface, too.
struct HandleCloser {
  void operator()(libusb_device_handle* handle) const;
};
using HandlePtr = std::unique_ptr<libusb_device_handle, HandleCloser>;

}  // namespace boards::usb
