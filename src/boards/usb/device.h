// One board on the USB: its descriptors, and opening it.
#pragma once

#include "boards/driver.h"
#include "boards/usb/libusb_handles.h"

namespace boards::usb {

// The board has one interface with one alternate setting.
inline constexpr int board_interface = 0;

// The device's own descriptors. Needs no access to the device. On failure `info` is left alone; a
// device without an interface is LIBUSB_ERROR_NOT_FOUND.
Status read_descriptors(libusb_device* device, DeviceInfo& info);

UsbPlace place_of(libusb_device* device);

// Takes note of the alternate setting that was selected.
void select(DeviceInfo& info, std::int32_t interface_number, std::int32_t alternate);

// Opens the device and claims its interface. LIBUSB_ERROR_NOT_FOUND: the device has just come, and the
// system hasn't configured it yet.
Status open_board(libusb_device* device, HandlePtr& handle);

}  // namespace boards::usb
