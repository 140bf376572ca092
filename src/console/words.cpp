#include "console/words.h"

#include <charconv>

#include "console/refused.h"
#include "console/utf8.h"

namespace console {
namespace {

constexpr std::string_view blanks = " \t";

[[noreturn]] void refuse_string(const char* why) {
  throw Refused{std::string("bad string: ") + why};
}

// Reads a JSON string from behind its opening quote.
class StringReader {
 public:
  explicit StringReader(std::string_view rest) : rest_(rest) {}

  std::string read() {
    for (;;) {
      const std::size_t plain = rest_.find_first_of("\"\\");
      if (plain == std::string_view::npos) refuse_string("no closing quote");
      text_.append(rest_.substr(0, plain));
      const char character = rest_[plain];
      rest_.remove_prefix(plain + 1);
      if (character == '"') return std::move(text_);
      escape();
    }
  }
  std::string_view rest() const { return rest_; }

 private:
  void escape() {
    if (rest_.empty()) refuse_string("no closing quote");
    static constexpr std::string_view letters = "\"\\/bfnrt";
    static constexpr std::string_view meanings = "\"\\/\b\f\n\r\t";
    const char letter = rest_.front();
    rest_.remove_prefix(1);
    if (letter == 'u') {
      append_utf8(text_, code_point());
    } else if (const std::size_t found = letters.find(letter); found != std::string_view::npos) {
      text_ += meanings[found];
    } else {
      refuse_string("unknown escape");
    }
  }

  std::uint32_t code_unit() {
    std::uint32_t unit = 0;
    const char* const first = rest_.data();
    const char* const last = first + std::min<std::size_t>(4, rest_.size());
    if (std::from_chars(first, last, unit, 16).ptr != first + 4) refuse_string("\\u needs four digits");
    rest_.remove_prefix(4);
    return unit;
  }

  // Characters beyond 16 bits come as two units; half a pair is no character.
  std::uint32_t code_point() {
    const std::uint32_t unit = code_unit();
    if (unit < 0xD800 || unit > 0xDFFF) return unit;
    if (unit > 0xDBFF || !rest_.starts_with("\\u")) return replacement_character;
    const std::string_view before = rest_;
    rest_.remove_prefix(2);
    const std::uint32_t second = code_unit();
    if (second >= 0xDC00 && second <= 0xDFFF) return 0x10000 + ((unit - 0xD800) << 10) + (second - 0xDC00);
    rest_ = before;
    return replacement_character;
  }

  std::string_view rest_;
  std::string text_;
};

}  // namespace

std::vector<std::string> split_words(std::string_view line) {
  std::vector<std::string> words;
  for (;;) {
    line.remove_prefix(std::min(line.find_first_not_of(blanks), line.size()));
    if (line.empty()) return words;
    if (line.front() == '"') {
      StringReader reader(line.substr(1));
      words.push_back(reader.read());
      line = reader.rest();
      if (!line.empty() && blanks.find(line.front()) == std::string_view::npos) {
        refuse_string("no blank behind the closing quote");
      }
    } else {
      const std::size_t length = std::min(line.find_first_of(blanks), line.size());
      words.emplace_back(line.substr(0, length));
      line.remove_prefix(length);
    }
  }
}

}  // namespace console
