#include "boards/simulated/sensors/kvt71385.h"

#include "registers/kvt71385.h"

namespace boards {

namespace map = registers::kvt71385;

Kvt71385::Kvt71385(const Surroundings& surroundings)
    : SharedConverter(RegisterFile(map::kvt71385_map.registers, map::interrupt_flag), map::scheme,
                      surroundings) {}

bool Kvt71385::interrupts() {
  catch_up();
  return value_of(map::interrupt_flag) != 0;
}

std::uint8_t Kvt71385::read_register(std::uint8_t address) {
  const std::uint8_t value = SharedConverter::read_register(address);
  if (address == map::interrupt_flag.register_number && value_of(map::interrupt_flag) != 0) {
    set(map::interrupt_flag, 0);
    limits_.restart();
  }
  return value;
}

// The end of the range lies one count beyond the scale: so the hosts of these sensors reckon.
double Kvt71385::counts_of_range(int bits) const {
  return (1 << bits) + 1;
}

Emitter Kvt71385::emitter() const {
  return {value_of(map::current), value_of(map::modulation) == 1 ? Modulation::khz_328 : Modulation::none};
}

void Kvt71385::converted(int count, const CountFormat& counts) {
  const int persistence = persistences[static_cast<std::size_t>(value_of(map::persistence))];
  if (limits_.trips(count, counts.limit(pair(map::low_limit_register)),
                    counts.limit(pair(map::high_limit_register)), persistence)) {
    set(map::interrupt_flag, 1);
  }
}

}  // namespace boards
