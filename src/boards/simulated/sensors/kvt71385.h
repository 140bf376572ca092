// KVT71385, KVT71388, KVT71390 and KVT71392: nine registers, one converter, interrupt limits.
#pragma once

#include "boards/simulated/sensors/interrupt_limits.h"
#include "boards/simulated/sensors/shared_converter.h"

namespace boards {

class Kvt71385 final : public SharedConverter {
 public:
  explicit Kvt71385(const Surroundings& surroundings);

  bool interrupts() override;

 private:
  std::uint8_t read_register(std::uint8_t address) override;
  double counts_of_range(int bits) const override;
  Emitter emitter() const override;
  void converted(int count, const CountFormat& counts) override;

  InterruptLimits limits_;
};

}  // namespace boards
