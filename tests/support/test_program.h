// A whole program for a test: virtual clock, simulated board, and a front end that answers dialogs and
// acts as the user at chosen yields.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "boards/simulated/simulated_board.h"
#include "bridge/program.h"
#include "forms/user.h"
#include "shell/application.h"
#include "support/test_front_end.h"
#include "workbench/workbench.h"

namespace varzelin::testing {

// One transfer as it went over the pipes.
struct Packet {
  int pipe;
  std::vector<int> bytes;  // those that went through
  boards::Status status;
  std::size_t size;
  bool operator==(const Packet&) const = default;
};

class Recorder final : public boards::Driver::Observer {
 public:
  std::vector<Packet> packets;
  std::vector<std::string> calls;
  // Called before each driver call.
  std::function<void()> before_call;

  void call_begins() override {
    if (before_call) before_call();
  }
  void call_ended(const boards::CallRecord& record) override {
    calls.emplace_back(record.call);
    if (record.transfer) {
      packets.push_back(
          {record.pipe, {record.data.begin(), record.data.end()}, record.status, record.buffer.size()});
    }
  }
};

struct TestProgram {
  forms::VirtualClock clock;
  boards::SimulatedBoard board{clock};
  TestFrontEnd user;
  Recorder recorder;
  Program program{clock, board, user};
  Store& store = program.store;

  TestProgram() {
    board.observer = &recorder;
    add_forms(program);
    start(program);
  }

  frmI2C_General& workbench() { return program.forms.touch<frmI2C_General>(); }
  const std::string& log() { return workbench().Txtlog.Text.get(); }

  template <class F>
  F& form() {
    return program.forms.touch<F>();
  }
  // A click with the default error report around it, as the message loop does it.
  void click(forms::Control& control) {
    program.runtime.dispatch([&] { forms::user::click(control); });
  }
  void choose(forms::ListControl& list, int row) {
    program.runtime.dispatch([&] { forms::user::click_row(list, row); });
  }
  // Runs `action` once, at the first yield at which `when` holds.
  void at_yield(std::function<bool()> when, std::function<void()> action) {
    user.at_yield = [this, when = std::move(when), action = std::move(action)] {
      if (!when()) return;
      program.runtime.post(action);
      const auto kept_alive = std::exchange(user.at_yield, nullptr);
    };
  }
  // True when the action ended the program.
  bool ends(const std::function<void()>& action) {
    try {
      program.runtime.dispatch(action);
    } catch (const forms::EndProgram&) {
      return true;
    }
    return false;
  }
};

}  // namespace varzelin::testing
