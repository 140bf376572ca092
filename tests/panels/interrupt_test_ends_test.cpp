// How the interrupt test ends before its time: aborted, with a panel closed, without the board, by an error.
#include "support/interrupt_test_fixture.h"

namespace varzelin::testing {
namespace {

struct InterruptTestEnds : InterruptTestRun {
  // A course that goes to its end by itself, by Solution 2.
  void run_through() { run({9000, 9000, 1000, 700}, {300, 300}); }
  std::ptrdiff_t results_read() {
    return std::ranges::count(sent_on(boards::pipe_i2c_out), std::vector{2, 0x89, 2});
  }
  void expect_runs_again() {
    run_through();
    expect_released("Test Completed");
  }
};

// --- Abort ---

TEST_F(InterruptTestEnds, AbortEndsTheWaitForTheHighInterrupt) {
  pin_is_low = [] { return false; };
  later([this] { return test->ShpIndrd(0).FillColor.get() == lamp(12); }, 200, clicking(test->cmdAbort1));
  run({9000}, {500});
  expect_aborted();
  EXPECT_EQ(steps(), (std::vector{12, 0, 0, 0, 0, 0}));
  EXPECT_TRUE(user.errors.empty());
}

TEST_F(InterruptTestEnds, AbortEndsTheClearingOfTheHighInterrupt) {
  pin_is_low = [] { return true; };
  later(message_is("Clearing High Interrupt"), 200, clicking(test->cmdAbort1));
  run({9000}, {500});
  expect_aborted();
  EXPECT_EQ(steps(), (std::vector{10, 10, 12, 0, 0, 0}));
}

TEST_F(InterruptTestEnds, AbortEndsTheWaitForTheLowInterrupt) {
  pin_is_low = message_is("Waiting for Interrupt High");
  later(message_is("Waiting for Interrupt Low"), 200, clicking(test->cmdAbort1));
  run({9000}, {500});
  expect_aborted();
  EXPECT_EQ(steps(), (std::vector{10, 10, 10, 0, 0, 0}));
  EXPECT_EQ(texts(test->lblProx), (Texts{"9000", ""}));
}

TEST_F(InterruptTestEnds, AbortEndsAHighInterruptThatNeverCounts) {
  pin_is_low = [] { return true; };
  later([this] { return test->ShpIndrd(0).FillColor.get() == lamp(12); }, 200, clicking(test->cmdAbort1));
  run({1000}, {500});
  expect_aborted();
  EXPECT_EQ(steps(), (std::vector{12, 0, 0, 0, 0, 0}));
}

TEST_F(InterruptTestEnds, AbortInTheLastReadingOfALowInterruptThatDoesntCountReadsNoMore) {
  const auto reads_at_low = [this] {
    return test->lblMessage.Caption == "Waiting for Interrupt Low" && store.IntPinAsserted != 0 &&
           store.Xfer_Size == 5;
  };
  std::ptrdiff_t read = 0;
  at_yield(reads_at_low, [&] {
    read = results_read();
    forms::user::click(test->cmdAbort1);
  });
  run({9000}, {500});
  expect_aborted();
  EXPECT_GT(read, 0);
  EXPECT_EQ(results_read(), read);
}

TEST_F(InterruptTestEnds, AbortIsNotSeenOnceTheLowInterruptCounts) {
  at_yield(message_is("Received Interrupt Low"), clicking(test->cmdAbort1));
  run_through();
  EXPECT_FALSE(user.at_yield);
  expect_released("Test Completed");
}

TEST_F(InterruptTestEnds, AbortSaysThatItIsSeenWhileTheSessionIsClosed) {
  bool seen = false;
  pin_is_low = [] { return false; };
  at_yield(message_is("Waiting for Interrupt High"), [&] {
    forms::user::click(test->cmdAbort1);
    at_yield(message_is("Exec Abort"), [&] {
      seen = true;
      EXPECT_TRUE(test->cmdRunCase1.Visible);
      EXPECT_EQ(store.Man_Usb_Conn, -1);
    });
  });
  run({9000}, {500});
  EXPECT_TRUE(seen);
  expect_aborted();
}

TEST_F(InterruptTestEnds, AnAbortOfARunBeforeDoesntEndTheNext) {
  click(test->cmdAbort1);
  expect_runs_again();
}

// --- a second start ---

TEST_F(InterruptTestEnds, ATestThatRunsIsNotStartedAgain) {
  const std::pair<const char*, std::function<bool()>> moments[] = {
      {"connecting", [this] { return store.Man_Usb_Conn != 0 && store.Usb_Open == 0; }},
      {"running", message_is("Waiting for Interrupt Low")},
      {"disconnecting",
       [this] { return test->lblMessage.Caption == "Received Interrupt Low" && store.Usb_Open == 0; }}};
  for (const auto& [moment, holds] : moments) {
    test->lblMessage.Caption = "";
    forget_traffic();
    at_yield(holds, [this] { test->cmdRunCase1_Click(); });
    run_through();
    EXPECT_FALSE(user.at_yield) << moment;
    expect_released("Test Completed");
    EXPECT_EQ(calls("WDU_VB_Init"), 1u) << moment;
    EXPECT_EQ(results_read(), 8) << moment;
  }
}

// Execute in the middle of a loop's exchange would take its reply, and close its session in the end.
TEST_F(InterruptTestEnds, DoesntBeginInALoopOfASensorPanelWhichLosesNothing) {
  constexpr int light_continuous = 5;
  constexpr double lux = 500;
  board.scene() = {.light_lux = lux, .ir_counts = 0};
  for (auto [start, stop] : {std::pair{&sensor->cmdCollectData, &sensor->cmdStopData},
                             {&sensor->cmdSample, &sensor->cmdEndSampling}}) {
    SCOPED_TRACE(start->name());
    sensor->choose_measurement(light_continuous);
    store.Sample_Count = 0;
    test->lblMessage.Caption = "";
    later([this] { return store.Sample_Count == 20 && sensor->within_exchange(); }, 0,
          [this, end = stop] {
            forget_traffic();
            click(test->cmdRunCase1);
            EXPECT_EQ(test->lblMessage.Caption, "Stop Data Collection First");
            EXPECT_TRUE(sent_on(boards::pipe_i2c_out).empty());
            EXPECT_TRUE(test->cmdRunCase1.Visible);
            later(count_reaches(40), 0, clicking(*end));
          });
    user.yields_left = 200'000;
    click(*start);
    EXPECT_EQ(store.Sample_Count, 40);
    const auto shown = forms::Val(sensor->txtReading.Text);
    for (std::size_t i = 1; i < 40; ++i) EXPECT_NEAR(store.Sample_Value[i], shown, 1) << i;
    EXPECT_EQ(store.Usb_Open, 0);
  }
  expect_runs_again();
}

TEST_F(InterruptTestEnds, DoesntBeginInALoopOfTheOtherModelsPanel) {
  auto& other = dynamic_cast<MultiFunctionPanel&>(program.forms.touch("frmKVT71390"));
  later([this] { return store.Sample_Count == 20; }, 0,
        [this, &other] {
          click(test->cmdRunCase1);
          EXPECT_EQ(test->lblMessage.Caption, "Stop Data Collection First");
          click(other.cmdStopData);
        });
  user.yields_left = 200'000;
  click(other.cmdCollectData);
  EXPECT_EQ(store.Sample_Count, 20);
  expect_runs_again();
}

// --- a panel is closed ---

// Closes a panel so many yields after Execute. False: the test had completed before.
bool ends_as_aborted_when_closed(const char* panel, int yields) {
  struct Once : InterruptTestEnds {
    void TestBody() override {}
  } once;
  once.SetUp();
  bool closed = false;
  bool ran = false;
  once.later([] { return true; }, yields,
             [&] {
               closed = true;
               ran = !once.test->cmdRunCase1.Visible;
               once.program.forms.unload(panel);
               // What is clicked on the panel that is left doesn't bring the other one back, nor reach the
               // board.
               const std::size_t packets = once.recorder.packets.size();
               once.test->cmdSampleII_Click();
               once.test->cmdRecordLux_Click(0);
               once.test->cmdWriteLimits_Click();
               once.test->OptResolution_Click(0);
               once.test->cmdRunCase1_Click();
               EXPECT_EQ(once.recorder.packets.size(), packets) << panel << " after " << yields;
             });
  once.run_through();
  if (!closed) return false;
  const std::string where = std::string(panel) + " after " + std::to_string(yields);
  EXPECT_FALSE(once.program.forms.loaded(panel)) << where;
  EXPECT_EQ(once.store.Man_Usb_Conn, 0) << where;
  EXPECT_EQ(once.store.Usb_Open, 0) << where;
  EXPECT_TRUE(once.test->cmdRunCase1.Visible) << where;
  EXPECT_TRUE(once.user.errors.empty()) << where;
  if (!ran && once.test->lblMessage.Caption == "Test Completed") return false;  // closed behind the last step
  EXPECT_EQ(once.test->lblMessage.Caption, "Test Aborted") << where;
  return true;
}

TEST_F(InterruptTestEnds, ClosingAPanelEndsTheTestWhereverItIs) {
  constexpr int connecting = 10'003;
  constexpr int step = 7;
  for (const char* panel : {"frmKVT71385", "frm71385INTR"}) {
    EXPECT_TRUE(ends_as_aborted_when_closed(panel, 100)) << panel;
    int moments = 0;
    while (moments < 200 && ends_as_aborted_when_closed(panel, connecting + step * moments)) ++moments;
    EXPECT_LT(moments, 200) << panel;
    EXPECT_GT(moments, 20) << panel;
  }
}

TEST_F(InterruptTestEnds, TheSensorPanelThatWasClosedIsLoadedByTheNextExecute) {
  program.forms.unload("frmKVT71385");
  program.forms.sweep();
  run({2000, 2000, 1000}, {500, 500});  // at 12 bits
  EXPECT_TRUE(program.forms.loaded("frmKVT71385"));
  expect_released("Test Completed");
}

TEST_F(InterruptTestEnds, TheEndOfTheProgramEndsIt) {
  at_yield(message_is("Waiting for Interrupt Low"), [this] { program.runtime.end(); });
  proximities = {9000};
  lights = {500};
  EXPECT_TRUE(ends([this] { forms::user::click(test->cmdRunCase1); }));
  EXPECT_EQ(test->lblMessage.Caption, "Waiting for Interrupt Low");
}

// --- errors ---

TEST_F(InterruptTestEnds, AnOverflowEndsTheTestAsAbortedAndIsReported) {
  constexpr int overflow = 6;
  const std::pair<TextBox&, std::vector<int>> boxes[] = {{test->txtILow, {12, 0, 0, 0, 0, 0}},
                                                         {test->txtCase2Sol1Lux, {10, 10, 10, 10, 0, 0}},
                                                         {test->txtDeltaTime, {10, 10, 10, 10, 0, 10}},
                                                         {test->txtDeltaADC, {10, 10, 10, 10, 0, 10}}};
  for (const auto& [box, shown] : boxes) {
    const std::string before = box.Text;
    box.Text = "1E999";
    user.errors.clear();
    run_through();
    expect_aborted();
    EXPECT_EQ(user.errors, std::vector{overflow}) << box.name();
    EXPECT_EQ(steps(), shown) << box.name();
    box.Text = before;
    expect_runs_again();
  }
}

TEST_F(InterruptTestEnds, ADelayBeyondTheClocksIsAnOverflow) {
  test->txtDeltaTime.Text = "2147483648";
  run_through();
  expect_aborted();
  EXPECT_EQ(user.errors, std::vector{6});
}

// --- the board ---

struct InterruptTestFaults : InterruptTestEnds {
  // The transfers of a course without a fault.
  std::size_t transfers() {
    run_through();  // the first one finds another measurement
    forget_traffic();
    run_through();
    return recorder.packets.size();
  }
  // An abort once it takes long, as a user does who sees that nothing comes.
  void run_patiently() {
    later([] { return true; }, 40'000, clicking(test->cmdAbort1));
    run_through();
    user.at_yield = nullptr;
  }
  bool completed() { return test->lblMessage.Caption == "Test Completed"; }
};

TEST_F(InterruptTestFaults, WithoutTheBoardAnAbortEndsItWhereverThePlugWasPulled) {
  const std::size_t all = transfers();
  std::size_t aborted = 0;
  for (std::size_t good = 0; good < all; ++good) {
    board.unplug_after(good);
    run_patiently();
    EXPECT_FALSE(board.plugged()) << good;
    if (!completed()) ++aborted;
    expect_released(completed() ? "Test Completed" : "Test Aborted");
    board.clear();
    board.plug();
  }
  // The pin reads low then, and once the high interrupt has been cleared that is the low one.
  EXPECT_GT(aborted, all / 3);
  EXPECT_LT(aborted, all);
}

TEST_F(InterruptTestFaults, ATransferThatFailsLeavesNothingHeld) {
  const std::size_t all = transfers();
  ASSERT_GT(all, 60u);
  for (std::size_t good = 0; good < all; ++good) {
    ASSERT_TRUE(board.fail_transfers(1, boards::statuses::time_out, good));
    run_patiently();
    EXPECT_EQ(board.transfers_to_fail(), 0u) << good;
    expect_released(completed() ? "Test Completed" : "Test Aborted");
    board.clear();
  }
}

}  // namespace
}  // namespace varzelin::testing
