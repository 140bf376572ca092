#include "boards/hex.h"

#include "forms/text.h"

namespace boards {

std::string hex(std::span<const std::uint8_t> bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) {
    if (!text.empty()) text += ' ';
    text += forms::Hex2(byte);
  }
  return text;
}

}  // namespace boards
