// The two-mode panels on the simulated board, chosen as a user chooses them.
#pragma once

#include "panels/two_mode/two_mode_panel.h"
#include "support/panel_fixture.h"

namespace varzelin::testing {

using ByteLists = std::vector<std::vector<int>>;

// Positions of OptMeasure.
namespace measure {
inline constexpr int power_down = 0, light_once = 1, infrared_once = 2, proximity_once = 3, pair_once = 4,
                     light = 5, infrared = 6, proximity = 7, pair = 8, filtered = 9;
}  // namespace measure

struct TwoModeFixture : PanelProgram {
  TwoModePanel* panel = nullptr;
  // What the sensor converts, once replying_pairs() has been called.
  int proximity_count = 1000;
  int infrared_count = 50;

  void open(const std::string& form_name) {
    panel = dynamic_cast<TwoModePanel*>(&PanelProgram::open(form_name));
    board.set_timing(false);
    user.yields_left = 5'000'000;
  }
  // What went out to the sensor, oldest first.
  ByteLists sent() { return sent_on(boards::pipe_i2c_out); }
  // They without requests for a reply.
  ByteLists writes() {
    ByteLists all = sent();
    std::erase_if(all, [](const auto& bytes) { return bytes[0] != 0; });
    return all;
  }
  static std::vector<int> write(int register_number, int value) { return {0, 0x89, register_number, value}; }
  // A write of one register while no loop runs, with its read-back.
  static ByteLists written(int register_number, int value) {
    return {write(register_number, value), {2, 0x89, 0}};
  }
  static ByteLists joined(std::initializer_list<ByteLists> parts) {
    ByteLists all;
    for (const ByteLists& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
  }
  std::string box(int register_number) { return panel->txtRegHex(register_number).Text; }
  void enter_text(forms::TextBox& box, const std::string& text) {
    box.Text = text;
    press_enter(box);
  }
  // In the full layout, and without a wait for a conversion.
  void select(int position) {
    if (store.LayoutCompact != 0) panel->Label13_DblClick();
    program.runtime.dispatch([&] { panel->choose_measurement(position); });
    panel->txtSampling_Delay.Text = "0";
    panel->txtInterval.Text = "0";
    forget_traffic();
  }
  void hold_session() {
    click(workbench().cmdUSBConnect);
    store.Man_Usb_Conn = -1;
    forget_traffic();
  }
  // The scheme keeps the scale of its own until an operation is chosen.
  void scheme1() { click(panel->OptIRMode(1)); }

  using PanelProgram::collect;
  // A real-time collection in which the user acts at `count` samples and stops `more` samples later.
  void collect_and(std::int32_t count, std::function<void()> action, std::int32_t more = 3) {
    store.Sample_Count = 0;
    at_yield([this, count] { return in_loop() && store.Sample_Count >= count; },
             [this, count, more, action = std::move(action)] {
               action();
               at_yield(count_reaches(count + more), clicking(panel->cmdStopData));
             });
    click(panel->cmdCollectData);
  }
  // As PanelProgram has it, with the measurement that is chosen.
  void run(std::int32_t count) {
    store.Sample_Count = 0;
    at_yield([this, count] { return in_loop() && store.Sample_Count >= count; },
             clicking(panel->cmdStopData));
    click(panel->cmdCollectData);
  }
  bool in_loop() const { return store.Sample_Run == -1 && store.Man_Usb_Conn == -1; }

  // Yields behind the close of the session while a stop is in force.
  int yields_counted = 0;
  void count_yields_behind_close() {
    yields_counted = 0;
    user.at_yield = [this] { yields_counted += calls("WDU_VB_Uninit") != 0 && store.AbortRequested != 0; };
  }
  int yields_behind_close(const std::function<void()>& closing) {
    forget_traffic();
    const Flag before = std::exchange(store.AbortRequested, true_flag);
    count_yields_behind_close();
    program.runtime.dispatch(closing);
    user.at_yield = nullptr;
    store.AbortRequested = before;
    return yields_counted;
  }

  // The sensor's replies are those of proximity_count and infrared_count, whichever was commanded last.
  void replying_pairs() {
    recorder.before_call = [this] {
      if (reply_is_due()) queue_count(commanded() == 0x60 ? proximity_count : infrared_count);
    };
  }
  // The next call fetches the reply to the request that went out last.
  bool reply_is_due() const {
    if (recorder.packets.empty() || board.queued_replies() != 0) return false;
    const Packet& last = recorder.packets.back();
    return last.pipe == boards::pipe_i2c_out && last.status == 0 && last.bytes.front() != 0;
  }
  // The operation that register 0 was given last.
  int commanded() const {
    for (std::size_t i = recorder.packets.size(); i-- > 0;) {
      const Packet& packet = recorder.packets[i];
      if (packet.bytes.size() == 4 && packet.bytes[0] == 0 && packet.bytes[2] == 0) {
        return packet.bytes[3] & 0xE0;
      }
    }
    return -1;
  }
  // The colour of a lamp as its index among the lamp colours; -1 for another one.
  int lamp_of(int index) const { return colour_index(panel->ShpInd(index)); }
  static int colour_index(const forms::Shape& shape) {
    for (int colour = 0; colour < 16; ++colour) {
      if (shape.FillColor.get() == forms::QBColor(colour)) return colour;
    }
    return -1;
  }
};

// A test on both models: ON_BOTH_MODELS(<suite>).
struct TwoModeTest : ::testing::TestWithParam<std::string>, TwoModeFixture {
  void SetUp() override { open(GetParam()); }
};
#define ON_BOTH_MODELS(suite)                                                            \
  INSTANTIATE_TEST_SUITE_P(Each, suite, ::testing::Values("frmKVT71374", "frmKVT71376"), \
                           ::varzelin::testing::panel_name)

struct Kvt71374 : ::testing::Test, TwoModeFixture {
  void SetUp() override { open("frmKVT71374"); }
};
struct Kvt71376 : ::testing::Test, TwoModeFixture {
  void SetUp() override { open("frmKVT71376"); }
};

}  // namespace varzelin::testing
