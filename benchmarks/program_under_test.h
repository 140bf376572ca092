// A sensor panel on the simulated board without bus time, and the jobs that are measured on it with any
// front end.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "boards/simulated/simulated_board.h"
#include "bridge/program.h"
#include "forms/controls.h"
#include "forms/user.h"
#include "panels/common/sensor_panel.h"
#include "shell/application.h"
#include "shell/start_panel.h"
#include "waveform/trace.h"
#include "workbench/workbench.h"

namespace varzelin::benchmarks {

// Passes of one measured collection: the trace fills and then scrolls over the full width.
inline constexpr int passes = 1000;

// A panel, and what a user does so that it measures.
struct Subject {
  const char* form;
  void (*prepare)(SensorPanel& panel);
  // Before each collection.
  void (*again)(SensorPanel& panel) = [](SensorPanel&) {};
};

inline void click(SensorPanel& panel, const char* control, int index) {
  forms::user::click(*panel.find(control, index));
}

inline constexpr Subject kvt71346{"frmKVT71346", [](SensorPanel& panel) {
                                    forms::user::click_row(
                                        dynamic_cast<forms::ListControl&>(*panel.find("Lst71346_Mode")), 2);
                                  }};
// Under external timing it takes both readings, and its ratio goes on the chart.
inline constexpr Subject kvt71344{"frmKVT71344", [](SensorPanel& panel) { click(panel, "ChkCommand", 2); }};
// Continuous: each pass shows a count, and what it is in lux.
inline constexpr Subject kvt71338{"frmKVT71338", [](SensorPanel& panel) { click(panel, "OptMeasQty", 0); }};

// The end of a collection takes the measurement away.
inline constexpr Subject kvt71385_light{"frmKVT71385", [](SensorPanel&) {},
                                        [](SensorPanel& panel) { click(panel, "OptMeasure", 5); }};
inline constexpr Subject kvt71385_proximity{"frmKVT71385", [](SensorPanel&) {},
                                            [](SensorPanel& panel) { click(panel, "OptMeasure", 7); }};
inline constexpr Subject kvt71385_auto_range{"frmKVT71385",
                                             [](SensorPanel& panel) { click(panel, "OptGainMode", 1); },
                                             [](SensorPanel& panel) { click(panel, "OptMeasure", 6); }};

inline constexpr Subject kvt71374_light{"frmKVT71374",
                                        [](SensorPanel& panel) { click(panel, "OptMeasure", 5); }};
inline constexpr Subject kvt71374_filter{"frmKVT71374", [](SensorPanel& panel) {
                                           click(panel, "OptITime", 1);
                                           click(panel, "OptMeasure", 9);
                                         }};

struct ProgramUnderTest {
  explicit ProgramUnderTest(forms::FrontEnd& front_end) : program(clock, board, front_end) {
    board.set_timing(false);
    add_forms(program);
    program.runtime.poll = [this] {
      board.deliver_notifications();
      if (stop && program.store.Sample_Count >= passes) {
        stop = false;
        panel().cmdStopData_Click();
      }
    };
  }

  SensorPanel& panel() { return dynamic_cast<SensorPanel&>(program.forms.touch(form)); }
  frmI2C_General& workbench() { return program.forms.touch<frmI2C_General>(); }

  void choose_panel(const Subject& subject = kvt71346) {
    form = subject.form;
    again = subject.again;
    start(program);
    const auto row = std::ranges::find(model_list, std::string_view(form), &ModelRow::panel);
    forms::user::click_row(program.forms.touch<frmStartup>().cboDeviceSelect,
                           static_cast<int>(row - model_list.begin()));
    subject.prepare(panel());
  }

  // Sleeps move the virtual clock only, so that they cost nothing.
  forms::VirtualClock clock;
  boards::SimulatedBoard board{clock};
  Program program;
  std::string form = kvt71346.form;
  void (*again)(SensorPanel&) = kvt71346.again;
  bool stop = false;  // once `passes` samples are there
};

inline void yield(benchmark::State& state, ProgramUnderTest& subject) {
  for (auto _ : state) subject.program.runtime.DoEvents();
}

inline void connect_and_disconnect(benchmark::State& state, ProgramUnderTest& subject) {
  auto& workbench = subject.workbench();
  for (auto _ : state) {
    workbench.cmdUSBConnect_Click();
    workbench.cmdUSBDisconnect_Click();
    state.PauseTiming();
    workbench.cmdClearLog_Click();
    state.ResumeTiming();
  }
}

// A collection without pauses: the time of a pass is what it takes by `passes`. Opening the session isn't
// measured, closing it is.
inline void real_time_passes(benchmark::State& state, ProgramUnderTest& subject) {
  auto& panel = subject.panel();
  auto& store = subject.program.store;
  double light = 100;
  for (auto _ : state) {
    state.PauseTiming();
    subject.again(panel);
    panel.txtInterval.Text = "0";
    store.Man_Usb_Conn = true_flag;
    subject.workbench().cmdUSBConnect_Click();
    subject.workbench().cmdClearLog_Click();
    subject.board.scene().light_lux = light = light > 1000 ? 100 : light + 70;
    store.Sample_Count = 0;
    subject.stop = true;
    state.ResumeTiming();
    panel.cmdCollectData_Click();
  }
  state.counters["per pass"] = benchmark::Counter(static_cast<double>(state.iterations()) * passes,
                                                  benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// A panel's load by itself: the workbench is there. `shown` brings it on screen.
template <class Shown>
void load_panel(benchmark::State& state, ProgramUnderTest& subject, Shown&& shown) {
  for (auto _ : state) {
    state.PauseTiming();
    subject.program.forms.unload(subject.panel(), 0);
    subject.program.forms.sweep();
    subject.workbench().cmdClearLog_Click();
    shown();
    state.ResumeTiming();
    subject.panel().Show();
    shown();
  }
}

}  // namespace varzelin::benchmarks
