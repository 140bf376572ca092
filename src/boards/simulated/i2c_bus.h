// The board's I2C bus with its one socket. Address bytes are in their 8-bit form, direction in bit 0.
#pragma once

#include <memory>
#include <span>
#include <string>

#include "boards/simulated/bus_time.h"
#include "boards/simulated/sensors/sensor.h"

namespace boards {

class I2cBus {
 public:
  explicit I2cBus(BusTime& time) : time_(time) {}

  bool answers = true;  // false: the sensor in the socket acknowledges nothing

  void mount(std::unique_ptr<Sensor> sensor, std::uint8_t address);
  void unmount() { sensor_.reset(); }
  Sensor* sensor() const { return sensor_.get(); }  // null while the socket is empty
  std::uint8_t write_address() const { return write_address_; }

  // Returns how many bytes were acknowledged, the address included. A read form of the address is
  // taken as its write form.
  std::size_t write(std::uint8_t address, std::span<const std::uint8_t> bytes);
  // False: the address was not acknowledged and `bytes` is as it was. The time of the data bytes is
  // left to the transfer that fetches them.
  bool read(std::uint8_t address, std::span<std::uint8_t> bytes);

 private:
  // Puts the address on the bus. True: the sensor acknowledged it.
  bool select(std::uint8_t address);

  BusTime& time_;
  std::unique_ptr<Sensor> sensor_;
  std::uint8_t write_address_ = 0;
};

}  // namespace boards
