#include "window/desktop.h"

#include <QApplication>
#include <cstdio>
#include <iostream>
#include <optional>
#include <string_view>

#include "shell/application.h"
#include "shell/ending.h"
#include "window/look.h"
#include "window/signal_watch.h"
#include "window/window_front_end.h"
#include "window/windows.h"

namespace window {

namespace {

constexpr int bad_arguments = 2;

constexpr const char* usage =
    "Usage: %s [--help | --version]\n"
    "Opens the windows of the evaluation software. It takes no other options: everything is set in the "
    "windows,\n"
    "F1 tells the first steps and the keys. varzelin-als-console is the whole program without windows.\n";

// The exit code that the command line leads to; none: the program is to run.
std::optional<int> answer(const std::string& program_name, std::span<char*> options) {
  if (options.empty()) return std::nullopt;
  const std::string_view option = options.front();
  if (options.size() == 1 && option == "--help") {
    std::printf(usage, program_name.c_str());
    return 0;
  }
  if (options.size() == 1 && option == "--version") {
    std::printf("%s %s\n", program_name.c_str(), varzelin::application_version);
    return 0;
  }
  std::fprintf(stderr, "%s: \"%s\" is not taken. --help tells what is.\n", program_name.c_str(),
               options[option == "--help" || option == "--version" ? 1 : 0]);
  return bad_arguments;
}

}  // namespace

// Qt gets no options.
int run(std::span<char*> words, const Desktop& desktop) {
  std::string name = words.front();
  if (const auto exit_code = answer(name.substr(name.rfind('/') + 1), words.subspan(1))) return *exit_code;
  const auto is_set = [](const char* variable) { return !qEnvironmentVariableIsEmpty(variable); };
  if (!is_set("DISPLAY") && !is_set("WAYLAND_DISPLAY") && !is_set("QT_QPA_PLATFORM")) {
    std::cerr << "There is no display here. varzelin-als-console is the whole program without windows.\n";
    return 1;
  }
  char* arguments[] = {name.data(), nullptr};
  int count = 1;
  QApplication application(count, arguments);
  set_look(application);

  const forms::EndSignals end_signals;
  WindowFrontEnd front_end;
  varzelin::Program program(desktop.clock, desktop.driver, front_end);
  Windows windows(program, front_end, desktop.bench);
  program.libraries.push_back(std::string("Qt ") + qVersion() + " (LGPL 3)");
  if (!desktop.library.empty()) program.libraries.push_back(desktop.library);
  varzelin::add_forms(program);
  const SignalWatch watch(program, front_end, end_signals);
  const varzelin::SessionGuard guard(program);
  program.runtime.post([&] { varzelin::start(program); });
  program.runtime.run(program.forms);
  return end_signals.first() == 0 ? 0 : 128 + end_signals.first();
}

}  // namespace window
