#include <chrono>

#include "support/console_fixture.h"

namespace console_test {
namespace {

using ConsoleTime = ConsoleTest;

const std::string get_passes = "get frmBench.lblPasses.Caption";
const std::string get_log = "get frmBench.lblLog.Caption";

TEST_F(ConsoleTime, WaitLetsTimersRun) {
  EXPECT_EQ(run({"get frmBench.lblTicks.Caption", "wait 500", "get frmBench.lblTicks.Caption", "clock",
                 "wait 0", "clock", "wait 99", "wait 1", "get frmBench.lblTicks.Caption"}),
            (Lines{"ok \"0\"", "ok", "ok \"5\"", "ok 500.0", "ok", "ok 500.0", "ok", "ok", "ok \"6\""}));
}

TEST_F(ConsoleTime, TimeStandsBetweenLines) {
  EXPECT_EQ(last({"get frmBench.Visible", "clock"}), "ok 0.0");
}

TEST_F(ConsoleTime, BadTimes) {
  EXPECT_EQ(run({"wait", "wait x", "wait -1", "wait 1e15", "wait inf", "wait 1 2", "finish x", "finish 1 2",
                 "idle", "idle -1", "idle 1.5", "idle 1 2", "quit now"}),
            (Lines{"error missing argument: MS", "error not a number: x",
                   "error out of range: time in milliseconds", "error out of range: time in milliseconds",
                   "error not a number: inf", "error too many arguments: 2", "error not a number: x",
                   "error too many arguments: 2", "error missing argument: COUNT", "error out of range: -1",
                   "error not a whole number: 1.5", "error too many arguments: 2",
                   "error too many arguments: now"}));
}

TEST_F(ConsoleTime, AStartedHandlerServesOneLineAYield) {
  EXPECT_EQ(run({"start click frmBench.cmdLoop", get_passes, get_passes, "# skipped", "", get_passes,
                 "click frmBench.cmdStop", "finish", get_passes, get_log}),
            (Lines{"ok", "ok \"1\"", "ok \"2\"", "ok \"3\"", "ok", "ok", "ok \"4\"",
                   "ok \"Load Activate Loop LoopEnd\""}));
}

Lines repeated(int times, const std::string& line) {
  return Lines(static_cast<std::size_t>(times), line);
}
std::size_t times_in(const std::string& text, const std::string& word) {
  std::size_t times = 0;
  for (std::size_t at = 0; (at = text.find(word, at)) != std::string::npos; ++at) ++times;
  return times;
}

// Of the handlers that end by themselves those that find no room begin when others have ended.
TEST_F(ConsoleTime, AStartThatFindsNoRoomOnTheStackWaitsForIt) {
  Lines lines = repeated(66, "start click frmBench.cmdLong");
  lines.insert(lines.begin(), "set frmBench.lblLog.Caption \"\"");
  lines.insert(lines.end(), {"finish 1e9", get_log});
  const Lines written = run(lines);
  ASSERT_EQ(written.size(), lines.size());
  EXPECT_EQ(written[66], "ok");
  EXPECT_EQ(written[67], "ok");
  EXPECT_EQ(times_in(written.back(), "LongEnd"), 66u);
}

TEST_F(ConsoleTime, ALineThatFindsNoRoomIsRefusedAtOnceOrAnsweredInTheEnd) {
  Lines lines = repeated(64, "start click frmBench.cmdOther");
  lines.insert(lines.end(), {"click frmBench.cmdNone", "click frmBench.cmdStop", "clock", "quit"});
  const Lines written = run(lines);
  ASSERT_EQ(written.size(), lines.size());
  EXPECT_EQ(written[64], "error no such control: frmBench.cmdNone");
  EXPECT_EQ(written[65], "error still running");
  EXPECT_EQ(written[66].substr(0, 5), "ok 60");
  EXPECT_EQ(written[67], "ok");
}

TEST_F(ConsoleTime, AStartThatFindsNoRoomAmongThoseThatWaitIsRefused) {
  constexpr std::size_t running = 64;
  constexpr std::size_t waiting = forms::Runtime::most_events;
  Lines lines = repeated(running, "start click frmBench.cmdOther");
  const Lines more = repeated(waiting + 1, "start click frmBench.cmdCount");
  lines.insert(lines.end(), more.begin(), more.end());
  const Lines written = run(lines);
  ASSERT_EQ(written.size(), lines.size());
  EXPECT_EQ(written[running + waiting - 1], "ok");
  EXPECT_EQ(written.back(), "error too many events wait");
}

TEST_F(ConsoleTime, WhatWaitedForRoomAndIsGoneByThenDoesNothing) {
  Lines lines = repeated(64, "start click frmBench.cmdLong");
  lines.insert(lines.end(), {"start click frmBench.cmdCount", "start set frmBench.Visible false",
                             "start click frmBench.cmdCount", "finish 1e9", get_log});
  const Lines written = run(lines);
  ASSERT_EQ(written.size(), lines.size());
  EXPECT_EQ(written[written.size() - 2], "ok");
  EXPECT_EQ(times_in(written.back(), "Count"), 1u);
}

TEST_F(ConsoleTime, WaitInsideAHandlerReadsNoLine) {
  EXPECT_EQ(run({"start click frmBench.cmdLoop", "wait 2", get_passes, "clock", "click frmBench.cmdStop",
                 "finish"}),
            (Lines{"ok", "ok", "ok \"2002\"", "ok 2.003", "ok", "ok"}));
}

TEST_F(ConsoleTime, TimersRunInsideAHandler) {
  EXPECT_EQ(run({"start click frmBench.cmdLoop", "wait 250", "get frmBench.lblTicks.Caption"}),
            (Lines{"ok", "ok", "ok \"2\""}));
}

TEST_F(ConsoleTime, IdleLetsYieldsPass) {
  EXPECT_EQ(run({"start click frmBench.cmdLoop", get_passes, "idle 3", get_passes, "idle 0", get_passes}),
            (Lines{"ok", "ok \"1\"", "ok", "ok \"6\"", "ok", "ok \"8\""}));
}

TEST_F(ConsoleTime, IdleAtAnIdleProgramTakesYieldsToo) {
  EXPECT_EQ(run({"idle 100000", "clock", "get frmBench.lblTicks.Caption"}),
            (Lines{"ok", "ok 100.0", "ok \"1\""}));
}

TEST_F(ConsoleTime, FinishWaitsForTheHandler) {
  EXPECT_EQ(run({"finish", "start click frmBench.cmdSleep", "finish", "clock", get_log}),
            (Lines{"ok", "ok", "ok", "ok 1000.0", "ok \"Load Activate Slept\""}));
}

TEST_F(ConsoleTime, FinishGivesUpInTime) {
  EXPECT_EQ(run({"start click frmBench.cmdLoop", "finish 5", "clock", "finish 0", "click frmBench.cmdStop",
                 "finish 5"}),
            (Lines{"ok", "error still running", "ok 5.002", "error still running", "ok", "ok"}));
}

TEST_F(ConsoleTime, FinishWaitsAMinute) {
  EXPECT_EQ(run({"start click frmBench.cmdOther", "finish", "clock"}),
            (Lines{"ok", "error still running", "ok 60026.002"}));
}

TEST_F(ConsoleTime, FinishGoesOnWhenOneOfTwoHandlersReturns) {
  EXPECT_EQ(run({"start click frmBench.cmdLoop", "start click frmBench.cmdLong", "finish 700010", get_log}),
            (Lines{"ok", "ok", "error still running", "ok \"Load Activate Loop LongEnd\""}));
}

TEST_F(ConsoleTime, FinishWaitsForAllStartedHandlers) {
  EXPECT_EQ(run({"start click frmBench.cmdLoop", "start click frmBench.cmdOther", "click frmBench.cmdStop",
                 "finish 5", "click frmBench.cmdStop", "finish 5", get_log}),
            (Lines{"ok", "ok", "ok", "error still running", "ok", "ok",
                   "ok \"Load Activate Loop Other OtherEnd LoopEnd\""}));
}

TEST_F(ConsoleTime, AHandlerBegunWithoutStartReadsNoLine) {
  const Lines written = run({"click frmBench.cmdLong", "clock"});
  // Its 600 yields before its time is over read nothing.
  EXPECT_EQ(written, (Lines{"error still running", "ok 600000.6"}));
}

TEST_F(ConsoleTime, ALateHandlerGoesOnAsIfItHadBeenStarted) {
  EXPECT_EQ(run({"click frmBench.cmdLong", "finish 1000", "finish", "finish", get_log}),
            (Lines{"error still running", "error still running", "error still running", "ok",
                   "ok \"Load Activate LongEnd\""}));
}

TEST_F(ConsoleTime, ALateHandlerInsideAStartedOne) {
  EXPECT_EQ(run({"start click frmBench.cmdLoop", "click frmBench.cmdOther", get_log, "click frmBench.cmdStop",
                 "click frmBench.cmdStop", "finish", get_log}),
            (Lines{"ok", "error still running", "ok \"Load Activate Loop Other\"", "ok", "ok", "ok",
                   "ok \"Load Activate Loop Other OtherEnd LoopEnd\""}));
}

TEST_F(ConsoleTime, AHandlersTimeIsOverAlsoWhenItOnlySleeps) {
  EXPECT_EQ(run({"click frmBench.cmdDeepSleep", "finish 0", get_log}),
            (Lines{"error still running", "ok", "ok \"Load Activate Awake\""}));
}

TEST_F(ConsoleTime, StartTakesActionsOnly) {
  EXPECT_EQ(run({"start", "start wait 5", "start get frmBench.Visible", "start start click frmBench.cmdLoop",
                 "start quit", "start look", "start click frmBench.cmdHidden", "start click",
                 "start click frmBench.cmdCount 1", "start answer msgbox OK", "start board plug", get_log}),
            (Lines{"error missing argument: COMMAND", "error not a command to start: wait",
                   "error not a command to start: get", "error not a command to start: start",
                   "error not a command to start: quit", "error no such command: look",
                   "error not shown: frmBench.cmdHidden", "error missing argument: NAME",
                   "error not a list: frmBench.cmdCount", "error not a command to start: answer",
                   "error not a command to start: board", "ok \"Load Activate\""}));
}

TEST_F(ConsoleTime, StartTakesEveryAction) {
  for (const std::string action :
       {"dblclick frmBench.cmdCount", "type frmBench.txtEntry a", "enter frmBench.txtEntry",
        "fill frmBench.txtEntry a", "leave frmBench.cmdCount", "focus frmBench.cmdCount",
        "scroll frmBench.vsbRows 1", "front frmBench", "event frmBench.cmdCount Click",
        "set frmBench.Caption x", "set store.Board_Rev 1"}) {
    EXPECT_EQ(run({"start " + action, "finish"}), (Lines{"ok", "ok"})) << action;
  }
}

TEST_F(ConsoleTime, AStartedHandlersErrorIsANote) {
  EXPECT_EQ(run({"start click frmBench.cmdError", "finish"}),
            (Lines{"ok", "* runtime-error {\"number\":6,\"text\":\"Overflow\"}", "ok"}));
}

TEST_F(ConsoleTime, LinesAreServedInATimersHandler) {
  EXPECT_EQ(run({"set frmBench.tmrLoop.Enabled true", "wait 60", get_log, "click frmBench.cmdStop", get_log}),
            (Lines{"ok", "ok", "ok \"Load Activate Loop\"", "ok", "ok \"Load Activate Loop LoopEnd\""}));
}

TEST_F(ConsoleTime, QuitEndsTheProgramWhereverItIs) {
  EXPECT_EQ(run({"quit", "clock"}), Lines{"ok"});
  EXPECT_EQ(run({"start click frmBench.cmdLoop", "quit", "clock"}), (Lines{"ok", "ok"}));
  EXPECT_EQ(run({"start click frmBench.cmdLoop", "start click frmBench.cmdOther", "quit", "clock"}),
            (Lines{"ok", "ok", "ok"}));
}

TEST_F(ConsoleTime, EndOfInputIsQuit) {
  EXPECT_EQ(run({}), Lines{});
  EXPECT_EQ(run({"start click frmBench.cmdLoop"}), Lines{"ok"});
  EXPECT_EQ(run({"start click frmBench.cmdLoop", "wait 5"}), (Lines{"ok", "ok"}));
}

TEST_F(ConsoleTime, TheProgramsOwnEnd) {
  EXPECT_EQ(run({"click frmBench.cmdEnd", "clock"}), (Lines{"ok", "* ended"}));
  EXPECT_EQ(run({"start click frmBench.cmdEnd", "clock"}), (Lines{"ok", "* ended"}));
  EXPECT_EQ(run({"start click frmBench.cmdLoop", "click frmBench.cmdEnd", "clock"}),
            (Lines{"ok", "ok", "* ended"}));
}

TEST_F(ConsoleTime, WhatWaitsIsAnsweredBeforeTheEnd) {
  const std::string arm = "set frmBench.tmrEnd.Enabled true";
  EXPECT_EQ(run({arm, "wait 1000", "clock"}), (Lines{"ok", "ok", "* ended"}));
  EXPECT_EQ(run({arm, "idle 100000", "clock"}), (Lines{"ok", "ok", "* ended"}));
  EXPECT_EQ(run({arm, "start click frmBench.cmdLoop", "finish", "clock"}),
            (Lines{"ok", "ok", "ok", "* ended"}));
  EXPECT_EQ(run({arm, "click frmBench.cmdLoop", "clock"}), (Lines{"ok", "ok", "* ended"}));
}

TEST_F(ConsoleTime, TheSameLinesGiveTheSameAnswers) {
  const Lines lines{"board noise 5", "start click frmBench.cmdLoop", "wait 123", get_passes,
                    "clock",         "click frmBench.cmdTransfer",   "packets",  "driver"};
  std::string input;
  for (const std::string& line : lines) input += line + "\n";
  const auto once = [&] {
    VirtualClock own_clock;
    boards::SimulatedBoard own_board(own_clock);
    return run_console(own_clock, own_board, input);
  };
  const Lines first = once();
  EXPECT_EQ(first.size(), lines.size());
  EXPECT_EQ(once(), first);
}

TEST_F(ConsoleTime, TheRealClock) {
  SystemClock real;
  boards::SimulatedBoard own_board(real);
  const Lines written = run_console(real, own_board,
                                    "wait 5\nset frmBench.tmrTick.Interval 1\nwait 20\n"
                                    "start click frmBench.cmdLoop\nwait 5\nget frmBench.Visible\n"
                                    "click frmBench.cmdStop\nfinish\nidle 2\nclick frmBench.cmdEnd\n");
  EXPECT_EQ(written, (Lines{"ok", "ok", "ok", "ok", "ok", "ok true", "ok", "ok", "ok", "ok", "* ended"}));
  EXPECT_GE(real.now(), std::chrono::milliseconds(30));
}

// Lines that come one a look, with looks in between that find none.
class SlowLines final : public console::LineSource {
 public:
  explicit SlowLines(Lines lines) : lines_(std::move(lines)) {}
  Result next(std::string& line, std::optional<std::chrono::nanoseconds> limit) override {
    EXPECT_TRUE(limit.has_value());  // a real clock never waits for good
    if (++looks_ % 3 != 0) return Result::NotYet;
    if (next_ == lines_.size()) return Result::End;
    line = lines_[next_++];
    return Result::Line;
  }

 private:
  Lines lines_;
  std::size_t next_ = 0;
  int looks_ = 0;
};

TEST_F(ConsoleTime, OnTheRealClockAHandlerDoesNotWaitForLines) {
  SystemClock real;
  boards::SimulatedBoard own_board(real);
  SlowLines lines(
      {"start click frmBench.cmdLoop", "get frmBench.lblPasses.Caption", "click frmBench.cmdStop"});
  std::ostringstream out;
  console::Console console(real, own_board, lines, out);
  FormSet& forms = console.program().forms;
  forms.add("frmBench", [&](std::string name) { return std::make_unique<frmBench>(forms, name); });
  console.run([](varzelin::Program& program) { program.forms.touch("frmBench").Show(); });
  int passes = 0;
  ASSERT_EQ(std::sscanf(out.str().c_str(), "ok\nok \"%d\"\nok\n", &passes), 1) << out.str();
  EXPECT_GT(passes, 2);  // it ran on between the lines
}

}  // namespace
}  // namespace console_test
