// The desktop program on the evaluation board.
#include "boards/missing_driver.h"
#include "window/desktop.h"

int main(int, char** arguments) {
  forms::SystemClock clock;
  boards::MissingDriver driver;
  return window::run(arguments[0],
                     {.clock = clock,
                      .driver = driver,
                      .warning = driver.VB_Stat2Str(boards::MissingDriver::no_driver) +
                                 ".\n\nThe program can be worked, but every connection will fail."});
}
