// The time that the board's traffic takes.
#pragma once

#include <chrono>

#include "forms/clock.h"

namespace boards {

class BusTime {
 public:
  explicit BusTime(forms::Clock& clock) : clock_(clock) {}

  bool taken = true;  // false: all traffic takes no time, waits for a time-out included

  void pass_transfer() { pass(std::chrono::microseconds(100)); }
  // Eight bits and the acknowledge at 100 kHz.
  void pass_bus_bytes(std::size_t count) { pass(count * std::chrono::microseconds(90)); }
  void pass(forms::Clock::Duration time) {
    if (taken) clock_.pass(time);
  }

 private:
  forms::Clock& clock_;
};

}  // namespace boards
