// A whole program for a test: virtual clock, simulated board, and a front end that answers dialogs and
// acts as the user at chosen yields.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "boards/simulated/simulated_board.h"
#include "bridge/program.h"
#include "forms/user.h"
#include "shell/application.h"
#include "workbench/workbench.h"

namespace varzelin::testing {

// Answers dialogs as queued, or as the console would, and keeps what was asked.
class TestFrontEnd final : public forms::FrontEnd {
 public:
  std::vector<forms::MessageBox> boxes;
  std::vector<forms::InputBoxRequest> input_boxes;
  std::vector<forms::FileDialog> file_dialogs;
  std::vector<int> errors;  // numbers of the default error reports
  std::deque<int> box_answers;
  std::deque<std::optional<std::string>> input_answers;
  std::deque<std::optional<std::string>> file_answers;
  // Called at every yield while set.
  std::function<void()> at_yield;

  int message_box(const forms::MessageBox& box) override {
    boxes.push_back(box);
    return take(box_answers, box.answers().front());
  }
  std::optional<std::string> input_box(const forms::InputBoxRequest& request) override {
    input_boxes.push_back(request);
    return take(input_answers, std::optional<std::string>());
  }
  std::optional<std::string> file_dialog(const forms::FileDialog& dialog) override {
    file_dialogs.push_back(dialog);
    return take(file_answers, std::optional<std::string>());
  }
  void runtime_error(const forms::RunTimeError& error) override { errors.push_back(error.number); }
  void yield() override {
    if (at_yield) at_yield();
  }
  void idle(std::optional<forms::Clock::Duration>) override {}

 private:
  template <class T>
  static T take(std::deque<T>& queue, T otherwise) {
    if (queue.empty()) return otherwise;
    T answer = queue.front();
    queue.pop_front();
    return answer;
  }
};

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
      packets.push_back({record.pipe, {record.data.begin(), record.data.end()}, record.status, record.size});
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
