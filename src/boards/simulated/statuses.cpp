#include "boards/simulated/statuses.h"

#include <cerrno>

namespace boards::statuses {

std::int32_t urb_status(Status status) {
  switch (status) {
    case success:
      return 0;
    case time_out:
      return -ENOENT;
    case invalid_handle:
    case not_attached:
      return -ENODEV;
    default:
      return -EPROTO;
  }
}

std::string text(Status status) {
  switch (status) {
    case success:
      return "The operation completed successfully";
    case driver_not_installed:
      return "The driver is not installed";
    case invalid_handle:
      return "Invalid handle";
    case not_attached:
      return "The device is not attached";
    case time_out:
      return "The transfer timed out";
    case transfer_failed:
      return "The transfer failed";
    case no_such_pipe:
      return "The device has no such pipe";
    case no_such_interface:
      return "The device has no such interface or alternate setting";
    case call_failed:
      return "The operation failed";
    default:
      return "Unknown error";
  }
}

}  // namespace boards::statuses
