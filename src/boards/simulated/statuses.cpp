#include "boards/simulated/statuses.h"

namespace boards::statuses {

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
