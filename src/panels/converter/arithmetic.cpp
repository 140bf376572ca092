#include "panels/converter/arithmetic.h"

namespace varzelin {
namespace {

constexpr double reference_resistor = 500000.0;
constexpr int sign_of_16_bits = 128;
constexpr int magnitude_of_16_bits = 0x7FFF;
// Twelve bits leave the upper half of the high byte without a meaning.
constexpr int sign_of_12_bits = 8;
constexpr int high_bits_of_12 = 15;

SignedCount negative(std::int32_t magnitude) {
  return {.value = -magnitude, .sign = -1};
}

}  // namespace

double lux_of(double count, std::int32_t range_lux, std::int32_t resistor_scale, std::int32_t full_count) {
  return range_lux * (reference_resistor / resistor_scale) * (count / (full_count + 1.0));
}

SignedCount inverted_magnitude(int low, int high, int negative_from) {
  if (high < negative_from) return plain_count(low, high);
  return negative((((high - sign_of_16_bits) * 256 + low) ^ magnitude_of_16_bits) + 1);
}

int meant_of_high(int high, int sign_bit) {
  return sign_bit == sign_of_12_bits ? high & high_bits_of_12 : high;
}

SignedCount twos_complement(int low, int high, int sign_bit, int sign_mask) {
  high = meant_of_high(high, sign_bit);
  if (high < sign_bit) return plain_count(low, high);
  return negative((((high - sign_bit) * 256 + low) ^ sign_mask) + 1);
}

}  // namespace varzelin
