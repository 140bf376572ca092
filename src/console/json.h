// Writes one JSON value on one line, from front to back.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

namespace console {

class Json {
 public:
  // The value goes behind `prefix` on the stream, which sees nothing before end_line() as long as the
  // value is short.
  explicit Json(std::ostream& out, std::string_view prefix = {}) : out_(out), buffer_(prefix) {}

  Json& begin_object() { return open('{'); }
  Json& end_object() { return close('}'); }
  Json& begin_array() { return open('['); }
  Json& end_array() { return close(']'); }
  Json& key(std::string_view name);

  Json& null();
  Json& value(bool value);
  Json& value(std::int64_t value);
  Json& value(std::int32_t value) { return this->value(std::int64_t{value}); }
  Json& value(std::size_t value) { return this->value(static_cast<std::int64_t>(value)); }
  // The shortest text that reads back as the same number, with a point where it is a whole one. What
  // isn't a number is null.
  Json& value(double value);
  // Bytes that aren't UTF-8 come out as U+FFFD.
  Json& value(std::string_view text);
  Json& value(const std::string& text) { return value(std::string_view(text)); }
  Json& value(const char* text) { return value(std::string_view(text)); }

  template <class T>
  Json& member(std::string_view name, const T& value) {
    return key(name).value(value);
  }

  bool empty() const { return empty_; }  // no value was written
  // Ends the line and flushes the stream.
  void end_line();

 private:
  void separate();
  Json& open(char bracket);
  Json& close(char bracket);
  Json& literal(std::string_view text);
  void quote(std::string_view text);
  void spill();

  std::ostream& out_;
  std::string buffer_;
  bool comma_ = false;  // the next element stands behind another
  bool empty_ = true;
};

}  // namespace console
