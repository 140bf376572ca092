// What the counts of a converter mean: light in lux, and readings with a sign.
#pragma once

#include <cstdint>

namespace varzelin {

// The light of a count, not rounded. `full_count` is what the panel has for the converter's width; one more
// is the divisor, so that the highest count stays below the range.
double lux_of(double count, std::int32_t range_lux, std::int32_t resistor_scale, std::int32_t full_count);

struct SignedCount {
  std::int32_t value = 0;  // with its sign
  int sign = 1;            // 1 or -1
};

// Two bytes without a sign.
constexpr SignedCount plain_count(int low, int high) {
  return {.value = high * 256 + low};
}

// Sign and inverted magnitude in 16 bits, whatever the converter's width. The sign is there from a high byte
// of `negative_from` on: the places that read such a value don't agree on it.
SignedCount inverted_magnitude(int low, int high, int negative_from);

// A high byte without what has no meaning at twelve bits.
int meant_of_high(int high, int sign_bit);

// Two's complement at the converter's width: `sign_bit` of the high byte, 128 at 16 bits and 8 at 12 bits,
// and `sign_mask`, what lies below it in the 16 bits.
SignedCount twos_complement(int low, int high, int sign_bit, int sign_mask);

}  // namespace varzelin
