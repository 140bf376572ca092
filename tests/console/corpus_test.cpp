// The fuzzer's corpus of console lines, replayed.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "console_lines_check.h"

namespace varzelin::testing {
namespace {

TEST(ConsoleCorpus, EveryInputIsReadAsLinesAndWords) {
  int inputs = 0;
  for (const auto& entry : std::filesystem::directory_iterator(PROJECT_FOLDER "/fuzz/corpus/console")) {
    std::ifstream in(entry.path(), std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(in), {}};
    fuzz::check_console_lines(bytes);
    ++inputs;
  }
  EXPECT_GE(inputs, 3);
}

}  // namespace
}  // namespace varzelin::testing
