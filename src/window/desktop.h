// A desktop program from its start to its end.
#pragma once

#include <span>
#include <string>

#include "boards/driver.h"
#include "forms/clock.h"

namespace boards {
class SimulatedBoard;
}

namespace window {

struct Desktop {
  forms::Clock& clock;
  boards::Driver& driver;
  boards::SimulatedBoard* bench = nullptr;  // the driver's board, when it is a simulated one
  std::string library = {};                 // that the driver is made with, for the about box; may be empty
};

// Takes the words of the command line. Returns the exit code of the process: when the user has left the
// program 0, or 128 and the signal that ended it, or at once for "--help", "--version", and words that the
// program doesn't take.
int run(std::span<char*> words, const Desktop& desktop);

}  // namespace window
