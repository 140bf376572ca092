// The panels over eight registers on the simulated board, chosen as a user chooses them.
#pragma once

#include "panels/single_channel/eight_register_panel.h"
#include "support/panel_fixture.h"

namespace varzelin::testing {

using ByteLists = std::vector<std::vector<int>>;

struct EightRegisterFixture : ::testing::Test, PanelProgram {
  EightRegisterPanel* panel = nullptr;

  void open(const char* form_name) {
    panel = dynamic_cast<EightRegisterPanel*>(&PanelProgram::open(form_name));
  }
  // What went out to the sensor, oldest first.
  ByteLists sent() const {
    ByteLists result;
    for (const Packet& packet : recorder.packets) {
      if (packet.pipe == boards::pipe_i2c_out) result.push_back(packet.bytes);
    }
    return result;
  }
  // A write of one register while no loop runs, with its read-back.
  static ByteLists written(int register_number, int value) {
    return {{0, 0x88, register_number, value}, {2, 0x89, 2}, {2, 0x89, 0}};
  }
  static ByteLists joined(std::initializer_list<ByteLists> parts) {
    ByteLists all;
    for (const ByteLists& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
  }
  void enter_text(forms::TextBox& box, const std::string& text) {
    box.Text = text;
    press_enter(box);
  }
  using PanelProgram::collect;
  // A real-time collection in which the user acts at `count` samples and stops `more` samples later.
  void collect(std::int32_t count, std::function<void()> action, std::int32_t more = 3) {
    store.Sample_Count = 0;
    at_yield(count_reaches(count), [this, count, more, action = std::move(action)] {
      action();
      at_yield(count_reaches(count + more), clicking(panel->cmdStopData));
    });
    click(panel->cmdCollectData);
  }
  // Every five-byte reply brings these bytes.
  void replying(std::vector<std::uint8_t> bytes) {
    recorder.before_call = [this, bytes = std::move(bytes)] {
      if (store.Pipe_Num == boards::pipe_i2c_in && store.Xfer_Size == 5 && board.queued_replies() == 0)
        board.queue_reply(bytes);
    };
  }
  void external_timing() {
    click(panel->ChkCommand(2));
    forget_traffic();
  }
  std::string box(int register_number) { return panel->txtRegHex(register_number).Text; }
};

struct Kvt71344 : EightRegisterFixture {
  void SetUp() override { open("frmKVT71344"); }
};
struct Kvt71356 : EightRegisterFixture {
  void SetUp() override { open("frmKVT71356"); }
};

}  // namespace varzelin::testing
