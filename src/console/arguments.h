// The words of a command, taken one after the other.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace console {

// All throw Refused: "missing argument: WHAT", "too many arguments", "not a number: …" and the like.
class Arguments {
 public:
  explicit Arguments(std::vector<std::string> words) : words_(std::move(words)) {}

  bool more() const { return next_ < words_.size(); }
  const std::string& peek() const { return words_[next_]; }  // only while more()
  // `what` is what the argument is called in the refusal of a line that lacks it.
  const std::string& text(const char* what);
  std::int32_t whole(const char* what);
  double number(const char* what);
  // Hexadecimal, with or without 0x, within 0 to `most`.
  std::uint32_t hex(const char* what, std::uint32_t most);
  // No argument may be left.
  void end() const;

 private:
  std::vector<std::string> words_;
  std::size_t next_ = 0;
};

// None for a text that isn't wholly such a number.
std::optional<std::int64_t> to_whole(std::string_view text);
std::optional<double> to_number(std::string_view text);  // finite
std::optional<std::uint32_t> to_hex(std::string_view text);

}  // namespace console
