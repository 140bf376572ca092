// The KVT71346/7 panel on the simulated board without bus time, and the jobs that are measured on it
// with any front end.
#pragma once

#include <benchmark/benchmark.h>

#include "boards/simulated/simulated_board.h"
#include "bridge/program.h"
#include "forms/user.h"
#include "panels/single_channel/kvt71346.h"
#include "shell/application.h"
#include "shell/start_panel.h"
#include "waveform/trace.h"
#include "workbench/workbench.h"

namespace varzelin::benchmarks {

// Passes of one measured collection: the trace fills and then scrolls over the full width.
inline constexpr int passes = 1000;

struct ProgramUnderTest {
  explicit ProgramUnderTest(forms::FrontEnd& front_end) : program(clock, board, front_end) {
    board.set_timing(false);
    add_forms(program);
    start(program);
  }

  frmKVT71346& choose_panel() {
    forms::user::click_row(program.forms.touch<frmStartup>().cboDeviceSelect, 0);
    auto& panel = program.forms.touch<frmKVT71346>();
    forms::user::click_row(panel.Lst71346_Mode, 2);
    return panel;
  }

  // Sleeps move the virtual clock only, so that they cost nothing.
  forms::VirtualClock clock;
  boards::SimulatedBoard board{clock};
  Program program;
};

inline void yield(benchmark::State& state, ProgramUnderTest& subject) {
  subject.choose_panel();
  for (auto _ : state) subject.program.runtime.DoEvents();
}

inline void connect_and_disconnect(benchmark::State& state, ProgramUnderTest& subject) {
  subject.choose_panel();
  auto& workbench = subject.program.forms.touch<frmI2C_General>();
  for (auto _ : state) {
    workbench.cmdUSBConnect_Click();
    workbench.cmdUSBDisconnect_Click();
    state.PauseTiming();
    workbench.cmdClearLog_Click();
    state.ResumeTiming();
  }
}

// One pass of the real-time loop: read, trigger, row, trace, count. `stop_after_passes` has to post the
// stop button's click once Sample_Count reached `passes`.
template <class StopAfterPasses>
void real_time_pass(benchmark::State& state, ProgramUnderTest& subject, StopAfterPasses&& stop_after_passes) {
  auto& panel = subject.choose_panel();
  auto& store = subject.program.store;
  panel.txtInterval.Text = "0";
  double light = 100;
  for (auto _ : state) {
    state.PauseTiming();
    store.Man_Usb_Conn = true_flag;
    panel.set().touch<frmI2C_General>().cmdUSBConnect_Click();
    subject.board.scene().light_lux = light = light > 1000 ? 100 : light + 70;
    store.Sample_Count = 0;
    stop_after_passes([&store] { return store.Sample_Count >= passes; },
                      [&panel] { panel.cmdStopData_Click(); });
    state.ResumeTiming();
    panel.cmdCollectData_Click();
  }
  state.counters["pass"] = benchmark::Counter(static_cast<double>(state.iterations()) * passes,
                                              benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

}  // namespace varzelin::benchmarks
