#include "console/arguments.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "console/refused.h"

namespace console {
namespace {

template <class T, class... Base>
std::optional<T> parse(std::string_view text, Base... base) {
  T value{};
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value, base...);
  if (error != std::errc{} || stop != end || text.empty()) return std::nullopt;
  return value;
}

}  // namespace

std::optional<std::int64_t> to_whole(std::string_view text) {
  return parse<std::int64_t>(text);
}

std::optional<double> to_number(std::string_view text) {
  const auto value = parse<double>(text);
  return value && std::isfinite(*value) ? value : std::nullopt;
}

std::optional<std::uint32_t> to_hex(std::string_view text) {
  if (text.starts_with("0x") || text.starts_with("0X")) text.remove_prefix(2);
  return parse<std::uint32_t>(text, 16);
}

const std::string& Arguments::text(const char* what) {
  if (!more()) throw Refused{std::string("missing argument: ") + what};
  return words_[next_++];
}

std::int32_t Arguments::whole(const char* what) {
  const std::string& word = text(what);
  const auto value = to_whole(word);
  using Limits = std::numeric_limits<std::int32_t>;
  if (!value || *value < Limits::min() || *value > Limits::max())
    throw Refused{"not a whole number: " + word};
  return static_cast<std::int32_t>(*value);
}

double Arguments::number(const char* what) {
  const std::string& word = text(what);
  const auto value = to_number(word);
  if (!value) throw Refused{"not a number: " + word};
  return *value;
}

std::uint32_t Arguments::hex(const char* what, std::uint32_t most) {
  const std::string& word = text(what);
  const auto value = to_hex(word);
  if (!value) throw Refused{"not a hexadecimal number: " + word};
  if (*value > most) throw Refused{"out of range: " + word};
  return *value;
}

void Arguments::end() const {
  if (more()) throw Refused{"too many arguments: " + peek()};
}

}  // namespace console
