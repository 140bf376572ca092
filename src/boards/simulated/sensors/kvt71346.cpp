#include "boards/simulated/sensors/kvt71346.h"

#include <algorithm>

#include "boards/simulated/sensors/light.h"

namespace boards {
namespace {

using namespace std::chrono_literals;

constexpr std::uint8_t reset = 0x0C;
constexpr std::uint8_t power_down = 0x8C;
constexpr std::uint8_t loop_back = 0xA5;

// Ten counts a lux.
constexpr std::uint16_t full_scale = 65535;
constexpr LightRange range{.lux = full_scale / 10.0, .ir_counts = full_scale};

struct Conversion {
  Measurement measurement;
  Converter::Time time;
};

// No value for the modes that don't convert.
std::optional<Conversion> conversion(std::uint8_t mode) {
  switch (mode) {
    case 0x00:
      return Conversion{Measurement::diode1, 100ms};
    case 0x04:
      return Conversion{Measurement::diode2, 100ms};
    case 0x08:
      return Conversion{Measurement::difference, 200ms};  // one diode after the other
    default:
      return std::nullopt;
  }
}

}  // namespace

Kvt71346::Kvt71346(const Surroundings& surroundings) : surroundings_(surroundings), mode_(power_down) {}

std::size_t Kvt71346::write(std::span<const std::uint8_t> bytes) {
  if (bytes.empty()) return 0;
  catch_up();
  const std::uint8_t mode = bytes.front();
  // A host that repeats its mode faster than the sensor integrates would otherwise never see a result.
  if (converter_.integrating() && mode == mode_) return bytes.size();

  mode_ = mode;
  converter_.stop();
  if (mode_ == reset) count_ = 0;
  if (const auto next = conversion(mode_)) {
    converter_.convert_once(surroundings_.clock.now(), next->time);
  }
  return bytes.size();
}

void Kvt71346::read(std::span<std::uint8_t> bytes) {
  catch_up();
  const unsigned value = mode_ == loop_back ? loop_back * 0x0101u : count_;
  std::ranges::fill(bytes, std::uint8_t{0});
  if (bytes.size() > 0) bytes[0] = static_cast<std::uint8_t>(value);
  if (bytes.size() > 1) bytes[1] = static_cast<std::uint8_t>(value >> 8);
}

std::optional<std::uint8_t> Kvt71346::register_value(std::uint8_t address) {
  catch_up();
  switch (address) {
    case 0:
      return mode_;
    case 1:
      return static_cast<std::uint8_t>(count_);
    case 2:
      return static_cast<std::uint8_t>(count_ >> 8);
    default:
      return std::nullopt;
  }
}

bool Kvt71346::set_register(std::uint8_t address, std::uint8_t value) {
  catch_up();
  switch (address) {
    case 0:
      mode_ = value;
      converter_.stop();
      return true;
    case 1:
      count_ = static_cast<std::uint16_t>((count_ & 0xFF00) | value);
      return true;
    case 2:
      count_ = static_cast<std::uint16_t>((count_ & 0x00FF) | (value << 8));
      return true;
    default:
      return false;
  }
}

void Kvt71346::catch_up() {
  if (converter_.take_ended(surroundings_.clock.now()) == 0) return;
  const Measurement measurement = conversion(mode_)->measurement;
  count_ = light_count(surroundings_.scene, measurement, range, full_scale, surroundings_.noise.next());
}

}  // namespace boards
