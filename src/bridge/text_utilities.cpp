#include "bridge/text_utilities.h"

#include <algorithm>
#include <cmath>

#include "forms/text.h"

namespace varzelin {
namespace {

std::uint32_t digit_value(char character) {
  if (character >= '0' && character <= '9') return static_cast<std::uint32_t>(character - '0');
  if (character >= 'a' && character <= 'f') return static_cast<std::uint32_t>(character - 'a' + 10);
  if (character >= 'A' && character <= 'F') return static_cast<std::uint32_t>(character - 'A' + 10);
  return 0;
}

// "&H" is put in front unless it is there already.
std::string with_hex_prefix(const std::string& reply) {
  return forms::UCase(reply.substr(0, 2)) == "&H" ? reply : "&H" + reply;
}

}  // namespace

std::int16_t HexVal(std::string_view text) {
  return forms::CInt(forms::Val("&H" + std::string(text)));
}

void HexToLong(std::string_view text, std::int32_t& value) {
  const std::string digits = forms::Trim(text);
  std::uint32_t sum = 0;
  std::uint32_t place = 1;
  for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit) {
    sum += digit_value(*digit) * place;
    place *= 16;
  }
  value = static_cast<std::int32_t>(sum);
}

std::int16_t Split_Fields(std::string& text, std::span<std::string> fields, std::string_view delimiter) {
  std::ranges::fill(fields, std::string());
  text.append(delimiter);
  if (text.size() <= 1 || fields.empty()) return 0;
  std::size_t filled = 0;
  std::size_t position = 0;
  while (position + 1 < text.size() && filled < fields.size()) {
    const std::size_t end = text.find(delimiter, position);
    fields[filled++] = text.substr(position, end - position);
    position = end + delimiter.size();
  }
  return static_cast<std::int16_t>(filled - 1);
}

int Hex_Key(int& KeyAscii) {
  if (KeyAscii >= 'a' && KeyAscii <= 'f') KeyAscii -= 'a' - 'A';
  const bool passes = (KeyAscii >= '0' && KeyAscii <= '9') || KeyAscii == forms::vbKeyBack ||
                      (KeyAscii >= 'A' && KeyAscii <= 'F');
  return passes ? KeyAscii : 0;
}

int Ask_Box(Program& program, std::string text, int buttons, std::string title) {
  return program.runtime.MsgBox(std::move(text), buttons, std::move(title));
}

bool Ask_Number(Program& program, const std::string& prompt, const std::string& title, std::int32_t& value,
                bool is_hex, const std::string& invalid_text, const std::string& default_text) {
  while (true) {
    const auto reply = program.runtime.InputBox(prompt, title, default_text);
    if (!reply || reply->empty()) return false;
    std::string text = is_hex ? with_hex_prefix(*reply) : *reply;
    if (forms::IsNumeric(text)) {
      if (is_hex && text.back() != '&') text += '&';
      const double low_word = std::fmod(forms::round_half_even(forms::Val(text)), 65536.0);
      value = static_cast<std::int16_t>(static_cast<std::int32_t>(low_word));
      return true;
    }
    const int answer =
        Ask_Box(program, invalid_text, forms::vbRetryCancel + forms::vbExclamation, "Invalid Value");
    if (answer == forms::vbCancel) return false;
  }
}

}  // namespace varzelin
