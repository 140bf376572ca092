// What a script panel tells of its load and its run.
#include "support/script_fixture.h"

namespace varzelin::testing {
namespace {

using End = ScriptState::End;

struct ScriptStates : ScriptFixture {
  frmScriptOps* panel = nullptr;

  void load(std::string_view script) { panel = &open(script); }
  ScriptState state() const { return panel->script_state(); }
  // Acts once when the run is in this row, and gives the state there.
  ScriptState in_row(
      int row, forms::Control& start, const std::function<void()>& act = [] {}) {
    ScriptState seen;
    user.at_yield = [&, done = false]() mutable {
      if (done || !state().runs || state().row != row) return;
      done = true;
      act();
      seen = state();
    };
    click(start);
    user.at_yield = nullptr;
    return seen;
  }
};

// Register 8 of the sensor is a plain one.
constexpr const char* three_rows = "08,5A,5A\n08,,5B\n08,,5A";

TEST_F(ScriptStates, NothingHasRunBehindALoad) {
  load(three_rows);
  EXPECT_FALSE(state().runs);
  EXPECT_EQ(state().end, End::none);
  EXPECT_EQ(state().rows, 3);
  EXPECT_EQ(state().load_line, 3);
  EXPECT_EQ(state().load_error, "");
}

TEST_F(ScriptStates, APassTellsItsRowAndItsReads) {
  load(three_rows);
  const ScriptState during = in_row(3, panel->cmdExecAll);
  EXPECT_TRUE(during.runs);
  EXPECT_EQ(during.rows, 3);
  EXPECT_EQ(during.loop, 0);
  EXPECT_EQ(during.passed, "1");
  EXPECT_EQ(during.failed, "1");
  EXPECT_FALSE(during.board_gone);
  EXPECT_FALSE(state().runs);
  EXPECT_EQ(state().end, End::completed);
  EXPECT_EQ(state().passed, "2");
  EXPECT_EQ(state().row, 3);
  EXPECT_TRUE(in_row(0, panel->cmdExecAll).runs) << "a pass begins before its first row";
  load(three_rows);
  EXPECT_EQ(state().end, End::none) << "the run was of another load";
}

TEST_F(ScriptStates, ItsEndIsTheUsersOrAReads) {
  load(three_rows);
  in_row(2, panel->cmdExecAll, [this] { click(panel->cmdAbort); });
  EXPECT_EQ(state().end, End::by_user);
  EXPECT_EQ(state().row, 2);
  panel->chkAOF.Value = 1;
  click(panel->cmdExecAll);
  EXPECT_EQ(state().end, End::by_failed_read);
  EXPECT_EQ(state().row, 2);
  in_row(1, panel->cmdExecAll, [this] { click(panel->cmdAbort); });
  EXPECT_EQ(state().end, End::by_user);
}

TEST_F(ScriptStates, ALoopRunsBetweenItsPassesToo) {
  load(three_rows);
  bool rested = false;
  user.at_yield = [&, done = false]() mutable {
    rested = rested || !state().runs;
    if (done || state().loop < 3 || state().row != 2) return;
    done = true;
    click(panel->cmdAbort);
  };
  click(panel->cmdRunContinuous);
  user.at_yield = nullptr;
  EXPECT_FALSE(rested);
  EXPECT_EQ(panel->txtLoopCount.Text, "3");
  EXPECT_FALSE(state().runs);
  EXPECT_EQ(state().loop, 0);
  EXPECT_EQ(state().end, End::by_user);
}

TEST_F(ScriptStates, ABoardThatWentIsToldUntilTheNextRun) {
  load(three_rows);
  EXPECT_FALSE(state().board_gone);
  const auto pull = [this] { board.unplug(); };
  in_row(1, panel->cmdExecAll, pull);
  EXPECT_EQ(state().end, End::completed);
  EXPECT_TRUE(state().board_gone);
  board.plug();
  click(panel->cmdExecAll);
  EXPECT_FALSE(state().board_gone);
  EXPECT_EQ(state().passed, "2");
}

TEST_F(ScriptStates, ALoadThatEndsEarlyTellsWhereAndWhy) {
  load("1\n`w40000\n2");
  EXPECT_EQ(state().load_line, 2);
  EXPECT_EQ(state().load_error, "Overflow");
  click(panel->cmdReload2);
  EXPECT_EQ(state().load_line, 0);
  EXPECT_EQ(state().load_error, "File already open");
  open(three_rows, "other.txt");
  EXPECT_EQ(state().load_error, "");
}

}  // namespace
}  // namespace varzelin::testing
