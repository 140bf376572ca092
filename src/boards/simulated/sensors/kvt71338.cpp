#include "boards/simulated/sensors/kvt71338.h"

#include <algorithm>
#include <array>

namespace boards {
namespace {

namespace map = registers::kvt71338;

// The resistor with which the clock and the ranges are these.
constexpr double reference_ohms = 500'000;
constexpr double reference_hertz = 655'000;
constexpr double lowest_range_lux = 1000;  // each further range is four times the one before

constexpr std::array resolution_bits{16, 12, 8, 4};  // by the value of the integration field
// Its values under external timing; those above them don't convert.
constexpr int external_count = 4;
constexpr int external_time_base = 5;

constexpr std::uint16_t full_scale(int bits) {
  return static_cast<std::uint16_t>((1 << bits) - 1);
}

}  // namespace

Kvt71338::Kvt71338(const Surroundings& surroundings)
    : RegisterFile(map::kvt71338_map.registers), surroundings_(surroundings), setting_(setting()) {}

void Kvt71338::catch_up() {
  if (converter_.take_ended(surroundings_.clock.now()) != 0) {
    const auto resolution = static_cast<std::size_t>(value_of(map::integration));
    set_pair(map::data_register, count(full_scale(resolution_bits[resolution])));
  }
  // Another resistor than before: the clock runs at another speed from now on.
  if (setting() != setting_) start_converting();
}

void Kvt71338::register_written(std::uint8_t address) {
  if (address != map::command_register) return;
  const bool again = single_conversions() && !converter_.integrating();
  if (again || setting() != setting_) start_converting();
}

void Kvt71338::command(std::uint8_t byte) {
  if (byte == map::sync_command.byte) end_external_integration();
}

Kvt71338::Setting Kvt71338::setting() const {
  return {cell(map::command_register), surroundings_.scene.external_resistor_ohms};
}

bool Kvt71338::single_conversions() const {
  return value_of(map::conversion) == 0;
}

void Kvt71338::start_converting() {
  setting_ = setting();
  converter_.stop();
  if (value_of(map::power) == 0) return;
  const int integration = value_of(map::integration);
  if (integration == external_count || integration == external_time_base) {
    converter_.convert_on_command();
  } else if (integration < external_count) {
    const auto now = surroundings_.clock.now();
    const auto time = time_of(1 << resolution_bits[static_cast<std::size_t>(integration)]);
    if (single_conversions()) {
      converter_.convert_once(now, time);
    } else {
      converter_.convert_continuously(now, time);
    }
  }
}

// The first sync begins an integration, the next one ends it.
void Kvt71338::end_external_integration() {
  const auto integrated = converter_.command(surroundings_.clock.now());
  if (!integrated) return;
  converter_.convert_on_command();
  // A count a cycle is the most that the light can give. The integration is over when the time base could
  // overflow, so that count and cycles stay in proportion.
  const auto cycles =
      static_cast<std::uint16_t>(std::min<double>(cycles_in(*integrated), full_scale(resolution_bits[0])));
  const bool time_base = value_of(map::integration) == external_time_base;
  set_pair(map::data_register, time_base ? cycles : count(cycles));
}

Converter::Time Kvt71338::time_of(double cycles) const {
  const double hertz = reference_hertz * reference_ohms / setting_.resistor_ohms;
  return std::chrono::duration_cast<Converter::Time>(std::chrono::duration<double>(cycles / hertz));
}

double Kvt71338::cycles_in(Converter::Time time) const {
  const double hertz = reference_hertz * reference_ohms / setting_.resistor_ohms;
  return std::chrono::duration<double>(time).count() * hertz;
}

std::uint16_t Kvt71338::count(std::uint16_t highest) {
  const double step = reference_ohms / setting_.resistor_ohms * (1 << (2 * value_of(map::range)));
  const LightRange range{lowest_range_lux * step, full_scale(resolution_bits[0]) * step};
  // Seen as visible light, the infrared is taken off.
  const bool infrared = value_of(map::measurement) != 0;
  return light_count(surroundings_.scene, infrared ? Measurement::diode2 : Measurement::difference, range,
                     highest, surroundings_.noise.next());
}

}  // namespace boards
