// The platform's conversions between text and numbers, with its rounding (halves to even) and its
// overflow rules. Dates and times are given in the platform's fixed (Date$, Time$) and short forms.
//
// The decimal point is always ".", whatever the locale of the process. Texts are UTF-8 and are handled
// byte by byte; a character outside ASCII is never changed. A double that isn't finite raises overflow
// wherever it is converted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>

namespace forms {

// The number at the start of a text. Blanks, tabs and line feeds are skipped wherever they stand, also
// inside the number; an exponent is introduced by E or D. A text without a number gives 0. Raises
// overflow for a number beyond a double.
//
// "&H" and "&O" introduce hexadecimal and octal numbers. Up to four hexadecimal (six octal) digits
// that fit 16 bits are a 16-bit number with sign, so "&HFFFF" is -1 and "&H0FFFF" is 65535; with a
// final "&", and with more digits, the number is one of 32 bits with sign. Raises overflow for a
// number of more than 32 bits.
double Val(std::string_view text);

// A number as text, with a blank in front where it isn't negative: " 12", "-3", " .5". Up to 15
// significant digits. In exponent form (" 1E+15", " 3.33333333333333E-02") where the plain form would
// take more than 15 digits before or behind the point.
std::string Str(double value);
// The same without the blank, and with a zero before a leading point: "12", "0.5".
std::string CStr(double value);

// Upper-case hexadecimal without padding; negative numbers as 32-bit two's complement.
std::string Hex(std::int32_t value);
// The same of a 16-bit number: negative ones as 16-bit two's complement (-1 is "FFFF").
std::string Hex16(std::int16_t value);
// Hex, with "0" in front of a single digit.
std::string Hex2(std::int32_t value);

// A number in a format of digit places: "0" shows a digit always, "#" only where the number has one,
// and one "." stands for the point, which is always shown. Whole digits without a place are shown
// all the same. So 0 is "" in "###" and ".000" in "###.000", and 12 is "12." in "######.".
//
// Rounds to the places behind the point by the number's 15 significant digits, halves away from zero:
// not as the conversions to integers do. A negative number carries its sign in front, unless rounding
// leaves 0. Raises invalid_procedure_call for a format without places or with any other character.
std::string Format(double value, std::string_view format);

// Whether the whole text is a number by the platform's test: white space around it, a sign, digits
// with grouping commas and a point, an exponent (E or D); or a "&H" or "&O" number of at most 32 bits
// with an optional final "&". A number that a double can't hold isn't one. The platform's test also
// takes currency signs, brackets for a negative number and a sign behind it; this one doesn't.
bool IsNumeric(std::string_view text);

// The nearest whole number, halves to even.
double round_half_even(double value);
// The same as an integer; raises overflow outside the type's range.
std::int16_t CInt(double value);
std::int32_t CLng(double value);
// The greatest whole number not above the value.
double Int(double value);
// A whole-number result as a 16-bit or 32-bit integer; raises overflow outside the type's range.
std::int16_t to_int16(std::int64_t value);
std::int32_t to_int32(std::int64_t value);

// Without the blanks at both ends. Tabs and line ends stay.
std::string Trim(std::string_view text);
std::string UCase(std::string_view text);
// The last `count` characters (all when there are fewer).
std::string Right(std::string_view text, std::size_t count);

std::string date_fixed(const std::tm& time);  // Date$: 11-25-2008
std::string time_fixed(const std::tm& time);  // Time$: 14:03:07
std::string date_short(const std::tm& time);  // Date:  11/25/2008, 1/5/2009
std::string time_short(const std::tm& time);  // Time:  2:03:07 PM, 12:00:00 AM

}  // namespace forms
