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
  for (const auto& entry : std::filesystem::directory_iterator(PROJECT_FOLDER "/fuzz/corpus/script")) {
    SCOPED_TRACE(entry.path().filename());
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    EXPECT_NO_THROW(check_script_load(text));
    EXPECT_NO_THROW(check_script_run(text));
    ++files;
  }
  EXPECT_GE(files, 7);
}

}  // namespace
}  // namespace varzelin
