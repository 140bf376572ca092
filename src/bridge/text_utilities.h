// Hexadecimal parsing, a splitter for text lines and prompts, as the forms use them.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "bridge/program.h"

namespace varzelin {

// The number of a hexadecimal text as a 16-bit integer: digits up to the first bad character, 0 for
// none. Four digits with the top bit set come out negative. Raises overflow beyond 16 bits; callers
// test for 0 to 255.
std::int16_t HexVal(std::string_view text);

// Goes through the trimmed text from its last character, 16 times the place value at each step. A
// character that is no digit counts as digit 0 and takes up a place; there is no error. `value`
// wraps at 32 bits.
void HexToLong(std::string_view text, std::int32_t& value);

// Splits at a delimiter of one character into fields(0), fields(1), ... and returns the index of the
// last field filled (0 also for a text that holds nothing). All fields are emptied first, and the
// delimiter is appended to `text`. Empty fields in between count, one at the very end doesn't.
std::int16_t Split_Fields(std::string& text, std::span<std::string> fields, std::string_view delimiter);

// Keyboard filter of hexadecimal boxes: digits and backspace pass, "a" to "f" are made upper case in
// the argument, "A" to "F" pass; the result is 0 for anything else.
int Hex_Key(int& KeyAscii);

// Shows a message box; the answer's number.
int Ask_Box(Program& program, std::string text, int buttons, std::string title);

// Asks until the reply is a number or the user gives up (an empty reply, or Cancel at the message
// `invalid_text`): false then. `value` is cut to 16 bits with sign.
bool Ask_Number(Program& program, const std::string& prompt, const std::string& title, std::int32_t& value,
                bool is_hex, const std::string& invalid_text, const std::string& default_text);

}  // namespace varzelin
