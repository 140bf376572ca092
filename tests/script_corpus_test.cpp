// Replays the fuzzer's corpus of script files.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "script_loader_check.h"

namespace varzelin {
namespace {

TEST(ScriptCorpus, EveryFileKeepsThePromises) {
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(SCRIPT_CORPUS)) {
    SCOPED_TRACE(entry.path().filename());
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    EXPECT_NO_THROW(check_script(text));
    ++files;
  }
  EXPECT_GE(files, 7);
}

}  // namespace
}  // namespace varzelin
