// The log's bound.
#include "bridge/log.h"

#include <gtest/gtest.h>

#include "support/test_program.h"

namespace varzelin::testing {
namespace {

struct BridgeLogBound : ::testing::Test, TestProgram {
  static constexpr std::string_view notice = "Older entries are gone: the log holds 64 MiB.\r\n\r\n";
  const std::string last = "last :11-25-2008 14:03:07\r\n\r\n";

  // Numbered entries, so many bytes in all.
  static std::string entries(std::size_t size) {
    const std::string words(1000, '.');
    std::string text;
    text.reserve(size);
    for (int number = 0; text.size() + 2000 < size; ++number) {
      text += "entry " + std::to_string(number) + words + "\r\n\r\n";
    }
    text.append(size - text.size() - 4, '.');
    return text + "\r\n\r\n";
  }
};

TEST_F(BridgeLogBound, UpToItNothingGoes) {
  workbench().Txtlog.Text = entries(longest_log - last.size());
  Log_Msg(program, "last");
  EXPECT_EQ(log().size(), longest_log);
  EXPECT_TRUE(log().starts_with("entry 0."));
}

TEST_F(BridgeLogBound, BeyondItABlockOfTheOldestEntriesGoesAndTheFirstLineSaysSo) {
  workbench().Txtlog.Text = entries(longest_log - last.size() + 1);
  Log_Msg(program, "last");
  EXPECT_TRUE(log().starts_with(std::string(notice) + "entry "));
  EXPECT_TRUE(log().ends_with(last));
  EXPECT_LT(log().size(), longest_log - longest_log / 5);
  EXPECT_GT(log().size(), longest_log / 2);
  EXPECT_EQ(workbench().Txtlog.SelStart, static_cast<int>(log().size()));
}

TEST_F(BridgeLogBound, TheFirstLineStandsOnceHoweverOftenEntriesGo) {
  for (int i = 0; i < 2; ++i) {
    workbench().Txtlog.Text.append(entries(longest_log - log().size()));
    Log_Msg(program, "last");
  }
  EXPECT_TRUE(log().starts_with(notice));
  EXPECT_EQ(log().find(notice, 1), std::string::npos);
}

TEST_F(BridgeLogBound, ALogOfOneEndlessEntryGoesWhole) {
  workbench().Txtlog.Text = std::string(longest_log, '.');
  Log_Msg(program, "last");
  EXPECT_EQ(log(), std::string(notice) + last);
}

}  // namespace
}  // namespace varzelin::testing
