// What a sensor with two photo diodes counts for the light on it. Diode 1 sees visible light and infrared,
// diode 2 infrared alone.
#pragma once

#include <cstdint>

#include "boards/simulated/sensors/scene.h"

namespace boards {

enum class Measurement { diode1, diode2, difference, none };

// How much fills the scale of a diode.
struct LightRange {
  double lux;        // of visible light
  double ir_counts;  // of the scene's infrared
};

// `full_scale` is the highest count. Each diode saturates there, before the difference is taken. The noise
// comes on top, in counts; halves round up.
std::uint16_t light_count(const Scene& scene, Measurement measurement, const LightRange& range,
                          std::uint16_t full_scale, double noise);

// How much of a scale that `full` fills is taken by `amount`: 0 to 1.
double part_of_scale(double amount, double full);

}  // namespace boards
