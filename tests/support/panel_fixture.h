// A program with one sensor panel, chosen as a user chooses it: what tests do with any panel, and the
// fixture of those that run on every panel that there is.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "panels/multi_function/multi_function_panel.h"
#include "panels/single_channel/kvt71338.h"
#include "panels/single_channel/kvt71346.h"
#include "panels/two_mode/two_mode_panel.h"
#include "shell/start_panel.h"
#include "support/test_program.h"
#include "workbench/gpio_panel.h"

namespace varzelin::testing {

// The form names of the start list's panels that the program has.
inline std::vector<std::string> every_panel() {
  TestProgram known;
  std::vector<std::string> names;
  for (const ModelRow& row : model_list) {
    if (known.program.forms.knows(row.panel)) names.emplace_back(row.panel);
  }
  return names;
}

// They without one that has a way of its own, in which its own tests hold it.
inline std::vector<std::string> every_panel_but(std::string_view form_name) {
  std::vector<std::string> names = every_panel();
  std::erase(names, form_name);
  return names;
}

// They without those over a converter, which set their sensor up by themselves in a collection and let it
// rest behind it.
inline std::vector<std::string> every_panel_without_converter() {
  std::vector<std::string> names = every_panel();
  for (const MultiFunctionModel& model : multi_function_models()) {
    std::erase(names, model.converter.panel.form_name);
  }
  for (const TwoModeModel& model : two_mode_models()) std::erase(names, model.converter.panel.form_name);
  return names;
}

inline std::string panel_name(const ::testing::TestParamInfo<std::string>& info) {
  return info.param;
}

// What a control says.
struct Words {
  std::string caption;
  std::string tip = {};
};
using WordsOfControls = std::map<std::string, Words>;  // by full name; none of a control that says nothing

inline WordsOfControls words_of(const forms::Form& form) {
  WordsOfControls all;
  for (const forms::Control* control : form.controls()) {
    const auto* caption =
        dynamic_cast<const forms::Property<std::string>*>(control->find_property("Caption"));
    const Words words{caption ? caption->get() : "", control->ToolTipText.get()};
    if (!words.caption.empty() || !words.tip.empty()) all.emplace(control->full_name(), words);
  }
  return all;
}

inline void expect_words(const forms::Form& form, const WordsOfControls& expected) {
  const WordsOfControls words = words_of(form);
  for (const auto& [name, wanted] : expected) {
    const auto entry = words.find(name);
    ASSERT_NE(entry, words.end()) << name;
    EXPECT_EQ(entry->second.caption, wanted.caption) << name;
    EXPECT_EQ(entry->second.tip, wanted.tip) << name;
  }
}

// In its full layout, converting infrared all the time: a reading is its count.
inline void measure_infrared(SensorPanel& panel) {
  constexpr int infrared_continuous = 6;
  auto& converter = dynamic_cast<ConverterPanel&>(panel);
  if (!converter.frmTimeBase.Visible) converter.Label13_DblClick();
  converter.choose_measurement(infrared_continuous);
  converter.txtInterval.Text = "100";
}

// What a panel needs beyond its load so that its sensor measures. A panel without an entry needs nothing.
inline const std::map<std::string, std::function<void(SensorPanel&)>> measuring_by_panel{
    {frmKVT71346::form_name,
     [](SensorPanel& panel) {
       constexpr int diode1_row = 2;
       auto& modes = dynamic_cast<frmKVT71346&>(panel);
       modes.Lst71346_Mode.select_quietly(diode1_row);
       modes.ModeIndex = diode1_row;
     }},
    {frmKVT71338::form_name,
     [](SensorPanel& panel) {
       // In its full layout, with the converter on. The chart has counts, in the scale box of all panels.
       auto& resistor = dynamic_cast<frmKVT71338&>(panel);
       if (!resistor.FrmDevice.Visible) resistor.Label13_DblClick();
       resistor.OptMeasQty(0).select_quietly();
       resistor.OptMeasQty_Click(0);
       resistor.OptMeasure(2).select_quietly();
       resistor.OptMeasure_Click(2);
       resistor.OptPwr(1).select_quietly();
       resistor.OptPwr_Click(1);
       resistor.OptGraph(1).select_quietly();
       resistor.txtInterval.Text = resistor.model.interval;
     }},
    {"frmKVT71385", measure_infrared},
    {"frmKVT71388", measure_infrared},
    {"frmKVT71390", measure_infrared},
    {"frmKVT71392", measure_infrared},
    {"frmKVT71374", measure_infrared},
    {"frmKVT71376", measure_infrared}};

// Makes the user's choice in the start list.
inline SensorPanel& choose_panel(TestProgram& test, const std::string& form_name) {
  const auto row = std::ranges::find(model_list, form_name, &ModelRow::panel);
  test.choose(test.form<frmStartup>().cboDeviceSelect, static_cast<int>(row - model_list.begin()));
  return dynamic_cast<SensorPanel&>(test.program.forms.touch(form_name));
}

// A fixture names its panel as it likes; what stands here works on the one that was opened last.
struct PanelProgram : TestProgram {
  SensorPanel* opened = nullptr;

  // Chooses a panel, without the traffic of its load.
  SensorPanel& open(const std::string& form_name) {
    opened = &choose_panel(*this, form_name);
    forget_traffic();
    return *opened;
  }
  void forget_traffic() {
    recorder.packets.clear();
    recorder.calls.clear();
  }
  // A panel whose sensor measures, in a closed session, without traffic of the load.
  void make_measure() {
    const auto entry = measuring_by_panel.find(opened->name());
    if (entry != measuring_by_panel.end()) entry->second(*opened);
    click(workbench().cmdUSBDisconnect);
    forget_traffic();
  }

  bool has_converter() const { return dynamic_cast<ConverterPanel*>(opened) != nullptr; }
  // The measurement that the end of a collection took away, with the boxes as they are.
  void measure_again() {
    if (!has_converter()) return;
    const std::vector<forms::TextBox*> boxes{&opened->txtInterval, &opened->txtScale, &opened->txtScaleMin};
    std::vector<std::string> texts;
    for (const forms::TextBox* box : boxes) texts.push_back(box->Text);
    measure_infrared(*opened);
    for (std::size_t i = 0; i < boxes.size(); ++i) boxes[i]->Text = texts[i];
    opened->cmdScale_Click();
    forget_traffic();
  }
  // Those of the set-up, of the loop, and of the options that let the sensor rest.
  std::size_t sessions_of_a_collection() const {
    if (dynamic_cast<const MultiFunctionPanel*>(opened)) return 2 + 1 + 4;
    if (dynamic_cast<const TwoModePanel*>(opened)) return 4 + 1;
    return 1;
  }

  // --- the user ---

  std::function<bool()> count_reaches(std::int32_t count) {
    return [this, count] { return store.Sample_Count >= count; };
  }
  std::function<void()> clicking(forms::Control& control) {
    return [&control] { forms::user::click(control); };
  }
  // Clicks the real-time button and stops once there are `count` samples.
  void collect(std::int32_t count) {
    measure_again();
    store.Sample_Count = 0;  // of the run before
    at_yield(count_reaches(count), clicking(opened->cmdStopData));
    click(opened->cmdCollectData);
  }
  // Clicks the timed button and stops once there are `count` samples.
  void sample(std::int32_t count) {
    store.Sample_Count = 0;
    at_yield(count_reaches(count), clicking(opened->cmdEndSampling));
    click(opened->cmdSample);
  }
  void press_enter(forms::TextBox& box) {
    program.runtime.dispatch([&] { forms::user::enter(box); });
  }
  void leave(forms::TextBox& box) {
    program.runtime.dispatch([&] { forms::user::leave(box); });
  }

  // --- the bus ---

  // Each reply of the sensor is this count from here on.
  void reading(int count) {
    recorder.before_call = [this, count] { queue_count(count); };
  }
  // The sensor's next reply, in the call before it: this count, unless one waits already.
  void queue_count(int count) {
    if (store.Pipe_Num != store.I2C_Pipe + in_pipe_offset || board.queued_replies() != 0) return;
    board.queue_reply({2, static_cast<std::uint8_t>(count), static_cast<std::uint8_t>(count >> 8)});
  }
  // The bytes of the transfers on one pipe, in order.
  std::vector<std::vector<int>> sent_on(int pipe) {
    std::vector<std::vector<int>> result;
    for (const Packet& packet : recorder.packets) {
      if (packet.pipe == pipe) result.push_back(packet.bytes);
    }
    return result;
  }
  std::size_t calls(std::string_view name) const {
    return static_cast<std::size_t>(std::ranges::count(recorder.calls, name));
  }

  // --- what to expect ---

  static forms::Color lamp(int color_index) { return forms::QBColor(color_index); }
  // What the time boxes show when nothing but the wait takes time.
  std::string pace_text(int interval_ms) const {
    return std::to_string(interval_ms - opened->model.sleep_margin);
  }

  // Whether the user can press it.
  static bool offered(const forms::Control& button) { return button.Visible && button.Enabled; }

  // As the panel is when no loop runs. The session may be open: not every panel closes it.
  void expect_idle() {
    EXPECT_TRUE(opened->cmdCollectData.Enabled);
    EXPECT_TRUE(opened->cmdSample.Enabled);
    EXPECT_TRUE(offered(opened->cmdSample));
    EXPECT_FALSE(offered(opened->cmdStopData));
    EXPECT_FALSE(offered(opened->cmdEndSampling));
    EXPECT_TRUE(offered(opened->Command4));
    const forms::Control* reset = opened->find("cbReset");
    EXPECT_TRUE(!reset || reset->Visible);
    EXPECT_TRUE(opened->frmTimeBase.Visible);
    EXPECT_EQ(store.Sample_Run, 0);
    EXPECT_EQ(store.AbortRequested, 0);
    EXPECT_EQ(store.Man_Usb_Conn, 0);
  }
  // After a real-time run.
  void expect_ended() {
    expect_idle();
    EXPECT_EQ(store.Usb_Open, 0);
  }
  // The session that a timed run leaves.
  Flag usb_open_after_sampling() const {
    const SessionEnd end = opened->model.sampling_session_end;
    return flag(end == SessionEnd::connect_again ||
                (end == SessionEnd::leave && opened->model.sampling_holds_session));
  }
};

// A test on every panel: INSTANTIATE_TEST_SUITE_P(Each, <suite>, ::testing::ValuesIn(every_panel()),
// panel_name).
struct PanelTest : ::testing::TestWithParam<std::string>, PanelProgram {
  SensorPanel& panel = open(GetParam());
};

}  // namespace varzelin::testing
