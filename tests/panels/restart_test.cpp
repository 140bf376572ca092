// Handlers that begin a collection anew from inside the running one.
#include "support/kvt71346_fixture.h"

namespace varzelin::testing {
namespace {

struct Restart : Kvt71346Fixture {
  int ends = 0;  // how often a collection's end effects came

  void SetUp() override {
    Kvt71346Fixture::SetUp();
    board.set_timing(false);
    set_mode(2);
  }
  // Runs a collection; `action` comes at 15 samples of it, the stop button at `count` samples of the
  // collection that follows.
  void run(std::function<void()> action, std::int32_t count) {
    enum { first, restarting, second, stopped } stage = first;
    user.at_yield = [&, stage]() mutable {
      if (stage == first && store.Sample_Count == 15) {
        stage = restarting;
        program.runtime.post(action);
      } else if (stage == restarting && store.Sample_Count < 15 && store.Sample_Run == -1) {
        stage = second;
      } else if (stage == second && store.Sample_Count == count) {
        stage = stopped;
        program.runtime.post(clicking(panel->cmdStopData));
      }
    };
    forget_traffic();
    click(panel->cmdCollectData);
    user.at_yield = nullptr;
  }
  void expect_one_session() {
    EXPECT_EQ(std::ranges::count(recorder.calls, "WDU_VB_Init"), 1);
    EXPECT_EQ(std::ranges::count(recorder.calls, "WDU_VB_Uninit"), 1);
    EXPECT_TRUE(std::ranges::all_of(recorder.packets, [](const Packet& p) { return p.status == 0; }));
    EXPECT_TRUE(user.errors.empty());
    expect_idle();
  }
};

TEST_F(Restart, EnterGoesOnWithTheNewInterval) {
  run(
      [&] {
        panel->txtInterval.Text = "500";
        forms::user::enter(panel->txtInterval);
      },
      4);
  expect_one_session();
  EXPECT_EQ(store.Sample_Count, 4);
  EXPECT_EQ(store.IntervalMs, 500);
  EXPECT_EQ(panel->txtTime1.Text, "492");
  EXPECT_EQ(store.Trace_Pos, 403);
  EXPECT_EQ(store.Sample_Value[10], 1);
}

TEST_F(Restart, TheFirstSampleAfterItWaitsForTheNewInterval) {
  double entered = 0;
  double read = 0;
  recorder.before_call = [&] {
    if (entered != 0 && read == 0 && store.Xfer_Size == 2) read = clock.milliseconds();
  };
  // In the wait for a sample, so that no transfer of the pass before is still to come.
  at(
      [&] {
        return store.Sample_Count == 12 && store.Pipe_Num == 2 && store.Xfer_Size == 3 &&
               store.Trace_Pos == 401;
      },
      [&] {
        entered = clock.milliseconds();
        panel->txtInterval.Text = "3000";
        at([&] { return read != 0; }, clicking(panel->cmdStopData));
        forms::user::enter(panel->txtInterval);
      });
  click(panel->cmdCollectData);
  EXPECT_NEAR(read - entered, 2992, 1.1);
}

TEST_F(Restart, TheAutomaticScaleGoesOnWithTheNewScale) {
  run([&] { forms::user::click(panel->cmdAutoScale); }, 20);
  expect_one_session();
  EXPECT_EQ(store.Sample_Count, 20);
  EXPECT_EQ(panel->txtScale.Text, "5865");  // 1.15 x 5100, a reading of the scene at start
  EXPECT_EQ(store.Scale_Max, 5865);
  EXPECT_EQ(store.GraphUnit1, "Scaled");
}

TEST_F(Restart, TheSecondModeListGoesOnInTheNewMode) {
  run([&] { forms::user::click_row(panel->LstMode2, 1); }, 4);
  expect_one_session();
  EXPECT_EQ(panel->ModeIndex, 3);
  EXPECT_EQ(sent_on(2).end()[-2], (std::vector{0, 0x88, 0x04}));
  EXPECT_EQ(store.Sample_Count, 4);
}

TEST_F(Restart, TheInternalTimeBaseGoesOnInTheInternalMode) {
  set_mode(5);
  panel->OptTimeBase(1).select_quietly();
  run([&] { forms::user::click(panel->OptTimeBase(0)); }, 4);
  expect_one_session();
  EXPECT_EQ(panel->ModeIndex, 2);
  EXPECT_EQ(panel->Lst71346_Mode.ListIndex, 2);
}

// In the list of modes the time base changes with the row, and its option button starts anew.
TEST_F(Restart, ARowWithTheOtherTimeBaseGoesOnToo) {
  run([&] { forms::user::click_row(panel->Lst71346_Mode, 5); }, 4);
  expect_one_session();
  EXPECT_TRUE(panel->OptTimeBase(1).Value);
  EXPECT_EQ(store.EventsEnabled, -1);
  EXPECT_EQ(store.Sample_Count, 4);
}

TEST_F(Restart, PowerDownByTheModeListDoesNotStop) {
  at(count_reaches(12), [&] {
    forms::user::click_row(panel->Lst71346_Mode, 0);
    EXPECT_EQ(store.Sample_Run, -1);
    program.runtime.post(clicking(panel->cmdStopData));
  });
  click(panel->cmdCollectData);
  expect_idle();
}

TEST_F(Restart, AModeThatTheListRefusesEndsTheCollection) {
  set_mode(3);
  at(count_reaches(12), clicking(panel->OptTimeBase(1)));
  click(panel->cmdCollectData);
  EXPECT_EQ(user.errors, std::vector<int>{forms::invalid_property_value});
  expect_idle();
}

// Wherever in a pass it comes: at each yield in turn.
TEST_F(Restart, AtAnyYieldTheNewCollectionStartsFromItsFirstSample) {
  for (int offset = 0; offset < 14; ++offset) {
    int yields = -1;
    bool entered = false;
    int passes = 0;
    store.Sample_Count = 0;
    user.at_yield = [&] {
      if (store.Sample_Count >= 12 && !entered && ++yields == offset) {
        entered = true;
        program.runtime.post([&] { forms::user::enter(panel->txtInterval); });
      } else if (entered && store.Sample_Count == 3 && passes == 0) {
        ++passes;
        EXPECT_EQ(store.Sample_Value[3], 1) << offset;
        EXPECT_EQ(store.Trace_Pos, 403) << offset;
        program.runtime.post(clicking(panel->cmdStopData));
      }
    };
    click(panel->cmdCollectData);
    EXPECT_TRUE(entered);
    EXPECT_EQ(passes, 1) << offset;
    expect_idle();
    EXPECT_TRUE(user.errors.empty()) << offset;
  }
}

// Enter, and the stop button before the loop had its turn.
// A handler that writes the mode and begins anew may come in the yield of a transfer: that transfer is
// void, and the new collection goes on.
TEST_F(Restart, AtAnyYieldOfATransferTheNewCollectionGoesOn) {
  board.set_timing(true);
  for (int offset = 1; offset <= 30; ++offset) {
    int yields_behind = -1;
    user.at_yield = [&] {
      if (yields_behind < 0 && store.Sample_Count == 3) yields_behind = 0;
      if (yields_behind >= 0 && ++yields_behind == offset) {
        program.runtime.post([&] { forms::user::click_row(panel->LstMode2, 1); });
      }
      if (yields_behind > offset && store.Sample_Count == 8) {
        program.runtime.post(clicking(panel->cmdStopData));
        user.at_yield = nullptr;
      }
    };
    forget_traffic();
    click(panel->cmdCollectData);
    EXPECT_FALSE(user.at_yield) << "the collection died, offset " << offset;
    user.at_yield = nullptr;
    EXPECT_TRUE(std::ranges::all_of(recorder.packets, [](const Packet& p) { return p.status == 0; }))
        << offset;
    EXPECT_EQ(panel->txtModeByte.Text, "04") << offset;
    expect_idle();
    set_mode(2);
  }
}

TEST_F(Restart, AStopBehindItIsNotLost) {
  int later = 0;
  at(count_reaches(12), [&] {
    forms::user::enter(panel->txtInterval);
    EXPECT_EQ(store.Sample_Run, -1);
    program.runtime.post(clicking(panel->cmdStopData));
    user.at_yield = [&] {
      // Were it lost, the collection would run on.
      if (++later == 5000) program.runtime.post(clicking(panel->cmdStopData));
    };
  });
  click(panel->cmdCollectData);
  EXPECT_LT(later, 5000);
  EXPECT_LE(store.Sample_Count, 1);
  EXPECT_EQ(panel->Label18.Caption, "Data Collection Halted");
  expect_idle();
}

// An entry that fails in the restart itself is that handler's error; the loop ends as after a stop.
TEST_F(Restart, AFailedOneLeavesAnIdlePanel) {
  at(count_reaches(12), [&] {
    panel->txtScale.Text = "99999999999";
    forms::user::enter(panel->txtInterval);
  });
  click(panel->cmdCollectData);
  EXPECT_EQ(user.errors, std::vector<int>{forms::overflow});
  expect_idle();
}

// Also while the session is still being opened.
TEST_F(Restart, InTheStartOfACollectionItOpensNoSecondSession) {
  at([&] { return store.Sample_Run == -1; },
     [&] {
       panel->txtInterval.Text = "50";
       forms::user::enter(panel->txtInterval);
       EXPECT_EQ(store.Usb_Open, 0);
       at(count_reaches(3), clicking(panel->cmdStopData));
     });
  click(panel->cmdCollectData);
  EXPECT_EQ(store.Sample_Count, 3);
  EXPECT_EQ(panel->txtTime1.Text, "42");
  expect_one_session();
}

// While the loop that was stopped still closes its session, the start button begins a new one.
TEST_F(Restart, AStartInTheEndOfACollectionRuns) {
  at(count_reaches(12), [&] {
    forms::user::click(panel->cmdStopData);
    at([&] { return store.Usb_Open == 0; },
       [&] {
         store.Sample_Count = 0;
         at(count_reaches(3), clicking(panel->cmdStopData));
         panel->cmdCollectData_Click();
       });
  });
  click(panel->cmdCollectData);
  EXPECT_EQ(store.Sample_Count, 3);
  EXPECT_EQ(store.Sample_Value[2], 5100);
  expect_idle();
}

TEST_F(Restart, ThousandsOfThemDoNotGrowTheStack) {
  panel->txtInterval.Text = "0";
  int restarts = 0;
  int deepest = 0;
  const char* lowest = nullptr;
  const char* highest = nullptr;
  user.at_yield = [&] {
    const char here = 0;
    const char* address = &here;
    deepest = std::max(deepest, program.runtime.handlers_on_stack());
    if (!lowest || address < lowest) lowest = address;
    if (!highest || address > highest) highest = address;
    if (store.Man_Usb_Conn != -1 || store.Sample_Run != -1) return;
    if (program.runtime.handlers_on_stack() > 1) return;
    if (restarts < 3000) {
      ++restarts;
      program.runtime.post([&] { forms::user::enter(panel->txtInterval); });
    } else if (store.Sample_Count == 12) {
      program.runtime.post(clicking(panel->cmdStopData));
    }
  };
  click(panel->cmdCollectData);
  EXPECT_EQ(restarts, 3000);
  EXPECT_LE(deepest, 3);
  EXPECT_LT(highest - lowest, 64 * 1024);
  EXPECT_EQ(store.Sample_Count, 12);
  expect_one_session();
}

}  // namespace
}  // namespace varzelin::testing
