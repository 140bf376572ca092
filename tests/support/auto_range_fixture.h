// A multi-function panel whose range, or emitter current, follows its readings.
#pragma once

#include "support/multi_function_loop_fixture.h"

namespace varzelin::testing {

struct AutoRange : MultiFunctionLoop {
  void SetUp() override {
    open("frmKVT71385");
    measure_by(ir_continuous);
  }
  void follow_by_range() { choose(panel->OptGainMode(1)); }
  void follow_by_current() { choose(panel->OptIRDRMode(1)); }
  void range(int position) { choose(panel->OptGain(position)); }
  int range() { return selected(panel->OptGain); }
  int current() { return selected(panel->OptPSrc); }
  // What there was behind each pass, in turn; the first element is the first pass's.
  template <class Value>
  std::vector<Value> behind_passes(std::int32_t passes, std::function<Value()> value) {
    std::vector<Value> values;
    user.yields_left = TestFrontEnd().yields_left;
    user.at_yield = [&] {
      // Of a pass that is over: the wait of the next one has begun.
      if (store.Sample_Run != -1 || panel->txtReading.Text.get().empty()) return;
      if (store.Sample_Count == static_cast<std::int32_t>(values.size()) + 2) values.push_back(value());
      if (store.Sample_Count == passes + 1) program.runtime.post(clicking(panel->cmdStopData));
    };
    forget_traffic();
    store.Sample_Count = 0;
    click(panel->cmdCollectData);
    user.at_yield = nullptr;
    return values;
  }
  // The positions of the range, a digit a pass.
  std::string ranges_behind(std::int32_t passes) {
    std::string digits;
    for (const int position : behind_passes<int>(passes, [this] { return range(); }))
      digits += std::to_string(position);
    return digits;
  }
  // One a pass, and then the last one for good; those that are dropped don't count.
  void by_pass(std::vector<int> words) {
    result = [this, words = std::move(words)](int) {
      return words[std::min(slot_of_pass(), words.size() - 1)];
    };
  }
  std::size_t slot_of_pass() const { return static_cast<std::size_t>(store.Sample_Count); }
  bool was_switched() { return panel->lblRange.Visible; }
};

}  // namespace varzelin::testing
