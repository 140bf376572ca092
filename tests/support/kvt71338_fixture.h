// The panel of KVT71338 on the simulated board, chosen as a user chooses it.
#pragma once

#include "panels/single_channel/kvt71338.h"
#include "support/panel_fixture.h"

namespace varzelin::testing {

using ByteLists = std::vector<std::vector<int>>;

struct Kvt71338 : ::testing::Test, PanelProgram {
  frmKVT71338* panel = nullptr;

  void SetUp() override { open(); }
  void open() { panel = dynamic_cast<frmKVT71338*>(&PanelProgram::open(frmKVT71338::form_name)); }
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
  // What went out to the sensor, oldest first.
  ByteLists sent() { return sent_on(boards::pipe_i2c_out); }
  // The writes and commands of it.
  ByteLists writes() {
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
  // Every reply of so many bytes brings these.
  void replying(std::vector<std::uint8_t> bytes, std::int32_t size) {
    recorder.before_call = [this, bytes = std::move(bytes), size] {
      if (store.Pipe_Num == 130 && store.Xfer_Size == size && board.queued_replies() == 0)
        board.queue_reply(bytes);
    };
  }
  std::string box() { return panel->txtRegHex(0).Text; }
};

}  // namespace varzelin::testing
