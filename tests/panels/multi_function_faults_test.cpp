// What may go wrong on the bus in the longer passes of the multi-function panels, at each transfer of a run
// in turn: pairs, covered light, and one-shots under external timing. The run is over in time, its samples
// are kept and can be written, and the next run works.
#include <limits>

#include "support/multi_function_loop_fixture.h"
#include "support/temporary_folder.h"

namespace varzelin::testing {
namespace {

constexpr std::int32_t run_length = 22;
// What a transfer of the kit takes at most.
constexpr double time_out_ms = 1000;

struct Pass {
  const char* name;
  std::size_t transfers;  // of a pass in a collection, at least
  void (*prepare)(MultiFunctionLoop& loop);
};

const std::vector<Pass> passes{
    {"Pair", 6, [](MultiFunctionLoop& loop) { loop.measure_by(pair_position); }},
    {"Cover", 6,
     [](MultiFunctionLoop& loop) {
       for (const int value : {0, 1}) loop.panel->cover->ChkCover.Value = value;
       loop.click(loop.panel->cmdProx_IR);  // a timed run samples the last difference
     }},
    {"OneShotUnderExternalTiming", 5, [](MultiFunctionLoop& loop) {
       loop.measure_by(ir_once);
       loop.choose(loop.panel->OptExtTime(1));
     }}};

struct MultiFunctionFaults : MultiFunctionLoop, ::testing::WithParamInterface<std::tuple<Pass, bool>> {
  const TemporaryFolder folder;
  const std::string path = folder.path("Data.txt");
  // Of a run in which nothing fails.
  std::size_t transfers = 0;
  std::size_t set_up = 0;  // those before the loop
  double duration = 0;
  std::int32_t last_value = 0;
  // When the transfer that fails began.
  std::array<std::int32_t, SensorPanel::last_sample + 1> samples{};
  std::int32_t count = 0;
  bool measured = false;  // the sample of its pass was in already

  bool real_time() const { return std::get<1>(GetParam()); }

  void SetUp() override {
    open("frmKVT71385");
    board.set_timing(true);
    board.set_noise(0);
    board.scene() = {.light_lux = 700, .ir_counts = 200, .distance_mm = 50};
    panel->txtFilePath.Text = path;
  }
  // A run that its button stops, unless it ends before; what is to fail is ordered once the panel is
  // prepared. Gives its time.
  double run(const std::function<void()>& order = [] {}) {
    std::get<0>(GetParam()).prepare(*this);
    order();
    const double start = clock.milliseconds();
    if (real_time()) {
      collect(run_length);
    } else {
      sample(run_length);
    }
    return clock.milliseconds() - start;
  }
  void run_undisturbed() {
    set_up = real_time() ? std::numeric_limits<std::size_t>::max() : 0;
    note = [this] {
      if (store.Sample_Run == -1) set_up = std::min(set_up, recorder.packets.size());
    };
    duration = run();
    note = nullptr;
    transfers = recorder.packets.size();
    last_value = store.Sample_Value[run_length - 1];
    ASSERT_EQ(store.Sample_Count, run_length);
    ASSERT_NE(last_value, 0);
    ASSERT_NE(last_value, 1);
    if (real_time()) {
      ASSERT_GE(transfers, std::get<0>(GetParam()).transfers * run_length);
    }
  }
  // Keeps what there is when the transfer behind `position` others begins.
  void watch(std::size_t position) {
    note = [this, position] {
      if (store.Usb_Status != boards::success || recorder.packets.size() != position) return;
      samples = store.Sample_Value;
      count = store.Sample_Count;
      measured = store.Sample_Run == -1 && samples[static_cast<std::size_t>(count)] != 1;
    };
  }
  void expect_kept(bool in_set_up, bool board_stays) {
    if (in_set_up) {
      EXPECT_EQ(store.Sample_Count, board_stays ? run_length : 0);
      return;
    }
    EXPECT_EQ(store.Sample_Count, real_time() ? count + (measured ? 1 : 0) : run_length);
    EXPECT_TRUE(std::ranges::equal(std::span(samples).first(static_cast<std::size_t>(count)),
                                   std::span(store.Sample_Value).first(static_cast<std::size_t>(count))));
  }
  void expect_usable() {
    expect_idle();
    EXPECT_TRUE(user.errors.empty());
    EXPECT_TRUE(user.boxes.empty());
    expect_file();
    run();
    EXPECT_TRUE(
        std::ranges::all_of(recorder.packets, [](const Packet& packet) { return packet.status == 0; }));
    EXPECT_EQ(store.Sample_Count, run_length);
    EXPECT_EQ(store.Sample_Value[run_length - 1], last_value);
    EXPECT_TRUE(panel->cmdProx_IR.Enabled);
    EXPECT_TRUE(panel->cover->cmdALS_IR.Enabled);
    expect_idle();
  }
  void expect_file() {
    click(panel->cmdStartRec(0));
    if (store.Sample_Count < 20) {
      ASSERT_EQ(user.boxes.size(), 1u);
      user.boxes.clear();
      return;
    }
    const std::string text = TemporaryFolder::content(path);
    EXPECT_EQ(std::ranges::count(text, '\n'), store.Sample_Count - 11 + 2);
    EXPECT_TRUE(text.ends_with("END\r\n"));
  }
};

TEST_P(MultiFunctionFaults, PlugPulled) {
  run_undisturbed();
  for (std::size_t position = 0; position < transfers && !HasFailure(); ++position) {
    SCOPED_TRACE("plug pulled after " + std::to_string(position) + " transfers");
    const double time = run([&] {
      watch(position);
      board.unplug_after(position);
    });
    note = nullptr;
    ASSERT_FALSE(board.plugged());
    EXPECT_LE(time, duration + time_out_ms);
    expect_kept(position < set_up, false);
    board.plug();
    expect_usable();
  }
}

TEST_P(MultiFunctionFaults, TransferFails) {
  run_undisturbed();
  for (std::size_t position = 0; position < transfers && !HasFailure(); ++position) {
    SCOPED_TRACE("failed after " + std::to_string(position) + " transfers");
    const double time = run([&] {
      watch(position);
      board.fail_transfers(1, boards::statuses::time_out, position);
    });
    note = nullptr;
    EXPECT_TRUE(
        std::ranges::any_of(recorder.packets, [](const Packet& packet) { return packet.status != 0; }));
    EXPECT_LE(time, duration + 2 * time_out_ms);
    board.clear();
    expect_kept(position < set_up, true);
    expect_usable();
  }
}

std::string pass_name(const ::testing::TestParamInfo<std::tuple<Pass, bool>>& info) {
  return std::get<0>(info.param).name + std::string(std::get<1>(info.param) ? "InRealTime" : "Timed");
}
INSTANTIATE_TEST_SUITE_P(Each, MultiFunctionFaults,
                         ::testing::Combine(::testing::ValuesIn(passes), ::testing::Bool()), pass_name);

}  // namespace
}  // namespace varzelin::testing
