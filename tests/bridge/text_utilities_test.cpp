// Hexadecimal texts, the field splitter, the key filter and the prompts.
#include <gtest/gtest.h>

#include <array>

#include "bridge/text_utilities.h"
#include "support/test_program.h"

namespace varzelin::testing {
namespace {

TEST(HexValTest, TakesDigitsUpToTheFirstBadCharacter) {
  const std::vector<std::pair<std::string, int>> table{
      {"", 0},         {"G1", 0},        {"1G", 1},    {"88", 0x88}, {"ff", 255},     {"100", 256},
      {"7FFF", 32767}, {"8000", -32768}, {"FFFF", -1}, {"--", 0},    {" 1 2 ", 0x12}, {"00000012", 0x12}};
  for (const auto& [text, value] : table) EXPECT_EQ(HexVal(text), value) << '"' << text << '"';
}

TEST(HexValTest, OverflowsBeyond16Bits) {
  for (const char* text : {"10000", "0FFFF", "FFFFF", "123456789"}) {
    try {
      HexVal(text);
      FAIL() << text;
    } catch (const forms::RunTimeError& error) {
      EXPECT_EQ(error.number, 6) << text;
    }
  }
}

TEST(HexToLongTest, CountsABadCharacterAsDigitZero) {
  const std::vector<std::pair<std::string, std::int32_t>> table{{"", 0},
                                                                {"1G", 16},
                                                                {"G1", 1},
                                                                {" aF ", 0xAF},
                                                                {"1 2", 0x102},
                                                                {"xyz", 0},
                                                                {"7FFFFFFF", 0x7FFFFFFF},
                                                                {"FFFFFFFF", -1},
                                                                {"100000000", 0},
                                                                {"-1", 1}};
  for (const auto& [text, expected] : table) {
    std::int32_t value = 77;
    HexToLong(text, value);
    EXPECT_EQ(value, expected) << '"' << text << '"';
  }
}

struct Split {
  std::string text;
  std::int16_t result;
  std::array<std::string, 4> fields;
};

TEST(SplitFields, KeepsEmptyFieldsButNotOneAtTheVeryEnd) {
  const std::vector<Split> table{{"A,,B", 2, {"A", "", "B"}},
                                 {"A,", 0, {"A"}},
                                 {"A", 0, {"A"}},
                                 {"", 0, {}},
                                 {",", 0, {""}},
                                 {",A", 1, {"", "A"}},
                                 {"A,B,", 1, {"A", "B"}},
                                 {"A,,", 1, {"A", ""}},
                                 {"1,2,3,4,5", 3, {"1", "2", "3", "4"}}};
  for (const Split& row : table) {
    std::array<std::string, 4> fields{"x", "x", "x", "x"};
    std::string text = row.text;
    EXPECT_EQ(Split_Fields(text, fields, ","), row.result) << row.text;
    EXPECT_EQ(fields, row.fields) << row.text;
    EXPECT_EQ(text, row.text + ",") << "the caller sees the delimiter";
  }
}

TEST(SplitFields, WithoutFieldsThereIsNoLastOne) {
  std::string text = "A,B";
  EXPECT_EQ(Split_Fields(text, {}, ","), 0);
  EXPECT_EQ(text, "A,B,");
}

TEST(HexKey, PassesHexadecimalKeysInUpperCase) {
  for (int key = 0; key < 256; ++key) {
    const bool digit = key >= '0' && key <= '9';
    const bool upper = key >= 'A' && key <= 'F';
    const bool lower = key >= 'a' && key <= 'f';
    int argument = key;
    const int result = Hex_Key(argument);
    EXPECT_EQ(argument, lower ? key - 32 : key);
    EXPECT_EQ(result, digit || upper || lower || key == 8 ? argument : 0) << key;
  }
}

struct AskNumber : ::testing::Test, TestProgram {
  std::int32_t value = 4711;
  bool ask(bool is_hex, std::deque<std::optional<std::string>> replies) {
    user.input_answers = std::move(replies);
    user.boxes.clear();
    user.inputs.clear();
    value = 4711;
    return Ask_Number(program, "prompt", "title", value, is_hex, "bad", "5");
  }
};

TEST_F(AskNumber, TakesANumberCutTo16Bits) {
  const std::vector<std::tuple<bool, std::string, std::int32_t>> table{{false, "12", 12},
                                                                       {false, "-3", -3},
                                                                       {false, "32768", -32768},
                                                                       {false, "65535", -1},
                                                                       {false, "65536", 0},
                                                                       {false, "-32769", 32767},
                                                                       {false, "2.5", 2},
                                                                       {false, "3.5", 4},
                                                                       {false, "&H10", 16},
                                                                       {false, "1E300", 0},
                                                                       {false, "10000000000", -7168},
                                                                       {true, "12", 0x12},
                                                                       {true, "f", 15},
                                                                       {true, "&hAB", 0xAB},
                                                                       {true, "&HAB&", 0xAB},
                                                                       {true, "AB&", 0xAB},
                                                                       {true, "FFFF", -1},
                                                                       {true, "8000", -32768},
                                                                       {true, "12345678", 0x5678},
                                                                       {true, "FFFFFFFF", -1}};
  for (const auto& [is_hex, reply, expected] : table) {
    EXPECT_TRUE(ask(is_hex, {reply})) << reply;
    EXPECT_EQ(value, expected) << reply;
    EXPECT_TRUE(user.boxes.empty()) << reply;
  }
}

TEST_F(AskNumber, ShowsPromptTitleAndDefault) {
  ask(false, {"1"});
  ASSERT_EQ(user.inputs.size(), 1u);
  EXPECT_EQ(user.inputs[0].prompt, "prompt");
  EXPECT_EQ(user.inputs[0].title, "title");
  EXPECT_EQ(user.inputs[0].default_text, "5");
}

TEST_F(AskNumber, AnEmptyReplyAndCancelEndWithFalse) {
  EXPECT_FALSE(ask(true, {""}));
  EXPECT_FALSE(ask(true, {std::nullopt}));
  EXPECT_TRUE(user.boxes.empty());
  EXPECT_EQ(value, 4711);
}

TEST_F(AskNumber, ABadReplyAsksAgainOrGivesUp) {
  user.box_answers = {forms::vbRetry, forms::vbCancel};
  EXPECT_FALSE(ask(false, {"x", "y", "1"}));
  ASSERT_EQ(user.boxes.size(), 2u);
  EXPECT_EQ(user.boxes[0].text, "bad");
  EXPECT_EQ(user.boxes[0].buttons, 53);
  EXPECT_EQ(user.boxes[0].title, "Invalid Value");
  EXPECT_EQ(value, 4711);
  user.box_answers = {forms::vbRetry};
  EXPECT_TRUE(ask(false, {"x", "7"}));
  EXPECT_EQ(value, 7);
}

TEST_F(AskNumber, APrefixAloneIsNoNumber) {
  user.box_answers = {forms::vbCancel};
  EXPECT_FALSE(ask(true, {"&H"}));
  EXPECT_EQ(user.boxes.size(), 1u);
}

}  // namespace
}  // namespace varzelin::testing
