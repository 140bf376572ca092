// How the counts of a converter stand in a pair of registers.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace boards {

struct CountFormat {
  int bits;                      // of the converter, up to 16
  bool twos_complement = false;  // else from 0 on

  constexpr int lowest() const { return twos_complement ? -(1 << (bits - 1)) : 0; }
  constexpr int highest() const { return lowest() + (1 << bits) - 1; }

  // What the converter makes of `ideal` counts. It saturates; the noise comes on top, halves round up.
  int converted(double ideal, double noise) const {
    const double low = lowest();
    const double high = highest();
    return static_cast<int>(std::clamp(std::floor(std::clamp(ideal, low, high) + noise + 0.5), low, high));
  }

  // A count as the registers hold it. In two's complement the bits above the converter's carry the sign too,
  // so that a count reads the same at every width that it fits in.
  static constexpr std::uint16_t result(int count) { return static_cast<std::uint16_t>(count); }

  // An interrupt limit as the host has written it. In two's complement the bits above the converter's don't
  // matter; else they do, and a limit can be beyond every count.
  constexpr int limit(std::uint16_t written) const {
    if (!twos_complement) return written;
    const int magnitude = written & highest();
    return (written & (1 << (bits - 1))) != 0 ? lowest() + magnitude : magnitude;
  }
};

}  // namespace boards
