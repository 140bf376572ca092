// What the program costs without a front end.
#include "bridge/transfer.h"
#include "no_front_end.h"
#include "script_jobs.h"

namespace varzelin::benchmarks {
namespace {

struct Core {
  explicit Core(const Subject& panel = kvt71346) { subject.choose_panel(panel); }
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

void RealTimePasses(benchmark::State& state, const Subject& panel) {
  Core core(panel);
  real_time_passes(state, core.subject);
}
BENCHMARK_CAPTURE(RealTimePasses, KVT71346, kvt71346)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RealTimePasses, KVT71344, kvt71344)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RealTimePasses, KVT71338, kvt71338)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RealTimePasses, KVT71385_light, kvt71385_light)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RealTimePasses, KVT71385_proximity, kvt71385_proximity)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RealTimePasses, KVT71385_auto_range, kvt71385_auto_range)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RealTimePasses, KVT71374_light, kvt71374_light)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RealTimePasses, KVT71374_filter, kvt71374_filter)->Unit(benchmark::kMillisecond);

void LoadPanel(benchmark::State& state, const Subject& panel) {
  Core core(panel);
  load_panel(state, core.subject, [] {});
}
BENCHMARK_CAPTURE(LoadPanel, KVT71346, kvt71346)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(LoadPanel, KVT71344, kvt71344)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(LoadPanel, KVT71338, kvt71338)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(LoadPanel, KVT71385, kvt71385_light)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(LoadPanel, KVT71374, kvt71374_light)->Unit(benchmark::kMillisecond);

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

void LoadScriptOf1000Lines(benchmark::State& state) {
  NoFrontEnd front_end;
  front_end.file = write_script();
  ProgramUnderTest subject(front_end);
  load_script(state, subject);
}
BENCHMARK(LoadScriptOf1000Lines)->Unit(benchmark::kMillisecond);

void RunScriptOf1000Reads(benchmark::State& state) {
  NoFrontEnd front_end;
  front_end.file = write_script();
  ProgramUnderTest subject(front_end);
  run_script(state, subject);
}
BENCHMARK(RunScriptOf1000Reads)->Unit(benchmark::kMillisecond);

// What a read row costs at the least: its request and its reply.
void TwoBareTransfers(benchmark::State& state) {
  NoFrontEnd front_end;
  ProgramUnderTest subject(front_end);
  subject.board.mount("KVT71385");
  subject.workbench().cmdUSBConnect_Click();
  Store& store = subject.program.store;
  std::size_t transferred = 0;
  for (auto _ : state) {
    set_request(store, store.I2C_Pipe, {1, store.I2C_RdAdr, 0});
    subject.board.WDU_Transfer(store.Dev_Handle, store.Pipe_Num, false, store.Xfer_Buf, transferred);
    set_reply(store, store.I2C_Pipe + in_pipe_offset, 2);
    subject.board.WDU_Transfer(store.Dev_Handle, store.Pipe_Num, true, store.Xfer_Buf, transferred);
  }
}
BENCHMARK(TwoBareTransfers);

void ReadAllActiveRegisters(benchmark::State& state) {
  NoFrontEnd front_end;
  ProgramUnderTest subject(front_end);
  subject.board.mount("KVT71385");
  auto& workbench = subject.workbench();
  subject.program.store.Man_Usb_Conn = true_flag;
  workbench.cmdUSBConnect_Click();
  for (auto _ : state) workbench.cmdReadRegs_Click();
}
BENCHMARK(ReadAllActiveRegisters)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace varzelin::benchmarks

BENCHMARK_MAIN();
