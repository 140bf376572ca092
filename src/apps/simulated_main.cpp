// The desktop program on the simulated board.
#include "boards/simulated/simulated_board.h"
#include "shell/ending.h"
#include "window/desktop.h"

int main(int count, char** words) {
  return varzelin::status_of(words[0], [&] {
    forms::SystemClock clock;
    boards::SimulatedBoard board(clock);
    return window::run({words, static_cast<std::size_t>(count)},
                       {.clock = clock, .driver = board, .bench = &board});
  });
}
