#include "boards/usb/statuses.h"

#include <libusb.h>

#include <cerrno>

namespace boards::usb {
namespace {

constexpr Status init_failed_base = -0x1000;

std::string advice(Status status) {
  switch (status) {
    case LIBUSB_ERROR_ACCESS:
      return ". This user may not open the board. The udev rule 70-varzelin-als.rules gives it to whoever is "
             "logged in at the machine, which nobody is over ssh. The program's package brings the rule. A "
             "program without the package needs, in the project's folder, "
             "\"sudo cp data/70-varzelin-als.rules /etc/udev/rules.d/ && sudo udevadm control --reload\". "
             "Then plug the board in again";
    case LIBUSB_ERROR_BUSY:
      return ". Another program holds the board; leave that program and try again";
    case LIBUSB_ERROR_NO_DEVICE:
      return ". Plug the board in; the next connect finds it";
    default:
      return {};
  }
}

}  // namespace

Status init_failed(int error) {
  return init_failed_base + error;
}

std::int32_t urb_status(Status status) {
  switch (status) {
    case success:
      return 0;
    case LIBUSB_ERROR_TIMEOUT:
      return -ENOENT;  // libusb takes the transfer back
    case LIBUSB_ERROR_PIPE:
      return -EPIPE;
    case LIBUSB_ERROR_OVERFLOW:
      return -EOVERFLOW;
    case LIBUSB_ERROR_NO_DEVICE:
      return -ENODEV;
    default:
      return -EPROTO;
  }
}

std::string text(Status status) {
  if (status <= init_failed_base) {
    return std::string("libusb can't be initialised: ") + libusb_strerror(status - init_failed_base);
  }
  return libusb_strerror(status) + advice(status);
}

}  // namespace boards::usb
