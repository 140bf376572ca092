#include "boards/simulated/sensors/light.h"

#include <algorithm>
#include <cmath>

namespace boards {

std::uint16_t light_count(const Scene& scene, Measurement measurement, const LightRange& range,
                          std::uint16_t full_scale, double noise) {
  const double full = full_scale;
  const double visible = std::max(0.0, scene.light_lux) * full / range.lux;
  const double infrared = std::max(0.0, scene.ir_counts) * full / range.ir_counts;
  const double diode1 = std::min(full, visible + infrared);
  const double diode2 = std::min(full, infrared);

  double ideal = 0;
  switch (measurement) {
    case Measurement::diode1:
      ideal = diode1;
      break;
    case Measurement::diode2:
      ideal = diode2;
      break;
    case Measurement::difference:
      ideal = diode1 - diode2;
      break;
    case Measurement::none:
      break;
  }
  return static_cast<std::uint16_t>(std::clamp(std::floor(ideal + noise + 0.5), 0.0, full));
}

double part_of_scale(double amount, double full) {
  return std::min(std::max(0.0, amount) / full, 1.0);
}

}  // namespace boards
