// Scenes of light as common sources give it.
#pragma once

#include <array>
#include <string_view>

namespace boards {

struct LightSource {
  std::string_view name;
  double light_lux;
  double ir_counts;
};

// Their infrared to their light lies well inside what the batch sequence takes for each of them: in its
// setting above 26.5 counts to one, below 9.5, and between the two.
inline constexpr std::array light_sources{
    LightSource{"Incandescent", 200, 30000},
    LightSource{"Fluorescent", 500, 1000},
    LightSource{"Sun light", 800, 56000},
};

}  // namespace boards
