// What the same jobs cost with the panel in a window.
#include <QApplication>
#include <sstream>

#include "boards/trace/pcapng.h"
#include "no_front_end.h"
#include "script_jobs.h"
#include "window/bus_trace_model.h"
#include "window/look.h"
#include "window/window_front_end.h"
#include "window/windows.h"

namespace varzelin::benchmarks {
namespace {

struct InWindow {
  explicit InWindow(const Subject& panel = kvt71346) {
    subject.choose_panel(panel);
    for (int i = 0; i < 100; ++i) QCoreApplication::processEvents();
  }
  window::WindowFrontEnd front_end;
  ProgramUnderTest subject{front_end};
  window::Windows windows{subject.program, front_end, &subject.board};  // before any form is loaded
};

void WindowYield(benchmark::State& state) {
  InWindow window;
  yield(state, window.subject);
}
BENCHMARK(WindowYield);

void WindowConnectAndDisconnect(benchmark::State& state) {
  InWindow window;
  connect_and_disconnect(state, window.subject);
}
BENCHMARK(WindowConnectAndDisconnect)->Unit(benchmark::kMillisecond);

void WindowRealTimePasses(benchmark::State& state, const Subject& panel) {
  InWindow window(panel);
  real_time_passes(state, window.subject);
}
BENCHMARK_CAPTURE(WindowRealTimePasses, KVT71346, kvt71346)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WindowRealTimePasses, KVT71344, kvt71344)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WindowRealTimePasses, KVT71338, kvt71338)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WindowRealTimePasses, KVT71385_light, kvt71385_light)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WindowRealTimePasses, KVT71385_proximity, kvt71385_proximity)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WindowRealTimePasses, KVT71385_auto_range, kvt71385_auto_range)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WindowRealTimePasses, KVT71374_light, kvt71374_light)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WindowRealTimePasses, KVT71374_filter, kvt71374_filter)->Unit(benchmark::kMillisecond);

void WindowLoadPanel(benchmark::State& state, const Subject& panel) {
  InWindow window(panel);
  load_panel(state, window.subject, [&] {
    window.windows.show_changes();
    for (int i = 0; i < 10; ++i) QCoreApplication::processEvents();
  });
}
BENCHMARK_CAPTURE(WindowLoadPanel, KVT71346, kvt71346)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WindowLoadPanel, KVT71344, kvt71344)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WindowLoadPanel, KVT71338, kvt71338)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WindowLoadPanel, KVT71385, kvt71385_light)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WindowLoadPanel, KVT71374, kvt71374_light)->Unit(benchmark::kMillisecond);

// The grid with its 1000 rows is on screen while they run.
void WindowRunScriptOf1000Reads(benchmark::State& state) {
  struct : window::WindowFrontEnd {
    std::optional<std::string> file_dialog(const forms::FileDialog&) override { return write_script(); }
  } front_end;
  ProgramUnderTest subject{front_end};
  window::Windows windows{subject.program, front_end, &subject.board};
  run_script(state, subject);
}
BENCHMARK(WindowRunScriptOf1000Reads)->Unit(benchmark::kMillisecond);

// A full bus trace.
struct Traced {
  Traced() {
    subject.workbench().cmdUSBConnect_Click();
    trace.start();
    for (std::size_t i = 0; i < boards::Transfers::most; ++i) write(static_cast<std::uint8_t>(i));
  }
  void write(std::uint8_t value) {
    std::uint8_t packet[] = {1, 0x88, 1, value};
    std::size_t transferred = 0;
    subject.board.WDU_Transfer(subject.program.store.Dev_Handle, boards::pipe_i2c_out, false, packet,
                               transferred);
  }
  NoFrontEnd front_end;
  ProgramUnderTest subject{front_end};
  boards::BusTrace trace{subject.board, subject.clock};
};

// The worst key of a filter: every row is put into words, none passes.
void BusTraceFilter(benchmark::State& state) {
  Traced subject;
  window::BusTraceModel model(subject.trace, nullptr);
  for (auto _ : state) model.set_filter({.text = "no such words"});
}
BENCHMARK(BusTraceFilter)->Unit(benchmark::kMillisecond);

void BusTraceCapture(benchmark::State& state) {
  Traced subject;
  for (auto _ : state) {
    std::ostringstream out;
    boards::write_pcapng(out, subject.trace, "benchmark");
  }
}
BENCHMARK(BusTraceCapture)->Unit(benchmark::kMillisecond);

// What keeping a transfer adds to it.
void BusTraceTransfer(benchmark::State& state) {
  Traced subject;
  if (state.range(0) == 0) subject.trace.stop();
  for (auto _ : state) subject.write(5);
}
BENCHMARK(BusTraceTransfer)->ArgName("open")->Arg(0)->Arg(1);

}  // namespace
}  // namespace varzelin::benchmarks

int main(int count, char** arguments) {
  QApplication application(count, arguments);
  window::set_look(application);
  benchmark::Initialize(&count, arguments);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
