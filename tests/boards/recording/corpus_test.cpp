// The fuzzer's corpus of board recordings, replayed.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "recording_check.h"

namespace varzelin::testing {
namespace {

TEST(RecordingCorpus, EveryInputIsPlayedOrRefused) {
  int played = 0;
  int refused = 0;
  for (const auto& entry : std::filesystem::directory_iterator(PROJECT_FOLDER "/fuzz/corpus/recording")) {
    std::ifstream in(entry.path(), std::ios::binary);
    ++(fuzz::check_recording({std::istreambuf_iterator<char>(in), {}}) ? played : refused);
  }
  EXPECT_GE(played, 1);
  EXPECT_GE(refused, 1);
}

}  // namespace
}  // namespace varzelin::testing
