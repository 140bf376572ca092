#include "panels/multi_function/limit_bytes.h"

#include <cmath>

#include "forms/text.h"

namespace varzelin {

LimitBytes limit_bytes(double limit, std::int32_t sign_mask, std::int32_t sign_bit) {
  constexpr std::int32_t byte = 0xFF;
  constexpr std::int32_t upper_half = 0xF0;
  if (limit >= 0) {
    const std::int32_t value = forms::CLng(limit);
    return {.low = value & byte, .high = value / 256};
  }
  const double complement = sign_mask - std::abs(limit) + 1;
  const std::int32_t high = forms::CLng(forms::Int(complement / 256)) & byte;
  return {.low = forms::CLng(complement) & byte, .high = sign_bit == sign_bit_12 ? high | upper_half : high};
}

}  // namespace varzelin
