// The loops of the panels of KVT71385, KVT71388, KVT71390 and KVT71392, as a user starts and stops them, over
// results that a test chooses.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "panels/multi_function/multi_function_panel.h"
#include "support/panel_fixture.h"

namespace varzelin::testing {

// Positions of OptMeasure.
enum Position {
  power_down,
  als_once,
  ir_once,
  proximity_once,
  pair_position,
  als_continuous,
  ir_continuous,
  proximity_continuous
};
// Positions of OptITime.
enum Width { bits_16, bits_12, bits_8, bits_4 };

struct MultiFunctionLoop : ::testing::Test, PanelProgram {
  MultiFunctionPanel* panel = nullptr;
  // What a read of the result brings, when set: a word by the operation that was written last.
  std::function<int(int operation)> result;
  // Called before each driver call, when set.
  std::function<void()> note;

  // Chooses a panel in its full layout, on a bus that takes no time, without the traffic of its load.
  void open(const std::string& form_name) {
    panel = dynamic_cast<MultiFunctionPanel*>(&PanelProgram::open(form_name));
    panel->Label13_DblClick();
    board.set_timing(false);
    recorder.before_call = [this] {
      if (note) note();
      begun_[recorder.packets.size()] = clock.milliseconds();
      if (result && result_is_read() && board.queued_replies() == 0) queue_count(result(operation()));
    };
  }

  // --- the user ---

  // Clicks an option, also one that is out of reach for now, without the traffic of it.
  void choose(forms::OptionButton& option) {
    option.Enabled = true;
    click(option);
    forget_traffic();
  }
  void measure_by(Position position) { choose(panel->OptMeasure(position)); }
  // A real-time collection of the measurement that is chosen.
  void collect(std::int32_t count) {
    collect(
        count, [] {}, 0);
  }
  // One in which the user acts at `count` samples and stops `more` samples later, or, below 0, stops it in
  // what he does.
  void collect(std::int32_t count, std::function<void()> action, std::int32_t more) {
    run(panel->cmdCollectData, panel->cmdStopData, count, std::move(action), more);
  }
  void sample(std::int32_t count) {
    sample(
        count, [] {}, 0);
  }
  void sample(std::int32_t count, std::function<void()> action, std::int32_t more) {
    run(panel->cmdSample, panel->cmdEndSampling, count, std::move(action), more);
  }

  // --- the bus ---

  void forget_traffic() {
    operation();  // what was written last still counts
    seen_ = 0;
    PanelProgram::forget_traffic();
  }

  // The results of proximity and of infrared from here on.
  void pair(int proximity, int infrared) {
    result = [=](int operation) { return operation == proximity_once ? proximity : infrared; };
  }
  void results(int word) {
    result = [word](int) { return word; };
  }
  // In turn, and then the last one for good.
  void results(std::vector<int> words) {
    result = [words = std::move(words), next = std::size_t{0}](int) mutable {
      return words[std::min(next++, words.size() - 1)];
    };
  }
  // What went to the sensor in words: "r0=A0" for a write, "sync", "read2" for a read from r2 on.
  std::string traffic() const {
    std::string words;
    for (const Packet& packet : recorder.packets) {
      const std::string word = word_of(packet);
      if (!words.empty() && !word.empty()) words += ' ';
      words += word;
    }
    return words;
  }
  // That of one pass of a collection, or of a timed run: from one count of the samples to the next.
  std::string traffic_of_a_pass(std::int32_t passes = 1) {
    return traffic_behind([] {}, passes);
  }
  std::string traffic_of_a_sample(std::int32_t samples = 1) {
    return traffic_behind([] {}, samples, {}, false);
  }
  // That of a pass behind what the user does in its wait; and what there is to see then.
  std::string traffic_behind(
      const std::function<void()>& action, std::int32_t passes = 1, const std::function<void()>& seen = [] {},
      bool real_time = true) {
    constexpr std::int32_t first = 3;
    forms::CommandButton& stop = real_time ? panel->cmdStopData : panel->cmdEndSampling;
    std::string words;
    const auto end = [&] {
      words = traffic();
      if (seen) seen();
      forms::user::click(stop);
    };
    const auto begin = [&] {
      forget_traffic();
      at_yield(count_reaches(first + passes), end);
      action();
    };
    run(real_time ? panel->cmdCollectData : panel->cmdSample, stop, first, begin, -1);
    return words;
  }
  // How many bytes the last reply from r2 on was asked for.
  std::size_t result_size() const {
    std::size_t size = 0;
    for (std::size_t i = 1; i < recorder.packets.size(); ++i) {
      if (asks_for_result(recorder.packets[i - 1])) size = recorder.packets[i].size;
    }
    return size;
  }
  // When what has this word began to go out, milliseconds.
  std::vector<double> times_of(const std::string& word) const {
    std::vector<double> times;
    for (std::size_t i = 0; i < recorder.packets.size(); ++i) {
      if (word_of(recorder.packets[i]) == word) times.push_back(begun_.at(i));
    }
    return times;
  }

  // --- what to expect ---

  std::string history(int box) { return panel->history.txtADMax(box).Text; }
  std::string pair_box(int box) { return panel->txtProx_IR(box).Text; }
  forms::Color over_range_lamp(int lamp_number) { return panel->ShpOVRange(lamp_number).FillColor; }
  // Which option of a group is selected; -1: none.
  static int selected(forms::ControlArray<forms::OptionButton>& group, int positions = 4) {
    for (int i = 0; i < positions; ++i) {
      if (group(i).Value) return i;
    }
    return -1;
  }

 private:
  // Nothing for a reply.
  static std::string word_of(const Packet& packet) {
    if (packet.pipe != boards::pipe_i2c_out || packet.bytes.size() < 3) return {};
    const std::string number = std::to_string(packet.bytes[2]);
    if (packet.bytes[0] != 0) return "read" + number;
    if (packet.bytes.size() == 3) return packet.bytes[2] == 0x80 ? "sync" : "command" + number;
    return "r" + number + "=" + forms::Hex2(packet.bytes[3]);
  }
  static bool asks_for_result(const Packet& packet) { return word_of(packet) == "read2"; }
  bool result_is_read() const {
    return store.Pipe_Num == store.I2C_Pipe + in_pipe_offset && !recorder.packets.empty() &&
           asks_for_result(recorder.packets.back());
  }
  // Of the last write of r0, which may be before what was forgotten.
  int operation() {
    for (; seen_ < recorder.packets.size(); ++seen_) {
      const Packet& packet = recorder.packets[seen_];
      if (packet.bytes.size() == 4 && packet.bytes[0] == 0 && packet.bytes[2] == 0)
        operation_ = packet.bytes[3] >> 5;
    }
    seen_ = recorder.packets.size();
    return operation_;
  }
  void run(forms::CommandButton& start, forms::CommandButton& stop, std::int32_t count,
           std::function<void()> action, std::int32_t more) {
    user.yields_left = TestFrontEnd().yields_left;
    forget_traffic();
    store.Sample_Count = 0;
    at_yield(count_reaches(count), [this, &stop, count, more, action = std::move(action)] {
      if (more > 0) at_yield(count_reaches(count + more), clicking(stop));
      action();
      if (more == 0) forms::user::click(stop);
    });
    click(start);
    user.at_yield = nullptr;
  }
  std::map<std::size_t, double> begun_;  // by the packets that were there
  std::size_t seen_ = 0;                 // packets
  int operation_ = 0;
};

}  // namespace varzelin::testing
