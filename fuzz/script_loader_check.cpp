#include "script_loader_check.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include "script/script_file.h"
#include "script/script_panel.h"
#include "support/test_program.h"

namespace varzelin {
namespace {

void expect(bool holds, const char* promise) {
  if (!holds) throw std::logic_error(promise);
}

void check_row(std::string_view line) {
  std::string address = "88";
  const ScriptRow row = parse_script_line(std::string(line), address);
  if (row.error != 0) return;
  expect(address.size() <= 2, "an address has at most two characters");
  expect(row.address.size() <= 2, "so has that of a row");
  expect(row.reg_qty.has_value() == row.rd_qty.has_value(), "byte counts come together");
  expect(row.wr_qty.has_value() == row.rd_qty.has_value(), "byte counts come together");
  expect(row.is_read == !row.data_rd.empty(), "expected data make a read");
  expect(row.is_read == (row.act_rd == "--"), "a read shows that it waits");
  if (row.operation == no_operation) {
    expect(row.delay == 0 && !row.reg_qty, "a row without operation does nothing");
  }
}

// The panel of one program that lives as long as the process; starting one takes longer than a script.
struct Bench : testing::TestProgram {
  std::filesystem::path file;
  frmScriptOps* panel = nullptr;

  Bench() {
    std::string name = (std::filesystem::temp_directory_path() / "scriptfuzzXXXXXX").string();
    const char* folder = ::mkdtemp(name.data());
    if (!folder) throw std::runtime_error("no temporary folder");
    file = std::filesystem::path(folder) / "script.txt";
    board.mount("KVT71385");
    workbench();
    panel = &form<frmScriptOps>();
  }
  ~Bench() { std::filesystem::remove_all(file.parent_path()); }

  void load(std::string_view script) {
    // A load that failed leaves its file open; a fresh file stands for the user's next choice.
    std::filesystem::remove(file);
    std::ofstream(file, std::ios::binary) << script;
    user.file_answers = {file.string()};
    click(panel->mnuScript_Read);
    for (int number = 1; number <= 255; ++number) program.runtime.files.Close(number);
    expect(user.errors.empty(), "no script reaches the default error report");
    expect(panel->vbalGrid1.Rows() <= frmScriptOps::most_lines + 1, "the grid has its limit");
    expect(panel->cmdReload2.Enabled, "a chosen file can be loaded again");
    user.file_dialogs.clear();
  }

  void run() {
    user.yields_left = testing::TestFrontEnd().yields_left;  // of each run its own
    click(panel->cmdExecAll);
    expect(user.errors.empty(), "no script reaches the default error report");
    expect(store.Usb_Open == 0, "a pass closes its session");
    expect(panel->txtRunning.Text == "Done" && panel->cmdExecAll.Enabled, "a pass ends");
    workbench().Txtlog.Text = "";
    user.boxes.clear();
    recorder.packets.clear();
    recorder.calls.clear();
  }
};

Bench& bench() {
  static Bench only;
  return only;
}

}  // namespace

void check_script_load(std::string_view file) {
  for (std::size_t begin = 0; begin <= file.size();) {
    const std::size_t end = std::min(file.find('\n', begin), file.size());
    check_row(file.substr(begin, end - begin));
    begin = end + 1;
  }
  bench().load(file);
}

void check_script_run(std::string_view file) {
  bench().load(file);
  bench().run();
}

}  // namespace varzelin
