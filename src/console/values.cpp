#include "console/values.h"

#include <limits>
#include <type_traits>

#include "console/arguments.h"
#include "console/refused.h"

namespace console {
namespace {

std::int64_t whole(const std::string& text) {
  const auto value = to_whole(text);
  if (!value) throw Refused{"not a whole number: " + text};
  return *value;
}

double number(const std::string& text) {
  const auto value = to_number(text);
  if (!value) throw Refused{"not a number: " + text};
  return *value;
}

forms::Color color(const std::string& text) {
  if (text.starts_with('#')) {
    const auto rgb = text.size() == 7 ? to_hex("0x" + text.substr(1)) : std::nullopt;
    if (!rgb) throw Refused{"not a colour: " + text};
    const auto part = [&](int shift) { return static_cast<int>(*rgb >> shift & 0xFF); };
    return forms::RGB(part(16), part(8), part(0));
  }
  const bool hexadecimal = text.starts_with("0x") || text.starts_with("&H");
  const auto hex = hexadecimal ? to_hex("0x" + text.substr(2)) : std::nullopt;
  const auto decimal = to_whole(text);
  if (hex) return {*hex};
  if (!decimal || *decimal < 0 || *decimal > std::numeric_limits<std::uint32_t>::max()) {
    throw Refused{"not a colour: " + text};
  }
  return {static_cast<std::uint32_t>(*decimal)};
}

struct ParseLike {
  const std::string& text;

  forms::Value operator()(bool) const {
    if (text != "true" && text != "false") throw Refused{"not true or false: " + text};
    return text == "true";
  }
  forms::Value operator()(std::int32_t) const {
    using Limits = std::numeric_limits<std::int32_t>;
    const std::int64_t value = whole(text);
    if (value < Limits::min() || value > Limits::max()) throw Refused{"out of range: " + text};
    return static_cast<std::int32_t>(value);
  }
  forms::Value operator()(double) const { return number(text); }
  forms::Value operator()(const std::string&) const { return text; }
  forms::Value operator()(forms::Color) const { return color(text); }
};

}  // namespace

void write(Json& json, const forms::Value& value) {
  std::visit(
      [&](const auto& own) {
        if constexpr (std::is_same_v<std::decay_t<decltype(own)>, forms::Color>) {
          json.value(forms::html(own));
        } else {
          json.value(own);
        }
      },
      value);
}

void write(Json& json, const varzelin::StoreValue& value) {
  std::visit([&](const auto& own) { json.value(own); }, value);
}

forms::Value parse_like(const forms::Value& model, const std::string& text) {
  return std::visit(ParseLike{text}, model);
}

varzelin::StoreValue parse_like(const varzelin::StoreValue& model, const std::string& text) {
  if (std::holds_alternative<std::string>(model)) return text;
  if (std::holds_alternative<double>(model)) return number(text);
  return whole(text);
}

}  // namespace console
