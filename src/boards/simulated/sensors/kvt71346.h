// KVT71346 and KVT71347: no register file. The host writes a mode byte, which also starts a
// conversion; a read brings the count, low byte first.
#pragma once

#include "boards/simulated/sensors/converter.h"
#include "boards/simulated/sensors/sensor.h"

namespace boards {

class Kvt71346 final : public Sensor {
 public:
  // Powered down, with a count of 0.
  explicit Kvt71346(const Surroundings& surroundings);

  std::size_t write(std::span<const std::uint8_t> bytes) override;
  void read(std::span<std::uint8_t> bytes) override;

  // For the bench: 0 is the mode byte, 1 and 2 the low and high byte of the count.
  std::optional<std::uint8_t> register_value(std::uint8_t address) override;
  bool set_register(std::uint8_t address, std::uint8_t value) override;

  void catch_up() override;

 private:
  Surroundings surroundings_;
  std::uint8_t mode_;
  std::uint16_t count_ = 0;
  Converter converter_;
};

}  // namespace boards
