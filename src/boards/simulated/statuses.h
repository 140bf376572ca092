// The simulated driver's statuses besides boards::success. They are positive and of this driver's own
// making; VB_Stat2Str gives their text.
#pragma once

#include <string>

#include "boards/driver.h"

namespace boards::statuses {

inline constexpr Status driver_not_installed = 0x20000001;
inline constexpr Status invalid_handle = 0x20000002;
inline constexpr Status not_attached = 0x20000003;
inline constexpr Status time_out = 0x20000004;
inline constexpr Status transfer_failed = 0x20000005;
inline constexpr Status no_such_pipe = 0x20000006;
inline constexpr Status no_such_interface = 0x20000007;
inline constexpr Status call_failed = 0x20000008;

// What Linux would report for a USB transfer that ended so: 0 or a negative errno.
std::int32_t urb_status(Status status);

// "Unknown error" for a status that this driver doesn't have.
std::string text(Status status);

}  // namespace boards::statuses
