// A program with a script panel, and script files in a folder of the test's own.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <string>
#include <string_view>

#include "script/script_panel.h"
#include "support/colors.h"
#include "support/test_program.h"

namespace varzelin::testing {

// What the log puts behind a message within the first second of the virtual clock.
inline constexpr std::string_view stamp = " :11-25-2008 14:03:0";

struct ScriptProgram : TestProgram {
  std::filesystem::path folder;

  ScriptProgram() {
    std::string name = ::testing::TempDir() + "scriptXXXXXX";
    folder = ::mkdtemp(name.data());
    board.mount("KVT71385");
    workbench();
  }
  ~ScriptProgram() { std::filesystem::remove_all(folder); }

  std::string write_file(const std::string& name, std::string_view text) {
    const auto path = folder / name;
    std::ofstream(path, std::ios::binary) << text;
    return path.string();
  }
  // Opens a file on the panel; the first time the panel itself asks for it when it loads.
  frmScriptOps& open_path(const std::string& path) {
    user.file_answers.push_back(path);
    if (auto* loaded = dynamic_cast<frmScriptOps*>(program.forms.loaded(frmScriptOps::form_name))) {
      click(loaded->mnuScript_Read);
      return *loaded;
    }
    program.runtime.dispatch([this] { form<frmScriptOps>().Show(); });
    recorder.packets.clear();
    recorder.calls.clear();
    return form<frmScriptOps>();
  }
  frmScriptOps& open(std::string_view text, const std::string& name = "script.txt") {
    return open_path(write_file(name, text));
  }
  // What a user does to run one row.
  void select(frmScriptOps& panel, int row) {
    program.runtime.dispatch([&] { panel.vbalGrid1.select_by_user(row, 1); });
  }
  static std::string text(const frmScriptOps& panel, int row, int column) {
    return panel.vbalGrid1.cell(row, column).text;
  }
  static std::optional<forms::Color> back(const frmScriptOps& panel, int row, int column) {
    return panel.vbalGrid1.cell(row, column).back;
  }
  // The bytes that went over the I2C pipes, oldest first.
  std::vector<std::vector<int>> i2c(bool in) const {
    std::vector<std::vector<int>> bytes;
    for (const Packet& packet : recorder.packets) {
      if (packet.pipe == (in ? boards::pipe_i2c_in : boards::pipe_i2c_out)) bytes.push_back(packet.bytes);
    }
    return bytes;
  }
  std::size_t count_calls(const std::string& call) const {
    return static_cast<std::size_t>(std::ranges::count(recorder.calls, call));
  }
  // How often the log has this text.
  std::size_t mentioned(const std::string& message) {
    std::size_t found = 0;
    for (std::size_t at = log().find(message); at != std::string::npos; at = log().find(message, at + 1)) {
      ++found;
    }
    return found;
  }
};

struct ScriptFixture : ::testing::Test, ScriptProgram {};

using Bytes = std::vector<int>;
using ByteLists = std::vector<Bytes>;

}  // namespace varzelin::testing
