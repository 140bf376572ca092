#include "boards/simulated/i2c_bus.h"

namespace boards {
namespace {

constexpr std::uint8_t write_form(std::uint8_t address) {
  return address & 0xFE;
}

}  // namespace

void I2cBus::mount(std::unique_ptr<Sensor> sensor, std::uint8_t address) {
  sensor_ = std::move(sensor);
  write_address_ = write_form(address);
}

std::size_t I2cBus::write(std::uint8_t address, std::span<const std::uint8_t> bytes) {
  if (!select(address)) return 0;
  time_.pass_bus_bytes(bytes.size());
  return 1 + sensor_->write(bytes);
}

bool I2cBus::read(std::uint8_t address, std::span<std::uint8_t> bytes) {
  if (!select(address)) return false;
  sensor_->read(bytes);
  return true;
}

bool I2cBus::select(std::uint8_t address) {
  time_.pass_bus_bytes(1);
  return sensor_ && answers && write_form(address) == write_address_;
}

}  // namespace boards
