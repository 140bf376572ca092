// What an entry in decimal makes of an interrupt limit, of which the sensor holds the upper eight of sixteen
// bits.
#pragma once

#include <cstdint>
#include <optional>

namespace varzelin {

struct LimitRules {
  std::int32_t maximum;  // of a limit that is a multiple of 256; 256 is the least
  bool zero_allowed;     // 0 is a limit, too. Where it isn't, a byte of 0 becomes 256
};

struct LimitEntry {
  // None: out of range.
  std::optional<std::int32_t> byte = std::nullopt;
  // What the entry's box is to show: the limit rounded down. None: it stays.
  std::optional<std::int32_t> shown = std::nullopt;
};

// The box shows the value rounded down, the byte is rounded to nearest, halves to even.
// A number that is no multiple of 256 isn't tested against the range. Raises overflow beyond 32 bits.
LimitEntry limit_entry(double number, const LimitRules& rules);

}  // namespace varzelin
