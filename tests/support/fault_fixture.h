// A sensor panel whose bus fails at each transfer of a run in turn: the run is over in time, the samples
// taken so far are kept and can be written, and the next run works.
#pragma once

#include <limits>

#include "support/panel_fixture.h"
#include "support/temporary_folder.h"

namespace varzelin::testing {

inline constexpr std::int32_t run_length = 26;
// What a transfer of the kit takes at most.
inline constexpr double time_out_ms = 1000;

struct PanelFaults : PanelTest {
  const TemporaryFolder folder;
  const std::string path = folder.path("Data.txt");
  // Of a run in which nothing fails.
  std::vector<Packet> transfers;
  std::size_t set_up = 0;  // those before the loop
  double duration = 0;
  std::int32_t last_value = 0;
  // Of the transfer that is to fail: the samples there were, and whether that of its pass was in already.
  std::array<std::int32_t, SensorPanel::last_sample + 1> samples{};
  std::int32_t count = 0;
  bool measured = false;

  // What the last value of a run may differ by from that of another.
  int tolerance = 0;

  // Puts the sensor to work, also when it has lost its power, and leaves the session closed.
  virtual void make_ready() { make_measure(); }
  // What the user does in a run beyond stopping it.
  virtual void act(std::function<void()> and_then) { and_then(); }
  // Whether a transfer that fails alone ends the run.
  virtual bool ends_run(const Packet& /*undisturbed*/, bool real_time) const {
    return real_time || checked();
  }
  // The samples that a run then has.
  virtual std::int32_t samples_kept(const Packet& /*undisturbed*/, bool real_time) const {
    return count + (real_time && measured ? 1 : 0);
  }

  void SetUp() override {
    make_ready();
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
    forms::Control& stop = real_time ? panel.cmdStopData : panel.cmdEndSampling;
    act([this, &stop] {
      at_yield(count_reaches(run_length), [&stop] {
        if (offered(stop)) forms::user::click(stop);  // what fails may have been quicker
      });
    });
    click(real_time ? panel.cmdCollectData : panel.cmdSample);
    user.at_yield = nullptr;
    return clock.milliseconds() - start;
  }
  void run_undisturbed(bool real_time) {
    set_up = real_time ? std::numeric_limits<std::size_t>::max() : 0;
    recorder.before_call = [this] {
      if (store.Sample_Run == -1) set_up = std::min(set_up, recorder.packets.size());
    };
    duration = run(real_time);
    recorder.before_call = nullptr;
    transfers = recorder.packets;
    last_value = store.Sample_Value[run_length - 1];
    ASSERT_EQ(store.Sample_Count, run_length);
    ASSERT_GE(transfers.size(), 2u * run_length);
  }
  // Keeps what there is when the transfer behind `position` others begins.
  void watch(std::size_t position) {
    recorder.before_call = [this, position] {
      if (store.Usb_Status != boards::success || recorder.packets.size() != position) return;
      samples = store.Sample_Value;
      count = store.Sample_Count;
      measured = store.Sample_Run == -1 &&
                 samples[static_cast<std::size_t>(count)] != 1;  // the value that a run begins with
    };
  }
  bool failed() const {
    return std::ranges::any_of(recorder.packets, [](const Packet& packet) { return packet.status != 0; });
  }
  bool checked() const { return panel.model.transfers == Transfers::checked; }
  // `ended`: by what fails, and not by its button.
  void expect_kept(const Packet& undisturbed, bool real_time, bool ended) {
    EXPECT_EQ(store.Sample_Count, ended ? samples_kept(undisturbed, real_time) : run_length);
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
    make_ready();
    run(real_time);
    EXPECT_FALSE(failed());
    EXPECT_EQ(store.Sample_Count, run_length);
    EXPECT_NEAR(store.Sample_Value[run_length - 1], last_value, tolerance);
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
    for (std::size_t position = 0; position < transfers.size() && !HasFailure(); ++position) {
      SCOPED_TRACE("plug pulled after " + std::to_string(position) + " transfers");
      measure_again();
      watch(position);
      board.unplug_after(position);
      const double time = run(real_time);
      recorder.before_call = nullptr;
      ASSERT_FALSE(board.plugged());
      EXPECT_LE(time, duration + time_out_ms);
      EXPECT_EQ(panel.ShpAttach.FillColor.get(), lamp(12));
      // The collection begins behind a failed set-up all the same, and ends at once.
      if (position < set_up) {
        EXPECT_EQ(store.Sample_Count, 0);
      } else {
        expect_kept(transfers[position], real_time, real_time || checked());
      }
      board.plug();
      expect_usable(real_time);
    }
  }
  void fail_everywhere(bool real_time, boards::Status status) {
    run_undisturbed(real_time);
    for (std::size_t position = 0; position < transfers.size() && !HasFailure(); ++position) {
      SCOPED_TRACE("failed after " + std::to_string(position) + " transfers");
      measure_again();
      watch(position);
      board.fail_transfers(1, status, position);
      const double time = run(real_time);
      recorder.before_call = nullptr;
      board.clear();
      EXPECT_TRUE(failed());
      // A request that failed, and the reply to it that doesn't come.
      EXPECT_LE(time, duration + 2 * time_out_ms);
      if (position < set_up) {
        EXPECT_EQ(store.Sample_Count, run_length);
      } else {
        expect_kept(transfers[position], real_time, ends_run(transfers[position], real_time));
      }
      expect_usable(real_time);
    }
  }
};

}  // namespace varzelin::testing
