// What may go wrong on the bus in a run, at each of its transfers in turn: the samples taken so far are
// kept, the panel is as it was, and the next run works.
#include <filesystem>
#include <fstream>
#include <sstream>

#include "support/kvt71346_fixture.h"

namespace varzelin::testing {
namespace {

constexpr std::int32_t run_length = 26;

struct Faults : Kvt71346Fixture {
  std::string path =
      (std::filesystem::path(::testing::TempDir()) /
       (std::string("faults_") + ::testing::UnitTest::GetInstance()->current_test_info()->name()))
          .string();

  void SetUp() override {
    Kvt71346Fixture::SetUp();
    set_mode(2);
    panel->txtFilePath.Text = path;
    panel->txtInterval.Text = "30";
    panel->CboIntTime(5).ListIndex = 0;
  }
  void TearDown() override { std::filesystem::remove(path); }

  // A run that is stopped by its button at run_length samples, or by `patience` milliseconds: a
  // timed run that fails goes on by itself.
  void run(bool real_time) {
    store.Sample_Count = 0;
    const double patience = clock.milliseconds() + 60000;
    at([this, patience] { return store.Sample_Count >= run_length || clock.milliseconds() > patience; },
       clicking(real_time ? panel->cmdStopData : panel->cmdEndSampling));
    click(real_time ? panel->cmdCollectData : panel->cmdSample);
    user.at_yield = nullptr;
  }
  bool failed() const {
    return std::ranges::any_of(recorder.packets, [](const Packet& packet) { return packet.status != 0; });
  }
  void expect_usable(bool real_time) {
    expect_idle();
    EXPECT_TRUE(user.errors.empty());
    EXPECT_TRUE(user.boxes.empty());
    expect_file();
    panel->txtInterval.Text = "30";
    forget_traffic();
    // Long enough for a conversion of a sensor that had lost its power.
    run(real_time);
    EXPECT_FALSE(failed());
    EXPECT_EQ(store.Sample_Count, run_length);
    EXPECT_EQ(store.Sample_Value[run_length - 1], 5100);
    EXPECT_EQ(panel->ShpAttach.FillColor.get(), lamp(10));
    expect_idle();
  }
  void expect_file() {
    std::filesystem::remove(path);
    click(panel->cmdStartRec(0));
    if (store.Sample_Count < 20) {
      ASSERT_EQ(user.boxes.size(), 1u);
      EXPECT_EQ(user.boxes[0].text, "Save More Measurements");
      user.boxes.clear();
      return;
    }
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    EXPECT_EQ(std::ranges::count(text.str(), '\n'), store.Sample_Count - 11 + 2);
    EXPECT_TRUE(text.str().ends_with("END\r\n"));
    EXPECT_TRUE(user.boxes.empty());
  }

  void pull_the_plug_everywhere(bool real_time) {
    for (std::size_t position = 0;; ++position) {
      SCOPED_TRACE("plug pulled after " + std::to_string(position) + " transfers");
      forget_traffic();
      board.unplug_after(position);
      run(real_time);
      const bool pulled = !board.plugged();
      if (!pulled) {
        board.clear();
        EXPECT_GT(position, 75u);
        break;
      }
      EXPECT_TRUE(failed());
      if (real_time) {
        EXPECT_EQ(store.Sample_Count, static_cast<std::int32_t>((position + 1) / 3));
        EXPECT_EQ(panel->ShpAttach.FillColor.get(), lamp(12));
      }
      board.plug();
      expect_usable(real_time);
      if (HasFailure()) break;
    }
  }
  void fail_everywhere(bool real_time, boards::Status status) {
    for (std::size_t position = 0;; ++position) {
      SCOPED_TRACE("failed after " + std::to_string(position) + " transfers");
      forget_traffic();
      board.fail_transfers(1, status, position);
      run(real_time);
      if (board.clear(), !failed()) {
        EXPECT_GT(position, 75u);
        break;
      }
      if (real_time) {
        EXPECT_EQ(store.Sample_Count, static_cast<std::int32_t>((position + 1) / 3));
      } else {
        EXPECT_EQ(store.Sample_Count, run_length);
      }
      expect_usable(real_time);
      if (HasFailure()) break;
    }
  }
};

TEST_F(Faults, PlugPulledInARealTimeRun) {
  pull_the_plug_everywhere(true);
}
TEST_F(Faults, PlugPulledInATimedRun) {
  pull_the_plug_everywhere(false);
}
TEST_F(Faults, TimeOutInARealTimeRun) {
  fail_everywhere(true, boards::statuses::time_out);
}
TEST_F(Faults, TimeOutInATimedRun) {
  fail_everywhere(false, boards::statuses::time_out);
}
TEST_F(Faults, ErrorInARealTimeRun) {
  fail_everywhere(true, boards::statuses::transfer_failed);
}
TEST_F(Faults, ErrorInATimedRun) {
  fail_everywhere(false, boards::statuses::transfer_failed);
}

TEST_F(Faults, ASensorThatDoesNotAnswerReadsAsZero) {
  board.set_sensor_answers(false);
  run(true);
  EXPECT_EQ(store.Sample_Count, run_length);
  EXPECT_EQ(store.Sample_Value[5], 0);
  EXPECT_FALSE(failed());
  board.set_sensor_answers(true);
  expect_usable(true);
}

TEST_F(Faults, WithoutABoardARunEndsAtOnce) {
  board.unplug();
  run(true);
  EXPECT_EQ(store.Sample_Count, 0);
  EXPECT_TRUE(failed());
  EXPECT_EQ(panel->txtReading.Text, "");
  board.plug();
  expect_usable(true);
}

TEST_F(Faults, WithoutABoardATimedRunWaitsForItsButton) {
  board.unplug();
  run(false);
  EXPECT_EQ(store.Sample_Count, run_length);
  EXPECT_EQ(store.Sample_Value[5], 0);
  board.plug();
  expect_usable(false);
}

TEST_F(Faults, WithoutADriverARunEndsAtOnce) {
  board.set_driver_present(false);
  run(true);
  EXPECT_EQ(store.Sample_Count, 0);
  EXPECT_EQ(workbench().cbNoc.Caption, "USB Board won't intialize");
  board.set_driver_present(true);
  expect_usable(true);
}

TEST_F(Faults, TheBoardComesBackWhileATimedRunGoesOn) {
  at(count_reaches(5), [&] {
    board.unplug();
    at(count_reaches(10), [&] {
      board.plug();
      at(count_reaches(run_length), clicking(panel->cmdEndSampling));
    });
  });
  click(panel->cmdSample);
  EXPECT_TRUE(user.errors.empty());
  board.clear();
  expect_usable(false);
}

// The workbench doesn't close while the session is open, so the program stays until the loop is out.
TEST_F(Faults, ExitInARealTimeRun) {
  at(count_reaches(5), clicking(panel->Command4));
  EXPECT_FALSE(ends([&] { forms::user::click(panel->cmdCollectData); }));
  EXPECT_EQ(program.forms.loaded("frmKVT71346"), nullptr);
  EXPECT_NE(program.forms.loaded("frmI2C_General"), nullptr);
  EXPECT_NE(log().find("Form will not close until USB Connection is closed."), std::string::npos);
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_EQ(store.Man_Usb_Conn, 0);
  EXPECT_TRUE(user.errors.empty());
}

TEST_F(Faults, ExitInATimedRun) {
  at(count_reaches(5), clicking(panel->Command4));
  EXPECT_FALSE(ends([&] { forms::user::click(panel->cmdSample); }));
  EXPECT_EQ(program.forms.loaded("frmKVT71346"), nullptr);
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_TRUE(user.errors.empty());
}

TEST_F(Faults, TheCloseBoxInARealTimeRunEndsTheRun) {
  at(count_reaches(5), [&] { program.forms.unload(*panel, 0); });
  click(panel->cmdCollectData);
  EXPECT_EQ(program.forms.loaded("frmKVT71346"), nullptr);
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_EQ(store.Man_Usb_Conn, 0);
  EXPECT_EQ(store.Sample_Run, 0);
  EXPECT_TRUE(user.errors.empty());
}

// With no window left a front end ends the program, from the yield it is in.
TEST_F(Faults, TheEndOfTheProgramLeavesEveryLoop) {
  for (forms::CommandButton* button : {&panel->cmdSample, &panel->cmdCollectData}) {
    store.Sample_Count = 0;
    at(count_reaches(5), [&] { program.runtime.end(); });
    EXPECT_TRUE(ends([&] { forms::user::click(*button); })) << button->name();
  }
}

}  // namespace
}  // namespace varzelin::testing
