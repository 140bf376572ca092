// The words of how a form's work goes.
#include "window/state_words.h"

#include <gtest/gtest.h>

namespace varzelin::testing {
namespace {

using Kind = RunState::Kind;
using End = RunState::End;

std::string words(const auto& state) {
  return window::state_words(state).toStdString();
}

TEST(StateWords, OfARun) {
  EXPECT_EQ(words(RunState{}), "idle");
  RunState run{.kind = Kind::collection, .runs = true};
  EXPECT_EQ(words(run), "collecting");
  run.readings = 10;
  run.ms_a_sample = 113;
  EXPECT_EQ(words(run), "collecting, 113 ms a sample");
  run.readings = 522;
  run.captured = 512;
  EXPECT_EQ(words(run), "collecting, 113 ms a sample, 512 readings");
  run.kind = Kind::timed;
  EXPECT_EQ(words(run), "sampling, 113 ms a sample, 522 readings");
}

TEST(StateWords, OfAFullStore) {
  RunState run{.kind = Kind::collection, .runs = true, .readings = 2000, .store_full = true, .kept = 999};
  EXPECT_EQ(words(run), "collecting; chart full: the file keeps the first 999");
  run.runs = false;
  EXPECT_EQ(words(run), "stopped by the user; the file keeps the first 999");
}

TEST(StateWords, OfASensorThatDoesntAnswer) {
  RunState run{.kind = Kind::collection, .runs = true, .readings = 97, .unanswered = 12};
  EXPECT_EQ(words(run), "collecting; no answer from the sensor (12 of 97 readings)");
  run.kind = Kind::timed;
  EXPECT_EQ(words(run), "sampling; no answer from the sensor (12 of 97 readings, stored as 0)");
  run.board_gone = true;
  EXPECT_EQ(words(run), "sampling; board unplugged (12 of 97 readings, stored as 0)");
  run.runs = false;
  EXPECT_EQ(words(run), "stopped by the user; no answer from the sensor (12 of 97 readings, stored as 0)");
}

TEST(StateWords, OfAnEnd) {
  RunState run{.kind = Kind::collection, .readings = 97};
  EXPECT_EQ(words(run), "stopped by the user");
  run.unanswered = 1;
  run.end = End::board_gone;
  EXPECT_EQ(words(run), "stopped: board unplugged");
  run.end = End::transfer_failed;
  EXPECT_EQ(words(run), "stopped: a transfer failed");
  run.end = End::run_time_error;
  EXPECT_EQ(words(run), "stopped: run-time error");
}

TEST(StateWords, OfATest) {
  RunState run{.kind = Kind::test, .runs = true};
  EXPECT_EQ(words(run), "testing");
  run.readings = 3;
  EXPECT_EQ(words(run), "testing, 3 readings");
  run.unanswered = 2;
  EXPECT_EQ(words(run), "testing; no answer from the sensor (2 of 3 readings)");
  run.runs = false;
  run.end = End::completed;
  EXPECT_EQ(words(run), "done; no answer from the sensor (2 of 3 readings)");
  run.unanswered = 0;
  EXPECT_EQ(words(run), "done");
}

TEST(StateWords, OfAScript) {
  ScriptState script;
  EXPECT_EQ(words(script), "idle");
  script = {.runs = true, .row = 3, .rows = 12, .passed = "2", .failed = "1"};
  EXPECT_EQ(words(script), "running row 3 of 12: 2 passed, 1 failed");
  script.loop = 4;
  script.board_gone = true;
  EXPECT_EQ(words(script), "running row 3 of 12 in loop 4: 2 passed, 1 failed; board unplugged");
  script.runs = false;
  script.end = ScriptState::End::by_user;
  EXPECT_EQ(words(script), "stopped by the user in row 3 of 12: 2 passed, 1 failed; board unplugged");
  script.board_gone = false;
  script.end = ScriptState::End::by_failed_read;
  EXPECT_EQ(words(script), "stopped by a failed read in row 3 of 12: 2 passed, 1 failed");
  script.end = ScriptState::End::completed;
  EXPECT_EQ(words(script), "done: 2 passed, 1 failed");
}

TEST(StateWords, OfALoad) {
  ScriptState script{.load_line = 7, .load_error = "Overflow"};
  EXPECT_EQ(words(script), "load ended in line 7: Overflow; the file stays open");
  script.load_line = 0;
  script.load_error = "File not found";
  EXPECT_EQ(words(script), "not loaded: File not found");
}

}  // namespace
}  // namespace varzelin::testing
