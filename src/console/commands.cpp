#include "console/commands.h"

#include <algorithm>
#include <array>

#include "console/acting.h"
#include "console/board_commands.h"
#include "console/console.h"
#include "console/looking.h"

namespace console {
namespace {

forms::Clock::Duration duration(Arguments& arguments) {
  const double time = arguments.number("MS");
  constexpr double longest = 1e12;  // some 30 years: still a Duration behind any time of the clock
  if (time < 0 || time > longest) throw Refused{"out of range: time in milliseconds"};
  return std::chrono::round<forms::Clock::Duration>(std::chrono::duration<double, std::milli>(time));
}

void start(Console& console, Arguments& arguments) {
  const std::string name = arguments.text("COMMAND");
  const auto* acting = std::get_if<Acting>(&find_command(name));
  if (!acting) throw Refused{"not a command to start: " + name};
  console.start(*acting, arguments);
}

void wait(Console& console, Arguments& arguments) {
  const auto time = duration(arguments);
  arguments.end();
  console.let_time_pass(time);
}

void finish(Console& console, Arguments& arguments) {
  const auto time = arguments.more() ? duration(arguments) : std::chrono::minutes(1);
  arguments.end();
  console.finish(time);
}

void idle(Console& console, Arguments& arguments) {
  const int yields = arguments.whole("COUNT");
  arguments.end();
  if (yields < 0) throw Refused{"out of range: " + std::to_string(yields)};
  console.let_yields_pass(yields);
}

void quit(Console& console, Arguments& arguments) {
  arguments.end();
  console.quit();
}

std::optional<std::string> text_or_cancel(const std::string& text) {
  return text == "cancel" ? std::nullopt : std::optional(text);
}

void answer_dialog(Context& context, Arguments& arguments, Json&) {
  const std::string kind = arguments.text("msgbox|inputbox|file");
  const std::string text = arguments.text("ANSWER");
  arguments.end();
  if (kind == "msgbox") {
    if (!context.dialogs.queue_message_box(text)) throw Refused{"no such button: " + text};
  } else if (kind == "inputbox") {
    context.dialogs.queue_input_box(text_or_cancel(text));
  } else if (kind == "file") {
    context.dialogs.queue_file(text_or_cancel(text));
  } else {
    throw Refused{"no such dialog: " + kind};
  }
}

struct Entry {
  std::string_view name;
  Command command;
};
const std::array commands{
    Entry{"get", get},
    Entry{"forms", list_forms},
    Entry{"controls", list_controls},
    Entry{"pixel", pixel},
    Entry{"picture", picture},
    Entry{"shown", shown},
    Entry{"clock", clock},
    Entry{"packets", packets},
    Entry{"driver", driver_calls},

    Entry{"click", click},
    Entry{"dblclick", double_click},
    Entry{"type", type},
    Entry{"enter", enter},
    Entry{"fill", fill},
    Entry{"leave", leave},
    Entry{"focus", focus},
    Entry{"scroll", scroll},
    Entry{"front", bring_to_front},
    Entry{"close", close_form},
    Entry{"event", raise_event},
    Entry{"set", set},

    Entry{"start", start},
    Entry{"wait", wait},
    Entry{"finish", finish},
    Entry{"idle", idle},
    Entry{"quit", quit},

    Entry{"answer", answer_dialog},
    Entry{"board", board},
};

}  // namespace

const Command& find_command(std::string_view name) {
  const auto found = std::ranges::find(commands, name, &Entry::name);
  if (found == commands.end()) throw Refused{"no such command: " + std::string(name)};
  return found->command;
}

}  // namespace console
