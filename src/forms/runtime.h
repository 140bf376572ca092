// The message loop, dialogs, timers and time of one program, and the front end that it talks to.
//
// One thread. Front ends put events in with post(); the loop takes them out and runs the handlers,
// either at top level or in a DoEvents, never inside the front end's own call stack.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "forms/clock.h"
#include "forms/errors.h"
#include "forms/files.h"

namespace forms {

class Control;
class Form;
class FormSet;
class Runtime;
class Timer;

// The platform's numbers for the buttons of a message box and for its answers.
inline constexpr int vbOKOnly = 0;
inline constexpr int vbOKCancel = 1;
inline constexpr int vbYesNoCancel = 3;
inline constexpr int vbYesNo = 4;
inline constexpr int vbRetryCancel = 5;
inline constexpr int vbExclamation = 48;
inline constexpr int vbOK = 1;
inline constexpr int vbCancel = 2;
inline constexpr int vbRetry = 4;
inline constexpr int vbYes = 6;
inline constexpr int vbNo = 7;

struct MessageBox {
  std::string text;
  int buttons = vbOKOnly;  // low three bits: which buttons; 16, 32, 48, 64: the icon
  std::string title;
  // The answers that its buttons can give, the first one the default.
  std::vector<int> answers() const;
};

struct InputBoxRequest {
  std::string prompt;
  std::string title;
  std::string default_text;
};

struct FileDialog {
  bool save;
  std::string title;
  std::string filter;  // "text|pattern|text|pattern"
  int filter_index;    // from 1; 0 is the first
  std::string filename;
  std::string default_extension;
};

// What a front end does for the program. All calls come on the interface thread.
class FrontEnd {
 public:
  virtual ~FrontEnd() = default;
  // Shows the box and gives one of its answers.
  virtual int message_box(const MessageBox& box) = 0;
  // None after Cancel.
  virtual std::optional<std::string> input_box(const InputBoxRequest& request) = 0;
  virtual std::optional<std::string> file_dialog(const FileDialog& dialog) = 0;
  // The default error report.
  virtual void runtime_error(const RunTimeError& error) = 0;
  // Called at each yield of a handler, often: has to be cheap when there is nothing to do.
  virtual void yield() {}
  // A handler sleeps: time passes, no handler runs.
  virtual void sleep(Clock& clock, Clock::Duration time) { clock.pass(time); }
  // A loop paces itself: as sleep, but it may end as soon as runtime.event_waits().
  virtual void pause(const Runtime& runtime, Clock::Duration time);
  // A handler waits for a device, some times in 100 ms: no handler runs.
  virtual void wait() {}
  // Nothing is to do: wait for a user's action, at the longest for `limit` (none: as long as it takes).
  virtual void idle(std::optional<Clock::Duration> limit) = 0;
};

class Runtime {
 public:
  // Handlers in each other's yields; more would come to the end of the stack.
  static constexpr int most_handlers = 64;
  // Events that wait. No user gets there, but with a program that doesn't yield.
  static constexpr std::size_t most_events = 10'000;

  Runtime(Clock& clock, FrontEnd& front_end);
  ~Runtime();
  Runtime(const Runtime&) = delete;
  Runtime& operator=(const Runtime&) = delete;

  Clock& clock() const { return clock_; }
  FrontEnd& front_end() const { return *front_end_; }
  Files files;

  // --- for handlers ---

  // Lets waiting events, due timers and driver notifications run.
  void DoEvents();
  void DoEvents(int times) {
    for (int i = 0; i < times; ++i) DoEvents();
  }
  // Blocks for so many milliseconds; 0 and less don't block.
  void Sleep(std::int64_t milliseconds);
  // The same for a loop that paces itself: an event that waits ends it, so that its handler runs in the
  // loop's next yield. The loop asks for the time again behind it.
  void Pause(std::int64_t milliseconds);
  // Milliseconds of the system's timer. 64 bits: it never wraps.
  std::int64_t timeGetTime() const;
  // Asks the system for a 1 ms grain of its timers, which the clocks here have anyway.
  void timeBeginPeriod(unsigned /*milliseconds*/) {}
  int MsgBox(std::string text, int buttons = vbOKOnly, std::string title = {});
  std::optional<std::string> InputBox(std::string prompt, std::string title, std::string default_text);
  std::optional<std::string> file_dialog(const FileDialog& dialog);
  // The end of the program, from wherever it is.
  [[noreturn]] void end();

  // --- for front ends and the program ---

  // False, and the event is gone, when as many wait as may.
  bool post(std::function<void()> event);
  // Runs an event's handler with the default error report around it, for what the standard library throws,
  // too. EndProgram passes through.
  template <class Handler>
  void dispatch(Handler&& handler) {
    const OnStack on_stack(*this);
    try {
      handler();
    } catch (const RunTimeError& error) {
      front_end_->runtime_error(error);
    } catch (const std::exception& exception) {
      front_end_->runtime_error(as_run_time_error(exception));
    }
  }
  int handlers_on_stack() const { return handlers_on_stack_; }
  // The handler that runs works on this form: should the form be unloaded, its object stays until that
  // handler has returned. Whatever reaches a form says so.
  void keep(const Form& form);
  // Whether a handler on the stack works on it.
  bool is_kept(const Form& form) const;
  // The set whose unloaded forms are to be freed once no handler works on them; null: there is none.
  void free_unloaded_of(FormSet* set) { unloaded_of_ = set; }
  // Whether one more handler may begin. Where none may, events and timers wait until one has returned.
  bool has_room() const { return handlers_on_stack_ < most_handlers; }

  // Whether an event waits that a yield would run.
  bool event_waits() const { return !queue_.empty() && has_room(); }

  // The main loop: returns when the program has ended. Without a loaded form it ends by itself.
  void run(FormSet& forms);
  // Runs what waits now, without waiting for more.
  void service();
  bool ended() const { return ended_; }
  // Time until the next timer is due (0 when it is overdue); none when no timer runs.
  std::optional<Clock::Duration> until_next_timer() const;

  // Called once a turn of the loop; for the driver's notifications.
  std::function<void()> poll;

  // Controls and forms that changed since the last take_changes(). Each is in the list once.
  void mark(Control& control);
  void mark(Form& form);
  struct Changes {
    std::vector<Control*> controls;
    std::vector<Form*> forms;
  };
  Changes take_changes();
  bool has_changes() const { return !changes_.controls.empty() || !changes_.forms.empty(); }

  void start_timer(Timer& timer, Clock::Duration interval);
  void stop_timer(Timer& timer);
  // The object of a control or a form goes: nothing here may point to it any longer.
  void forget(Control& control);
  void forget(Form& form);

  // While one exists, dialogs are answered with Cancel unseen.
  class SilentDialogs {
   public:
    explicit SilentDialogs(Runtime& runtime) : count_(runtime.silent_dialogs_) { ++count_; }
    ~SilentDialogs() { --count_; }
    SilentDialogs(const SilentDialogs&) = delete;
    SilentDialogs& operator=(const SilentDialogs&) = delete;

   private:
    int& count_;
  };

 private:
  class OnStack {
   public:
    explicit OnStack(Runtime& runtime) : runtime_(runtime) { ++runtime_.handlers_on_stack_; }
    ~OnStack() {
      --runtime_.handlers_on_stack_;
      while (!runtime_.kept_.empty() && runtime_.kept_.back().depth > runtime_.handlers_on_stack_)
        runtime_.kept_.pop_back();
    }
    OnStack(const OnStack&) = delete;
    OnStack& operator=(const OnStack&) = delete;

   private:
    Runtime& runtime_;
  };
  // A form that the handler at a depth of the stack works on. At depth 0 is what runs outside the loop.
  struct Kept {
    int depth;
    const Form* form;
  };
  struct RunningTimer {
    Timer* timer;
    Clock::Duration interval;
    Clock::Duration due;
  };
  void fire_due_timers(Clock::Duration now);
  // The timer that may fire next; null when none may.
  RunningTimer* next_timer();
  void find_next_due();

  Clock& clock_;
  FrontEnd* front_end_;
  std::deque<std::function<void()>> queue_;
  std::vector<RunningTimer> timers_;
  std::vector<const Timer*> in_handler_;  // timers whose handlers are on the stack, innermost last
  Clock::Duration next_due_ = Clock::Duration::max();
  Changes changes_;
  int handlers_on_stack_ = 0;
  std::vector<Kept> kept_;  // outermost handler first
  FormSet* unloaded_of_ = nullptr;
  int silent_dialogs_ = 0;
  bool ended_ = false;
};

}  // namespace forms
