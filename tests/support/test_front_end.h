// A front end without a screen: dialogs are answered as queued, the user acts at chosen yields.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "forms/runtime.h"

namespace varzelin::testing {

// Answers dialogs as queued, or as the console would, and keeps what was asked.
class TestFrontEnd final : public forms::FrontEnd {
 public:
  std::vector<forms::MessageBox> boxes;
  std::vector<forms::InputBoxRequest> inputs;
  std::vector<forms::FileDialog> file_dialogs;
  std::vector<int> errors;  // numbers of the default error reports
  std::deque<int> box_answers;
  std::deque<std::optional<std::string>> input_answers;
  std::deque<std::optional<std::string>> file_answers;
  // How many yields are left. A run that would go on for ever fails once there are none: what it throws is
  // no business of any handler, nor of the program's end or error report, and reaches the test.
  struct OutOfYields {};
  std::int64_t yields_left = 5'000'000;
  // Called at every yield while set.
  std::function<void()> at_yield;
  // Called when nothing is to do, while set.
  std::function<void(std::optional<forms::Clock::Duration>)> at_idle;

  int message_box(const forms::MessageBox& box) override {
    boxes.push_back(box);
    return take(box_answers, box.answers().front());
  }
  std::optional<std::string> input_box(const forms::InputBoxRequest& request) override {
    inputs.push_back(request);
    return take(input_answers, std::optional<std::string>());
  }
  std::optional<std::string> file_dialog(const forms::FileDialog& dialog) override {
    file_dialogs.push_back(dialog);
    return take(file_answers, std::optional<std::string>());
  }
  void runtime_error(const forms::RunTimeError& error) override { errors.push_back(error.number); }
  void yield() override {
    if (yields_left == 0) throw OutOfYields{};
    --yields_left;
    if (at_yield) at_yield();
  }
  void idle(std::optional<forms::Clock::Duration> limit) override {
    if (at_idle) at_idle(limit);
  }

 private:
  template <class T>
  static T take(std::deque<T>& queue, T otherwise) {
    if (queue.empty()) return otherwise;
    T answer = queue.front();
    queue.pop_front();
    return answer;
  }
};

}  // namespace varzelin::testing
