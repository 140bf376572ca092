// UTF-8 in and out: texts of the program are bytes, lines on standard output are always valid UTF-8.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace console {

inline constexpr std::uint32_t replacement_character = 0xFFFD;

// Length in bytes of the well-formed character at the start of a text that isn't empty; 0 when there
// is none.
std::size_t utf8_length(std::string_view text);

void append_utf8(std::string& text, std::uint32_t code_point);

}  // namespace console
