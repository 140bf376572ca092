// KVT71374 and KVT71376: two registers to write, one converter, and a counter of its cycles.
#pragma once

#include "boards/simulated/sensors/shared_converter.h"

namespace boards {

class Kvt71374 final : public SharedConverter {
 public:
  explicit Kvt71374(const Surroundings& surroundings);

 private:
  double counts_of_range(int bits) const override;
  Emitter emitter() const override;
  void cycles_counted(std::uint16_t cycles) override;
};

}  // namespace boards
