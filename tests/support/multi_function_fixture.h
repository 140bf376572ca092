// The panels of KVT71385, KVT71388, KVT71390 and KVT71392 on the simulated board, chosen as a user chooses
// them.
#pragma once

#include <sstream>

#include "panels/multi_function/multi_function_panel.h"
#include "support/panel_fixture.h"

namespace varzelin::testing {

using ByteLists = std::vector<std::vector<int>>;

inline const std::vector<std::string> multi_function_panels{"frmKVT71385", "frmKVT71388", "frmKVT71390",
                                                            "frmKVT71392"};

struct MultiFunctionFixture : ::testing::Test, PanelProgram {
  MultiFunctionPanel* panel = nullptr;

  // Chooses a panel under a revision of the chip, without the traffic of its load.
  void open(const std::string& form_name, int revision = 'B') {
    open_with_traffic(form_name, revision);
    forget_traffic();
  }
  void open_with_traffic(const std::string& form_name, int revision = 'B') {
    click(form<frmStartup>().OptRev(revision == 'A' ? 0 : 1));
    forget_traffic();
    opened = &choose_panel(*this, form_name);
    panel = dynamic_cast<MultiFunctionPanel*>(opened);
  }
  // With a budget of yields of its own: the chart takes many.
  void open_anew(int revision = 'B') {
    user.yields_left = TestFrontEnd().yields_left;
    const std::string form_name = panel->name();
    program.forms.unload(*panel, 0);
    store.Sample_Run = store.AbortRequested = 0;
    open(form_name, revision);
  }

  // --- the bus ---

  // What went out to the sensor, oldest first.
  ByteLists sent() { return sent_on(boards::pipe_i2c_out); }
  // How many bytes each reply was asked for.
  std::vector<std::size_t> reply_sizes() const {
    std::vector<std::size_t> result;
    for (const Packet& packet : recorder.packets) {
      if (packet.pipe == boards::pipe_i2c_out + in_pipe_offset) result.push_back(packet.size);
    }
    return result;
  }
  // The address of the writes of r0, r1, the limits and the sync command.
  int write_address() const { return panel->name() == std::string("frmKVT71390") ? 0x88 : 0x89; }
  // Words as "r1=64 r8=00 r0=A0": writes of r0 and r1 with their read-back, of others without.
  ByteLists writes(const std::string& words) const {
    ByteLists result;
    std::istringstream stream(words);
    for (std::string word; stream >> word;) {
      const int number = word.at(1) - '0';
      const int value = std::stoi(word.substr(3), nullptr, 16);
      result.push_back({0, number < 2 ? write_address() : 0x89, number, value});
      if (number < 2) result.push_back({2, 0x89, 0});
    }
    return result;
  }
  // Every reply of the sensor is these bytes from here on, the status first.
  void replying(std::vector<std::uint8_t> bytes) {
    board.clear();
    recorder.before_call = [this, bytes = std::move(bytes)] {
      if (store.Pipe_Num == boards::pipe_i2c_out + in_pipe_offset && board.queued_replies() == 0)
        board.queue_reply(bytes);
    };
  }

  // --- the user ---

  // Clicks an option, also one that is out of reach for now.
  void choose_option(const std::string& control, int index) {
    forms::Control* option = panel->find(control, index);
    ASSERT_TRUE(option) << control << index;
    option->Enabled = true;
    click(*option);
  }
  void measure_by(int position) { choose_option("OptMeasure", position); }
  void enter_text(forms::TextBox& box, const std::string& text) {
    box.Text = text;
    press_enter(box);
  }
  // As in a real-time collection, between two passes.
  void in_a_loop(const std::function<void()>& action) {
    store.Sample_Run = true_flag;
    action();
    store.Sample_Run = false_flag;
  }

  // --- what to expect ---

  std::string box(int register_number) { return panel->txtRegHex(register_number).Text; }
  std::string read_box(int register_number) { return panel->txtRegRd(register_number).Text; }
  // Which flags are set: "R0 R1 Regs", and "Update" in front of them.
  std::string pending() const {
    std::string words = store.PendingUpdate != 0 ? "Update" : "";
    if (store.PendingWriteR0 != 0) words += " R0";
    if (store.PendingWriteR1 != 0) words += " R1";
    if (store.PendingReadRegs != 0) words += " Regs";
    return words;
  }
  std::string limits_format(int label) { return panel->limits.lblIlimitsformat(label).Caption; }
  // Upper end left, right; lower end left, right.
  std::string scales() {
    return panel->txtScale.Text + " " + panel->txtScale2.Text + " " + panel->txtScaleMin.Text + " " +
           panel->txtScaleMin2.Text;
  }
  std::string bounds() const { return std::to_string(store.LimitMin) + " " + std::to_string(store.LimitMax); }
  static forms::Color black() { return lamp(0); }
  static forms::Color red() { return lamp(12); }
};

struct Kvt71385Panel : MultiFunctionFixture {
  void SetUp() override { open("frmKVT71385"); }
};

// A test on each panel of the family.
struct EachMultiFunctionPanel : MultiFunctionFixture, ::testing::WithParamInterface<std::string> {
  void SetUp() override { open(GetParam()); }
};

}  // namespace varzelin::testing
