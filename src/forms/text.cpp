#include "forms/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
#include <limits>
#include <optional>

#include "forms/errors.h"

namespace forms {
namespace {

// The platform's precision of a double as text.
constexpr int significant_digits = 15;

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

char upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

int digit_value(char c) {
  if (is_digit(c)) return c - '0';
  const char letter = upper(c);
  return letter >= 'A' && letter <= 'F' ? letter - 'A' + 10 : std::numeric_limits<int>::max();
}

// A number found at the start of a text.
struct Scanned {
  std::optional<double> value;  // none: too large
  std::size_t length;           // characters that belong to it
};

// A "&H" or "&O" number.
std::optional<Scanned> scan_radix(std::string_view text) {
  if (text.size() < 3 || text[0] != '&') return std::nullopt;
  const char letter = upper(text[1]);
  if (letter != 'H' && letter != 'O') return std::nullopt;
  const int radix = letter == 'H' ? 16 : 8;
  const std::size_t digits_of_16_bits = letter == 'H' ? 4 : 6;
  constexpr std::uint64_t beyond = std::uint64_t{1} << 32;

  std::uint64_t number = 0;
  std::size_t at = 2;
  for (; at < text.size() && digit_value(text[at]) < radix; ++at) {
    number = number * static_cast<unsigned>(radix) + static_cast<unsigned>(digit_value(text[at]));
    number = std::min(number, beyond);
  }
  const std::size_t digits = at - 2;
  if (digits == 0) return std::nullopt;
  const bool is_long = at < text.size() && text[at] == '&';
  if (is_long) ++at;

  if (number == beyond) return Scanned{std::nullopt, at};
  if (!is_long && digits <= digits_of_16_bits && number <= 0xFFFF)
    return Scanned{static_cast<std::int16_t>(number), at};
  return Scanned{static_cast<std::int32_t>(number), at};
}

// The value of digits with at most one point, times ten to the exponent. None when a double can't
// hold it; too small a number is 0.
std::optional<double> decimal_value(const std::string& mantissa, long exponent) {
  const std::string literal = mantissa + 'e' + std::to_string(exponent);
  double value = 0;
  const auto result = std::from_chars(literal.data(), literal.data() + literal.size(), value);
  if (result.ec == std::errc{}) return value;
  // Too large or too small: the place of the first digit that isn't 0 tells.
  const auto first = static_cast<long>(mantissa.find_first_not_of("0."));
  const auto point = static_cast<long>(std::min(mantissa.find('.'), mantissa.size()));
  if (point - first + exponent > 0) return std::nullopt;
  return 0.0;
}

// Digits with a point and an exponent, without a sign. With `grouping`, commas may stand between and
// behind whole digits.
std::optional<Scanned> scan_decimal(std::string_view text, bool grouping) {
  std::string mantissa;
  std::size_t at = 0;
  bool digits = false;
  bool point = false;
  for (; at < text.size(); ++at) {
    const char c = text[at];
    if (grouping && c == ',' && digits && !point) continue;
    if (c == '.' && !point) {
      point = true;
    } else if (is_digit(c)) {
      digits = true;
    } else {
      break;
    }
    mantissa += c;
  }
  if (!digits) return std::nullopt;

  long exponent = 0;
  if (at < text.size() && (upper(text[at]) == 'E' || upper(text[at]) == 'D')) {
    std::size_t behind = at + 1;
    const bool negative = behind < text.size() && text[behind] == '-';
    if (negative || (behind < text.size() && text[behind] == '+')) ++behind;
    for (; behind < text.size() && is_digit(text[behind]); ++behind) {
      constexpr long far_beyond_a_double = 1'000'000'000;
      exponent = std::min(exponent * 10 + (text[behind] - '0'), far_beyond_a_double);
      at = behind + 1;
    }
    if (negative) exponent = -exponent;
  }
  return Scanned{decimal_value(mantissa, exponent), at};
}

// A number's significant digits: 0.DIGITS times ten to the power of `point`. No zeros at either end;
// no digits at all for 0.
struct Digits {
  bool negative;
  std::string digits;
  int point;
};

Digits digits_of(double value) {
  if (!std::isfinite(value)) raise_error(overflow);
  std::array<char, 40> buffer;
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::abs(value),
                                    std::chars_format::scientific, significant_digits - 1);
  const std::string text(buffer.data(), result.ptr);  // as 1.23456789012346e+20
  const std::size_t e = text.find('e');
  const int exponent = std::stoi(text.substr(e + 1));
  std::string digits = text.substr(0, e);
  digits.erase(1, 1);
  digits.erase(digits.find_last_not_of('0') + 1);
  return {value < 0 && !digits.empty(), digits, digits.empty() ? 0 : exponent + 1};
}

// Halves away from zero, `places` behind the point.
Digits rounded(Digits number, int places) {
  const int kept = number.point + places;
  if (kept >= static_cast<int>(number.digits.size())) return number;
  if (kept < 0) return {false, "", 0};
  const auto length = static_cast<std::size_t>(kept);
  const bool up = number.digits[length] >= '5';
  number.digits.resize(length);
  if (up) {
    number.digits.erase(number.digits.find_last_not_of('9') + 1);
    if (number.digits.empty()) {
      number.digits = "1";
      ++number.point;
    } else {
      ++number.digits.back();
    }
  } else {
    number.digits.erase(number.digits.find_last_not_of('0') + 1);
  }
  if (number.digits.empty()) return {false, "", 0};
  return number;
}

std::string zeros(int count) {
  return std::string(static_cast<std::size_t>(std::max(count, 0)), '0');
}

std::string whole_digits(const Digits& number) {
  const auto size = static_cast<int>(number.digits.size());
  if (number.point <= 0) return "";
  return number.digits.substr(0, static_cast<std::size_t>(number.point)) + zeros(number.point - size);
}

std::string fraction_digits(const Digits& number) {
  if (number.point >= static_cast<int>(number.digits.size())) return "";
  return zeros(-number.point) + number.digits.substr(static_cast<std::size_t>(std::max(number.point, 0)));
}

std::string padded(int number, int width) {
  const std::string text = std::to_string(number);
  return zeros(width - static_cast<int>(text.size())) + text;
}

// The number without its sign, as Str and CStr show it. `zero` stands before a leading point.
std::string plain_text(const Digits& number, std::string_view zero) {
  if (number.digits.empty()) return "0";
  const auto size = static_cast<int>(number.digits.size());
  if (number.point > significant_digits || size - number.point > significant_digits) {
    const int exponent = number.point - 1;
    std::string text = number.digits.substr(0, 1);
    if (size > 1) text += '.' + number.digits.substr(1);
    return text + (exponent < 0 ? "E-" : "E+") + padded(std::abs(exponent), 2);
  }
  const std::string whole = whole_digits(number);
  const std::string fraction = fraction_digits(number);
  return (whole.empty() ? std::string(zero) : whole) + (fraction.empty() ? "" : '.' + fraction);
}

template <class Integer>
Integer in_range(double whole_number) {
  if (!(whole_number >= std::numeric_limits<Integer>::min() &&
        whole_number <= std::numeric_limits<Integer>::max()))
    raise_error(overflow);
  return static_cast<Integer>(whole_number);
}

template <class Integer>
Integer in_range(std::int64_t value) {
  if (value < std::numeric_limits<Integer>::min() || value > std::numeric_limits<Integer>::max())
    raise_error(overflow);
  return static_cast<Integer>(value);
}

std::string hex_text(std::uint32_t value) {
  std::array<char, 8> buffer;
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, 16);
  return UCase({buffer.data(), result.ptr});
}

// The places of a format.
struct Places {
  int whole_least = 0;  // whole digits shown at least
  int least = 0;        // digits behind the point shown at least
  int most = 0;         // and at most
  bool point = false;
};

Places places_of(std::string_view format) {
  Places places;
  bool any = false;
  for (const char c : format) {
    if (c == '.' && !places.point) {
      places.point = true;
    } else if (c == '0' || c == '#') {
      any = true;
      if (places.point) {
        ++places.most;
        if (c == '0') places.least = places.most;
      } else if (c == '0' || places.whole_least > 0) {
        ++places.whole_least;
      }
    } else {
      raise_error(invalid_procedure_call);
    }
  }
  if (!any) raise_error(invalid_procedure_call);
  return places;
}

}  // namespace

double Val(std::string_view text) {
  std::string dense;
  std::copy_if(text.begin(), text.end(), std::back_inserter(dense),
               [](char c) { return c != ' ' && c != '\t' && c != '\n'; });
  std::string_view rest = dense;
  bool negative = false;
  std::optional<Scanned> number = scan_radix(rest);
  if (!number) {
    negative = rest.starts_with('-');
    if (negative || rest.starts_with('+')) rest.remove_prefix(1);
    number = scan_decimal(rest, false);
  }
  if (!number) return 0;
  if (!number->value) raise_error(overflow);
  return negative ? -*number->value : *number->value;
}

std::string Str(double value) {
  const Digits number = digits_of(value);
  return (number.negative ? '-' : ' ') + plain_text(number, "");
}

std::string CStr(double value) {
  const Digits number = digits_of(value);
  return (number.negative ? "-" : "") + plain_text(number, "0");
}

std::string Hex(std::int32_t value) {
  return hex_text(static_cast<std::uint32_t>(value));
}

std::string Hex16(std::int16_t value) {
  return hex_text(static_cast<std::uint16_t>(value));
}

std::string Hex2(std::int32_t value) {
  const std::string text = Hex(value);
  return text.size() == 1 ? '0' + text : text;
}

std::string Format(double value, std::string_view format) {
  const Places places = places_of(format);
  const Digits number = rounded(digits_of(value), places.most);
  const std::string whole = whole_digits(number);
  const std::string fraction = fraction_digits(number);
  std::string text = number.negative ? "-" : "";
  text += zeros(places.whole_least - static_cast<int>(whole.size())) + whole;
  if (places.point) text += '.';
  return text + fraction + zeros(places.least - static_cast<int>(fraction.size()));
}

bool IsNumeric(std::string_view text) {
  constexpr std::string_view white = " \t\n\v\f\r";
  const auto skip_white = [&] { text.remove_prefix(std::min(text.find_first_not_of(white), text.size())); };
  skip_white();
  text = text.substr(0, text.find_last_not_of(white) + 1);
  std::optional<Scanned> number = scan_radix(text);
  if (!number) {
    if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
    skip_white();
    number = scan_decimal(text, true);
  }
  return number && number->value && number->length == text.size();
}

double round_half_even(double value) {
  if (!std::isfinite(value)) raise_error(overflow);
  return std::nearbyint(value);  // in the default rounding mode, which nothing here changes
}

std::int16_t CInt(double value) {
  return in_range<std::int16_t>(round_half_even(value));
}

std::int32_t CLng(double value) {
  return in_range<std::int32_t>(round_half_even(value));
}

double Int(double value) {
  if (!std::isfinite(value)) raise_error(overflow);
  return std::floor(value);
}

std::int16_t to_int16(std::int64_t value) {
  return in_range<std::int16_t>(value);
}

std::int32_t to_int32(std::int64_t value) {
  return in_range<std::int32_t>(value);
}

std::string Trim(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  return std::string(text.substr(0, text.find_last_not_of(' ') + 1));
}

std::string UCase(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), upper);
  return result;
}

std::string Right(std::string_view text, std::size_t count) {
  return std::string(text.substr(text.size() - std::min(count, text.size())));
}

std::string date_fixed(const std::tm& time) {
  return padded(time.tm_mon + 1, 2) + '-' + padded(time.tm_mday, 2) + '-' + padded(time.tm_year + 1900, 4);
}

std::string time_fixed(const std::tm& time) {
  return padded(time.tm_hour, 2) + ':' + padded(time.tm_min, 2) + ':' + padded(time.tm_sec, 2);
}

std::string date_short(const std::tm& time) {
  return std::to_string(time.tm_mon + 1) + '/' + std::to_string(time.tm_mday) + '/' +
         padded(time.tm_year + 1900, 4);
}

std::string time_short(const std::tm& time) {
  const int hour = time.tm_hour % 12 == 0 ? 12 : time.tm_hour % 12;
  return std::to_string(hour) + ':' + padded(time.tm_min, 2) + ':' + padded(time.tm_sec, 2) +
         (time.tm_hour < 12 ? " AM" : " PM");
}

}  // namespace forms
