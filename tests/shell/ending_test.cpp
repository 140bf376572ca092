// The program's end by a signal, in the middle of whatever it does.
#include "shell/ending.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <new>

#include "support/panel_fixture.h"

namespace varzelin::testing {
namespace {

struct Unknown {};

TEST(StatusOf, WhatAProgramThrowsIsToldAndItsStatusIsOne) {
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(status_of("program", [] { return 7; }), 7);
  EXPECT_EQ(status_of("program", []() -> int { throw std::bad_alloc(); }), 1);
  EXPECT_EQ(status_of("program", []() -> int { throw Unknown{}; }), 1);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "program: std::bad_alloc\nprogram: an unknown error\n");
}

// What the program opens first.
int opened_by_a_program_without(std::initializer_list<int> standard_descriptors) {
  for (const int descriptor : standard_descriptors) ::close(descriptor);
  return status_of("program", [] { return ::open("/dev/null", O_RDONLY); });
}

TEST(StatusOf, NoFileIsTakenForAMissingStandardInputOutputOrError) {
  EXPECT_EXIT(::_exit(opened_by_a_program_without({0, 1, 2}) > 2), ::testing::ExitedWithCode(1), "");
  EXPECT_EXIT(::_exit(opened_by_a_program_without({1}) > 2), ::testing::ExitedWithCode(1), "");
  const auto can_be_used = [] {
    opened_by_a_program_without({0, 1, 2});
    char byte = 0;
    return ::read(0, &byte, 1) >= 0 || ::write(1, &byte, 1) >= 0 || ::write(2, &byte, 1) >= 0;
  };
  EXPECT_EXIT(::_exit(can_be_used()), ::testing::ExitedWithCode(0), "");
}

struct EndBySignal : ::testing::Test, TestProgram {
  const forms::EndSignals signals;

  // Its own end doesn't close the session.
  static constexpr const char* panel_name = "frmKVT71344";

  EndBySignal() {
    end_on(program, signals);
    choose(form<frmStartup>().cboDeviceSelect, 1);
  }
  SensorPanel& panel() { return dynamic_cast<SensorPanel&>(program.forms.touch(panel_name)); }
  bool called(const char* call) { return std::ranges::count(recorder.calls, call) > 0; }
};

TEST_F(EndBySignal, AnIdleProgramEndsAtItsNextTurn) {
  program.runtime.service();
  std::raise(SIGTERM);
  bool ended = false;
  try {
    program.runtime.service();
  } catch (const forms::EndProgram&) {
    ended = true;
  }
  EXPECT_TRUE(ended);
  EXPECT_TRUE(program.runtime.ended());
  EXPECT_FALSE(program.forms.front());
}

TEST_F(EndBySignal, ALoopIsStoppedAndTheSessionClosed) {
  user.at_yield = [&] {
    if (store.Sample_Count == 20 && signals.first() == 0) std::raise(SIGTERM);
  };
  recorder.calls.clear();
  EXPECT_TRUE(ends([&] { forms::user::click(panel().cmdCollectData); }));
  EXPECT_EQ(store.Sample_Count, 20);
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_TRUE(called("WDU_VB_Uninit"));
  EXPECT_EQ(program.forms.loaded(panel_name), nullptr);
}

TEST_F(EndBySignal, ASessionThatTheUserHoldsIsClosed) {
  workbench().Show();
  workbench().ChKManUsbConn.Value = 1;
  click(workbench().cmdUSBConnect);
  ASSERT_NE(store.Usb_Open, 0);
  recorder.calls.clear();
  std::raise(SIGHUP);
  EXPECT_TRUE(ends([&] { program.runtime.DoEvents(); }));
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_TRUE(called("WDU_VB_Uninit"));
  EXPECT_TRUE(user.boxes.empty());
}

struct Failing final : forms::Form {
  Failing(forms::FormSet& forms, std::string name) : Form(forms, std::move(name), "") {}
  void Form_Unload(bool&) override { forms::raise_error(forms::overflow); }
};

TEST_F(EndBySignal, WhatFailsOrAsksOnTheWayDoesNotHoldItUp) {
  program.forms.add("failing",
                    [&](std::string name) { return std::make_unique<Failing>(program.forms, name); });
  program.forms.touch("failing").Show();
  workbench().Show();
  program.runtime.post([&] { program.runtime.MsgBox("Go on?"); });
  std::raise(SIGINT);
  EXPECT_TRUE(ends([&] { program.runtime.DoEvents(); }));
  EXPECT_TRUE(user.errors.empty());
  EXPECT_TRUE(user.boxes.empty());
}

// As when Qt exits because its X server has died.
TEST_F(EndBySignal, AnExitInALoopClosesTheSession) {
  struct Teller final : boards::Driver::Observer {
    void call_begins() override {}
    void call_ended(const boards::CallRecord& record) override { std::cerr << record.call << '\n'; }
  } teller;
  const auto collect_and_exit = [&] {
    const SessionGuard guard(program);
    user.at_yield = [&] {
      if (store.Sample_Count < 20) return;
      board.observer = &teller;
      std::exit(1);
    };
    click(panel().cmdCollectData);
  };
  EXPECT_EXIT(collect_and_exit(), ::testing::ExitedWithCode(1),
              "^WDU_ResetDevice\nCloseHandle\nWDU_VB_Uninit\n$");
}

TEST_F(EndBySignal, BehindTheGuardAnExitIsAnyExit) {
  const auto exit_behind = [&] {
    { const SessionGuard guard(program); }
    click(workbench().cmdUSBConnect);
    recorder.before_call = [] { std::cerr << "a call"; };
    std::exit(1);
  };
  EXPECT_EXIT(exit_behind(), ::testing::ExitedWithCode(1), "^$");
}

TEST_F(EndBySignal, WithoutASessionNothingIsClosed) {
  const auto exit_at_once = [&] {
    const SessionGuard guard(program);
    recorder.before_call = [] { std::cerr << "a call"; };
    std::exit(1);
  };
  ASSERT_EQ(store.Usb_Open, 0);
  EXPECT_EXIT(exit_at_once(), ::testing::ExitedWithCode(1), "^$");
}

}  // namespace
}  // namespace varzelin::testing
