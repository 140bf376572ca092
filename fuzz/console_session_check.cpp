#include "console_session_check.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "boards/simulated/simulated_board.h"
#include "bridge/store_access.h"
#include "console/console.h"
#include "console/names.h"
#include "forms/controls.h"
#include "forms/grid.h"
#include "shell/application.h"
#include "shell/start_panel.h"

namespace varzelin::fuzz {
namespace {

// Files that a session opens and writes, and the current folder while it runs.
class OwnFolder {
 public:
  OwnFolder() : before_(std::filesystem::current_path()) {
    std::string name = (std::filesystem::temp_directory_path() / "sessionXXXXXX").string();
    if (!::mkdtemp(name.data())) std::abort();
    std::filesystem::current_path(name);
    path_ = name;
  }
  ~OwnFolder() {
    std::filesystem::current_path(before_);
    std::filesystem::remove_all(path_);
  }
  OwnFolder(const OwnFolder&) = delete;
  OwnFolder& operator=(const OwnFolder&) = delete;

 private:
  std::filesystem::path before_;
  std::filesystem::path path_;
};

// What is typed into boxes, and set from outside. No text names a file elsewhere.
constexpr std::array texts{
    "",     "0",    "1",        "-1",    "5",     "10",         "100",         "255",         "256",
    "1000", "4095", "65535",    "20000", "32767", "-32768",     "99999",       "1e9",         "FF",
    "80",   "7F",   "A5",       "zz",    "&H10",  "2147483647", "-2147483648", "1e300",       "-1e9",
    "1.5",  "0.01", "%",        "1,5",   "nan",   "inf",        "a b",         "12345678901", "&HFFFFFFFF",
    ".",    "-",    "Data.txt", "10 20", "18000", "Device0"};
constexpr std::array files{"script.txt", "setup.kvt", "Data.txt", "none.txt", "cancel"};
constexpr std::array buttons{"OK", "Cancel", "Retry", "Yes", "No"};
constexpr std::array calls{"WDU_VB_Init",     "WDU_VB_Uninit", "WDU_GetDeviceInfo", "WDU_SetInterface",
                           "WDU_ResetDevice", "WDU_ResetPipe", "WDU_Transfer"};
constexpr std::array events{
    "Click",     "DblClick", "Change", "KeyPress 13", "KeyPress 8",         "GotFocus",
    "LostFocus", "MouseUp",  "Timer",  "Scroll",      "SelectionChange 1 1"};
constexpr std::array form_events{"Activate", "QueryUnload", "Resize"};
constexpr std::string_view script =
    "# comment\r\n`A88\r\n00,C3,C3\r\n01,,05\r\n`w10\r\n00,8000FF00,8000FF00\r\n`w-1\r\n,8C,\r\n02,,FFFF\r\n"
    "x\r\n`A20\r\n00,,0176\r\n";

std::string in_quotes(std::string_view text) {
  return "\"" + std::string(text) + "\"";
}

// The next line of the session, made of the bytes and of what is there to be worked.
class SessionLines final : public console::LineSource {
 public:
  explicit SessionLines(std::string_view bytes) : bytes_(bytes) {}

  void work(const Program& program) { program_ = &program; }
  const std::vector<std::string>& told() const { return told_; }

  Result next(std::string& line, std::optional<std::chrono::nanoseconds>) override {
    constexpr std::size_t most_lines = 200;
    if (bytes_.empty() || told_.size() == most_lines) return Result::End;
    line = told_.empty() ? "start click frmStartup.cboDeviceSelect " + std::to_string(pick(model_list.size()))
                         : make_line();
    told_.push_back(line);
    return Result::Line;
  }

 private:
  std::size_t pick(std::size_t count) {
    if (bytes_.empty() || count == 0) return 0;
    std::size_t number = static_cast<std::uint8_t>(bytes_.front());
    bytes_.remove_prefix(1);
    if (count > 256 && !bytes_.empty()) {
      number = number * 256 + static_cast<std::uint8_t>(bytes_.front());
      bytes_.remove_prefix(1);
    }
    return number % count;
  }
  template <class Choices>
  std::string one_of(const Choices& choices) {
    return std::string(choices[pick(choices.size())]);
  }
  std::string number(std::size_t below) { return std::to_string(pick(below)); }
  std::string hex_byte() {
    constexpr std::string_view digits = "0123456789ABCDEF";
    return {digits[pick(16)], digits[pick(16)]};
  }

  const forms::Form& form() {
    const auto& loaded = program_->forms.all_loaded();
    // Most of the time the one in front.
    const forms::Form* front = program_->forms.front();
    return front && pick(8) != 0 ? *front : *loaded[pick(loaded.size())];
  }
  // What does something when a user works it.
  static bool works(const forms::Control& control) {
    using forms::Kind;
    constexpr std::array worked_kinds{Kind::TextBox,      Kind::CommandButton, Kind::CheckBox,
                                      Kind::OptionButton, Kind::ListBox,       Kind::ComboBox,
                                      Kind::Grid,         Kind::HScrollBar,    Kind::VScrollBar,
                                      Kind::SSTab,        Kind::Menu};
    return std::ranges::find(worked_kinds, control.kind()) != worked_kinds.end() ||
           control.handles(forms::Event::Click) || control.handles(forms::Event::DblClick);
  }
  // One that a user reaches, most of the time; now and then any.
  const forms::Control& control(const forms::Form& of) {
    std::vector<const forms::Control*> reachable;
    const bool any = pick(16) == 0;
    for (const forms::Control* each : of.controls()) {
      if (any || (each->shown() && each->Enabled && works(*each))) reachable.push_back(each);
    }
    if (reachable.empty()) return *of.controls()[pick(of.controls().size())];
    return *reachable[pick(reachable.size())];
  }

  // What a user does to a control of this kind.
  std::string worked(const forms::Control& control) {
    const std::string name = console::path_of(control);
    switch (control.kind()) {
      case forms::Kind::TextBox:
        switch (pick(6)) {
          case 0:
            return "type " + name + " " + in_quotes(one_of(texts));
          case 1:
            return "leave " + name;
          case 2:
            return "enter " + name;
          case 3:
            return "click " + name;
          case 4:
            return "dblclick " + name;
          default:
            return "fill " + name + " " + in_quotes(one_of(texts));
        }
      case forms::Kind::ListBox:
      case forms::Kind::ComboBox:
        return "click " + name + " " +
               number(static_cast<std::size_t>(dynamic_cast<const forms::ListControl&>(control).ListCount()));
      case forms::Kind::Grid:
        return "click " + name + " " +
               std::to_string(
                   1 + pick(static_cast<std::size_t>(dynamic_cast<const forms::Grid&>(control).Rows())));
      case forms::Kind::HScrollBar:
      case forms::Kind::VScrollBar:
        return "scroll " + name + " " + number(3000);
      default:
        return (pick(8) == 0 ? "dblclick " : "click ") + name;
    }
  }

  std::string board_line() {
    switch (pick(16)) {
      case 0:
        return "board unplug";
      case 1:
      case 2:
        return "board plug";
      case 3:
        return "board fail " + number(20) + " " + hex_byte() + " after " + number(20);
      case 4:
        return "board fail 1";
      case 5:
        return "board reply " + hex_byte() + hex_byte() + hex_byte();
      case 6:
        return "board port-reply " + hex_byte() + hex_byte();
      case 7:
        return "board fail-call " + one_of(calls);
      case 8:
        return "board clear";
      case 9:
        return pick(2) == 0 ? "board unmount"
                            : std::string("board mount ") + model_list[pick(model_list.size())].text;
      case 10:
        return pick(4) == 0 ? "board driver off" : "board driver on";
      case 11:
        return "board scene light " + in_quotes(one_of(texts));
      case 12:
        return "board scene ir " + in_quotes(one_of(texts));
      case 13:
        return "board scene distance " + in_quotes(one_of(texts));
      case 14:
        return "board register " + hex_byte() + " " + hex_byte();
      default:
        return "board noise " + number(2000);
    }
  }

  // What reaches past the user: events out of turn, properties and variables with any value.
  std::string forced_line() {
    switch (pick(5)) {
      case 0:
        return "event " + form().name() + " " + one_of(form_events);
      case 1: {
        const auto variables = store_variables();
        const StoreVariable& variable = variables[pick(variables.size())];
        std::string indices;
        for (int i = 0; i < variable.dimensions; ++i) {
          indices +=
              (i == 0 ? "(" : ",") + number(std::max<std::size_t>(variable.size(program_->store, i), 1));
        }
        return "set store." + std::string(variable.name) + (indices.empty() ? "" : indices + ")") + " " +
               in_quotes(one_of(texts));
      }
      case 2: {
        const forms::Control& worked_on = control(form());
        const auto& properties = worked_on.properties();
        return "set " + console::path_of(worked_on) + "." + properties[pick(properties.size())]->name() +
               " " + in_quotes(one_of(texts));
      }
      default:
        return "event " + console::path_of(control(form())) + " " + one_of(events);
    }
  }

  std::string make_line() {
    if (program_->forms.all_loaded().empty()) return "clock";
    switch (pick(16)) {
      case 0:
        return "wait " + number(100);
      case 1:
        return "wait " + number(3);
      case 2:
      case 3:
        return board_line();
      case 4:
        return "start " + forced_line();
      case 5:
        switch (pick(4)) {
          case 0:
            return "answer msgbox " + one_of(buttons);
          case 1:
            return "answer inputbox " + in_quotes(one_of(texts));
          default:
            return "answer file " + one_of(files);
        }
      case 6:
        switch (pick(6)) {
          case 0:
            return "start close " + form().name();
          case 1:
            return "start front " + form().name();
          case 2:
            return "controls " + form().name();
          case 3:
            return "packets";
          case 4:
            return "finish " + number(100);
          default:
            return "idle " + number(20);
        }
      default:
        return "start " + worked(control(form()));
    }
  }

  std::string_view bytes_;
  const Program* program_ = nullptr;
  std::vector<std::string> told_;
};

[[noreturn]] void broken(const std::vector<std::string>& session, const std::string& promise) {
  std::cerr << promise << '\n';
  for (const std::string& line : session) std::cerr << line << '\n';
  std::abort();
}

}  // namespace

std::vector<std::string> check_console_session(std::string_view bytes) {
  const OwnFolder folder;
  std::ofstream("script.txt") << script;
  forms::VirtualClock clock;
  boards::SimulatedBoard board(clock);
  SessionLines lines(bytes);
  std::ostringstream out;
  console::Console console(clock, board, lines, out);
  lines.work(console.program());
  add_forms(console.program());
  console.run(start);

  if (!console.program().runtime.ended()) broken(lines.told(), "the program ends");
  std::size_t answers = 0;
  std::istringstream written(out.str());
  for (std::string line; std::getline(written, line);) {
    const bool answer = line == "ok" || line.starts_with("ok ") || line.starts_with("error ");
    if (!answer && !line.starts_with("* ")) broken(lines.told(), "a line is an answer or a note: " + line);
    if (line.starts_with("* runtime-error {\"number\":51,"))
      broken(lines.told(), "no handler fails inside: " + line);
    if (answer) ++answers;
  }
  if (answers != lines.told().size()) broken(lines.told(), "every line is answered once");
  return lines.told();
}

}  // namespace varzelin::fuzz
