// Answers to the program's dialogs, queued before they come up.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "forms/runtime.h"

namespace console {

class Dialogs {
 public:
  // False: no message box has such a button.
  bool queue_message_box(std::string_view button);
  // None is Cancel.
  void queue_input_box(std::optional<std::string> text) { input_boxes_.push_back(std::move(text)); }
  void queue_file(std::optional<std::string> path) { files_.push_back(std::move(path)); }

  // Each takes the next answer out of its queue. A box that lacks the queued button is answered as if
  // nothing had been queued: with OK, with Cancel where it has no OK, with its last button where it
  // has neither.
  int message_box(const forms::MessageBox& box);
  std::optional<std::string> input_box() { return take(input_boxes_); }
  std::optional<std::string> file() { return take(files_); }

  static const char* button_name(int answer);

 private:
  static std::optional<std::string> take(std::deque<std::optional<std::string>>& queue);

  std::deque<int> message_boxes_;
  std::deque<std::optional<std::string>> input_boxes_;
  std::deque<std::optional<std::string>> files_;
};

}  // namespace console
