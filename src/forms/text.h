// The platform's conversions between text and numbers, with its rounding (halves to even) and its
// overflow rules. Dates and times are given in the platform's fixed (Date$, Time$) and short forms.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>

namespace forms {

// The number at the start of a text; blanks are skipped wherever they stand, "&H" and "&O" introduce
// hexadecimal and octal numbers (a hexadecimal text of up to four digits is a 16-bit number with
// sign, so "&HFFFF" is -1). A text without a number gives 0. Raises overflow for a number beyond a double.
double Val(std::string_view text);

// A number as text, with a blank in front where it isn't negative: " 12", "-3", " .5". Up to 15
// significant digits, "E+" form beyond.
std::string Str(double value);
// The same without the blank, and with a zero before a leading point: "12", "0.5". (CStr)
std::string CStr(double value);

// Upper-case hexadecimal without padding; negative numbers as 32-bit two's complement.
std::string Hex(std::int32_t value);
// The same of a 16-bit number: negative ones as 16-bit two's complement (-1 is "FFFF").
std::string Hex16(std::int16_t value);
// Hex, with "0" in front of a single digit.
std::string Hex2(std::int32_t value);

// A number in a format of the characters 0 # . , (and literal text), e.g. "00000", "##.00", "###.000",
// "######.". A negative number carries its sign in front.
std::string Format(double value, std::string_view format);

// Whether the whole text is a number by the platform's test (blanks around, a sign, a point, digit
// grouping, an exponent, "&H" forms with an optional final "&").
bool IsNumeric(std::string_view text);

// Rounding to an integer, halves to even; raises overflow outside the type's range.
double round_half_even(double value);
std::int16_t CInt(double value);
std::int32_t CLng(double value);
// The greatest whole number not above the value.
double Int(double value);
// A whole-number result as a 16-bit or 32-bit integer; raises overflow outside the type's range.
std::int16_t to_int16(std::int64_t value);
std::int32_t to_int32(std::int64_t value);

std::string Trim(std::string_view text);
std::string UCase(std::string_view text);
// The last `count` characters (all when there are fewer).
std::string Right(std::string_view text, std::size_t count);

std::string date_fixed(const std::tm& time);  // Date$: 11-25-2008
std::string time_fixed(const std::tm& time);  // Time$: 14:03:07
std::string date_short(const std::tm& time);  // Date:  11/25/2008
std::string time_short(const std::tm& time);  // Time:  2:03:07 PM

}  // namespace forms
