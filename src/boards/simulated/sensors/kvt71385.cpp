#include "boards/simulated/sensors/kvt71385.h"

#include <algorithm>
#include <utility>

#include "boards/simulated/sensors/light.h"
#include "boards/simulated/sensors/proximity.h"

namespace boards {
namespace {

namespace map = registers::kvt71385;

enum class Quantity { none, light, infrared, proximity };

constexpr Quantity quantity(int operation) {
  switch (operation) {
    case map::als_once:
    case map::als_continuous:
      return Quantity::light;
    case map::ir_once:
    case map::ir_continuous:
      return Quantity::infrared;
    case map::proximity_once:
    case map::proximity_continuous:
      return Quantity::proximity;
    default:
      return Quantity::none;
  }
}

// The widths whose conversions take no longer than the host's next request.
constexpr int short_conversion_bits = 8;

}  // namespace

Kvt71385::Kvt71385(const Surroundings& surroundings)
    : RegisterFile(map::kvt71385_map.registers, map::interrupt_flag),
      surroundings_(surroundings),
      setting_(setting()) {}

void Kvt71385::catch_up() {
  for (int left = telling(converter_.take_ended(surroundings_.clock.now())); left > 0; --left) {
    conversion_ended(conversion_time());
  }
}

bool Kvt71385::interrupts() {
  catch_up();
  return value_of(map::interrupt_flag) != 0;
}

void Kvt71385::register_written(std::uint8_t address) {
  const Setting now = setting();
  const bool another = std::exchange(setting_, now) != now;
  const bool ordered = address == map::operation_register && (another || timing() == Timing::single);
  if (ordered || (another && converter_.integrating())) start_converting();
}

std::uint8_t Kvt71385::read_register(std::uint8_t address) {
  if (address == map::result_register && bits() <= short_conversion_bits &&
      converter_.cut_off(surroundings_.clock.now())) {
    conversion_ended(conversion_time());
  }
  const std::uint8_t value = cell(address);
  if (address == map::interrupt_flag.register_number && value_of(map::interrupt_flag) != 0) {
    set(map::interrupt_flag, 0);
    limits_.restart();
  }
  return value;
}

void Kvt71385::command(std::uint8_t byte) {
  if (byte != map::sync.byte || timing() != Timing::on_command) return;
  const Converter::Time now = surroundings_.clock.now();
  if (const auto integrated = converter_.cut_off(now)) conversion_ended(*integrated);
  converter_.convert_once(now, conversion_time());
}

Kvt71385::Setting Kvt71385::setting() const {
  return {value_of(map::operation), value_of(map::external_timing), value_of(map::time_base),
          cell(map::configuration_register)};
}

Kvt71385::Timing Kvt71385::timing() const {
  const int operation = value_of(map::operation);
  if (quantity(operation) == Quantity::none) return Timing::none;
  if (value_of(map::external_timing) != 0) return Timing::on_command;
  return operation < map::als_continuous ? Timing::single : Timing::continuous;
}

CountFormat Kvt71385::format() const {
  const bool of_proximity = quantity(value_of(map::operation)) == Quantity::proximity;
  return {bits(), of_proximity && value_of(map::scheme) == 1};
}

void Kvt71385::start_converting() {
  const Converter::Time now = surroundings_.clock.now();
  switch (timing()) {
    case Timing::single:
      converter_.convert_once(now, conversion_time());
      break;
    case Timing::continuous:
      converter_.convert_continuously(now, conversion_time());
      break;
    case Timing::none:
    case Timing::on_command:
      converter_.stop();
      break;
  }
}

void Kvt71385::conversion_ended(Converter::Time integrated) {
  if (value_of(map::time_base) != 0) {
    const CountFormat counter{bits()};
    const auto cycles = integrated * (1 << counter.bits) / conversion_time();
    set_pair(map::result_register,
             static_cast<std::uint16_t>(std::min<std::int64_t>(cycles, counter.highest())));
    return;
  }
  const std::chrono::duration<double, Converter::Time::period> part = integrated;
  const CountFormat counts = format();
  const int count = counts.converted(measured() * (part / conversion_time()), surroundings_.noise.next());
  set_pair(map::result_register, counts.result(count));

  const int persistence = persistences[static_cast<std::size_t>(value_of(map::persistence))];
  if (limits_.trips(count, counts.limit(pair(map::low_limit_register)),
                    counts.limit(pair(map::high_limit_register)), persistence)) {
    set(map::interrupt_flag, 1);
  }
}

double Kvt71385::measured() const {
  const Scene& scene = surroundings_.scene;
  const double scale = 1 << bits();
  const double step = 1 << (2 * value_of(map::range));
  switch (quantity(value_of(map::operation))) {
    case Quantity::light:
      // The end of the range lies one count beyond the scale: so the hosts of these sensors reckon.
      return part_of_scale(scene.light_lux, 1000 * step) * (scale + 1);
    case Quantity::infrared:
      return ambient_infrared(scene, 1 / step) * scale;
    case Quantity::proximity: {
      const Emitter emitter{value_of(map::current), value_of(map::modulation) == 1};
      const Ambient ambient = value_of(map::scheme) == 1 ? Ambient::subtracted : Ambient::included;
      return proximity(scene, emitter, ambient, 1 / step) * scale;
    }
    case Quantity::none:
      break;
  }
  return 0;
}

}  // namespace boards
