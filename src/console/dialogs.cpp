#include "console/dialogs.h"

#include <algorithm>
#include <array>
#include <utility>

namespace console {
namespace {

struct Button {
  int answer;
  const char* name;
};
constexpr std::array buttons{Button{forms::vbOK, "OK"}, Button{forms::vbCancel, "Cancel"},
                             Button{forms::vbRetry, "Retry"}, Button{forms::vbYes, "Yes"},
                             Button{forms::vbNo, "No"}};

}  // namespace

const char* Dialogs::button_name(int answer) {
  const auto found = std::ranges::find(buttons, answer, &Button::answer);
  return found == buttons.end() ? "" : found->name;
}

bool Dialogs::queue_message_box(std::string_view button) {
  const auto found = std::ranges::find_if(buttons, [&](const Button& known) { return button == known.name; });
  if (found == buttons.end()) return false;
  message_boxes_.push_back(found->answer);
  return true;
}

int Dialogs::message_box(const forms::MessageBox& box) {
  const auto answers = box.answers();
  const auto has = [&](int answer) { return std::ranges::find(answers, answer) != answers.end(); };
  if (!message_boxes_.empty()) {
    const int queued = message_boxes_.front();
    message_boxes_.pop_front();
    if (has(queued)) return queued;
  }
  if (has(forms::vbOK)) return forms::vbOK;
  return has(forms::vbCancel) ? forms::vbCancel : answers.back();
}

std::optional<std::string> Dialogs::take(std::deque<std::optional<std::string>>& queue) {
  if (queue.empty()) return std::nullopt;
  auto answer = std::move(queue.front());
  queue.pop_front();
  return answer;
}

}  // namespace console
