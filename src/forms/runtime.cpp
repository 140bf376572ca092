#include "forms/runtime.h"

#include <algorithm>

#include "forms/controls.h"
#include "forms/form.h"
#include "forms/form_set.h"

namespace forms {

std::vector<int> MessageBox::answers() const {
  switch (buttons & 7) {
    case vbOKCancel:
      return {vbOK, vbCancel};
    case vbYesNoCancel:
      return {vbYes, vbNo, vbCancel};
    case vbYesNo:
      return {vbYes, vbNo};
    case vbRetryCancel:
      return {vbRetry, vbCancel};
    default:
      return {vbOK};
  }
}

void FrontEnd::pause(const Runtime& runtime, Clock::Duration time) {
  sleep(runtime.clock(), time);
}

Runtime::Runtime(Clock& clock, FrontEnd& front_end) : clock_(clock), front_end_(&front_end) {}
Runtime::~Runtime() = default;

void Runtime::DoEvents() {
  clock_.yielded();
  front_end_->yield();
  service();
}

bool Runtime::post(std::function<void()> event) {
  if (queue_.size() == most_events) return false;
  queue_.push_back(std::move(event));
  return true;
}

void Runtime::service() {
  if (poll) dispatch(poll);
  if (!has_room()) return;
  if (!timers_.empty()) {
    const auto now = clock_.now();
    if (now >= next_due_) fire_due_timers(now);
  }
  while (!queue_.empty()) {
    const auto event = std::move(queue_.front());
    queue_.pop_front();
    dispatch(event);
  }
  if (unloaded_of_) unloaded_of_->free_unused();
}

void Runtime::Sleep(std::int64_t milliseconds) {
  if (milliseconds > 0) front_end_->sleep(clock_, std::chrono::milliseconds(milliseconds));
}

void Runtime::Pause(std::int64_t milliseconds) {
  if (milliseconds > 0) front_end_->pause(*this, std::chrono::milliseconds(milliseconds));
}

std::int64_t Runtime::timeGetTime() const {
  return std::chrono::duration_cast<std::chrono::milliseconds>(clock_.now()).count();
}

int Runtime::MsgBox(std::string text, int buttons, std::string title) {
  const MessageBox box{std::move(text), buttons, std::move(title)};
  return silent_dialogs_ > 0 ? box.answers().back() : front_end_->message_box(box);
}

std::optional<std::string> Runtime::InputBox(std::string prompt, std::string title,
                                             std::string default_text) {
  if (silent_dialogs_ > 0) return std::nullopt;
  return front_end_->input_box({std::move(prompt), std::move(title), std::move(default_text)});
}

std::optional<std::string> Runtime::file_dialog(const FileDialog& dialog) {
  if (silent_dialogs_ > 0) return std::nullopt;
  return front_end_->file_dialog(dialog);
}

void Runtime::end() {
  ended_ = true;
  throw EndProgram{};
}

void Runtime::run(FormSet& forms) {
  try {
    while (!ended_) {
      service();
      forms.sweep();
      if (forms.all_loaded().empty()) break;
      if (queue_.empty()) front_end_->idle(until_next_timer());
    }
  } catch (const EndProgram&) {
  }
  ended_ = true;
}

std::optional<Clock::Duration> Runtime::until_next_timer() const {
  if (next_due_ == Clock::Duration::max()) return std::nullopt;
  return std::max(Clock::Duration::zero(), next_due_ - clock_.now());
}

Runtime::RunningTimer* Runtime::next_timer() {
  RunningTimer* next = nullptr;
  for (RunningTimer& running : timers_) {
    const bool in_handler = std::ranges::find(in_handler_, running.timer) != in_handler_.end();
    if (!in_handler && (!next || running.due < next->due)) next = &running;
  }
  return next;
}

void Runtime::find_next_due() {
  const RunningTimer* next = next_timer();
  next_due_ = next ? next->due : Clock::Duration::max();
}

// A timer doesn't fire into its own handler, also when that starts it anew, and ticks that were missed
// come as one.
void Runtime::fire_due_timers(Clock::Duration now) {
  while (now >= next_due_) {
    RunningTimer& running = *next_timer();
    while (running.due <= now) running.due += running.interval;
    Timer* timer = running.timer;
    in_handler_.push_back(timer);
    find_next_due();
    dispatch([&] { timer->raise(Event::Timer); });
    in_handler_.pop_back();
    find_next_due();
  }
}

void Runtime::start_timer(Timer& timer, Clock::Duration interval) {
  stop_timer(timer);
  timers_.push_back({&timer, interval, clock_.now() + interval});
  find_next_due();
}

void Runtime::stop_timer(Timer& timer) {
  std::erase_if(timers_, [&](const RunningTimer& running) { return running.timer == &timer; });
  find_next_due();
}

void Runtime::keep(const Form& form) {
  for (auto kept = kept_.rbegin(); kept != kept_.rend() && kept->depth == handlers_on_stack_; ++kept) {
    if (kept->form == &form) return;
  }
  kept_.push_back({handlers_on_stack_, &form});
}

bool Runtime::is_kept(const Form& form) const {
  return std::ranges::find(kept_, &form, &Kept::form) != kept_.end();
}

void Runtime::mark(Control& control) {
  if (control.marked) return;
  control.marked = true;
  changes_.controls.push_back(&control);
}

void Runtime::mark(Form& form) {
  if (std::ranges::find(changes_.forms, &form) == changes_.forms.end()) changes_.forms.push_back(&form);
}

Runtime::Changes Runtime::take_changes() {
  for (Control* control : changes_.controls) control->marked = false;
  return std::exchange(changes_, Changes{});
}

void Runtime::forget(Control& control) {
  std::erase(changes_.controls, &control);
}

void Runtime::forget(Form& form) {
  std::erase(changes_.forms, &form);
  std::erase_if(kept_, [&](const Kept& kept) { return kept.form == &form; });
}

}  // namespace forms
