// What the same jobs cost with the panel in a window.
#include <QApplication>

#include "script_jobs.h"
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

}  // namespace
}  // namespace varzelin::benchmarks

int main(int count, char** arguments) {
  QApplication application(count, arguments);
  window::set_look(application);
  benchmark::Initialize(&count, arguments);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
