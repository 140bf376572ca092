// When the stability wait of the two-mode panels has its value: two readings of proximity less infrared in a
// row that differ by little.
#pragma once

#include <cstdint>

namespace varzelin {

// `tolerance` is a part of the first reading. Its difference from the second has its sign: a second reading
// that is larger always counts as settled. A reading of 0 never does.
bool settled(std::int32_t first, std::int32_t second, double tolerance);

}  // namespace varzelin
