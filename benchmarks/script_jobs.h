// A script of 1000 read rows on the script panel, and what is measured on it with any front end.
#pragma once

#include <filesystem>
#include <fstream>

#include "program_under_test.h"
#include "script/script_panel.h"

namespace varzelin::benchmarks {

inline constexpr int script_rows = 1000;

// Each row reads one register and expects what the mounted sensor's register holds.
inline std::string write_script() {
  const auto path = std::filesystem::temp_directory_path() / "varzelin_benchmark_script.txt";
  std::ofstream script(path);
  for (int i = 0; i < script_rows; ++i) script << "00,,00 # row\r\n";
  return path.string();
}

inline frmScriptOps& open_script(ProgramUnderTest& subject) {
  subject.board.mount("KVT71385");
  subject.workbench();
  auto& panel = subject.program.forms.touch<frmScriptOps>();
  panel.Show();
  return panel;
}

inline void load_script(benchmark::State& state, ProgramUnderTest& subject) {
  auto& panel = open_script(subject);
  for (auto _ : state) panel.ReloadScript();
}

inline void run_script(benchmark::State& state, ProgramUnderTest& subject) {
  auto& panel = open_script(subject);
  for (auto _ : state) panel.cmdExecAll_Click();
  if (panel.txtRdPass.Text != std::to_string(script_rows)) state.SkipWithError("not every read matched");
  state.counters["per row"] = benchmark::Counter(static_cast<double>(state.iterations()) * script_rows,
                                                 benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

}  // namespace varzelin::benchmarks
