// What the program costs without a front end.
#include "program_under_test.h"

namespace varzelin::benchmarks {
namespace {

class NoFrontEnd final : public forms::FrontEnd {
 public:
  int message_box(const forms::MessageBox& box) override { return box.answers().front(); }
  std::optional<std::string> input_box(const forms::InputBoxRequest&) override { return std::nullopt; }
  std::optional<std::string> file_dialog(const forms::FileDialog&) override { return std::nullopt; }
  void runtime_error(const forms::RunTimeError& error) override { throw error; }
  void idle(std::optional<forms::Clock::Duration>) override {}
};

struct Core {
  Core() { subject.choose_panel(); }
  NoFrontEnd front_end;
  ProgramUnderTest subject{front_end};
};

void Yield(benchmark::State& state) {
  Core core;
  yield(state, core.subject);
}
BENCHMARK(Yield);

void ConnectAndDisconnect(benchmark::State& state) {
  Core core;
  connect_and_disconnect(state, core.subject);
}
BENCHMARK(ConnectAndDisconnect)->Unit(benchmark::kMillisecond);

void RealTimePasses(benchmark::State& state) {
  Core core;
  real_time_passes(state, core.subject);
}
BENCHMARK(RealTimePasses)->Unit(benchmark::kMillisecond);

// The full width, every column different from its neighbours by a few rows.
void ScrollTrace(benchmark::State& state) {
  Core core;
  Store& store = core.subject.program.store;
  std::int32_t row = 1;
  for (auto _ : state) {
    row = row > 290 ? 1 : row + 7;
    store.Trace_Y[trace_entry] = row;
    Scroll_Trace(store, core.subject.panel().Picture1, 1);
  }
}
BENCHMARK(ScrollTrace)->Unit(benchmark::kMicrosecond);

void SaveScreen(benchmark::State& state) {
  Core core;
  for (auto _ : state) Save_Screen(core.subject.program.store, core.subject.panel().Picture1);
}
BENCHMARK(SaveScreen)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace varzelin::benchmarks

BENCHMARK_MAIN();
