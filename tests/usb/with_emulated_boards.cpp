// with-emulated-boards COUNT COMMAND [ARGUMENT ...]: runs a command that sees COUNT evaluation boards on the
// USB and nothing else there, e.g.
//
//   umockdev-wrapper with-emulated-boards 1 varzelin-als-demonstration
//
// Each has a KVT71346/7 in its socket. The signal USR1 pulls the first one, or plugs it in again, which
// standard error tells when it is done. The exit status is the command's.
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <list>

#include "usb/emulated_usb.h"

namespace {

constexpr int bad_arguments = 2;

void plug(usb_testing::EmulatedUsb& usb, usb_testing::EmulatedBoard& board) {
  usb.plug(board);
  board.brain([](boards::SimulatedBoard& brain) { brain.mount("KVT71346/7"); });
}

// The process, or 0 when there is none.
pid_t run(char** command) {
  sigset_t none;
  sigemptyset(&none);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
  pid_t child = 0;
  const int error = posix_spawnp(&child, command[0], nullptr, &attributes, command, environ);
  posix_spawnattr_destroy(&attributes);
  if (error == 0) return child;
  std::fprintf(stderr, "with-emulated-boards: %s: %s\n", command[0], std::strerror(error));
  return 0;
}

}  // namespace

int main(int count, char** words) {
  if (count < 3) {
    std::fputs("usage: umockdev-wrapper with-emulated-boards COUNT COMMAND [ARGUMENT ...]\n", stderr);
    return bad_arguments;
  }
  // Before any thread comes, so that none takes them.
  sigset_t awaited;
  sigemptyset(&awaited);
  sigaddset(&awaited, SIGUSR1);
  sigaddset(&awaited, SIGCHLD);
  sigprocmask(SIG_BLOCK, &awaited, nullptr);

  std::list<usb_testing::EmulatedBoard> boards(static_cast<std::size_t>(std::atoi(words[1])));
  usb_testing::EmulatedUsb usb;
  if (!usb.possible()) {
    std::fputs("with-emulated-boards: start it by umockdev-wrapper\n", stderr);
    return bad_arguments;
  }
  for (auto& board : boards) plug(usb, board);

  const pid_t child = run(words + 2);
  if (child == 0) return bad_arguments;
  for (bool plugged = true;;) {
    int signal = 0;
    sigwait(&awaited, &signal);
    if (signal == SIGUSR1 && !boards.empty()) {
      plugged ? usb.unplug(boards.front()) : plug(usb, boards.front());
      plugged = !plugged;
      std::fprintf(stderr, "with-emulated-boards: %s\n", plugged ? "plugged in" : "pulled");
    } else if (int status = 0; waitpid(child, &status, WNOHANG) == child) {
      return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
  }
}
