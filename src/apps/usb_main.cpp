// The desktop program on the evaluation board.
#include "boards/usb/usb_board.h"
#include "shell/ending.h"
#include "window/desktop.h"

int main(int count, char** words) {
  return varzelin::status_of(words[0], [&] {
    forms::SystemClock clock;
    boards::UsbBoard board;
    return window::run({words, static_cast<std::size_t>(count)},
                       {.clock = clock, .driver = board, .library = boards::UsbBoard::library()});
  });
}
