// The front end without windows: reads command lines, answers each by one line, and tells dialogs and
// errors in notes.
//
// At most one command is unanswered at a time: a handler that the line waits for, or a wait, finish
// or idle. Until it is answered no further line is read. Lines are read when the program is idle and
// in the yields of handlers, one a yield; a command that runs a handler there runs it inside the
// handler that yielded.
#pragma once

#include <cstdint>
#include <functional>
#include <ostream>

#include "boards/driver.h"
#include "bridge/program.h"
#include "console/call_log.h"
#include "console/context.h"
#include "console/dialogs.h"
#include "console/line_source.h"
#include "forms/end_signals.h"
#include "forms/runtime.h"

namespace console {

class Console final : public forms::FrontEnd {
 public:
  // All of them outlive the console. The board commands work on `bench`, or on the driver where that
  // is a simulated board itself, and are refused on any other.
  Console(forms::Clock& clock, boards::Driver& driver, LineSource& lines, std::ostream& out,
          boards::SimulatedBoard* bench = nullptr);
  ~Console() override;

  varzelin::Program& program() { return program_; }

  // Once one of these has come the program ends, also from within a sleep. They outlive the console.
  void end_on(const forms::EndSignals& signals);

  // Runs the program, which `start` brings on screen, until it ends or the lines do.
  void run(const std::function<void(varzelin::Program&)>& start);

  // --- for the commands; each answers the line, at once or when its time has come ---
  Context& context() { return context_; }
  // Begins what the command acts, without waiting for its return.
  void start(Acting command, Arguments& arguments);
  void let_time_pass(forms::Clock::Duration time);
  void finish(forms::Clock::Duration at_most);
  void let_yields_pass(int count);
  [[noreturn]] void quit();

  // --- for the program ---
  int message_box(const forms::MessageBox& box) override;
  std::optional<std::string> input_box(const forms::InputBoxRequest& request) override;
  std::optional<std::string> file_dialog(const forms::FileDialog& dialog) override;
  void runtime_error(const forms::RunTimeError& error) override;
  void yield() override {
    if (clock_.now() >= attention_) attend();
  }
  void sleep(forms::Clock& clock, forms::Clock::Duration time) override;
  void idle(std::optional<forms::Clock::Duration> limit) override;

 private:
  using Duration = forms::Clock::Duration;

  // What has to come before the next line is read.
  enum class State {
    Starting,   // the program comes up
    Reading,    // nothing: the next line
    Handler,    // the return of a handler, or its time is over
    Waiting,    // a time of the clock
    Finishing,  // the return of all started handlers, or its time is over
    Idling,     // a number of yields
  };
  // Yields do nothing before the clock is at `attention`.
  void enter(State state, Duration attention = Duration::zero());
  Duration from_now(Duration time) const { return clock_.now() + time; }
  void attend();
  void serve_line(std::optional<Duration> limit);
  void execute(const std::string& line);
  void answer(std::string_view line);
  // Behind each line: a program whose output nobody gets ends.
  void told();
  // Answers the command in hand; the next line may come.
  void answer_and_read(std::string_view line);
  [[noreturn]] void end_of_lines();
  void act(Acting command, Arguments& arguments, bool awaited);
  void run_handler(std::uint64_t number, const Action& action);
  void handler_returned(std::uint64_t number);
  void handler_late();

  forms::Clock& clock_;
  LineSource& lines_;
  std::ostream& out_;
  CallLog calls_;
  Dialogs dialogs_;
  varzelin::Program program_;
  Context context_;
  const forms::EndSignals* signals_ = nullptr;

  State state_ = State::Starting;
  Duration attention_ = Duration::max();
  std::uint64_t handlers_begun_ = 0;
  std::uint64_t awaited_ = 0;  // in State::Handler: the number of the handler that the line waits for
  int started_ = 0;            // handlers that run and that no line waits for
  int yields_left_ = 0;        // in State::Idling
  bool quit_ = false;          // by its lines, or as there is nobody to answer
};

}  // namespace console
