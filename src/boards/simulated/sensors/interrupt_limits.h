// The comparison of results with a sensor's interrupt limits.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

namespace boards {

// How many conversions in a row have to be outside the limits, by the value of the persistence field.
inline constexpr std::array persistences{1, 4, 8, 16};

// How many of the conversions that have ended of one scene have to be worked out: more in a row than any
// persistence asks for change nothing any more.
constexpr int telling(std::uint64_t ended) {
  return static_cast<int>(std::min<std::uint64_t>(ended, persistences.back()));
}

class InterruptLimits {
 public:
  // A conversion ended with this result. True: it was outside the limits, and so were the ones before it, as
  // many as `persistence` asks for. A result on a limit is inside.
  bool trips(int result, int low, int high, int persistence) {
    const bool outside = result < low || result > high;
    in_a_row_ = outside ? std::min(in_a_row_ + 1, persistences.back()) : 0;
    return in_a_row_ >= persistence;
  }
  // Counting begins anew.
  void restart() { in_a_row_ = 0; }

 private:
  int in_a_row_ = 0;
};

}  // namespace boards
