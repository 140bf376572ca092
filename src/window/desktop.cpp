#include "window/desktop.h"

#include <QApplication>
#include <cstdio>

#include "shell/application.h"
#include "shell/ending.h"
#include "window/look.h"
#include "window/signal_watch.h"
#include "window/window_front_end.h"
#include "window/windows.h"

namespace window {

// The program takes no options, so Qt gets none either.
int run(const char* program_name, const Desktop& desktop) {
  const auto is_set = [](const char* name) { return !qEnvironmentVariableIsEmpty(name); };
  if (!is_set("DISPLAY") && !is_set("WAYLAND_DISPLAY") && !is_set("QT_QPA_PLATFORM")) {
    std::fputs("There is no display here. varzelin-als-console is the whole program without windows.\n",
               stderr);
    return 1;
  }
  std::string name = program_name;
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
  const SignalWatch watch(program, end_signals);
  const varzelin::SessionGuard guard(program);
  program.runtime.post([&] { varzelin::start(program); });
  program.runtime.run(program.forms);
  return end_signals.first() == 0 ? 0 : 128 + end_signals.first();
}

}  // namespace window
