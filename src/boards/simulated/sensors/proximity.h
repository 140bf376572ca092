// What a proximity conversion sees: the light of the sensor's own infrared emitter that comes back to it, and
// the infrared that is there anyway. All in parts of the converter's scale, 1 fills it.
#pragma once

#include "boards/simulated/sensors/scene.h"

namespace boards {

// How often the emitter is switched, by its frequency in kHz.
enum class Modulation { none, khz_328, khz_655, khz_1311 };

struct Emitter {
  int current;  // 0 to 3: 12.5, 25, 50, 100 mA
  Modulation modulation;
};

// The part of its steady light that a modulated emitter gives: on half of the time, less what its edges take.
double duty(Modulation modulation);

// Comes back from the sensor's own package, whatever is in front of it.
double crosstalk(const Emitter& emitter);

// Comes back from the target, in the most sensitive range.
double reflection(const Scene& scene, const Emitter& emitter);

// The infrared that is there anyway. A conversion of infrared sees the same. `sensitivity` is 1 in the most
// sensitive range.
double ambient_infrared(const Scene& scene, double sensitivity);

enum class Ambient {
  included,
  subtracted,  // by a little more than there is: without a target, strong infrared leads below 0
};

// Crosstalk stands in the result of every range alike; target and ambient light follow the sensitivity.
double proximity(const Scene& scene, const Emitter& emitter, Ambient ambient, double sensitivity);

}  // namespace boards
