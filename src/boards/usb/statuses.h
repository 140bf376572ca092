// The USB driver's statuses besides boards::success: libusb's error codes as they are, all below 0, and
// below those the ones of a libusb that can't be initialised.
#pragma once

#include <string>

#include "boards/driver.h"

namespace boards::usb {

// The status of a session that can't be opened because libusb_init failed with `error`.
Status init_failed(int error);

// How the kernel reports a transfer that ended so, as far as libusb lets it be seen: 0 or a negative errno.
std::int32_t urb_status(Status status);

// What a user is to do when no status tells it.
inline constexpr const char* no_board_text =
    "No board is plugged in. Plug it in; the next action finds it. The program on the simulated board, "
    "varzelin-als-simulated, needs none";
inline constexpr const char* unplugged_text =
    "The board was unplugged. Plug it in again; the next action finds it. After a connection made by hand, "
    "disconnect and connect";

// libusb's words; where a user can do something about it, what that is.
std::string text(Status status);

}  // namespace boards::usb
