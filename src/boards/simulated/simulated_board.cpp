#include "boards/simulated/simulated_board.h"

#include <algorithm>

#include "boards/simulated/models.h"

namespace boards {
namespace {

const DeviceInfo& device_info() {
  constexpr std::uint8_t bulk = 2;
  constexpr std::uint16_t max_packet = 64;
  constexpr std::uint8_t vendor_specific = 0xFF;
  static const DeviceInfo info = [] {
    AlternateSetting setting{0, vendor_specific, 0, 0, {}};
    for (const std::int32_t pipe : {pipe_gpio_out, pipe_gpio_in, pipe_i2c_out, pipe_i2c_in}) {
      setting.pipes.push_back({static_cast<std::uint8_t>(pipe), bulk, max_packet, 0});
    }
    return DeviceInfo{.vendor_id = 0x7A53, .product_id = 0x2005, .configurations = {{1, {{0, {setting}}}}}};
  }();
  return info;
}

bool has_pipe(std::int32_t pipe) {
  const auto& pipes = device_info().configurations[0].interfaces[0].alternates[0].pipes;
  return std::ranges::any_of(pipes, [&](const PipeInfo& info) { return info.address == pipe; });
}

}  // namespace

// ---- The bench

bool SimulatedBoard::mount(std::string_view model, std::uint8_t write_address) {
  auto sensor = make_sensor(model, {scene_, clock_, noise_});
  if (!sensor) return false;
  bus_.mount(std::move(sensor), write_address);
  model_ = model;
  return true;
}

void SimulatedBoard::unmount() {
  bus_.unmount();
  model_.clear();
}

std::optional<std::uint8_t> SimulatedBoard::register_value(std::uint8_t address) {
  if (!bus_.sensor()) return std::nullopt;
  return bus_.sensor()->register_value(address);
}

bool SimulatedBoard::set_register(std::uint8_t address, std::uint8_t value) {
  return bus_.sensor() && bus_.sensor()->set_register(address, value);
}

std::size_t SimulatedBoard::clear() {
  const std::size_t queued = queued_replies();
  i2c_in_.drop_queued();
  gpio_in_.drop_queued();
  failures_.clear();
  return queued;
}

void SimulatedBoard::plug() {
  // Its first conversion begins now, not when the plug was pulled.
  if (!plugged()) power_sensor_on();
  session_.plug();
}

void SimulatedBoard::unplug() {
  session_.unplug();
  drop_answers();
  ports_.power_on();
  power_sensor_on();
}

void SimulatedBoard::power_sensor_on() {
  if (bus_.sensor()) mount(std::string(model_), bus_.write_address());
}

void SimulatedBoard::model_chosen(std::string_view model) {
  if (!mount(model)) unmount();
}

// ---- The driver

void SimulatedBoard::deliver_notifications() {
  session_.deliver(device_info());
}

Status SimulatedBoard::do_init(Handle& session, const MatchRow& match, EventTable events) {
  if (const Status status = failures_.take_call("WDU_VB_Init")) return status;
  if (!driver_present_) return statuses::driver_not_installed;
  const DeviceInfo& info = device_info();
  const bool matches = match.vendor_id == info.vendor_id && match.product_id == info.product_id;
  session = session_.open(matches, std::move(events));
  return success;
}

Status SimulatedBoard::do_uninit(Handle session) {
  if (const Status status = failures_.take_call("WDU_VB_Uninit")) return status;
  return session_.close(session) ? success : statuses::invalid_handle;
}

Status SimulatedBoard::do_close_handle(Handle session) {
  if (const Status status = failures_.take_call("CloseHandle")) return status;
  return session_.is_open(session) ? success : statuses::invalid_handle;
}

Status SimulatedBoard::do_get_device_info(Handle device, DeviceInfo& info) {
  if (const Status status = admit("WDU_GetDeviceInfo", device)) return status;
  info = device_info();
  return success;
}

Status SimulatedBoard::do_set_interface(Handle device, std::int32_t interface_number,
                                        std::int32_t alternate) {
  if (const Status status = admit("WDU_SetInterface", device)) return status;
  return interface_number == 0 && alternate == 0 ? success : statuses::no_such_interface;
}

Status SimulatedBoard::do_reset_device(Handle device) {
  if (const Status status = admit("WDU_ResetDevice", device)) return status;
  drop_answers();
  return success;
}

Status SimulatedBoard::do_reset_pipe(Handle device, std::int32_t pipe) {
  if (const Status status = admit("WDU_ResetPipe", device)) return status;
  return has_pipe(pipe) ? success : statuses::no_such_pipe;
}

Status SimulatedBoard::do_transfer(Handle device, std::int32_t pipe, bool read,
                                   std::span<std::uint8_t> buffer, std::size_t& transferred) {
  transfer_place_.reset();
  if (const Status status = admit("WDU_Transfer", device)) return status;
  if (!has_pipe(pipe) || to_host(pipe) != read) return statuses::no_such_pipe;
  transfer_place_.emplace();
  if (failures_.take_unplug()) {
    unplug();
    return statuses::transfer_failed;
  }
  Status status = failures_.take_transfer();
  if (status == success) {
    if (read) {
      status = receive(pipe == pipe_i2c_in ? i2c_in_ : gpio_in_, buffer, transferred);
    } else {
      send(pipe, buffer);
      transferred = buffer.size();
    }
  }
  if (status == success) failures_.transfer_worked();
  if (status == statuses::time_out) time_.pass(std::chrono::milliseconds(transfer_timeout_ms));
  return status;
}

Status SimulatedBoard::admit(const char* call, Handle device) {
  if (const Status status = failures_.take_call(call)) return status;
  return session_.device_status(device);
}

Status SimulatedBoard::receive(InPipe& pipe, std::span<std::uint8_t> buffer, std::size_t& transferred) {
  const std::optional<Reply> reply = pipe.take();
  if (!reply) return statuses::time_out;
  time_.pass_transfer();
  time_.pass_bus_bytes(reply->bus_bytes);
  transferred = std::min(buffer.size(), reply->bytes.size());
  std::copy_n(reply->bytes.begin(), transferred, buffer.begin());
  return success;
}

void SimulatedBoard::send(std::int32_t pipe, std::span<const std::uint8_t> packet) {
  time_.pass_transfer();
  if (pipe == pipe_i2c_out) {
    if (auto reply = bridge_.serve(packet)) i2c_in_.answer(std::move(*reply));
  } else {
    if (auto reply = ports_.serve(packet, interrupts())) gpio_in_.answer(std::move(*reply));
  }
}

void SimulatedBoard::drop_answers() {
  i2c_in_.drop_answer();
  gpio_in_.drop_answer();
}

}  // namespace boards
