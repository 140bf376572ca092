// The panel of KVT71338 on the simulated board, chosen as a user chooses it.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "panels/single_channel/kvt71338.h"
#include "shell/start_panel.h"
#include "support/test_program.h"

namespace varzelin::testing {

using ByteLists = std::vector<std::vector<int>>;

struct Kvt71338 : ::testing::Test, TestProgram {
  frmKVT71338* panel = nullptr;

  void SetUp() override { open(); }
  void open() {
    const auto row =
        std::ranges::find(model_list, std::string_view(frmKVT71338::form_name), &ModelRow::panel);
    choose(form<frmStartup>().cboDeviceSelect, static_cast<int>(row - model_list.begin()));
    panel = &program.forms.touch<frmKVT71338>();
    forget_traffic();
  }
  void open_anew() {
    program.forms.unload(*panel, 0);
    open();
  }
  // Powers the converter up, continuous, without the traffic of that.
  void make_ready() {
    click(panel->OptPwr(1));
    click(panel->OptMeasQty(0));
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
  // The writes and commands of it.
  ByteLists writes() const {
    ByteLists result = sent();
    std::erase_if(result, [](const auto& bytes) { return bytes[0] != 0; });
    return result;
  }
  // A write of the command register while no loop runs, with its read-back.
  static ByteLists written(int value) { return {{0, 0x88, 0, value}, {2, 0x89, 2}, {2, 0x89, 0}}; }
  static ByteLists joined(std::initializer_list<ByteLists> parts) {
    ByteLists all;
    for (const ByteLists& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
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
  // Every reply of so many bytes brings these.
  void replying(std::vector<std::uint8_t> bytes, std::int32_t size) {
    recorder.before_call = [this, bytes = std::move(bytes), size] {
      if (store.Pipe_Num == 130 && store.Xfer_Size == size && board.queued_replies() == 0)
        board.queue_reply(bytes);
    };
  }
  std::size_t calls(const char* name) const {
    return static_cast<std::size_t>(std::ranges::count(recorder.calls, name));
  }
  static forms::Color lamp(int color_index) { return forms::QBColor(color_index); }
  std::string box() { return panel->txtRegHex(0).Text; }
};

}  // namespace varzelin::testing
