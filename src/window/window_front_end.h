// The program's front end on the desktop: dialogs, and the turns that Qt gets while handlers run.
#pragma once

#include <QString>
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "forms/end_signals.h"
#include "forms/runtime.h"

class QWidget;

namespace window {

class Windows;

class WindowFrontEnd : public forms::FrontEnd {
 public:
  // Null: no windows.
  void attach(Windows* windows) { windows_ = windows; }

  // Once one of these has come no sleep is slept to its end. They outlive the front end.
  void end_on(const forms::EndSignals& end_signals) { end_signals_ = &end_signals; }

  // The next file dialog is answered with this file, unseen.
  void give_file(std::string path) { given_file_ = std::move(path); }

  // A file dialog of a window that is no form's: it stays beside the program, and `take` comes with the file,
  // or never.
  void ask_for_file(QWidget& parent, const forms::FileDialog& dialog,
                    std::function<void(const QString& path)> take);

  int message_box(const forms::MessageBox& box) override;
  std::optional<std::string> input_box(const forms::InputBoxRequest& request) override;
  std::optional<std::string> file_dialog(const forms::FileDialog& dialog) override;
  void runtime_error(const forms::RunTimeError& error) override;
  // A clock read, but for one time in some milliseconds.
  void yield() override;
  // Keeps the windows painted. A sleep of a few milliseconds just sleeps.
  void sleep(forms::Clock& clock, forms::Clock::Duration time) override;
  void pause(const forms::Runtime& runtime, forms::Clock::Duration time) override;
  void wait() override { yield(); }
  void idle(std::optional<forms::Clock::Duration> limit) override;

 private:
  using SteadyClock = std::chrono::steady_clock;
  void pump();
  // Gives Qt its turns until the clock is at `end`, or one of them has done what ends it early.
  template <class Enough>
  void sleep_until(forms::Clock& clock, forms::Clock::Duration end, Enough enough);
  void show_changes();

  Windows* windows_ = nullptr;
  const forms::EndSignals* end_signals_ = nullptr;
  std::optional<std::string> given_file_;
  QString folder_;  // used last; empty before the first file dialog
  SteadyClock::time_point next_pump_{};
  SteadyClock::time_point next_show_{};
};

}  // namespace window
