// The workbench, loaded, with a register file in the board's socket, and what its tests look at.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "forms/color.h"
#include "support/colors.h"
#include "support/test_program.h"

namespace varzelin::testing {

// A request on the I2C pipe as it went out, and a reply of which `size` bytes were asked for.
inline Packet request(std::vector<int> bytes) {
  const std::size_t size = bytes.size();
  return {boards::pipe_i2c_out, std::move(bytes), boards::success, size};
}
inline Packet reply(std::vector<int> bytes, std::size_t size) {
  return {boards::pipe_i2c_in, std::move(bytes), boards::success, size};
}

using Packets = std::vector<Packet>;

inline std::ostream& operator<<(std::ostream& out, const Packet& packet) {
  out << "pipe " << packet.pipe << " size " << packet.size << " status " << packet.status << " bytes";
  for (const int byte : packet.bytes) out << ' ' << byte;
  return out;
}

struct WorkbenchTest : ::testing::Test, TestProgram {
  frmI2C_General& bench = workbench();

  WorkbenchTest() {
    board.mount("KVT71385");
    forget();
  }

  // What happened so far is no longer looked at.
  void forget() {
    recorder.packets.clear();
    recorder.calls.clear();
    bench.Txtlog.Text = "";
  }

  void press_enter(TextBox& box) {
    program.runtime.dispatch([&] { forms::user::enter(box); });
  }
  void press_enter(TextBox& box, const std::string& text) {
    box.Text = text;
    press_enter(box);
  }
  void double_click(TextBox& box, const std::string& text) {
    box.Text = text;
    program.runtime.dispatch([&] { forms::user::double_click(box); });
  }
  void hold_session() {
    bench.ChKManUsbConn.Value = 1;
    click(bench.cmdUSBConnect);
    forget();
  }

  // How many entries of exactly this text are in the log.
  int logged(const std::string& text) {
    const std::string end_of_last = "\r\n\r\n";
    const std::string entry = text + " :11-25-2008 ";
    int count = 0;
    for (std::size_t at = log().find(entry); at != std::string::npos; at = log().find(entry, at + 1)) {
      if (at == 0 || std::string_view(log()).substr(0, at).ends_with(end_of_last)) ++count;
    }
    return count;
  }
  auto calls(std::string_view name) const { return std::ranges::count(recorder.calls, name); }
  int yields_of(const std::function<void()>& action) {
    int count = 0;
    user.at_yield = [&] { ++count; };
    action();
    user.at_yield = nullptr;
    return count;
  }
};

}  // namespace varzelin::testing
