#include "forms/text.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <functional>
#include <limits>
#include <utility>
#include <vector>

#include "forms/clock.h"
#include "forms/errors.h"
#include "support/error_of.h"

namespace {

using namespace forms;
using varzelin::testing::error_of;

constexpr double infinity = std::numeric_limits<double>::infinity();

template <class Value>
using Table = std::vector<std::pair<std::string, Value>>;

TEST(Val, ReadsTheLeadingNumber) {
  const Table<double> table = {
      {"", 0},        {"abc", 0},    {"--", 0},        {"-", 0},      {".", 0},
      {"12", 12},     {"-12", -12},  {"+12", 12},      {"12abc", 12}, {"1.5", 1.5},
      {"1.5.7", 1.5}, {".5", 0.5},   {"-.5", -0.5},    {"5.", 5},     {"007", 7},
      {"1,234", 1},   {"$5", 0},     {"10 ms", 10},    {"--5", 0},    {"NA", 0},
      {"2.5", 2.5},   {"1.5W", 1.5}, {"99999", 99999}, {"\r5", 0},    {std::string("1\0002", 3), 1},
  };
  for (const auto& [text, number] : table) EXPECT_EQ(Val(text), number) << text;
}

TEST(Val, SkipsBlanksTabsAndLineFeedsAnywhere) {
  const Table<double> table = {{" 1 2 3", 123}, {"-  3", -3},     {"\t1\n2", 12}, {"1 . 5", 1.5},
                               {"1 e 2", 100},  {"& H F F", 255}, {"   ", 0},     {"1\r2", 1}};
  for (const auto& [text, number] : table) EXPECT_EQ(Val(text), number) << text;
}

TEST(Val, ReadsExponents) {
  const Table<double> table = {
      {"1e5", 1e5}, {"1d5", 1e5}, {"1E+2", 100}, {"1D-2", 0.01},        {"2.5e1x", 25}, {"1e", 1},
      {"1e+", 1},   {"e5", 0},    {"1ex", 1},    {"0e999999999999", 0}, {"1e-999", 0}};
  for (const auto& [text, number] : table) EXPECT_EQ(Val(text), number) << text;
}

TEST(Val, RaisesOverflowBeyondADouble) {
  EXPECT_EQ(error_of([] { Val("1e309"); }), 6);
  EXPECT_EQ(error_of([] { Val("-1e99999999999999999999"); }), 6);
  EXPECT_EQ(error_of([] { Val("1" + std::string(400, '0')); }), 6);
  EXPECT_EQ(Val("1" + std::string(400, '0') + "e-400"), 1);
  EXPECT_EQ(Val("0." + std::string(400, '0') + "1"), 0);
  EXPECT_EQ(Val("0." + std::string(400, '0') + "1e401"), 1);
}

TEST(Val, ReadsHexadecimalAndOctal) {
  const Table<double> table = {
      {"&H", 0},
      {"&HG1", 0},
      {"&H0", 0},
      {"&HFF", 255},
      {"&hff", 255},
      {"&H100", 256},
      {"&H5Z", 5},
      {"&H7FFF", 32767},
      {"&H8000", -32768},
      {"&HFFFF", -1},
      {"&HFFFF&", 65535},
      {"&H0FFFF", 65535},
      {"&H10000", 65536},
      {"&H7FFFFFFF", 2147483647.0},
      {"&H80000000", -2147483648.0},
      {"&HFFFFFFFF", -1},
      {"&HFFFFFFFF&", -1},
      {"&HFFFF & 1", 65535},
      {"&O17", 15},
      {"&o8", 0},
      {"&O177777", -1},
      {"&O200000", 65536},
      {"-&HFF", 0},
      {"&", 0},
      {"&X1", 0},
      {"&H00000000001", 1},
  };
  for (const auto& [text, number] : table) EXPECT_EQ(Val(text), number) << text;
  EXPECT_EQ(error_of([] { Val("&H100000000"); }), 6);
  EXPECT_EQ(error_of([] { Val("&H" + std::string(1000, 'F')); }), 6);
}

TEST(Str, PutsABlankBeforeWhatIsNotNegative) {
  const std::vector<std::pair<double, std::string>> table = {
      {0, " 0"},
      {-0.0, " 0"},
      {12, " 12"},
      {-3, "-3"},
      {.5, " .5"},
      {-.5, "-.5"},
      {1.25, " 1.25"},
      {65536, " 65536"},
      {1.0 / 3, " .333333333333333"},
      {2.0 / 3, " .666666666666667"},
      {100.0 / 3, " 33.3333333333333"},
      {0.1 + 0.2, " .3"},
      {0.00001, " .00001"},
      {1.0 / 30, " 3.33333333333333E-02"},
      {-1.0 / 30, "-3.33333333333333E-02"},
      {1e-15, " .000000000000001"},
      {1e-16, " 1E-16"},
      {123456789012345.0, " 123456789012345"},
      {999999999999999.9, " 1E+15"},
      {1e14, " 100000000000000"},
      {1e15, " 1E+15"},
      {-1e15, "-1E+15"},
      {123456789012345678901.0, " 1.23456789012346E+20"},
      {1e100, " 1E+100"},
      {1.7976931348623157e308, " 1.79769313486232E+308"},
      {5e-324, " 4.94065645841247E-324"},
  };
  for (const auto& [number, text] : table) EXPECT_EQ(Str(number), text);
  EXPECT_EQ(error_of([] { Str(infinity); }), 6);
  EXPECT_EQ(error_of([] { Str(std::nan("")); }), 6);
}

TEST(CStr, HasNoBlankAndAZeroBeforeThePoint) {
  const std::vector<std::pair<double, std::string>> table = {
      {0, "0"},        {12, "12"},       {-12, "-12"},    {.5, "0.5"},
      {-.25, "-0.25"}, {0.001, "0.001"}, {1e15, "1E+15"}, {1.0 / 30, "3.33333333333333E-02"}};
  for (const auto& [number, text] : table) EXPECT_EQ(CStr(number), text);
}

TEST(Hex, IsUpperCaseWithoutPadding) {
  EXPECT_EQ(Hex(0), "0");
  EXPECT_EQ(Hex(10), "A");
  EXPECT_EQ(Hex(255), "FF");
  EXPECT_EQ(Hex(0x88), "88");
  EXPECT_EQ(Hex(65535), "FFFF");
  EXPECT_EQ(Hex(-1), "FFFFFFFF");
  EXPECT_EQ(Hex(std::numeric_limits<std::int32_t>::min()), "80000000");
  EXPECT_EQ(Hex16(-1), "FFFF");
  EXPECT_EQ(Hex16(-32768), "8000");
  EXPECT_EQ(Hex16(32767), "7FFF");
  EXPECT_EQ(Hex16(5), "5");
}

TEST(Hex2, PadsASingleDigitOnly) {
  EXPECT_EQ(Hex2(0), "00");
  EXPECT_EQ(Hex2(15), "0F");
  EXPECT_EQ(Hex2(16), "10");
  EXPECT_EQ(Hex2(256), "100");
}

struct FormatRow {
  double number;
  const char* format;
  const char* text;
};

TEST(Format, ShowsTheProgramsFormats) {
  const std::vector<FormatRow> table = {
      {0, "00000", "00000"},
      {7, "00000", "00007"},
      {-100, "00000", "-00100"},
      {100000, "00000", "100000"},
      {-123456, "00000", "-123456"},
      {4095.5, "00000", "04096"},
      {0, "###", ""},
      {40, "###", "40"},
      {400, "###", "400"},
      {4000, "###", "4000"},
      {-5, "###", "-5"},
      {0.4, "###", ""},
      {4096, "####", "4096"},
      {65536, "####", "65536"},
      {0, "######", ""},
      {4000, "######", "4000"},
      {16000.4, "######", "16000"},
      {12, "######.", "12."},
      {0, "######.", "."},
      {-12.6, "######.", "-13."},
      {65535, "#######", "65535"},
      {0, "#######", ""},
      {0, "##.00", ".00"},
      {4, "##.00", "4.00"},
      {1.6, "##.00", "1.60"},
      {123.456, "##.00", "123.46"},
      {0, "###.000", ".000"},
      {.5, "###.000", ".500"},
      {327.68, "###.000", "327.680"},
      {655.3604, "###.000", "655.360"},
      {-1.5, "###.000", "-1.500"},
      {12.25, "####.000", "12.250"},
      {0, "####.000", ".000"},
      {12345.6789, "####.000", "12345.679"},
      {-55, "####.000", "-55.000"},
      {0, "#.000000", ".000000"},
      {0.0000015, "#.000000", ".000002"},
      {0.001526, "#.000000", ".001526"},
      {1.0000004, "#.000000", "1.000000"},
      {0, "#######.00", ".00"},
      {1000, "#######.00", "1000.00"},
      {999.984, "#######.00", "999.98"},
  };
  for (const auto& row : table) EXPECT_EQ(Format(row.number, row.format), row.text) << row.format;
}

TEST(Format, RoundsHalvesAwayFromZero) {
  const std::vector<FormatRow> table = {
      {0.5, "###", "1"},
      {1.5, "###", "2"},
      {2.5, "###", "3"},
      {-2.5, "###", "-3"},
      {-0.5, "###", "-1"},
      {0.25, "0.0", "0.3"},
      {1.005, "0.00", "1.01"},
      {0.145, "##.00", ".15"},
      {9.995, "##.00", "10.00"},
      {0.9995, "###.000", "1.000"},
      {0.0004999, "###.000", ".000"},
      {99.5, "###", "100"},
      {0.05, "###", ""},
      {0.0005, "###.000", ".001"},
  };
  for (const auto& row : table) EXPECT_EQ(Format(row.number, row.format), row.text) << row.number;
}

TEST(Format, TreatsOptionalAndFixedPlacesByTheirOrder) {
  EXPECT_EQ(Format(1.5, "0.###"), "1.5");
  EXPECT_EQ(Format(1, "0.###"), "1.");
  EXPECT_EQ(Format(1.5, "0.0##"), "1.5");
  EXPECT_EQ(Format(1, "0.#0#"), "1.00");
  EXPECT_EQ(Format(5, "#0##"), "005");
  EXPECT_EQ(Format(12.3, ".00"), "12.30");
  EXPECT_EQ(Format(1e20, "#######"), "100000000000000000000");
  EXPECT_EQ(Format(1e-300, "0.00"), "0.00");
}

TEST(Format, HasNoSignWhenNothingIsLeft) {
  EXPECT_EQ(Format(-0.4, "00000"), "00000");
  EXPECT_EQ(Format(-0.0004, "###.000"), ".000");
  EXPECT_EQ(Format(-0.4, "###"), "");
}

TEST(Format, RefusesWhatIsNotAPlace) {
  for (const char* format : {"", ".", "0.0.0", "#,##0", "0 V"})
    EXPECT_EQ(error_of([&] { Format(1, format); }), 5) << format;
  EXPECT_EQ(error_of([] { Format(infinity, "###"); }), 6);
}

TEST(IsNumeric, TestsTheWholeText) {
  const Table<bool> table = {
      {"", false},
      {" ", false},
      {"0", true},
      {" 12 ", true},
      {"\t12\r\n", true},
      {"-1", true},
      {"+1", true},
      {"- 1", true},
      {"--1", false},
      {"--", false},
      {"-", false},
      {"1.5", true},
      {".5", true},
      {"5.", true},
      {".", false},
      {"1.2.3", false},
      {"1,000", true},
      {"1,000.5", true},
      {",1", false},
      {"1.0,0", false},
      {"1e3", true},
      {"1D-3", true},
      {"1e", false},
      {"1e+", false},
      {"e3", false},
      {"12a", false},
      {"1 2", false},
      {"NA", false},
      {"&HFF", true},
      {"&hff", true},
      {"&HFF&", true},
      {" &HFF& ", true},
      {"&HFFFFFFFF", true},
      {"&H100000000", false},
      {"&H", false},
      {"&HFG", false},
      {"&H F", false},
      {"&HFF&&", false},
      {"-&HFF", false},
      {"&O17", true},
      {"&O18", false},
      {"1e400", false},
      {"1e-400", true},
      {"$1", false},
      {"(1)", false},
      {"1-", false},
      {std::string("1\0", 2), false},
  };
  for (const auto& [text, numeric] : table) EXPECT_EQ(IsNumeric(text), numeric) << text;
}

TEST(Rounding, IsToTheNearestWithHalvesToEven) {
  const std::vector<std::pair<double, int>> table = {
      {0.5, 0},   {1.5, 2},  {2.5, 2},  {3.5, 4},    {-0.5, 0}, {-1.5, -2}, {-2.5, -2},
      {-3.5, -4}, {0.49, 0}, {0.51, 1}, {-0.51, -1}, {4.4, 4},  {68.5, 68}, {69.5, 70}};
  for (const auto& [number, result] : table) {
    EXPECT_EQ(round_half_even(number), result) << number;
    EXPECT_EQ(CInt(number), result) << number;
    EXPECT_EQ(CLng(number), result) << number;
  }
  EXPECT_EQ(round_half_even(1e300), 1e300);
  EXPECT_EQ(error_of([] { round_half_even(infinity); }), 6);
}

TEST(Rounding, RaisesOverflowOutsideTheType) {
  EXPECT_EQ(CInt(32767.4), 32767);
  EXPECT_EQ(CInt(-32768.5), -32768);
  EXPECT_EQ(error_of([] { CInt(32767.5); }), 6);
  EXPECT_EQ(error_of([] { CInt(-32768.6); }), 6);
  EXPECT_EQ(error_of([] { CInt(std::nan("")); }), 6);
  EXPECT_EQ(CLng(2147483647.4), 2147483647);
  EXPECT_EQ(CLng(-2147483648.5), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(error_of([] { CLng(2147483647.5); }), 6);
  EXPECT_EQ(error_of([] { CLng(-2147483648.6); }), 6);
  EXPECT_EQ(error_of([] { CLng(1e300); }), 6);
}

TEST(WholeResults, RaiseOverflowOutsideTheType) {
  EXPECT_EQ(to_int16(32767), 32767);
  EXPECT_EQ(to_int16(-32768), -32768);
  EXPECT_EQ(error_of([] { to_int16(32768); }), 6);
  EXPECT_EQ(error_of([] { to_int16(-32769); }), 6);
  EXPECT_EQ(to_int32(2147483647), 2147483647);
  EXPECT_EQ(to_int32(-2147483648LL), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(error_of([] { to_int32(2147483648LL); }), 6);
  EXPECT_EQ(error_of([] { to_int32(-2147483649LL); }), 6);
}

TEST(Int, GoesDown) {
  EXPECT_EQ(Int(2.9), 2);
  EXPECT_EQ(Int(-2.1), -3);
  EXPECT_EQ(Int(-3), -3);
  EXPECT_EQ(error_of([] { Int(infinity); }), 6);
}

TEST(Texts, AreTrimmedRaisedAndCut) {
  EXPECT_EQ(Trim("  a b  "), "a b");
  EXPECT_EQ(Trim("\ta "), "\ta");
  EXPECT_EQ(Trim("   "), "");
  EXPECT_EQ(Trim(""), "");
  EXPECT_EQ(UCase("az09 é_{"), "AZ09 é_{");
  EXPECT_EQ(Right("00012", 3), "012");
  EXPECT_EQ(Right("12", 3), "12");
  EXPECT_EQ(Right("12", 0), "");
}

std::tm at(int year, int month, int day, int hour, int minute, int second) {
  std::tm time{};
  time.tm_year = year - 1900;
  time.tm_mon = month - 1;
  time.tm_mday = day;
  time.tm_hour = hour;
  time.tm_min = minute;
  time.tm_sec = second;
  return time;
}

TEST(DateAndTime, HaveTheirForms) {
  const std::tm afternoon = VirtualClock().local_time();
  EXPECT_EQ(date_fixed(afternoon), "11-25-2008");
  EXPECT_EQ(time_fixed(afternoon), "14:03:07");
  EXPECT_EQ(date_short(afternoon), "11/25/2008");
  EXPECT_EQ(time_short(afternoon), "2:03:07 PM");

  const std::tm morning = at(2009, 1, 5, 9, 0, 59);
  EXPECT_EQ(date_fixed(morning), "01-05-2009");
  EXPECT_EQ(time_fixed(morning), "09:00:59");
  EXPECT_EQ(date_short(morning), "1/5/2009");
  EXPECT_EQ(time_short(morning), "9:00:59 AM");

  EXPECT_EQ(time_short(at(2009, 1, 5, 0, 0, 0)), "12:00:00 AM");
  EXPECT_EQ(time_short(at(2009, 1, 5, 12, 0, 0)), "12:00:00 PM");
  EXPECT_EQ(time_short(at(2009, 1, 5, 23, 59, 59)), "11:59:59 PM");
}

TEST(Errors, HaveThePlatformsWords) {
  const std::vector<std::pair<int, std::string>> table = {
      {5, "Invalid procedure call or argument"},
      {6, "Overflow"},
      {7, "Out of memory"},
      {9, "Subscript out of range"},
      {11, "Division by zero"},
      {13, "Type mismatch"},
      {51, "Internal error"},
      {52, "Bad file name or number"},
      {53, "File not found"},
      {54, "Bad file mode"},
      {55, "File already open"},
      {57, "Device I/O error"},
      {61, "Disk full"},
      {62, "Input past end of file"},
      {67, "Too many files"},
      {70, "Permission denied"},
      {75, "Path/File access error"},
      {76, "Path not found"},
      {340, "Control array element doesn't exist"},
      {380, "Invalid property value"},
      {1000, "Application-defined or object-defined error"},
  };
  for (const auto& [number, text] : table) {
    EXPECT_EQ(error_text(number), text);
    EXPECT_EQ(error_of([n = number] { raise_error(n); }), number);
  }
}

TEST(Errors, ResumeNextTellsWhetherTheStatementRanThrough) {
  bool behind = false;
  EXPECT_FALSE(resume_next([&] {
    raise_error(overflow);
    behind = true;
  }));
  EXPECT_FALSE(behind);
  EXPECT_TRUE(resume_next([&] { behind = true; }));
  EXPECT_TRUE(behind);
  EXPECT_THROW(resume_next([] { throw EndProgram{}; }), EndProgram);
}

}  // namespace
