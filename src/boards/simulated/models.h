// The sensor models that the simulated board can carry, by the names of the start list.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "boards/simulated/sensors/sensor.h"

namespace boards {

// All names that make_sensor knows, in the order of the start list.
std::vector<std::string_view> simulated_models();

// A freshly powered sensor; null for a name that isn't among simulated_models().
std::unique_ptr<Sensor> make_sensor(std::string_view model, const Surroundings& surroundings);

}  // namespace boards
