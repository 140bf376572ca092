// The desktop program on the evaluation board.
#include "boards/usb/usb_board.h"
#include "window/desktop.h"

int main(int, char** arguments) {
  forms::SystemClock clock;
  boards::UsbBoard board;
  return window::run(arguments[0], {.clock = clock, .driver = board, .library = boards::UsbBoard::library()});
}
