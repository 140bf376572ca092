#include "boards/simulated/sensors/shared_converter.h"

#include <algorithm>
#include <utility>

#include "boards/simulated/sensors/interrupt_limits.h"
#include "boards/simulated/sensors/light.h"

namespace boards {
namespace {

namespace map = registers::shared_converter;

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

SharedConverter::SharedConverter(RegisterFile cells, const registers::Field& scheme,
                                 const Surroundings& surroundings)
    : RegisterFile(std::move(cells)), scheme_(scheme), surroundings_(surroundings), setting_(setting()) {}

void SharedConverter::catch_up() {
  for (int left = telling(converter_.take_ended(surroundings_.clock.now())); left > 0; --left) {
    conversion_ended(conversion_time());
  }
}

void SharedConverter::register_written(std::uint8_t address) {
  const Setting now = setting();
  const bool another = std::exchange(setting_, now) != now;
  const bool ordered = address == map::operation_register && (another || timing() == Timing::single);
  if (ordered || (another && converter_.integrating())) start_converting();
}

std::uint8_t SharedConverter::read_register(std::uint8_t address) {
  if (address == map::result_register && bits() <= short_conversion_bits &&
      converter_.cut_off(surroundings_.clock.now())) {
    conversion_ended(conversion_time());
  }
  return cell(address);
}

void SharedConverter::command(std::uint8_t byte) {
  if (byte != map::sync.byte || timing() != Timing::on_command) return;
  const Converter::Time now = surroundings_.clock.now();
  if (const auto integrated = converter_.cut_off(now)) conversion_ended(*integrated);
  converter_.convert_once(now, conversion_time());
}

SharedConverter::Setting SharedConverter::setting() const {
  return {value_of(map::operation), value_of(map::external_timing), value_of(map::time_base),
          value_of(scheme_), cell(map::configuration_register)};
}

SharedConverter::Timing SharedConverter::timing() const {
  const int operation = value_of(map::operation);
  if (quantity(operation) == Quantity::none) return Timing::none;
  if (value_of(map::external_timing) != 0) return Timing::on_command;
  return operation < map::als_continuous ? Timing::single : Timing::continuous;
}

CountFormat SharedConverter::format() const {
  const bool of_proximity = quantity(value_of(map::operation)) == Quantity::proximity;
  return {bits(), of_proximity && value_of(scheme_) == 1};
}

void SharedConverter::start_converting() {
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

void SharedConverter::conversion_ended(Converter::Time integrated) {
  const CountFormat counter{bits()};
  const auto cycles = static_cast<std::uint16_t>(
      std::min<std::int64_t>(integrated * (1 << counter.bits) / conversion_time(), counter.highest()));
  cycles_counted(cycles);
  if (value_of(map::time_base) != 0) {
    set_pair(map::result_register, cycles);
    return;
  }
  const std::chrono::duration<double, Converter::Time::period> part = integrated;
  const CountFormat counts = format();
  const int count = counts.converted(measured() * (part / conversion_time()), surroundings_.noise.next());
  set_pair(map::result_register, CountFormat::result(count));
  converted(count, counts);
}

double SharedConverter::measured() const {
  const Scene& scene = surroundings_.scene;
  const double scale = 1 << bits();
  const double step = 1 << (2 * value_of(map::range));
  switch (quantity(value_of(map::operation))) {
    case Quantity::light:
      return part_of_scale(scene.light_lux, 1000 * step) * counts_of_range(bits());
    case Quantity::infrared:
      return ambient_infrared(scene, 1 / step) * scale;
    case Quantity::proximity: {
      const Ambient ambient = value_of(scheme_) == 1 ? Ambient::subtracted : Ambient::included;
      return proximity(scene, emitter(), ambient, 1 / step) * scale;
    }
    case Quantity::none:
      break;
  }
  return 0;
}

}  // namespace boards
