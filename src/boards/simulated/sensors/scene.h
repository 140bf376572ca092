// What the sensor looks at, and what the board has beside it.
#pragma once

namespace boards {

// A negative value is taken as 0 by the sensors.
struct Scene {
  double light_lux = 500;    // visible light on the sensor
  double ir_counts = 100;    // infrared part, in counts of the infrared diode
  double distance_mm = 100;  // from the sensor to the target in front of it
  // The resistor on the board that sets the clock of the sensors that have none of their own. More than 0.
  double external_resistor_ohms = 500'000;
};

}  // namespace boards
