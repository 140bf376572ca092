// What the KVT71346/7 panel's loops have of their own: packets, scale, rows, modes that begin a collection
// anew, the file's first line.
#include "support/kvt71346_fixture.h"
#include "support/temporary_folder.h"

namespace varzelin::testing {
namespace {

struct Kvt71346Loops : Kvt71346Fixture {
  void SetUp() override {
    board.set_timing(false);
    make_measure();
  }
};

// --- timed sampling ---

TEST_F(Kvt71346Loops, ATimedPassIsTriggerRequestAndReply) {
  board.set_register(1, 0x34);
  board.set_register(2, 0x12);
  sample(2);
  ASSERT_EQ(recorder.packets.size(), 6u);
  for (const std::size_t pass : {0u, 3u}) {
    EXPECT_EQ(recorder.packets[pass], (Packet{2, {0x00, 0x88, 0x00}, 0, 3}));
    EXPECT_EQ(recorder.packets[pass + 1], (Packet{2, {0x02, 0x89}, 0, 2}));
    EXPECT_EQ(recorder.packets[pass + 2].pipe, 130);
    EXPECT_EQ(recorder.packets[pass + 2].size, 6u);
    EXPECT_EQ(recorder.packets[pass + 2].bytes[0], 2);
  }
}

TEST_F(Kvt71346Loops, ATimedReadWaitsAHundredMillisecondsForItsReply) {
  std::vector<double> times;
  recorder.before_call = [&] {
    if (store.Man_Usb_Conn == -1) times.push_back(clock.milliseconds());
  };
  sample(2);
  EXPECT_NEAR(times.at(1) - times.at(0), 8, 0.1);
  EXPECT_NEAR(times.at(2) - times.at(1), 100, 0.1);
}

TEST_F(Kvt71346Loops, ATimedRunHidesTheTimeBase) {
  at_yield([&] { return store.Sample_Count == 2; },
           [&] {
             EXPECT_FALSE(panel.frmTimeBase.Visible);
             forms::user::click(panel.cmdEndSampling);
           });
  click(panel.cmdSample);
  expect_idle();
}

TEST_F(Kvt71346Loops, WritingTheModeInATimedRunGoesOutAtOnce) {
  at_yield(count_reaches(2), [&] {
    set_mode(3);
    forget_traffic();
    forms::user::click(panel.cmdSetMode);
    ASSERT_EQ(recorder.packets.size(), 1u);
    EXPECT_EQ(recorder.packets[0], (Packet{2, {0x00, 0x88, 0x04, 0x00}, 0, 4}));
    EXPECT_EQ(recorder.calls, std::vector<std::string>{"WDU_Transfer"});
    program.runtime.post(clicking(panel.cmdEndSampling));
  });
  click(panel.cmdSample);
  expect_idle();
}

// --- real time ---

TEST_F(Kvt71346Loops, APassReadsFirstAndTriggersTheNextConversion) {
  collect(2);
  ASSERT_GE(recorder.packets.size(), 6u);
  for (const std::size_t pass : {0u, 3u}) {
    EXPECT_EQ(recorder.packets[pass], (Packet{2, {0x02, 0x89}, 0, 2}));
    EXPECT_EQ(recorder.packets[pass + 1].pipe, 130);
    EXPECT_EQ(recorder.packets[pass + 1].size, 5u);
    EXPECT_EQ(recorder.packets[pass + 2], (Packet{2, {0x00, 0x88, 0x00}, 0, 3}));
  }
}

TEST_F(Kvt71346Loops, ItWakesEightMillisecondsEarlyAndScrollsTheFullChartSlowly) {
  EXPECT_EQ(panel.model.wake_margin, 8);
  EXPECT_EQ(panel.model.sleep_margin, 8);
  EXPECT_EQ(panel.model.full_trace_sleep, 10);
}

TEST_F(Kvt71346Loops, ACollectionTakesTheIntervalOfItsBox) {
  panel.txtInterval.Text = "57.9";
  collect(1);
  EXPECT_EQ(store.IntervalMs, 57);
}

TEST_F(Kvt71346Loops, ShowsTheSampleBelowTheCount) {
  recorder.before_call = [&] { queue_count(101 + store.Sample_Count); };
  collect(5);
  EXPECT_EQ(store.Sample_Value[4], 105);
  EXPECT_EQ(panel.txtReading.Text, "105");
}

// The division fails in the first pass. The report is all that comes of it; the panel starts again
// once there is a scale.
TEST_F(Kvt71346Loops, AScaleOfZeroIsReportedAndTheNextEntryStartsAnew) {
  panel.txtScale.Text = "";
  click(panel.cmdCollectData);
  EXPECT_EQ(user.errors, std::vector<int>{forms::division_by_zero});
  panel.txtScale.Text = "15000";
  at_yield(count_reaches(3), clicking(panel.cmdStopData));
  press_enter(panel.txtInterval);
  EXPECT_GE(store.Sample_Count, 3);
  EXPECT_EQ(user.errors.size(), 1u);
  expect_ended();
}

TEST_F(Kvt71346Loops, TheRowIsTheWholePartAndThePlotsTopWhenItIsOutside) {
  struct Case {
    int reading;
    const char* scale;
    int row;
  };
  for (const Case& c :
       {Case{0, "15000", 304}, Case{1, "15000", 303}, Case{49, "15000", 303}, Case{50, "15000", 302},
        Case{7500, "15000", 152}, Case{14950, "15000", 1}, Case{14951, "15000", 1}, Case{15000, "15000", 1},
        Case{65535, "15000", 1}, Case{100, "-15000", 1}, Case{0, "-15000", 304}}) {
    panel.txtScale.Text = c.scale;
    reading(c.reading);
    collect(2);
    EXPECT_EQ(store.Trace_Y[403], c.row) << c.reading << " of " << c.scale;
    board.clear();
  }
}

// --- modes that begin a collection anew ---

struct Kvt71346Restart : Kvt71346Loops {
  // The user acts at 15 samples and stops the collection that follows at its fourth.
  void run(std::function<void()> action) {
    at_yield(count_reaches(15), [this, action = std::move(action)] {
      at_yield([this] { return store.Sample_Run == -1 && store.Sample_Count == 4; },
               clicking(panel.cmdStopData));
      action();
    });
    click(panel.cmdCollectData);
    EXPECT_EQ(store.Sample_Count, 4);
    EXPECT_EQ(calls("WDU_VB_Init"), 1u);
    EXPECT_TRUE(user.errors.empty());
    expect_ended();
  }
};

TEST_F(Kvt71346Restart, TheSecondModeListGoesOnInTheNewMode) {
  run([&] { forms::user::click_row(panel.LstMode2, 1); });
  EXPECT_EQ(panel.ModeIndex, 3);
  EXPECT_EQ(sent_on(2).end()[-2], (std::vector{0, 0x88, 0x04}));
}

TEST_F(Kvt71346Restart, TheInternalTimeBaseGoesOnInTheInternalMode) {
  set_mode(5);
  panel.OptTimeBase(1).select_quietly();
  run(clicking(panel.OptTimeBase(0)));
  EXPECT_EQ(panel.ModeIndex, 2);
  EXPECT_EQ(panel.Lst71346_Mode.ListIndex, 2);
}

// In the list of modes the time base changes with the row, and its option button starts anew.
TEST_F(Kvt71346Restart, ARowWithTheOtherTimeBaseGoesOnToo) {
  run([&] { forms::user::click_row(panel.Lst71346_Mode, 5); });
  EXPECT_TRUE(panel.OptTimeBase(1).Value);
  EXPECT_EQ(store.EventsEnabled, -1);
}

TEST_F(Kvt71346Restart, PowerDownByTheModeListDoesNotStop) {
  at_yield(count_reaches(12), [&] {
    forms::user::click_row(panel.Lst71346_Mode, 0);
    EXPECT_EQ(store.Sample_Run, -1);
    program.runtime.post(clicking(panel.cmdStopData));
  });
  click(panel.cmdCollectData);
  expect_ended();
}

TEST_F(Kvt71346Restart, AModeThatTheListRefusesEndsTheCollection) {
  set_mode(3);
  at_yield(count_reaches(12), clicking(panel.OptTimeBase(1)));
  click(panel.cmdCollectData);
  EXPECT_EQ(user.errors, std::vector<int>{forms::invalid_property_value});
  expect_ended();
}

// A handler that writes the mode and begins anew may come in the yield of a transfer: that transfer is
// void, and the new collection goes on.
TEST_F(Kvt71346Restart, AtAnyYieldOfATransferTheNewCollectionGoesOn) {
  board.set_timing(true);
  for (int offset = 1; offset <= 30; ++offset) {
    int yields_behind = -1;
    user.at_yield = [&] {
      if (yields_behind < 0 && store.Sample_Count == 3) yields_behind = 0;
      if (yields_behind >= 0 && ++yields_behind == offset) {
        program.runtime.post([&] { forms::user::click_row(panel.LstMode2, 1); });
      }
      if (yields_behind > offset && store.Sample_Count == 8) {
        program.runtime.post(clicking(panel.cmdStopData));
        user.at_yield = nullptr;
      }
    };
    forget_traffic();
    click(panel.cmdCollectData);
    EXPECT_FALSE(user.at_yield) << "the collection died, offset " << offset;
    user.at_yield = nullptr;
    EXPECT_TRUE(std::ranges::all_of(recorder.packets, [](const Packet& p) { return p.status == 0; }))
        << offset;
    EXPECT_EQ(panel.txtModeByte.Text, "04") << offset;
    expect_ended();
    set_mode(2);
  }
}

// --- recording ---

TEST_F(Kvt71346Loops, TheFilesFirstLineHasTheMode) {
  const TemporaryFolder folder;
  panel.txtFilePath.Text = folder.path("Data.txt");
  panel.txtModeByte.Text = "04";
  store.Sample_Count = 20;
  click(panel.cmdStartRec(0));
  EXPECT_TRUE(TemporaryFolder::content(folder.path("Data.txt"))
                  .starts_with("Seq,Lux,Integration,Mode 04,Interval 120, 11/25/2008,"));
}

}  // namespace
}  // namespace varzelin::testing
