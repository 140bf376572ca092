// The fuzzers' corpora of console lines and of whole sessions, replayed.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "console_lines_check.h"
#include "console_session_check.h"

namespace varzelin::testing {
namespace {

std::vector<std::string> corpus(const std::string& name) {
  std::vector<std::string> inputs;
  for (const auto& entry : std::filesystem::directory_iterator(PROJECT_FOLDER "/fuzz/corpus/" + name)) {
    std::ifstream in(entry.path(), std::ios::binary);
    inputs.emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }
  return inputs;
}

TEST(ConsoleCorpus, EveryInputIsReadAsLinesAndWords) {
  const auto inputs = corpus("console");
  for (const std::string& bytes : inputs) fuzz::check_console_lines(bytes);
  EXPECT_GE(inputs.size(), 3u);
}

// A session that doesn't get to a panel would find nothing.
TEST(ConsoleCorpus, EverySessionIsAnsweredAndEndsAndWorksAPanel) {
  const auto inputs = corpus("session");
  EXPECT_GE(inputs.size(), 10u);
  for (const std::string& bytes : inputs) {
    const auto lines = fuzz::check_console_session(bytes);
    ASSERT_GT(lines.size(), 10u);
    EXPECT_TRUE(lines.front().starts_with("start click frmStartup.cboDeviceSelect "));
    const auto on_a_panel = [](const std::string& line) {
      return line.find(" frmKVT") != std::string::npos || line.find(" frm71") != std::string::npos;
    };
    EXPECT_GT(std::ranges::count_if(lines, on_a_panel), 3);
  }
}

}  // namespace
}  // namespace varzelin::testing
