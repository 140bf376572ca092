#include "boards/usb/bulk_transfer.h"

#include <libusb.h>

#include <exception>
#include <memory>

namespace boards::usb {
namespace {

constexpr timeval wait_turn{0, 20'000};

void LIBUSB_CALL note_end(libusb_transfer* transfer) {
  *static_cast<int*>(transfer->user_data) = 1;
}

Status status_of(libusb_transfer_status ended) {
  switch (ended) {
    case LIBUSB_TRANSFER_COMPLETED:
      return success;
    case LIBUSB_TRANSFER_TIMED_OUT:
      return LIBUSB_ERROR_TIMEOUT;
    case LIBUSB_TRANSFER_STALL:
      return LIBUSB_ERROR_PIPE;
    case LIBUSB_TRANSFER_OVERFLOW:
      return LIBUSB_ERROR_OVERFLOW;
    case LIBUSB_TRANSFER_NO_DEVICE:
      return LIBUSB_ERROR_NO_DEVICE;
    case LIBUSB_TRANSFER_ERROR:
    case LIBUSB_TRANSFER_CANCELLED:
      break;
  }
  return LIBUSB_ERROR_IO;
}

}  // namespace

Status run_transfer(libusb_context* context, libusb_device_handle* device, const BulkTransfer& wanted,
                    std::size_t& transferred, const std::function<void()>& on_wait) {
  const std::unique_ptr<libusb_transfer, decltype(&libusb_free_transfer)> transfer(libusb_alloc_transfer(0),
                                                                                   libusb_free_transfer);
  if (!transfer) return LIBUSB_ERROR_NO_MEM;
  int ended = 0;
  libusb_fill_bulk_transfer(transfer.get(), device, wanted.pipe, wanted.buffer.data(),
                            static_cast<int>(wanted.buffer.size()), note_end, &ended, wanted.timeout_ms);
  if (const int refused = libusb_submit_transfer(transfer.get())) return refused;
  // The buffer is libusb's until the transfer has ended, whatever comes between.
  std::exception_ptr thrown;
  while (ended == 0) {
    timeval turn = wait_turn;
    const int failed = libusb_handle_events_timeout_completed(context, &turn, &ended);
    if (failed != 0 && failed != LIBUSB_ERROR_INTERRUPTED) libusb_cancel_transfer(transfer.get());
    if (ended != 0 || thrown || !on_wait) continue;
    try {
      on_wait();
    } catch (...) {
      thrown = std::current_exception();
      libusb_cancel_transfer(transfer.get());
    }
  }
  transferred = static_cast<std::size_t>(transfer->actual_length);
  if (thrown) std::rethrow_exception(thrown);
  return status_of(transfer->status);
}

}  // namespace boards::usb
