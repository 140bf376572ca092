#include "boards/simulated/sensors/proximity.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "boards/simulated/sensors/light.h"

namespace boards {
namespace {

// The counts below are those of a converter of this scale, twelve bits.
constexpr double scale = 4096;

struct Crosstalk {
  double steady;
  double modulated;  // at the lowest frequency
};
constexpr std::array<Crosstalk, 4> crosstalks{{{60, 30}, {140, 60}, {320, 150}, {700, 330}}};  // by current

// From a target that touches the sensor, at the lowest current.
constexpr double nearest_target = 2048;
// At this distance half of that comes back; far beyond, a quarter at twice the distance.
constexpr double half_distance_mm = 20;

// Part of the ambient infrared that is subtracted beyond what there is.
constexpr double excess = 1 / 8.0;

}  // namespace

double duty(Modulation modulation) {
  switch (modulation) {
    case Modulation::khz_328:
      return 1 / 2.0;
    case Modulation::khz_655:
      return 7 / 16.0;
    case Modulation::khz_1311:
      return 3 / 8.0;
    case Modulation::none:
      break;
  }
  return 1;
}

double crosstalk(const Emitter& emitter) {
  const Crosstalk& counts = crosstalks[static_cast<std::size_t>(emitter.current)];
  if (emitter.modulation == Modulation::none) return counts.steady / scale;
  return counts.modulated * duty(emitter.modulation) / duty(Modulation::khz_328) / scale;
}

double reflection(const Scene& scene, const Emitter& emitter) {
  const double distance = std::max(0.0, scene.distance_mm) / half_distance_mm;
  return nearest_target * (1 << emitter.current) * duty(emitter.modulation) / (1 + distance * distance) /
         scale;
}

double ambient_infrared(const Scene& scene, double sensitivity) {
  return part_of_scale(scene.ir_counts, scale / sensitivity);
}

double proximity(const Scene& scene, const Emitter& emitter, Ambient ambient, double sensitivity) {
  const double infrared = ambient_infrared(scene, sensitivity);
  const double own = crosstalk(emitter) + reflection(scene, emitter) * sensitivity;
  return own + (ambient == Ambient::included ? infrared : -excess * infrared);
}

}  // namespace boards
