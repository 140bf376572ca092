#include "boards/simulated/sensors/kvt71374.h"

#include "registers/kvt71374.h"

namespace boards {

namespace map = registers::kvt71374;

Kvt71374::Kvt71374(const Surroundings& surroundings)
    : SharedConverter(RegisterFile(map::kvt71374_map.registers), map::scheme, surroundings) {}

// The hosts divide by one more than a full count, which they take for 256 and 16 at the two short widths.
double Kvt71374::counts_of_range(int bits) const {
  const int scale = 1 << bits;
  return bits <= 8 ? scale + 1 : scale;
}

Emitter Kvt71374::emitter() const {
  // By the values of their fields.
  constexpr std::array modulations{Modulation::none, Modulation::khz_1311, Modulation::khz_655,
                                   Modulation::khz_328};
  constexpr int highest_current = 3;
  return {highest_current - value_of(map::current),
          modulations[static_cast<std::size_t>(value_of(map::modulation))]};
}

void Kvt71374::cycles_counted(std::uint16_t cycles) {
  set_pair(map::cycles_register, cycles);
}

}  // namespace boards
