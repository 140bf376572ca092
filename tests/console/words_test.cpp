#include <gtest/gtest.h>

#include <limits>
#include <sstream>

#include "console/json.h"
#include "console/line_source.h"
#include "console/options.h"
#include "console/refused.h"
#include "console/words.h"

#include <unistd.h>

namespace console {
namespace {

using Words = std::vector<std::string>;
using namespace std::string_literals;

std::string refusal(std::string_view line) {
  try {
    split_words(line);
  } catch (const Refused& refused) {
    return refused.text;
  }
  return "";
}

TEST(Words, BlanksAndTabsSeparate) {
  EXPECT_EQ(split_words("  get  a.b\t c "), (Words{"get", "a.b", "c"}));
  EXPECT_EQ(split_words(""), Words{});
}

TEST(Words, JsonStringsHoldBlanksAndEscapes) {
  EXPECT_EQ(split_words(R"(fill a "x y" "")"), (Words{"fill", "a", "x y", ""}));
  EXPECT_EQ(split_words(R"("\"\\\/\b\f\n\r\t")"), Words{"\"\\/\b\f\n\r\t"});
  EXPECT_EQ(split_words(R"("\u00e4\u20AC\ud83d\ude00\u0000")"), Words{"\u00e4\u20ac\U0001f600\0"s});
}

TEST(Words, HalfACharacterBecomesTheReplacement) {
  EXPECT_EQ(split_words(R"("\ud83d!")"), Words{"\uFFFD!"});
  EXPECT_EQ(split_words(R"("\ude00")"), Words{"\uFFFD"});
  EXPECT_EQ(split_words(R"("\ud83d\u0041")"), Words{"\uFFFDA"});
}

TEST(Words, QuotesInsideAWordAreOrdinary) {
  EXPECT_EQ(split_words(R"(a"b c")"), (Words{"a\"b", "c\""}));
}

TEST(Words, MalformedStringsAreRefused) {
  EXPECT_EQ(refusal("\"abc"), "bad string: no closing quote");
  EXPECT_EQ(refusal("\"abc\\"), "bad string: no closing quote");
  EXPECT_EQ(refusal("\"\\q\""), "bad string: unknown escape");
  EXPECT_EQ(refusal("\"\\u12\""), "bad string: \\u needs four digits");
  EXPECT_EQ(refusal("\"a\"b"), "bad string: no blank behind the closing quote");
}

TEST(Words, NulIsAnOrdinaryCharacter) {
  EXPECT_EQ(split_words("a\0b c"s), (Words{"a\0b"s, "c"}));
}

template <class T>
std::string json(const T& value) {
  std::ostringstream out;
  Json writer(out);
  writer.value(value).end_line();
  std::string text = out.str();
  text.pop_back();
  return text;
}

TEST(JsonWriter, Numbers) {
  EXPECT_EQ(json(12), "12");
  EXPECT_EQ(json(-1), "-1");
  EXPECT_EQ(json(12.0), "12.0");
  EXPECT_EQ(json(0.1), "0.1");
  EXPECT_EQ(json(1e300), "1e+300");
  EXPECT_EQ(json(std::numeric_limits<double>::infinity()), "null");
}

TEST(JsonWriter, TextsAreEscapedAndAlwaysUtf8) {
  EXPECT_EQ(json("a\"\\\n\r\t\x01\u00e4"), "\"a\\\"\\\\\\n\\r\\t\\u0001\u00e4\"");
  EXPECT_EQ(json("\0"s), "\"\\u0000\"");
  EXPECT_EQ(json("\xff|\xc3|\xed\xa0\x80|\xc0\x80"), "\"\uFFFD|\uFFFD|\uFFFD\uFFFD\uFFFD|\uFFFD\uFFFD\"");
}

TEST(JsonWriter, CommasStandBetweenElements) {
  std::ostringstream out;
  Json writer(out, "ok ");
  writer.begin_array().begin_object().member("a", 1).member("b", true).end_object().null();
  writer.begin_array().end_array().end_array().end_line();
  EXPECT_EQ(out.str(), "ok [{\"a\":1,\"b\":true},null,[]]\n");
}

class DescriptorLinesTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(pipe(ends_), 0); }
  void TearDown() override {
    close(ends_[0]);
    if (ends_[1] >= 0) close(ends_[1]);
  }
  void put(std::string_view text) {
    ASSERT_EQ(write(ends_[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }
  void hang_up() { close(std::exchange(ends_[1], -1)); }
  LineSource& lines() {
    if (!lines_) lines_.emplace(ends_[0]);
    return *lines_;
  }

  int input() const { return ends_[0]; }

  std::string line_;

 private:
  int ends_[2] = {-1, -1};
  std::optional<DescriptorLines> lines_;
};

TEST_F(DescriptorLinesTest, GivesWholeLinesOnly) {
  using enum LineSource::Result;
  const auto at_once = std::chrono::nanoseconds(0);
  EXPECT_EQ(lines().next(line_, at_once), NotYet);
  put("one\ntw");
  EXPECT_EQ(lines().next(line_, at_once), Line);
  EXPECT_EQ(line_, "one");
  EXPECT_EQ(lines().next(line_, at_once), NotYet);
  put("o\n\nend");
  EXPECT_EQ(lines().next(line_, at_once), Line);
  EXPECT_EQ(line_, "two");
  EXPECT_EQ(lines().next(line_, std::nullopt), Line);
  EXPECT_EQ(line_, "");
  hang_up();
  EXPECT_EQ(lines().next(line_, std::nullopt), HalfLine);
  EXPECT_EQ(line_, "end");
  EXPECT_EQ(lines().next(line_, std::nullopt), End);
  EXPECT_EQ(lines().next(line_, at_once), End);
}

TEST_F(DescriptorLinesTest, AnAlarmKeepsEveryLineBack) {
  int alarm[2];
  ASSERT_EQ(pipe(alarm), 0);
  put("one\ntwo\n");
  DescriptorLines with_alarm(input(), alarm[0]);
  ASSERT_EQ(write(alarm[1], "", 1), 1);
  EXPECT_EQ(with_alarm.next(line_, std::nullopt), LineSource::Result::NotYet);
  EXPECT_EQ(with_alarm.next(line_, std::chrono::nanoseconds(0)), LineSource::Result::NotYet);
  for (const int end : alarm) close(end);
}

std::string bad_argument(std::vector<std::string_view> arguments) {
  const auto parsed = parse_options(arguments);
  const auto* bad = std::get_if<BadArgument>(&parsed);
  return bad ? bad->text : "";
}

Options options(std::vector<std::string_view> arguments) {
  return std::get<Options>(parse_options(arguments));
}

TEST(ConsoleOptions, Defaults) {
  EXPECT_EQ(options({}).board, Board::Simulated);
  EXPECT_TRUE(options({}).virtual_clock);
}

TEST(ConsoleOptions, TheUsbBoardImpliesTheRealClock) {
  EXPECT_EQ(options({"--board", "usb"}).board, Board::Usb);
  EXPECT_FALSE(options({"--board", "usb"}).virtual_clock);
  EXPECT_FALSE(options({"--board", "simulated", "--clock", "real"}).virtual_clock);
  EXPECT_EQ(bad_argument({"--board", "usb", "--clock", "virtual"}), "--board usb needs the real clock");
  EXPECT_EQ(bad_argument({"--clock", "virtual", "--board", "usb"}), "--board usb needs the real clock");
}

TEST(ConsoleOptions, BadArguments) {
  EXPECT_EQ(bad_argument({"run"}), "bad argument: run");
  EXPECT_EQ(bad_argument({"--board"}), "missing value of --board");
  EXPECT_EQ(bad_argument({"--board", "none"}), "bad value of --board: none");
  EXPECT_EQ(bad_argument({"--clock", "usb"}), "bad value of --clock: usb");
}

TEST(ConsoleOptions, HelpAndVersion) {
  EXPECT_TRUE(options({"--help"}).help);
  EXPECT_TRUE(options({"--version"}).version);
}

}  // namespace
}  // namespace console
