// with-emulated-boards COUNT COMMAND [ARGUMENT ...]: runs a command that sees COUNT evaluation boards on the
// USB and nothing else there, e.g.
//
//   umockdev-wrapper with-emulated-boards 1 varzelin-als-demonstration
//
// Each has a KVT71346/7 in its socket. The exit status is the command's.
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <list>

#include "usb/emulated_usb.h"

int main(int count, char** words) {
  constexpr int bad_arguments = 2;
  if (count < 3) {
    std::fputs("usage: umockdev-wrapper with-emulated-boards COUNT COMMAND [ARGUMENT ...]\n", stderr);
    return bad_arguments;
  }
  usb_testing::EmulatedUsb usb;
  if (!usb.possible()) {
    std::fputs("with-emulated-boards: start it by umockdev-wrapper\n", stderr);
    return bad_arguments;
  }
  std::list<usb_testing::EmulatedBoard> boards(static_cast<std::size_t>(std::atoi(words[1])));
  for (auto& board : boards) {
    usb.plug(board);
    board.brain([](boards::SimulatedBoard& brain) { brain.mount("KVT71346/7"); });
  }

  pid_t child = 0;
  if (const int error = posix_spawnp(&child, words[2], nullptr, nullptr, words + 2, environ)) {
    std::fprintf(stderr, "with-emulated-boards: %s: %s\n", words[2], std::strerror(error));
    return bad_arguments;
  }
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}
