// A signal that asks the program to end, seen while Qt waits.
#pragma once

#include <QSocketNotifier>

#include "bridge/program.h"
#include "forms/end_signals.h"

namespace window {

class WindowFrontEnd;

// Ends the program as varzelin::end_on does: a dialog or a menu that is open is closed, a sleep ends, and
// what waits for an event has one. All three outlive this object.
class SignalWatch {
 public:
  SignalWatch(varzelin::Program& program, WindowFrontEnd& front_end, const forms::EndSignals& end_signals);

 private:
  QSocketNotifier notifier_;
  bool posted_ = false;  // an event that only ends a wait
};

}  // namespace window
