#include "shell/ending.h"

#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "bridge/session.h"

namespace varzelin {
namespace {

Program* guarded = nullptr;

void close_session_at_exit() {
  if (!guarded || guarded->store.Usb_Open == 0) return;
  guarded->driver.WDU_ResetDevice(guarded->store.Dev_Handle);
  guarded->driver.CloseHandle(guarded->store.Drv_Handle);
  guarded->driver.WDU_VB_Uninit(guarded->store.Drv_Handle);
}

}  // namespace

SessionGuard::SessionGuard(Program& program) {
  [[maybe_unused]] static const int registered = std::atexit(close_session_at_exit);
  guarded = &program;
}

SessionGuard::~SessionGuard() {
  guarded = nullptr;
}

void close_and_end(Program& program) {
  constexpr int close_box = 0;
  const forms::Runtime::SilentDialogs nobody_answers(program.runtime);
  // By name, for what one form's end does to another.
  std::vector<std::string> names;
  for (const forms::Form* form : program.forms.all_loaded()) names.push_back(form->name());
  for (const std::string& name : names) {
    forms::Form* form = program.forms.loaded(name);
    if (form && form->visible()) forms::resume_next([&] { program.forms.unload(*form, close_box); });
  }
  forms::resume_next([&] { Mod_Disconnect_USB(program); });
  program.runtime.end();
}

void end_on(Program& program, const forms::EndSignals& end_signals) {
  program.runtime.poll = [&program, &end_signals, poll = program.runtime.poll, ending = false]() mutable {
    poll();
    if (end_signals.first() != 0 && !std::exchange(ending, true)) close_and_end(program);
  };
}

int status_of(const char* program_name, const std::function<int()>& program) {
  constexpr int failed = 1;
  forms::take_standard_descriptors();
  try {
    return program();
  } catch (const std::exception& error) {
    std::cerr << program_name << ": " << error.what() << '\n';
  } catch (...) {
    std::cerr << program_name << ": an unknown error\n";
  }
  return failed;
}

}  // namespace varzelin
