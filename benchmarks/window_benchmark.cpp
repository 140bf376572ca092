// What the same jobs cost with the panel in a window.
#include <QApplication>
#include <sstream>

#include "boards/trace/pcapng.h"
#include "script_jobs.h"
#include "window/bus_trace_model.h"
#include "window/look.h"
#include "window/window_front_end.h"
#include "window/windows.h"

namespace varzelin::benchmarks {
namespace {

struct InWindow {
  InWindow() {
    subject.choose_panel();
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

void WindowRealTimePasses(benchmark::State& state) {
  InWindow window;
  real_time_passes(state, window.subject);
}
BENCHMARK(WindowRealTimePasses)->Unit(benchmark::kMillisecond);

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
    board.set_timing(false);
    boards::Handle session = 0;
    board.WDU_VB_Init(session, {0x7A53, 0x2005},
                      {[this](boards::Handle handle, const boards::DeviceInfo&) {
                         device = handle;
                         return true;
                       },
                       {}});
    board.deliver_notifications();
    trace.start();
    std::uint8_t packet[] = {1, 0x88, 1, 5};
    std::size_t transferred = 0;
    for (std::size_t i = 0; i < boards::Transfers::most; ++i) {
      packet[3] = static_cast<std::uint8_t>(i);
      board.WDU_Transfer(device, boards::pipe_i2c_out, false, packet, transferred);
    }
  }
  forms::VirtualClock clock;
  boards::SimulatedBoard board{clock};
  boards::BusTrace trace{board, clock};
  boards::Handle device = 0;
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
  std::uint8_t packet[] = {1, 0x88, 1, 5};
  std::size_t transferred = 0;
  for (auto _ : state)
    subject.board.WDU_Transfer(subject.device, boards::pipe_i2c_out, false, packet, transferred);
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
