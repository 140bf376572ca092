// What the program costs without a front end.
#include <functional>

#include "program_under_test.h"

namespace varzelin::benchmarks {
namespace {

// Answers dialogs with their first answer; acts once at a yield.
class QuietFrontEnd final : public forms::FrontEnd {
 public:
  std::function<bool()> when;
  std::function<void()> action;

  int message_box(const forms::MessageBox& box) override { return box.answers().front(); }
  std::optional<std::string> input_box(const forms::InputBoxRequest&) override { return std::nullopt; }
  std::optional<std::string> file_dialog(const forms::FileDialog&) override { return std::nullopt; }
  void runtime_error(const forms::RunTimeError&) override {}
  void yield() override {
    if (when && when()) {
      when = nullptr;
      action();
    }
  }
  void idle(std::optional<forms::Clock::Duration>) override {}
};

void Yield(benchmark::State& state) {
  QuietFrontEnd front_end;
  ProgramUnderTest subject(front_end);
  yield(state, subject);
}
BENCHMARK(Yield);

void ConnectAndDisconnect(benchmark::State& state) {
  QuietFrontEnd front_end;
  ProgramUnderTest subject(front_end);
  connect_and_disconnect(state, subject);
}
BENCHMARK(ConnectAndDisconnect)->Unit(benchmark::kMillisecond);

void RealTimePass(benchmark::State& state) {
  QuietFrontEnd front_end;
  ProgramUnderTest subject(front_end);
  real_time_pass(state, subject, [&](auto when, auto action) {
    front_end.action = action;
    front_end.when = when;
  });
}
BENCHMARK(RealTimePass)->Unit(benchmark::kMillisecond);

void ScrollTrace(benchmark::State& state) {
  QuietFrontEnd front_end;
  ProgramUnderTest subject(front_end);
  auto& panel = subject.choose_panel();
  Store& store = subject.program.store;
  std::int32_t row = 1;
  for (auto _ : state) {
    row = row > 290 ? 1 : row + 7;
    store.Trace_Y[trace_entry] = row;
    Scroll_Trace(store, panel.Picture1, 1);
  }
}
BENCHMARK(ScrollTrace)->Unit(benchmark::kMicrosecond);

void SaveScreen(benchmark::State& state) {
  QuietFrontEnd front_end;
  ProgramUnderTest subject(front_end);
  auto& panel = subject.choose_panel();
  for (auto _ : state) Save_Screen(subject.program.store, panel.Picture1);
}
BENCHMARK(SaveScreen)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace varzelin::benchmarks

BENCHMARK_MAIN();
