// What the sensor looks at.
#pragma once

namespace boards {

// A negative value is taken as 0 by the sensors.
struct Scene {
  double light_lux = 500;    // visible light on the sensor
  double ir_counts = 100;    // infrared part, in counts of the infrared diode
  double distance_mm = 100;  // from the sensor to the target in front of it
};

}  // namespace boards
