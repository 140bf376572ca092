// The panels over eight registers on the simulated board, chosen as a user chooses them.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "panels/single_channel/eight_register_panel.h"
#include "shell/start_panel.h"
#include "support/test_program.h"

namespace varzelin::testing {

using ByteLists = std::vector<std::vector<int>>;

struct EightRegisterFixture : ::testing::Test, TestProgram {
  EightRegisterPanel* panel = nullptr;

  void open(const char* form_name) {
    const auto row = std::ranges::find(model_list, std::string_view(form_name), &ModelRow::panel);
    choose(form<frmStartup>().cboDeviceSelect, static_cast<int>(row - model_list.begin()));
    panel = dynamic_cast<EightRegisterPanel*>(program.forms.loaded(form_name));
    forget_traffic();
  }
  void forget_traffic() {
    recorder.packets.clear();
    recorder.calls.clear();
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
  void press_enter(forms::TextBox& box) {
    program.runtime.dispatch([&] { forms::user::enter(box); });
  }
  void enter_text(forms::TextBox& box, const std::string& text) {
    box.Text = text;
    press_enter(box);
  }
  std::function<bool()> samples_reach(std::int32_t count) {
    return [this, count] { return store.Sample_Count >= count; };
  }
  std::function<void()> clicking(forms::Control& control) {
    return [&control] { forms::user::click(control); };
  }
  // A real-time collection in which the user acts at `count` samples and stops `more` samples later.
  void collect(std::int32_t count, std::function<void()> action, std::int32_t more = 3) {
    store.Sample_Count = 0;
    at_yield(samples_reach(count), [this, count, more, action = std::move(action)] {
      action();
      at_yield(samples_reach(count + more), clicking(panel->cmdStopData));
    });
    click(panel->cmdCollectData);
  }
  void collect(std::int32_t count) {
    store.Sample_Count = 0;
    at_yield(samples_reach(count), clicking(panel->cmdStopData));
    click(panel->cmdCollectData);
  }
  void sample(std::int32_t count) {
    store.Sample_Count = 0;
    at_yield(samples_reach(count), clicking(panel->cmdEndSampling));
    click(panel->cmdSample);
  }
  std::size_t calls(const char* name) const {
    return static_cast<std::size_t>(std::ranges::count(recorder.calls, name));
  }
  static forms::Color lamp(int color_index) { return forms::QBColor(color_index); }
  std::string box(int register_number) { return panel->txtRegHex(register_number).Text; }
};

struct Kvt71344 : EightRegisterFixture {
  void SetUp() override { open("frmKVT71344"); }
};
struct Kvt71356 : EightRegisterFixture {
  void SetUp() override { open("frmKVT71356"); }
};

}  // namespace varzelin::testing
