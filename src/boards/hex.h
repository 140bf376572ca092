// Bytes as logs, recordings and traces show them.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace boards {

// Two upper-case digits a byte, blanks between: "02 A0 00".
std::string hex(std::span<const std::uint8_t> bytes);

}  // namespace boards
