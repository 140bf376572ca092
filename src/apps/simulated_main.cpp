// The desktop program on the simulated board.
#include "boards/simulated/simulated_board.h"
#include "window/desktop.h"

int main(int, char** arguments) {
  forms::SystemClock clock;
  boards::SimulatedBoard board(clock);
  return window::run(arguments[0], {.clock = clock, .driver = board, .bench = &board});
}
