// What an external resistor makes of a sensor: its clock, how long a conversion takes, its ranges and the
// lux of a count. Numbers in; numbers and the texts that the panel shows out.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace varzelin {

// The resistor at which the oscillator runs at 655 kHz and the ranges are those of range_lux.
inline constexpr std::int32_t reference_ohms = 500000;
inline constexpr std::array<std::int32_t, 4> range_lux{1000, 4000, 16000, 64000};

// The number that the platform's text form leaves of a number: its 15 significant digits.
double through_text(double value);

// A range's full scale with the resistor, as the panel's option names it. `ohms` isn't 0.
std::string range_caption(std::size_t range, std::int32_t ohms);

// The chart's scale for a range of so many lux. The full count goes in and out again.
double lux_scale(double full_scale_lux, std::int32_t ohms, std::int32_t full_count);

struct Calculation {
  // As the panel shows them.
  std::string clock_counts;
  std::string oscillator_khz;
  std::string period_ms;
  std::string integration_ms;
  std::string full_scale_lux;
  // Lux per count; none under external timing, where a full count of 0 says that there is no fixed one.
  std::optional<double> lux_factor;
};
// `ohms` isn't 0.
Calculation calculate(std::int32_t ohms, std::int32_t full_count, std::int32_t full_scale_lux);

// The lux of a count, with two decimals.
std::string lux_text(std::int32_t count, double lux_factor);

}  // namespace varzelin
