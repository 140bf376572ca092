// The signals that ask a program to end (TERM, INT, HUP), as something that a message loop can wait for.
#pragma once

#include <chrono>

#include "forms/system_file.h"

namespace forms {

class EndSignals {
 public:
  // Takes the three from now on, but for one that is ignored (nohup), and ignores PIPE and XFSZ, so that a
  // write that can't be is an error of that write. The first signal is kept; a second one of the same kind
  // ends the process as ever. One object at a time.
  EndSignals();
  ~EndSignals();
  EndSignals(const EndSignals&) = delete;
  EndSignals& operator=(const EndSignals&) = delete;

  // The signal that came first; 0: none has come. Cheap.
  int first() const;
  // Sleeps for this time, or until the first signal: then it is true.
  bool wait(std::chrono::nanoseconds time) const;
  // Readable once one has come, and from then on. Nobody else reads it.
  int descriptor() const { return read_end_.get(); }

 private:
  Descriptor read_end_{-1};
  Descriptor write_end_{-1};
};

}  // namespace forms
