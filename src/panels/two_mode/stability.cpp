#include "panels/two_mode/stability.h"

#include <cmath>

namespace varzelin {

bool settled(std::int32_t first, std::int32_t second, double tolerance) {
  if (first == 0 || second == 0) return false;
  const double size = std::abs(static_cast<double>(first));
  return size * tolerance > size - std::abs(static_cast<double>(second));
}

}  // namespace varzelin
