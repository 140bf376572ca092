// The end of a program that its user didn't ask for in a window.
#pragma once

#include <functional>

#include "bridge/program.h"
#include "forms/end_signals.h"

namespace varzelin {

// Closes every window as its close box does and the session with the board, whatever refuses or fails on the
// way, then ends the program.
[[noreturn]] void close_and_end(Program& program);

// Does so at the first turn of the loop after a signal has come, in whatever handler that is. The signals
// outlive the program.
void end_on(Program& program, const forms::EndSignals& end_signals);

// While it exists, a process that exits from within its loop (as a library does for which the X server has
// died) closes the session with the board first, without turning the loop. One object at a time.
class SessionGuard {
 public:
  explicit SessionGuard(Program& program);
  ~SessionGuard();
  SessionGuard(const SessionGuard&) = delete;
  SessionGuard& operator=(const SessionGuard&) = delete;
};

// The exit status that the program gives. What it throws is told on standard error, and the status is 1. A
// standard input, output or error that is missing stays so, whatever the program opens.
int status_of(const char* program_name, const std::function<int()>& program);

}  // namespace varzelin
