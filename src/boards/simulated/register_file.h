// A sensor that is nothing but its registers: they hold what is written and convert nothing.
#pragma once

#include <vector>

#include "boards/simulated/sensor.h"

namespace boards {

class RegisterFile final : public Sensor {
 public:
  // One power-on value a register, register 0 first.
  explicit RegisterFile(std::vector<std::uint8_t> power_on) : registers_(std::move(power_on)) {}

  // The first byte is the register pointer, which steps on at every data byte. Data beyond the last
  // register is acknowledged and lost. A single byte beyond it is a command: acknowledged, without
  // effect.
  std::size_t write(std::span<const std::uint8_t> bytes) override;
  // From the pointer on, 0 beyond the last register.
  void read(std::span<std::uint8_t> bytes) override;

  std::optional<std::uint8_t> register_value(std::uint8_t address) override;
  bool set_register(std::uint8_t address, std::uint8_t value) override;

 private:
  std::vector<std::uint8_t> registers_;
  std::size_t pointer_ = 0;
};

}  // namespace boards
