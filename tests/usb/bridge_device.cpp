#include "usb/bridge_device.h"

namespace usb_testing {
namespace {

constexpr boards::MatchRow match{BridgeDevice::vendor, BridgeDevice::product};
constexpr std::uint8_t bulk = 2;
constexpr std::size_t longest_answer = 512;

}  // namespace

BridgeDevice::BridgeDevice() {
  brain_.set_timing(false);
}

BridgeDevice::Bytes BridgeDevice::descriptors() {
  const auto low = [](std::uint16_t word) { return static_cast<std::uint8_t>(word & 0xFF); };
  const auto high = [](std::uint16_t word) { return static_cast<std::uint8_t>(word >> 8); };
  // clang-format off
  Bytes bytes{
      18, 1, 0x00, 0x02, 0, 0, 0, max_packet,                                     // device
      low(vendor), high(vendor), low(product), high(product), 0x00, 0x01, 0, 0, 0, 1,
      9, 2, 46, 0, 1, 1, 0, 0x80, 50,                                             // configuration
      9, 4, 0, 0, pipes.size(), 0xFF, 0, 0, 0,                                    // interface
  };
  // clang-format on
  for (const std::uint8_t pipe : pipes) bytes.insert(bytes.end(), {7, 5, pipe, bulk, max_packet, 0, 0});
  return bytes;
}

void BridgeDevice::power(bool on) {
  if (on == powered_) return;
  powered_ = on;
  stalled_.clear();
  if (!on) return brain_.unplug();
  brain_.plug();
  brain_.WDU_VB_Init(session_, match,
                     {[this](boards::Handle device, const boards::DeviceInfo&) {
                        device_ = device;
                        return true;
                      },
                      nullptr});
  brain_.deliver_notifications();
}

void BridgeDevice::reset() {
  stalled_.clear();
  brain_.WDU_ResetDevice(device_);
}

BridgeDevice::Progress BridgeDevice::begin(const Transfer& transfer) {
  if (boards::to_host(transfer.pipe) && transfers_to_pull_ >= 0 && transfers_to_pull_-- == 0) {
    power(false);
    return {State::Pulled};
  }
  if (stalled_.contains(transfer.pipe)) return {State::Stalled};
  if (hanging_ && hanging_->first == transfer.pipe) {
    return {State::Hangs, std::exchange(hanging_, std::nullopt)->second};
  }
  return look_again(transfer);
}

BridgeDevice::Progress BridgeDevice::look_again(const Transfer& transfer) {
  const bool read = boards::to_host(transfer.pipe);
  Bytes bytes = read ? Bytes(longest_answer) : transfer.sent;
  std::size_t transferred = 0;
  if (brain_.WDU_Transfer(device_, transfer.pipe, read, bytes, transferred) != boards::success) {
    return {State::Waits};
  }
  if (!read) return {State::Done};
  const bool too_long = transferred > transfer.room;
  bytes.resize(too_long ? transfer.room : transferred);
  return {too_long ? State::TooLong : State::Done, std::move(bytes)};
}

}  // namespace usb_testing
