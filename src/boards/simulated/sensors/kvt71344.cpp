#include "boards/simulated/sensors/kvt71344.h"

#include <algorithm>

namespace boards {
namespace {

namespace map = registers::kvt71344;

// By the value of their field.
constexpr std::array measurements{Measurement::diode1, Measurement::diode2, Measurement::difference,
                                  Measurement::none};

}  // namespace

Kvt71344::Kvt71344(const Model& model, const Surroundings& surroundings)
    : RegisterFile(model.registers, map::interrupt_flag),
      model_(model),
      surroundings_(surroundings),
      setting_(setting()) {
  start_converting();
}

void Kvt71344::catch_up() {
  for (int left = telling(converter_.take_ended(surroundings_.clock.now())); left > 0; --left) {
    conversion_ended(full_scale(value_of(map::resolution)));
  }
}

bool Kvt71344::interrupts() {
  catch_up();
  return value_of(map::interrupt_flag) != 0;
}

void Kvt71344::register_written(std::uint8_t) {
  if (const Setting now = setting(); now != setting_) {
    setting_ = now;
    start_converting();
  }
}

void Kvt71344::command(std::uint8_t byte) {
  if (byte == map::end_of_conversion.byte) end_external_integration();
  if (byte == map::clear_interrupt.byte) {
    set(map::interrupt_flag, 0);
    limits_.restart();
  }
}

std::uint16_t Kvt71344::full_scale(int resolution) const {
  return static_cast<std::uint16_t>((1 << (model_.result_bits - 4 * resolution)) - 1);
}

Kvt71344::Setting Kvt71344::setting() {
  return {cell(map::command_register), value_of(map::range)};
}

void Kvt71344::start_converting() {
  converter_.stop();
  if (value_of(map::running) == 0) {
    set_pair(map::result_register, 0);
    set_pair(map::cycles_register, 0);
    limits_.restart();
    return;
  }
  if (value_of(map::power_down) != 0) return;
  if (value_of(map::external_timing) != 0) {
    converter_.convert_on_command();
  } else {
    const int bits = 16 - 4 * value_of(map::resolution);
    converter_.convert_continuously(surroundings_.clock.now(), integration_time(bits));
  }
}

void Kvt71344::end_external_integration() {
  const auto integrated = converter_.command(surroundings_.clock.now());
  if (!integrated) return;
  // A count a cycle is the most that the light can give. The integration is over when the result could
  // overflow, so that result and cycles stay in proportion.
  const auto cycles = std::min<std::int64_t>(*integrated / cycle, full_scale(0));
  set_pair(map::cycles_register, static_cast<std::uint16_t>(cycles));
  conversion_ended(static_cast<std::uint16_t>(cycles));
}

void Kvt71344::conversion_ended(std::uint16_t highest_count) {
  const double step = 1 << (2 * value_of(map::range));
  const LightRange range{model_.lowest_range * step, full_scale(0) * step};
  const Measurement measurement = measurements[static_cast<std::size_t>(value_of(map::measurement))];
  const std::uint16_t result =
      light_count(surroundings_.scene, measurement, range, highest_count, surroundings_.noise.next());
  set_pair(map::result_register, result);

  const int persistence = persistences[static_cast<std::size_t>(value_of(map::trips))];
  if (limits_.trips(result >> 8, cell(map::low_limit_register), cell(map::high_limit_register),
                    persistence)) {
    set(map::interrupt_flag, 1);
  }
}

}  // namespace boards
