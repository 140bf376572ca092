#include "usb/emulated_board.h"

#include <linux/usbdevice_fs.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>

namespace usb_testing {
namespace {

constexpr boards::MatchRow match{0x7A53, 0x2005};

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

bool to_host(std::int32_t pipe) {
  return (pipe & 0x80) != 0;
}

}  // namespace

EmulatedBoard::EmulatedBoard() {
  brain_.set_timing(false);
}

std::vector<std::uint8_t> EmulatedBoard::descriptors() {
  std::vector<std::uint8_t> bytes{
      18, 1, 0x00, 0x02, 0, 0,    0, 64,   0x53, 0x7A, 0x05, 0x20, 0x00, 0x01, 0, 0, 0, 1,  // device
      9,  2, 46,   0,    1, 1,    0, 0x80, 50,                                              // configuration
      9,  4, 0,    0,    4, 0xFF, 0, 0,    0,                                               // interface
  };
  for (const std::uint8_t pipe : std::initializer_list<std::uint8_t>{0x01, 0x81, 0x02, 0x82})
    bytes.insert(bytes.end(), {7, 5, pipe, 2, 64, 0, 0});
  return bytes;
}

// ---- For the test

void EmulatedBoard::power(bool on) {
  const std::lock_guard lock(mutex_);
  if (on == powered_) return;
  powered_ = on;
  stalled_.clear();
  if (on) {
    brain_.plug();
    connect_brain();
    return;
  }
  brain_.unplug();
  for (Urb& urb : urbs_) {
    if (!urb.done) finish(urb, -ESHUTDOWN, 0);
  }
}

void EmulatedBoard::connect_brain() {
  brain_.WDU_VB_Init(brain_session_, match,
                     {[this](boards::Handle device, const boards::DeviceInfo&) {
                        brain_device_ = device;
                        return true;
                      },
                      nullptr});
  brain_.deliver_notifications();
}

void EmulatedBoard::pull_within_transfer(int after) {
  const std::lock_guard lock(mutex_);
  transfers_to_pull_ = after;
}

void EmulatedBoard::refuse_claims(int error, int times) {
  const std::lock_guard lock(mutex_);
  claim_error_ = error;
  claims_to_refuse_ = times;
}

void EmulatedBoard::stall(std::int32_t pipe) {
  const std::lock_guard lock(mutex_);
  stalled_.insert(pipe);
}

void EmulatedBoard::bring_and_hang(std::int32_t pipe, std::vector<std::uint8_t> bytes) {
  const std::lock_guard lock(mutex_);
  hanging_.emplace(pipe, std::move(bytes));
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
  if (!powered_) return failed(ENODEV);
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
  if ((*pipe & 0x7F) != 1 && (*pipe & 0x7F) != 2) return failed(ENOENT);
  stalled_.erase(static_cast<std::int32_t>(*pipe));
  ++counts_.halts_cleared;
  return {};
}

EmulatedBoard::Result EmulatedBoard::reset() {
  stalled_.clear();
  brain_.WDU_ResetDevice(brain_device_);
  ++counts_.resets;
  return {};
}

EmulatedBoard::Result EmulatedBoard::submit(UMockdevIoctlData* argument) {
  Data request(umockdev_ioctl_data_resolve(argument, 0, sizeof(usbdevfs_urb), nullptr));
  if (!request) return failed(EFAULT);
  const usbdevfs_urb& urb = urb_of(request.get());
  const std::int32_t pipe = urb.endpoint;
  if (urb.type != USBDEVFS_URB_TYPE_BULK) return failed(EINVAL);
  if ((pipe & 0x7F) != 1 && (pipe & 0x7F) != 2) return failed(ENOENT);
  Data buffer;
  if (urb.buffer_length > 0) {
    buffer.reset(umockdev_ioctl_data_resolve(request.get(), offsetof(usbdevfs_urb, buffer),
                                             static_cast<gsize>(urb.buffer_length), nullptr));
    if (!buffer) return failed(EFAULT);
  }
  Urb& added = urbs_.emplace_back(Urb{std::move(request), std::move(buffer), pipe});
  if (transfers_to_pull_ >= 0 && transfers_to_pull_-- == 0) {
    powered_ = false;
    brain_.unplug();
    finish(added, -ESHUTDOWN, 0);
  } else if (stalled_.contains(pipe)) {
    finish(added, -EPIPE, 0);
  } else if (hanging_ && hanging_->first == pipe) {
    added.hangs = true;
    put(added, hanging_->second);
    hanging_.reset();
  } else {
    try_to_finish(added);
  }
  return {};
}

// What the board has for the transfer ends it; without that it stays.
void EmulatedBoard::try_to_finish(Urb& urb) {
  std::vector<std::uint8_t> bytes(to_host(urb.pipe) ? 512 : 0);
  if (!to_host(urb.pipe) && urb.buffer) {
    bytes.assign(urb.buffer->data, urb.buffer->data + urb.buffer->data_len);
  }
  std::size_t transferred = 0;
  if (brain_.WDU_Transfer(brain_device_, urb.pipe, to_host(urb.pipe), bytes, transferred) != boards::success)
    return;
  if (!to_host(urb.pipe)) return finish(urb, 0, transferred);
  bytes.resize(transferred);
  const auto room = static_cast<std::size_t>(urb.buffer ? urb.buffer->data_len : 0);
  const bool too_long = bytes.size() > room;
  if (too_long) bytes.resize(room);
  put(urb, bytes);
  finish(urb, too_long ? -EOVERFLOW : 0, bytes.size());
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
    if (!urb.done && !urb.hangs && powered_) try_to_finish(urb);
  }
  const auto found = std::ranges::find_if(urbs_, &Urb::done);
  if (found == urbs_.end()) return failed(powered_ ? EAGAIN : ENODEV);
  const Data result(umockdev_ioctl_data_resolve(argument, 0, sizeof(void*), nullptr));
  umockdev_ioctl_data_set_ptr(result.get(), 0, found->request.get());
  urbs_.erase(found);
  return {};
}

}  // namespace usb_testing
