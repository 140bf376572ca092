// An interrupt limit as the two bytes of its registers.
#pragma once

#include <cstdint>

namespace varzelin {

inline constexpr int sign_bit_16 = 128;  // of the high byte, at 16 bits
inline constexpr int sign_bit_12 = 8;

struct LimitBytes {
  std::int32_t low;
  std::int32_t high;  // 256 for the one limit that takes more than 16 bits; the bus gets its low byte
};

// A negative limit is in two's complement of `sign_mask`'s width; at 12 bits the upper half of the high byte
// is all ones.
LimitBytes limit_bytes(double limit, std::int32_t sign_mask, std::int32_t sign_bit);

}  // namespace varzelin
