#include "boards/simulated/kvt71346.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace boards {
namespace {

using namespace std::chrono_literals;

enum Mode : std::uint8_t {
  diode1 = 0x00,  // visible light and infrared
  diode2 = 0x04,  // infrared alone
  difference = 0x08,
  reset = 0x0C,
  power_down = 0x8C,
  loop_back = 0xA5,
};

constexpr double counts_per_lux = 10;
constexpr double full_scale = 65535;

// Zero for the modes that don't convert.
forms::Clock::Duration integration_time(std::uint8_t mode) {
  switch (mode) {
    case diode1:
    case diode2:
      return 100ms;
    case difference:
      return 200ms;  // one conversion after the other
    default:
      return 0ms;
  }
}

}  // namespace

Kvt71346::Kvt71346(const Surroundings& surroundings) : surroundings_(surroundings), mode_(power_down) {}

std::size_t Kvt71346::write(std::span<const std::uint8_t> bytes) {
  if (bytes.empty()) return 0;
  settle();
  const std::uint8_t mode = bytes.front();
  // A host that repeats its mode faster than the sensor integrates would otherwise never see a result.
  if (done_at_ && mode == mode_) return bytes.size();

  mode_ = mode;
  done_at_.reset();
  if (mode_ == reset) count_ = 0;
  if (const Time time = integration_time(mode_); time > Time::zero()) {
    done_at_ = surroundings_.clock.now() + time;
  }
  return bytes.size();
}

void Kvt71346::read(std::span<std::uint8_t> bytes) {
  settle();
  const unsigned value = mode_ == loop_back ? loop_back * 0x0101u : count_;
  std::ranges::fill(bytes, std::uint8_t{0});
  if (bytes.size() > 0) bytes[0] = static_cast<std::uint8_t>(value);
  if (bytes.size() > 1) bytes[1] = static_cast<std::uint8_t>(value >> 8);
}

std::optional<std::uint8_t> Kvt71346::register_value(std::uint8_t address) {
  settle();
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
  settle();
  switch (address) {
    case 0:
      mode_ = value;
      done_at_.reset();
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

void Kvt71346::settle() {
  if (!done_at_ || surroundings_.clock.now() < *done_at_) return;
  done_at_.reset();
  count_ = measure();
}

std::uint16_t Kvt71346::measure() const {
  const double infrared = std::max(0.0, surroundings_.scene.ir_counts);
  const double visible = std::max(0.0, surroundings_.scene.light_lux) * counts_per_lux;
  const double first = std::min(full_scale, visible + infrared);
  const double second = std::min(full_scale, infrared);
  const double ideal = mode_ == diode1 ? first : mode_ == diode2 ? second : first - second;
  const double noisy = std::floor(ideal + surroundings_.noise.next() + 0.5);
  return static_cast<std::uint16_t>(std::clamp(noisy, 0.0, full_scale));
}

}  // namespace boards
