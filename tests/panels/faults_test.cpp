// What may go wrong on the bus in a run, at each of its transfers in turn and on every panel: the run is over
// in time, the samples taken so far are kept and can be written, and the next run works.
#include "support/panel_fixture.h"
#include "support/temporary_folder.h"

namespace varzelin::testing {
namespace {

constexpr std::int32_t run_length = 26;
// What a transfer of the kit takes at most.
constexpr double time_out_ms = 1000;

struct PanelFaults : PanelTest {
  const TemporaryFolder folder;
  const std::string path = folder.path("Data.txt");
  // Of a run in which nothing fails.
  std::size_t transfers = 0;
  double duration = 0;
  std::int32_t last_value = 0;
  // Of the transfer that is to fail: the samples there were, and whether that of its pass was in already.
  std::array<std::int32_t, SensorPanel::last_sample + 1> samples{};
  std::int32_t count = 0;
  bool measured = false;

  void SetUp() override {
    make_measure();
    panel.txtFilePath.Text = path;
    panel.CboIntTime(5).ListIndex = 100;
  }
  // A run that its button stops at run_length samples, unless it ends before; long enough for a conversion of
  // a sensor that had lost its power. Gives its time.
  double run(bool real_time) {
    user.yields_left = 5'000'000;
    panel.txtInterval.Text = "30";
    store.Sample_Count = 0;
    forget_traffic();
    const double start = clock.milliseconds();
    at_yield(count_reaches(run_length), clicking(real_time ? panel.cmdStopData : panel.cmdEndSampling));
    click(real_time ? panel.cmdCollectData : panel.cmdSample);
    user.at_yield = nullptr;
    return clock.milliseconds() - start;
  }
  void run_undisturbed(bool real_time) {
    duration = run(real_time);
    transfers = recorder.packets.size();
    last_value = store.Sample_Value[run_length - 1];
    ASSERT_EQ(store.Sample_Count, run_length);
    ASSERT_GE(transfers, 2u * run_length);
  }
  // Keeps what there is when the transfer behind `position` others begins.
  void watch(std::size_t position) {
    recorder.before_call = [this, position] {
      if (store.Usb_Status != boards::success || recorder.packets.size() != position) return;
      samples = store.Sample_Value;
      count = store.Sample_Count;
      measured = samples[static_cast<std::size_t>(count)] != 1;  // the value that a run begins with
    };
  }
  bool failed() const {
    return std::ranges::any_of(recorder.packets, [](const Packet& packet) { return packet.status != 0; });
  }
  bool checked() const { return panel.model.transfers == Transfers::checked; }
  // A failed transfer ends a real-time run, and a failed read a timed one of a panel that checks it.
  void expect_kept(bool real_time) {
    if (real_time) {
      EXPECT_EQ(store.Sample_Count, count + (measured ? 1 : 0));
    } else if (checked()) {
      EXPECT_EQ(store.Sample_Count, count);
    } else {
      EXPECT_EQ(store.Sample_Count, run_length);
    }
    EXPECT_TRUE(std::ranges::equal(std::span(samples).first(static_cast<std::size_t>(count)),
                                   std::span(store.Sample_Value).first(static_cast<std::size_t>(count))));
  }
  void expect_usable(bool real_time) {
    expect_idle();
    EXPECT_EQ(store.Usb_Open, real_time ? 0 : usb_open_after_sampling());
    EXPECT_TRUE(user.errors.empty());
    EXPECT_TRUE(user.boxes.empty());
    if (GetParam() != frmKVT71338::form_name) expect_file();  // that one never gets to the samples
    // A sensor may have lost its power, and a session that a timed run leaves open is that of the board that
    // was pulled.
    make_measure();
    run(real_time);
    EXPECT_FALSE(failed());
    EXPECT_EQ(store.Sample_Count, run_length);
    EXPECT_EQ(store.Sample_Value[run_length - 1], last_value);
    EXPECT_EQ(panel.ShpAttach.FillColor.get(), lamp(10));
    expect_idle();
  }
  void expect_file() {
    click(panel.cmdStartRec(0));
    if (store.Sample_Count < 20) {
      ASSERT_EQ(user.boxes.size(), 1u);
      EXPECT_EQ(user.boxes[0].text, "Save More Measurements");
      user.boxes.clear();
      return;
    }
    const std::string text = TemporaryFolder::content(path);
    EXPECT_EQ(std::ranges::count(text, '\n'), store.Sample_Count - 11 + 2);
    EXPECT_TRUE(text.ends_with("END\r\n"));
    EXPECT_TRUE(user.boxes.empty());
  }

  void pull_the_plug_everywhere(bool real_time) {
    run_undisturbed(real_time);
    for (std::size_t position = 0; position < transfers && !HasFailure(); ++position) {
      SCOPED_TRACE("plug pulled after " + std::to_string(position) + " transfers");
      watch(position);
      board.unplug_after(position);
      const double time = run(real_time);
      recorder.before_call = nullptr;
      ASSERT_FALSE(board.plugged());
      EXPECT_LE(time, duration + time_out_ms);
      EXPECT_EQ(panel.ShpAttach.FillColor.get(), lamp(12));
      expect_kept(real_time);
      board.plug();
      expect_usable(real_time);
    }
  }
  void fail_everywhere(bool real_time, boards::Status status) {
    run_undisturbed(real_time);
    for (std::size_t position = 0; position < transfers && !HasFailure(); ++position) {
      SCOPED_TRACE("failed after " + std::to_string(position) + " transfers");
      watch(position);
      board.fail_transfers(1, status, position);
      const double time = run(real_time);
      recorder.before_call = nullptr;
      board.clear();
      EXPECT_TRUE(failed());
      // A request that failed, and the reply to it that doesn't come.
      EXPECT_LE(time, duration + 2 * time_out_ms);
      expect_kept(real_time);
      expect_usable(real_time);
    }
  }
};

TEST_P(PanelFaults, PlugPulledInARealTimeRun) {
  pull_the_plug_everywhere(true);
}
TEST_P(PanelFaults, PlugPulledInATimedRun) {
  pull_the_plug_everywhere(false);
}
TEST_P(PanelFaults, TimeOutInARealTimeRun) {
  fail_everywhere(true, boards::statuses::time_out);
}
TEST_P(PanelFaults, TimeOutInATimedRun) {
  fail_everywhere(false, boards::statuses::time_out);
}
TEST_P(PanelFaults, ErrorInARealTimeRun) {
  fail_everywhere(true, boards::statuses::transfer_failed);
}
TEST_P(PanelFaults, ErrorInATimedRun) {
  fail_everywhere(false, boards::statuses::transfer_failed);
}

TEST_P(PanelFaults, ASensorThatDoesNotAnswerReadsAsZero) {
  run_undisturbed(true);
  board.set_sensor_answers(false);
  run(true);
  EXPECT_EQ(store.Sample_Count, run_length);
  EXPECT_EQ(store.Sample_Value[5], 0);
  EXPECT_FALSE(failed());
  board.set_sensor_answers(true);
  expect_usable(true);
}

TEST_P(PanelFaults, WithoutABoardARunEndsAtOnce) {
  run_undisturbed(true);
  board.unplug();
  EXPECT_LE(run(true), 100);
  EXPECT_EQ(store.Sample_Count, 0);
  EXPECT_EQ(panel.ShpAttach.FillColor.get(), lamp(12));
  board.plug();
  expect_usable(true);
}

TEST_P(PanelFaults, WithoutABoardATimedRunWaitsForItsButtonUnlessItsReadsAreChecked) {
  run_undisturbed(false);
  board.unplug();
  run(false);
  EXPECT_EQ(store.Sample_Count, checked() ? 1 : run_length);
  EXPECT_EQ(store.Sample_Value[1], 0);
  board.plug();
  expect_usable(false);
}

TEST_P(PanelFaults, WithoutADriverARunEndsAtOnce) {
  run_undisturbed(true);
  board.set_driver_present(false);
  EXPECT_LE(run(true), 100);
  EXPECT_EQ(store.Sample_Count, 0);
  EXPECT_EQ(workbench().cbNoc.Caption, "USB Board won't intialize");
  board.set_driver_present(true);
  expect_usable(true);
}

TEST_P(PanelFaults, TheBoardComesBackWhileATimedRunGoesOn) {
  run_undisturbed(false);
  store.Sample_Count = 0;
  at_yield(count_reaches(5), [&] {
    board.unplug();
    at_yield([&] { return store.Sample_Count >= 10 || store.AbortRequested != 0; },
             [&] {
               board.plug();
               at_yield(count_reaches(run_length), clicking(panel.cmdEndSampling));
             });
  });
  click(panel.cmdSample);
  user.at_yield = nullptr;
  board.plug();
  EXPECT_LE(store.Sample_Count, checked() ? 6 : run_length);
  EXPECT_TRUE(user.errors.empty());
  expect_usable(false);
}

INSTANTIATE_TEST_SUITE_P(Each, PanelFaults, ::testing::ValuesIn(every_panel()), panel_name);

}  // namespace
}  // namespace varzelin::testing
