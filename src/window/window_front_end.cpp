#include "window/window_front_end.h"

#include <QApplication>
#include <QTimer>
#include <algorithm>

#include "window/dialogs.h"
#include "window/windows.h"

namespace window {
namespace {

using namespace std::chrono_literals;

// While a handler runs, Qt gets a turn so often, and changes are shown so often. Showing gets a part
// of the time at most, however slow painting is.
constexpr auto pump_interval = 4ms;
constexpr auto show_interval = 16ms;
constexpr int rest_after_showing = 4;

// Qt's part of a long sleep comes in turns of this length; its end is slept out exactly.
constexpr auto sleep_turn = 10ms;
constexpr auto exact_end = 5ms;

// The driver's notifications are polled while nothing happens.
constexpr auto longest_idle = 100ms;

QWidget* parent_of(const Windows* windows) {
  return windows ? windows->front_window() : nullptr;
}
QString suffix_of(const Windows* windows) {
  return windows ? windows->title_suffix() : QString();
}

}  // namespace

int WindowFrontEnd::message_box(const forms::MessageBox& box) {
  show_changes();
  return show_message(parent_of(windows_), box, suffix_of(windows_));
}

std::optional<std::string> WindowFrontEnd::input_box(const forms::InputBoxRequest& request) {
  show_changes();
  return ask_text(parent_of(windows_), request, suffix_of(windows_));
}

std::optional<std::string> WindowFrontEnd::file_dialog(const forms::FileDialog& dialog) {
  if (given_file_) return std::exchange(given_file_, std::nullopt);
  show_changes();
  const bool replaces = !windows_ || !windows_->front_appends();
  return choose_file(parent_of(windows_), dialog, suffix_of(windows_),
                     {.folder = folder_, .replaces = replaces});
}

void WindowFrontEnd::ask_for_file(QWidget& parent, const forms::FileDialog& dialog,
                                  std::function<void(const QString& path)> take) {
  window::ask_for_file(parent, dialog, suffix_of(windows_), {.folder = folder_}, std::move(take));
}

void WindowFrontEnd::runtime_error(const forms::RunTimeError& error) {
  constexpr int critical = 16;
  message_box({"Run-time error '" + std::to_string(error.number) + "':\n\n" + error.text, critical, {}});
}

void WindowFrontEnd::show_changes() {
  if (!windows_) return;
  const auto start = SteadyClock::now();
  windows_->show_changes();
  const auto end = SteadyClock::now();
  next_show_ = end + std::max<SteadyClock::duration>(show_interval, rest_after_showing * (end - start));
}

// Painting happens in Qt's turn, so its time counts as showing.
void WindowFrontEnd::pump() {
  const auto start = SteadyClock::now();
  const bool showing = start >= next_show_;
  if (showing && windows_) windows_->show_changes();
  QApplication::processEvents();
  const auto end = SteadyClock::now();
  if (showing) {
    next_show_ =
        start + std::max<SteadyClock::duration>(show_interval, (rest_after_showing + 1) * (end - start));
  }
  next_pump_ = end + pump_interval;
}

void WindowFrontEnd::yield() {
  if (SteadyClock::now() >= next_pump_) pump();
}

template <class Enough>
void WindowFrontEnd::sleep_until(forms::Clock& clock, forms::Clock::Duration end, Enough enough) {
  while (end - clock.now() > exact_end) {
    pump();
    if (enough() || (end_signals_ && end_signals_->first() != 0)) return;
    const auto left = end - clock.now() - exact_end;
    if (left > forms::Clock::Duration::zero()) clock.pass(std::min<forms::Clock::Duration>(left, sleep_turn));
  }
  clock.pass(end - clock.now());
}

void WindowFrontEnd::sleep(forms::Clock& clock, forms::Clock::Duration time) {
  sleep_until(clock, clock.now() + time, [] { return false; });
}

void WindowFrontEnd::pause(const forms::Runtime& runtime, forms::Clock::Duration time) {
  sleep_until(runtime.clock(), runtime.clock().now() + time, [&] { return runtime.event_waits(); });
}

void WindowFrontEnd::idle(std::optional<forms::Clock::Duration> limit) {
  show_changes();
  if (windows_) windows_->end_if_faceless();
  if (windows_ && (windows_->act_when_idle() || windows_->tell_advice())) return;
  const auto longest = std::min<forms::Clock::Duration>(limit.value_or(longest_idle), longest_idle);
  const auto whole = std::chrono::duration_cast<std::chrono::milliseconds>(longest);
  if (whole <= 0ms) {
    QApplication::processEvents();
  } else {
    QTimer wake_up;
    wake_up.setSingleShot(true);
    wake_up.setTimerType(Qt::PreciseTimer);
    wake_up.start(whole);
    QApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
}

}  // namespace window
