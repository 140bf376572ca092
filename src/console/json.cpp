#include "console/json.h"

#include <charconv>
#include <cmath>
#include <cstdio>

#include "console/utf8.h"

namespace console {

void Json::separate() {
  empty_ = false;
  if (comma_) buffer_ += ',';
  comma_ = true;
  // A long array leaves piece by piece: it needn't be in memory as a whole.
  constexpr std::size_t piece = 65536;
  if (buffer_.size() > piece) spill();
}

void Json::spill() {
  out_.write(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
  buffer_.clear();
}

void Json::end_line() {
  buffer_ += '\n';
  spill();
  out_.flush();
}

Json& Json::open(char bracket) {
  separate();
  buffer_ += bracket;
  comma_ = false;
  return *this;
}

Json& Json::close(char bracket) {
  buffer_ += bracket;
  comma_ = true;
  return *this;
}

Json& Json::key(std::string_view name) {
  separate();
  quote(name);
  buffer_ += ':';
  comma_ = false;
  return *this;
}

Json& Json::literal(std::string_view text) {
  separate();
  buffer_ += text;
  return *this;
}

Json& Json::null() {
  return literal("null");
}

Json& Json::value(bool value) {
  return literal(value ? "true" : "false");
}

Json& Json::value(std::int64_t value) {
  char digits[24];
  const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  return literal({digits, end});
}

Json& Json::value(double value) {
  if (!std::isfinite(value)) return null();
  char digits[32];
  const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  const std::string_view text(digits, end);
  literal(text);
  if (text.find_first_not_of("-0123456789") == std::string_view::npos) buffer_ += ".0";
  return *this;
}

Json& Json::value(std::string_view text) {
  separate();
  quote(text);
  return *this;
}

void Json::quote(std::string_view text) {
  buffer_ += '"';
  while (!text.empty()) {
    const std::size_t length = utf8_length(text);
    const char character = text.front();
    if (length == 0) {
      append_utf8(buffer_, replacement_character);
    } else if (character == '"' || character == '\\') {
      buffer_ += '\\';
      buffer_ += character;
    } else if (character == '\n') {
      buffer_ += "\\n";
    } else if (character == '\r') {
      buffer_ += "\\r";
    } else if (character == '\t') {
      buffer_ += "\\t";
    } else if (static_cast<unsigned char>(character) < 0x20) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04X", static_cast<unsigned>(character));
      buffer_ += escape;
    } else {
      buffer_ += text.substr(0, length);
    }
    text.remove_prefix(length == 0 ? 1 : length);
  }
  buffer_ += '"';
}

}  // namespace console
