#include "usb/emulated_board.h"

#include <linux/usbdevice_fs.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>

namespace usb_testing {
namespace {

template <class T>
std::optional<T> argument_as(UMockdevIoctlData* argument) {
  UMockdevIoctlData* data = umockdev_ioctl_data_resolve(argument, 0, sizeof(T), nullptr);
  if (!data) return std::nullopt;
  T value;
  std::memcpy(&value, data->data, sizeof(T));
  umockdev_ioctl_data_unref(data);
  return value;
}

usbdevfs_urb& urb_of(UMockdevIoctlData* request) {
  return *reinterpret_cast<usbdevfs_urb*>(request->data);
}

}  // namespace

// ---- For the test

void EmulatedBoard::power(bool on) {
  const std::lock_guard lock(mutex_);
  device_.power(on);
  if (on) return;
  for (Urb& urb : urbs_) {
    if (!urb.done) finish(urb, -ESHUTDOWN, 0);
  }
}

void EmulatedBoard::pull_within_transfer(int after) {
  const std::lock_guard lock(mutex_);
  device_.pull_within_transfer(after);
}

void EmulatedBoard::refuse_claims(int error, int times) {
  const std::lock_guard lock(mutex_);
  claim_error_ = error;
  claims_to_refuse_ = times;
}

void EmulatedBoard::stall(std::int32_t pipe) {
  const std::lock_guard lock(mutex_);
  device_.stall(pipe);
}

void EmulatedBoard::bring_and_hang(std::int32_t pipe, std::vector<std::uint8_t> bytes) {
  const std::lock_guard lock(mutex_);
  device_.bring_and_hang(pipe, std::move(bytes));
}

EmulatedBoard::Counts EmulatedBoard::counts() {
  const std::lock_guard lock(mutex_);
  Counts counts = counts_;
  counts.open_urbs = static_cast<int>(urbs_.size());
  return counts;
}

// ---- For the kernel's side

bool EmulatedBoard::handle(UMockdevIoctlClient* client) {
  const std::lock_guard lock(mutex_);
  const auto result = answer(client);
  if (!result) return false;
  umockdev_ioctl_client_complete(client, result->value, result->error);
  return true;
}

std::optional<EmulatedBoard::Result> EmulatedBoard::answer(UMockdevIoctlClient* client) {
  UMockdevIoctlData* argument = umockdev_ioctl_client_get_arg(client);
  const auto request = umockdev_ioctl_client_get_request(client);
  // Finished transfers can be fetched from a device that is gone.
  if (request == USBDEVFS_REAPURBNDELAY) return reap(argument);
  if (request == USBDEVFS_DISCARDURB) return discard(argument);
  if (!device_.powered()) return failed(ENODEV);
  switch (request) {
    case USBDEVFS_GET_CAPABILITIES: {
      const std::uint32_t capabilities = USBDEVFS_CAP_REAP_AFTER_DISCONNECT;
      UMockdevIoctlData* data = umockdev_ioctl_data_resolve(argument, 0, sizeof capabilities, nullptr);
      std::uint8_t bytes[sizeof capabilities];
      std::memcpy(bytes, &capabilities, sizeof capabilities);
      umockdev_ioctl_data_update(data, 0, bytes, sizeof capabilities);
      umockdev_ioctl_data_unref(data);
      return Result{};
    }
    case USBDEVFS_CLAIMINTERFACE:
    case USBDEVFS_DISCONNECT_CLAIM:  // how a reset ends
      return claim();
    case USBDEVFS_RELEASEINTERFACE:
      ++counts_.releases;
      return Result{};
    case USBDEVFS_SETINTERFACE:
      return set_interface(argument);
    case USBDEVFS_CLEAR_HALT:
      return clear_halt(argument);
    case USBDEVFS_RESET:
      return reset();
    case USBDEVFS_SUBMITURB:
      return submit(argument);
    default:
      return std::nullopt;
  }
}

EmulatedBoard::Result EmulatedBoard::claim() {
  if (claims_to_refuse_ > 0) {
    --claims_to_refuse_;
    return failed(claim_error_);
  }
  ++counts_.claims;
  return {};
}

EmulatedBoard::Result EmulatedBoard::set_interface(UMockdevIoctlData* argument) {
  const auto setting = argument_as<usbdevfs_setinterface>(argument);
  if (!setting || setting->interface != 0 || setting->altsetting != 0) return failed(EINVAL);
  ++counts_.settings;
  return {};
}

EmulatedBoard::Result EmulatedBoard::clear_halt(UMockdevIoctlData* argument) {
  const auto pipe = argument_as<unsigned>(argument);
  if (!pipe) return failed(EFAULT);
  if (!BridgeDevice::has_pipe(static_cast<std::int32_t>(*pipe))) return failed(ENOENT);
  device_.clear_halt(static_cast<std::int32_t>(*pipe));
  ++counts_.halts_cleared;
  return {};
}

EmulatedBoard::Result EmulatedBoard::reset() {
  device_.reset();
  ++counts_.resets;
  return {};
}

EmulatedBoard::Result EmulatedBoard::submit(UMockdevIoctlData* argument) {
  Data request(umockdev_ioctl_data_resolve(argument, 0, sizeof(usbdevfs_urb), nullptr));
  if (!request) return failed(EFAULT);
  const usbdevfs_urb& urb = urb_of(request.get());
  const std::int32_t pipe = urb.endpoint;
  if (urb.type != USBDEVFS_URB_TYPE_BULK) return failed(EINVAL);
  if (!BridgeDevice::has_pipe(pipe)) return failed(ENOENT);
  Data buffer;
  if (urb.buffer_length > 0) {
    buffer.reset(umockdev_ioctl_data_resolve(request.get(), offsetof(usbdevfs_urb, buffer),
                                             static_cast<gsize>(urb.buffer_length), nullptr));
    if (!buffer) return failed(EFAULT);
  }
  Urb& added = urbs_.emplace_back(Urb{std::move(request), std::move(buffer), pipe});
  take(added, device_.begin(transfer_of(added)));
  return {};
}

BridgeDevice::Transfer EmulatedBoard::transfer_of(const Urb& urb) {
  BridgeDevice::Transfer transfer{.pipe = urb.pipe};
  if (!urb.buffer) return transfer;
  if (boards::to_host(urb.pipe)) {
    transfer.room = urb.buffer->data_len;
  } else {
    transfer.sent.assign(urb.buffer->data, urb.buffer->data + urb.buffer->data_len);
  }
  return transfer;
}

void EmulatedBoard::take(Urb& urb, const BridgeDevice::Progress& progress) {
  using State = BridgeDevice::State;
  const bool read = boards::to_host(urb.pipe);
  if (read) put(urb, progress.bytes);
  switch (progress.state) {
    case State::Done:
      return finish(urb, 0, read || !urb.buffer ? progress.bytes.size() : urb.buffer->data_len);
    case State::TooLong:
      return finish(urb, -EOVERFLOW, progress.bytes.size());
    case State::Stalled:
      return finish(urb, -EPIPE, 0);
    case State::Pulled:
      return finish(urb, -ESHUTDOWN, 0);
    case State::Hangs:
      urb.hangs = true;
      return;
    case State::Waits:
      return;
  }
}

void EmulatedBoard::put(Urb& urb, const std::vector<std::uint8_t>& bytes) {
  if (urb.buffer && !bytes.empty()) {
    std::vector<std::uint8_t> copy = bytes;
    umockdev_ioctl_data_update(urb.buffer.get(), 0, copy.data(), static_cast<int>(copy.size()));
  }
  urb_of(urb.request.get()).actual_length = static_cast<int>(bytes.size());
}

void EmulatedBoard::finish(Urb& urb, int status, std::size_t length) {
  const auto update = [&](std::size_t offset, int value) {
    std::uint8_t bytes[sizeof value];
    std::memcpy(bytes, &value, sizeof value);
    umockdev_ioctl_data_update(urb.request.get(), offset, bytes, sizeof value);
  };
  update(offsetof(usbdevfs_urb, status), status);
  update(offsetof(usbdevfs_urb, actual_length), static_cast<int>(length));
  urb.done = true;
}

EmulatedBoard::Result EmulatedBoard::discard(UMockdevIoctlData* argument) {
  unsigned long address = 0;
  std::memcpy(&address, argument->data, sizeof address);
  const auto found = std::ranges::find_if(
      urbs_, [&](const Urb& urb) { return !urb.done && urb.request->client_addr == address; });
  if (found == urbs_.end()) return failed(EINVAL);
  finish(*found, -ENOENT, static_cast<std::size_t>(urb_of(found->request.get()).actual_length));
  return {};
}

EmulatedBoard::Result EmulatedBoard::reap(UMockdevIoctlData* argument) {
  for (Urb& urb : urbs_) {
    if (!urb.done && !urb.hangs && device_.powered()) take(urb, device_.look_again(transfer_of(urb)));
  }
  const auto found = std::ranges::find_if(urbs_, &Urb::done);
  if (found == urbs_.end()) return failed(device_.powered() ? EAGAIN : ENODEV);
  const Data result(umockdev_ioctl_data_resolve(argument, 0, sizeof(void*), nullptr));
  umockdev_ioctl_data_set_ptr(result.get(), 0, found->request.get());
  urbs_.erase(found);
  return {};
}

}  // namespace usb_testing
