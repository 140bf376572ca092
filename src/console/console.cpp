#include "console/console.h"

#include <algorithm>

#include "console/commands.h"
#include "console/utf8.h"
#include "console/words.h"
#include "shell/ending.h"

namespace console {
namespace {

using namespace std::chrono_literals;

constexpr forms::Clock::Duration longest_handler = 600'000ms;
// On the system's clock: how long driver notifications may have to wait while nothing is to do, and
// how often a running handler looks for a line.
constexpr forms::Clock::Duration idle_step = 10ms;
constexpr forms::Clock::Duration look_for_line = 1ms;

constexpr std::string_view done = "ok";
constexpr std::string_view still_running = "error still running";

// A refusal names what it refuses: one line of UTF-8, and not a line of any length.
std::string one_line(std::string_view text) {
  constexpr std::size_t longest = 300;
  std::string result;
  while (!text.empty() && result.size() < longest) {
    const std::size_t length = utf8_length(text);
    if (length == 0) {
      append_utf8(result, replacement_character);
    } else if (static_cast<unsigned char>(text.front()) < 0x20) {
      result += ' ';
    } else {
      result += text.substr(0, length);
    }
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return text.empty() ? result : result + "...";
}

void write_text_or_null(Json& json, const std::optional<std::string>& text) {
  text ? json.value(*text) : json.null();
}

template <class... Visitors>
struct Overloaded : Visitors... {
  using Visitors::operator()...;
};
template <class... Visitors>
Overloaded(Visitors...) -> Overloaded<Visitors...>;

}  // namespace

Console::Console(forms::Clock& clock, boards::Driver& driver, LineSource& lines, std::ostream& out,
                 boards::SimulatedBoard* bench)
    : clock_(clock),
      lines_(lines),
      out_(out),
      calls_(clock),
      program_(clock, driver, *this),
      context_{program_, bench ? bench : dynamic_cast<boards::SimulatedBoard*>(&driver), calls_, dialogs_} {
  driver.observer = &calls_;
}

Console::~Console() {
  program_.driver.observer = nullptr;
}

void Console::end_on(const forms::EndSignals& signals) {
  signals_ = &signals;
  varzelin::end_on(program_, signals);
}

void Console::run(const std::function<void(varzelin::Program&)>& start) {
  try {
    program_.runtime.dispatch([&] { start(program_); });
  } catch (const forms::EndProgram&) {
  }
  enter(State::Reading);
  program_.runtime.run(program_.forms);
  if (quit_) return;
  if (state_ != State::Reading) answer(done);  // the command in hand when the program ended
  answer("* ended");
}

// --- State

void Console::enter(State state, Duration attention) {
  state_ = state;
  attention_ = attention;
}

void Console::answer(std::string_view line) {
  out_ << line << '\n' << std::flush;
  told();
}

void Console::told() {
  if (out_ || program_.runtime.ended()) return;
  quit_ = true;
  program_.runtime.end();
}

void Console::answer_and_read(std::string_view line) {
  enter(State::Reading);
  answer(line);
}

// A yield at which the clock has reached attention_.
void Console::attend() {
  switch (state_) {
    case State::Starting:
      break;
    case State::Reading:
      serve_line(clock_.is_virtual() ? std::nullopt : std::optional(Duration::zero()));
      break;
    case State::Handler:
      handler_late();
      break;
    case State::Waiting:
      answer_and_read(done);
      break;
    case State::Finishing:
      answer_and_read(still_running);
      break;
    case State::Idling:
      if (--yields_left_ == 0) answer_and_read(done);
      break;
  }
}

void Console::idle(std::optional<Duration> limit) {
  const auto at_most = [&](Duration time) { return limit ? std::min(*limit, time) : time; };
  if (state_ == State::Waiting) {
    const Duration left = attention_ - clock_.now();
    if (left <= Duration::zero()) {
      answer_and_read(done);
    } else {
      clock_.pass(at_most(clock_.is_virtual() ? left : std::min(left, idle_step)));
    }
  } else if (state_ == State::Idling) {
    program_.runtime.DoEvents();
  } else {
    serve_line(clock_.is_virtual() ? std::nullopt : std::optional(at_most(idle_step)));
  }
}

void Console::sleep(forms::Clock& clock, Duration time) {
  if (signals_ && !clock.is_virtual()) {
    signals_->wait(time);
  } else {
    clock.pass(time);
  }
  if (state_ == State::Handler) yield();  // looks at the time, reads no line
}

// --- Lines

void Console::serve_line(std::optional<Duration> limit) {
  std::string line;
  std::string_view fault;
  for (;; fault = {}) {
    switch (lines_.next(line, limit)) {
      case LineSource::Result::NotYet:
        attention_ = from_now(look_for_line);
        return;
      case LineSource::Result::End:
        end_of_lines();
      case LineSource::Result::HalfLine:
        fault = "no end of line";
        break;
      case LineSource::Result::TooLong:
        fault = "longer than 1 MiB";
        break;
      case LineSource::Result::Line:
        break;
    }
    if (line.ends_with('\r')) line.pop_back();
    const bool blank = line.find_first_not_of(" \t") == std::string::npos;
    if (!blank && line.front() != '#') break;
  }
  fault.empty() ? execute(line) : answer("error " + std::string(fault) + ": " + one_line(line));
}

void Console::execute(const std::string& line) {
  try {
    Arguments arguments(split_words(line));
    const Command& command = find_command(arguments.text("COMMAND"));
    std::visit(Overloaded{[&](Immediate look) {
                            Json value(out_, "ok ");
                            look(context_, arguments, value);
                            if (value.empty()) return answer(done);
                            value.end_line();
                            told();
                          },
                          [&](Acting acting) { act(acting, arguments, true); },
                          [&](Steering steer) { steer(*this, arguments); }},
               command);
  } catch (const Refused& refused) {
    answer("error " + one_line(refused.text));
  }
}

void Console::start(Acting command, Arguments& arguments) {
  act(command, arguments, false);
}

void Console::let_time_pass(Duration time) {
  enter(State::Waiting, from_now(time));
}

void Console::finish(Duration at_most) {
  if (started_ == 0) return answer(done);
  enter(State::Finishing, from_now(at_most));
}

void Console::let_yields_pass(int count) {
  if (count == 0) return answer(done);
  yields_left_ = count;
  enter(State::Idling);
}

void Console::quit() {
  answer(done);
  end_of_lines();
}

void Console::end_of_lines() {
  quit_ = true;
  program_.runtime.end();
}

// --- Handlers

// Where no handler may begin, the command waits as any other event does. By then it may have lost what it
// acts on, as a user's click that comes too late.
void Console::act(Acting command, Arguments& arguments, bool awaited) {
  Arguments again = arguments;
  const Action action = command(context_, arguments);
  const std::uint64_t number = ++handlers_begun_;
  const bool at_once = program_.runtime.has_room();
  const auto later = [this, command, again, number]() mutable {
    try {
      run_handler(number, command(context_, again));
    } catch (const Refused&) {
      handler_returned(number);
    }
  };
  if (!at_once && !program_.runtime.post(later)) throw Refused{"too many events wait"};
  if (awaited) {
    awaited_ = number;
    enter(State::Handler, from_now(longest_handler));
  } else {
    ++started_;
    answer(done);
  }
  if (at_once) run_handler(number, action);
}

void Console::run_handler(std::uint64_t number, const Action& action) {
  program_.runtime.dispatch(action);
  handler_returned(number);
}

void Console::handler_returned(std::uint64_t number) {
  if (awaited_ == number && clock_.now() < attention_) {
    awaited_ = 0;
    return answer_and_read(done);
  }
  if (awaited_ == number) handler_late();
  --started_;
  if (state_ == State::Finishing && started_ == 0) answer_and_read(done);
}

// From now on the handler is like one that was started.
void Console::handler_late() {
  awaited_ = 0;
  ++started_;
  answer_and_read(still_running);
}

// --- Dialogs and errors

int Console::message_box(const forms::MessageBox& box) {
  const int answer = dialogs_.message_box(box);
  Json note(out_, "* msgbox ");
  note.begin_object().member("title", box.title).member("text", box.text).member("buttons", box.buttons);
  note.member("answer", Dialogs::button_name(answer)).end_object().end_line();
  told();
  return answer;
}

std::optional<std::string> Console::input_box(const forms::InputBoxRequest& request) {
  auto answer = dialogs_.input_box();
  Json note(out_, "* inputbox ");
  note.begin_object().member("title", request.title).member("prompt", request.prompt);
  note.member("default", request.default_text).key("answer");
  write_text_or_null(note, answer);
  note.end_object().end_line();
  told();
  return answer;
}

std::optional<std::string> Console::file_dialog(const forms::FileDialog& dialog) {
  auto answer = dialogs_.file();
  Json note(out_, "* file ");
  note.begin_object().member("kind", dialog.save ? "save" : "open").member("title", dialog.title);
  note.member("filter", dialog.filter).member("filename", dialog.filename).key("answer");
  write_text_or_null(note, answer);
  note.end_object().end_line();
  told();
  return answer;
}

void Console::runtime_error(const forms::RunTimeError& error) {
  Json note(out_, "* runtime-error ");
  note.begin_object().member("number", error.number).member("text", error.text).end_object().end_line();
  told();
}

}  // namespace console
