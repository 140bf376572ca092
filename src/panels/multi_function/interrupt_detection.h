// What the interrupt test decides by. Proximity and light in counts, the limits as the user entered them.
#pragma once

#include <cmath>

namespace varzelin {

// The high interrupt counts only when the target is clearly nearer than the low limit has it.
constexpr bool target_is_near(double proximity, double low_limit) {
  return proximity > low_limit * 1.2;
}

// The low interrupt counts only when the target is away, or about to be.
constexpr bool target_is_away(double proximity, double low_limit) {
  return proximity <= low_limit * 1.5;
}

// With light enough at the high interrupt the light tells the cases apart, else the slope of the proximity.
constexpr bool light_decides(double light_at_high, double least_light) {
  return light_at_high >= least_light;
}

// How far the proximity moved within the delay.
inline double slope(double proximity_before, double proximity_behind) {
  return std::abs(proximity_behind - proximity_before);
}

}  // namespace varzelin
