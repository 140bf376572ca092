// A driver whose device has the descriptors that a test wants, and whose calls fail on order.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "boards/driver.h"

namespace varzelin::testing {

class FakeDriver final : public boards::Driver {
 public:
  static constexpr boards::Handle device_handle = 0x2A;

  boards::DeviceInfo info{.vendor_id = 0x7A53, .product_id = 0x2005, .configurations = {}};
  std::optional<boards::UsbPlace> place = boards::UsbPlace{};
  std::map<std::string, boards::Status> fails;                       // by the operation's name
  std::vector<std::pair<std::int32_t, std::int32_t>> set_interface;  // interface, alternate
  std::vector<std::int32_t> reset_pipes;
  std::vector<boards::Handle> devices;  // those of the two above and of each look at the descriptors

  std::string VB_Stat2Str(boards::Status status) const override {
    return "words for " + std::to_string(status) + std::string("\0behind", 7);
  }
  void deliver_notifications() override {
    if (!std::exchange(waits_, false)) return;
    events_.attach(device_handle, info);
  }
  std::string board_name() const override { return "fake"; }
  std::optional<boards::UsbPlace> transfer_place() const override { return place; }

 private:
  boards::Status status(const char* call) const {
    const auto found = fails.find(call);
    return found == fails.end() ? boards::success : found->second;
  }
  boards::Status do_init(boards::Handle& session, const boards::MatchRow&,
                         boards::EventTable events) override {
    session = 1;
    events_ = std::move(events);
    waits_ = true;
    return boards::success;
  }
  boards::Status do_uninit(boards::Handle) override { return boards::success; }
  boards::Status do_close_handle(boards::Handle) override { return boards::success; }
  boards::Status do_get_device_info(boards::Handle device, boards::DeviceInfo& found) override {
    devices.push_back(device);
    found = info;
    return status("WDU_GetDeviceInfo");
  }
  boards::Status do_set_interface(boards::Handle device, std::int32_t interface_number,
                                  std::int32_t alternate) override {
    devices.push_back(device);
    set_interface.emplace_back(interface_number, alternate);
    return status("WDU_SetInterface");
  }
  boards::Status do_reset_device(boards::Handle) override { return boards::success; }
  boards::Status do_reset_pipe(boards::Handle device, std::int32_t pipe) override {
    devices.push_back(device);
    reset_pipes.push_back(pipe);
    return status("WDU_ResetPipe");
  }
  boards::Status do_transfer(boards::Handle, std::int32_t, bool, std::span<std::uint8_t>,
                             std::size_t&) override {
    return boards::success;
  }

  boards::EventTable events_;
  bool waits_ = false;
};

}  // namespace varzelin::testing
