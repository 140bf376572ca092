// The message loop: order of events, errors, timers, time, dialogs, the end of the program.
#include <gtest/gtest.h>

#include <chrono>
#include <new>
#include <stdexcept>

#include "forms/user.h"
#include "support/forms_program.h"

namespace varzelin::testing {
namespace {

using namespace std::chrono_literals;
using forms::Event;

class Clockwork final : public forms::Form {
 public:
  Clockwork(forms::FormSet& set, std::string name, Notes&) : Form(set, std::move(name), "Clockwork") {}

  forms::Timer slow{*this, "slow", {.Enabled = false, .Interval = 100}};
  forms::Timer fast{*this, "fast", {.Enabled = false, .Interval = 10}};
  forms::CommandButton button{*this, "button"};
  forms::CommonDialog dialog{*this, "dialog"};
};

struct FormsRuntime : ::testing::Test, FormsProgram {
  Clockwork* works = nullptr;

  void SetUp() override {
    add<Clockwork>("works");
    works = &form<Clockwork>("works");
    note(works->slow, {Event::Timer});
    note(works->fast, {Event::Timer});
  }
  void post(std::string text) {
    runtime.post([this, text] { notes.push_back(text); });
  }
};

TEST_F(FormsRuntime, EventsRunInTheOrderInWhichTheyWerePosted) {
  runtime.post([&] {
    notes.emplace_back("first begins");
    post("third");
    runtime.DoEvents();
    notes.emplace_back("first ends");
  });
  post("second");
  runtime.service();
  EXPECT_EQ(notes, (Notes{"first begins", "second", "third", "first ends"}));
}

TEST_F(FormsRuntime, NothingRunsBeforeTheLoopTakesIt) {
  post("event");
  works->fast.Enabled = true;
  pass(50);
  runtime.Sleep(50);
  EXPECT_EQ(notes, Notes{});
  runtime.DoEvents();
  EXPECT_EQ(notes, (Notes{"fast.Timer", "event"}));
}

TEST_F(FormsRuntime, AnErrorIsReportedAndTheProgramGoesOn) {
  runtime.post([&] { forms::raise_error(forms::overflow); });
  post("after");
  runtime.service();
  EXPECT_EQ(user.errors, std::vector<int>{6});
  EXPECT_EQ(notes, Notes{"after"});
  EXPECT_EQ(runtime.handlers_on_stack(), 0);
}

TEST_F(FormsRuntime, AnErrorInANestedHandlerLeavesTheOuterOneAlone) {
  runtime.post([&] {
    runtime.post([] { forms::raise_error(forms::division_by_zero); });
    runtime.DoEvents();
    EXPECT_EQ(runtime.handlers_on_stack(), 1);
    notes.emplace_back("outer goes on");
  });
  runtime.service();
  EXPECT_EQ(user.errors, std::vector<int>{11});
  EXPECT_EQ(notes, Notes{"outer goes on"});
}

TEST_F(FormsRuntime, WhatTheLibraryThrowsIsReportedAndTheProgramGoesOn) {
  runtime.post([] { throw std::bad_alloc(); });
  runtime.post([] { throw std::out_of_range("too far"); });
  post("goes on");
  runtime.service();
  EXPECT_EQ(user.errors, (std::vector<int>{forms::out_of_memory, forms::internal_error}));
  EXPECT_EQ(notes, Notes{"goes on"});
  EXPECT_EQ(runtime.handlers_on_stack(), 0);
  EXPECT_EQ(forms::as_run_time_error(std::bad_alloc()).text, "Out of memory");
  EXPECT_EQ(forms::as_run_time_error(std::out_of_range("too far")).text, "Internal error (too far)");
}

TEST_F(FormsRuntime, AnElementThatAnArrayDoesNotHaveIsAnError) {
  std::array values{10, 20, 30};
  forms::element(values, 2) = 31;
  EXPECT_EQ(values, (std::array{10, 20, 31}));
  EXPECT_EQ(forms::element(values, 0), 10);
  runtime.post([&] { forms::element(values, -1) = 0; });
  runtime.post([&] { forms::element(values, std::size_t{3}) = 0; });
  runtime.service();
  EXPECT_EQ(user.errors, (std::vector<int>{forms::subscript_out_of_range, forms::subscript_out_of_range}));
}

TEST_F(FormsRuntime, AnErrorOfADriverNotificationIsReportedToo) {
  bool fails = true;
  runtime.poll = [&] {
    if (std::exchange(fails, false)) forms::raise_error(forms::overflow);
  };
  post("event");
  runtime.service();
  EXPECT_EQ(user.errors, std::vector<int>{6});
  EXPECT_EQ(notes, Notes{"event"});
}

TEST_F(FormsRuntime, NotificationsAreAskedForOnceATurn) {
  int polls = 0;
  runtime.poll = [&] { ++polls; };
  runtime.DoEvents(3);
  EXPECT_EQ(polls, 3);
}

TEST_F(FormsRuntime, EndingUnwindsNestedHandlersAndDoEvents) {
  runtime.post([&] {
    runtime.post([&] {
      runtime.post([&] { runtime.end(); });
      runtime.DoEvents();
      notes.emplace_back("inner goes on");
    });
    runtime.DoEvents();
    notes.emplace_back("outer goes on");
  });
  runtime.run(forms);
  EXPECT_TRUE(runtime.ended());
  EXPECT_EQ(notes, Notes{});
  EXPECT_EQ(user.errors, std::vector<int>{});
  EXPECT_EQ(runtime.handlers_on_stack(), 0);
}

// Handlers in each other's yields, as many as may be on the stack; then one more event comes, and a timer is
// due.
TEST_F(FormsRuntime, BeyondTheDeepestNestingEventsAndTimersWait) {
  int deepest = 0;
  std::function<void()> nest = [&] {
    deepest = std::max(deepest, runtime.handlers_on_stack());
    runtime.post(nest);
    if (deepest < forms::Runtime::most_handlers) return runtime.DoEvents();
    EXPECT_FALSE(runtime.has_room());
    works->fast.Enabled = true;
    pass(10);
    runtime.DoEvents();
    EXPECT_EQ(notes, Notes{});
    nest = [&] { notes.emplace_back("last"); };
  };
  runtime.post([&] { nest(); });
  runtime.service();
  EXPECT_EQ(deepest, 64);
  EXPECT_EQ(notes, Notes{"last"});
  runtime.service();
  EXPECT_EQ(notes, (Notes{"last", "fast.Timer"}));
  EXPECT_EQ(runtime.handlers_on_stack(), 0);
}

TEST_F(FormsRuntime, NotificationsComeAtAnyDepth) {
  int polls = 0;
  std::function<void()> nest = [&] {
    runtime.post([&] { nest(); });
    if (runtime.has_room()) return runtime.DoEvents();
    polls = 0;
    runtime.DoEvents(5);
    EXPECT_EQ(polls, 5);
    nest = [] {};
  };
  runtime.poll = [&] { ++polls; };
  runtime.post([&] { nest(); });
  runtime.service();
}

TEST_F(FormsRuntime, TheQueueHoldsSoManyEventsAndRefusesMore) {
  std::size_t ran = 0;
  for (std::size_t i = 0; i < forms::Runtime::most_events; ++i) EXPECT_TRUE(runtime.post([&] { ++ran; }));
  EXPECT_FALSE(runtime.post([&] { ++ran; }));
  runtime.service();
  EXPECT_EQ(ran, 10'000u);
  EXPECT_TRUE(runtime.post([] {}));
}

// Not a promise of the runtime but of the front end that tests have.
TEST_F(FormsRuntime, ALoopWithoutEndFailsItsTestByTheBudgetOfYields) {
  user.yields_left = 3;
  int passes = 0;
  const auto endless = [&] {
    for (;; ++passes) runtime.DoEvents();
  };
  EXPECT_THROW(runtime.dispatch([&] { forms::resume_next(endless); }), TestFrontEnd::OutOfYields);
  EXPECT_EQ(passes, 3);
  EXPECT_THROW(runtime.DoEvents(), TestFrontEnd::OutOfYields) << "no second run after it either";
}

TEST_F(FormsRuntime, EndingPassesAnErrorBranch) {
  runtime.post([&] {
    forms::resume_next([&] { runtime.end(); });
    notes.emplace_back("goes on");
  });
  runtime.run(forms);
  EXPECT_EQ(notes, Notes{});
}

TEST_F(FormsRuntime, WithoutALoadedFormTheProgramEnds) {
  runtime.post([&] { forms.unload(*works); });
  runtime.run(forms);
  EXPECT_TRUE(runtime.ended());
}

TEST_F(FormsRuntime, AnIdleProgramWaitsForItsNextTimer) {
  works->slow.Enabled = true;
  std::vector<std::optional<forms::Clock::Duration>> waits;
  user.at_idle = [&](std::optional<forms::Clock::Duration> limit) {
    waits.push_back(limit);
    if (limit) {
      clock.pass(*limit);
      works->slow.Enabled = clock.now() < 200ms;
    } else {
      runtime.post([&] { runtime.end(); });
    }
  };
  runtime.run(forms);
  EXPECT_EQ(waits, (std::vector<std::optional<forms::Clock::Duration>>{100ms, 100ms, std::nullopt}));
  EXPECT_EQ(notes, Notes{"slow.Timer"}) << "the second tick was switched off before it came";
}

// ---- Time

TEST_F(FormsRuntime, TheVirtualClockMovesByYieldsAndSleepsOnly) {
  runtime.DoEvents(10000);
  EXPECT_EQ(clock.now(), 10ms);
  EXPECT_EQ(runtime.timeGetTime(), 10);
  runtime.Sleep(25);
  runtime.Sleep(0);
  runtime.Sleep(-5);
  EXPECT_EQ(runtime.timeGetTime(), 35);
  runtime.service();
  EXPECT_EQ(clock.now(), 35ms);
  EXPECT_EQ(clock.local_time().tm_sec, 7);
  pass(60000);
  EXPECT_EQ(clock.local_time().tm_min, 4);
}

// ---- Timers

TEST_F(FormsRuntime, ATimerTicksWhileItIsEnabledAndHasAnInterval) {
  works->fast.Enabled = true;
  pass(9);
  runtime.DoEvents();
  EXPECT_EQ(take_notes(), Notes{});
  pass(1);
  runtime.DoEvents();
  EXPECT_EQ(take_notes(), Notes{"fast.Timer"});
  works->fast.Interval = 0;
  pass(100);
  runtime.DoEvents();
  EXPECT_EQ(take_notes(), Notes{});
  works->fast.Interval = 50;
  works->fast.Enabled = false;
  pass(100);
  runtime.DoEvents();
  EXPECT_EQ(take_notes(), Notes{});
  EXPECT_FALSE(runtime.until_next_timer());
}

TEST_F(FormsRuntime, MissedTicksComeAsOneAndKeepTheirGrid) {
  works->fast.Enabled = true;
  pass(35);
  runtime.service();
  EXPECT_EQ(take_notes(), Notes{"fast.Timer"});
  EXPECT_EQ(runtime.until_next_timer(), 5ms);
  runtime.service();
  EXPECT_EQ(take_notes(), Notes{});
}

TEST_F(FormsRuntime, ATimerDoesNotTickIntoItsOwnHandler) {
  works->fast.handle(Event::Timer, [&](forms::EventArgs&) {
    notes.emplace_back("begins");
    pass(100);
    runtime.DoEvents();
    notes.emplace_back("ends");
  });
  works->fast.Enabled = true;
  works->slow.Enabled = true;
  pass(10);
  runtime.DoEvents();
  EXPECT_EQ(take_notes(), (Notes{"begins", "slow.Timer", "ends"}));
  runtime.service();
  EXPECT_EQ(take_notes(), (Notes{"begins", "slow.Timer", "ends"})) << "one tick for those missed";
}

TEST_F(FormsRuntime, ATimerThatItsHandlerRestartsDoesNotTickIntoItEither) {
  works->fast.handle(Event::Timer, [&](forms::EventArgs&) {
    notes.emplace_back("begins");
    works->fast.Enabled = false;
    works->fast.Enabled = true;
    pass(100);
    runtime.DoEvents();
    notes.emplace_back("ends");
    works->fast.Enabled = notes.size() < 4;
  });
  works->fast.Enabled = true;
  pass(10);
  runtime.DoEvents();
  EXPECT_EQ(notes, (Notes{"begins", "ends"}));
  pass(10);
  runtime.DoEvents();
  EXPECT_EQ(notes, (Notes{"begins", "ends", "begins", "ends"})) << "it ticks again later";
}

TEST_F(FormsRuntime, ATimerThatAnotherHandlerRestartsWaitsItsInterval) {
  works->slow.handle(Event::Timer, [&](forms::EventArgs&) {
    works->fast.Enabled = false;
    works->fast.Enabled = true;
  });
  works->slow.Enabled = true;
  works->slow.Interval = 10;
  works->fast.Interval = 11;
  works->fast.Enabled = true;
  pass(11);
  runtime.service();
  EXPECT_EQ(notes, Notes{});
  pass(11);
  works->slow.Enabled = false;
  runtime.service();
  EXPECT_EQ(notes, Notes{"fast.Timer"});
}

TEST_F(FormsRuntime, ATimerThatAnEarlierHandlerStoppedDoesNotTick) {
  works->fast.Enabled = true;
  works->slow.Enabled = true;
  works->fast.handle(Event::Timer, [&](forms::EventArgs&) { works->slow.Enabled = false; });
  pass(100);
  runtime.service();
  EXPECT_EQ(notes, Notes{});
}

TEST_F(FormsRuntime, AnErrorInATimersHandlerDoesNotStopTheTimer) {
  works->fast.handle(Event::Timer, [](forms::EventArgs&) { forms::raise_error(forms::type_mismatch); });
  works->fast.Enabled = true;
  pass(10);
  runtime.service();
  pass(10);
  runtime.service();
  EXPECT_EQ(user.errors, (std::vector<int>{13, 13}));
}

// ---- Dialogs

TEST_F(FormsRuntime, DialogsGoToTheFrontEnd) {
  user.box_answers = {forms::vbRetry};
  user.input_answers = {"12"};
  user.file_answers = {"/tmp/a.txt", std::nullopt};
  EXPECT_EQ(runtime.MsgBox("text", 53, "title"), forms::vbRetry);
  EXPECT_EQ(user.boxes.back().text, "text");
  EXPECT_EQ(user.boxes.back().title, "title");
  EXPECT_EQ(user.boxes.back().answers(), (std::vector<int>{forms::vbRetry, forms::vbCancel}));
  EXPECT_EQ(runtime.InputBox("prompt", "title", "default"), "12");
  EXPECT_EQ(user.inputs.back().default_text, "default");
  works->dialog.ShowOpen();
  EXPECT_EQ(works->dialog.FileName, "/tmp/a.txt");
  EXPECT_EQ(works->dialog.FileTitle, "a.txt");
  works->dialog.ShowSave();
  EXPECT_TRUE(user.file_dialogs.back().save);
  EXPECT_EQ(works->dialog.FileName, "/tmp/a.txt") << "as it was, after Cancel";
}

TEST_F(FormsRuntime, SilentDialogsAreCancelledUnseen) {
  user.box_answers = {forms::vbOK};
  user.file_answers = {"/tmp/a.txt"};
  works->dialog.CancelError = true;
  {
    const forms::Runtime::SilentDialogs silent(runtime);
    const forms::Runtime::SilentDialogs nested(runtime);
    EXPECT_EQ(runtime.MsgBox("", forms::vbOKCancel), forms::vbCancel);
    EXPECT_EQ(runtime.MsgBox("", forms::vbYesNo), forms::vbNo);
    EXPECT_EQ(runtime.MsgBox("", forms::vbYesNoCancel), forms::vbCancel);
    EXPECT_EQ(runtime.MsgBox("", forms::vbRetryCancel), forms::vbCancel);
    EXPECT_EQ(runtime.MsgBox(""), forms::vbOK);
    EXPECT_EQ(runtime.InputBox("", "", "default"), std::nullopt);
    EXPECT_EQ(error_of([&] { works->dialog.ShowSave(); }), 32755);
  }
  EXPECT_TRUE(user.boxes.empty() && user.inputs.empty() && user.file_dialogs.empty());
  works->dialog.ShowOpen();
  EXPECT_EQ(works->dialog.FileName, "/tmp/a.txt");
}

}  // namespace
}  // namespace varzelin::testing
