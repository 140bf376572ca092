#include "forms/end_signals.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

namespace forms {
namespace {

constexpr std::array ending{SIGTERM, SIGINT, SIGHUP};
constexpr std::array ignored{SIGPIPE, SIGXFSZ};

volatile std::sig_atomic_t first_signal = 0;
volatile std::sig_atomic_t wake_up = -1;

extern "C" void take_signal(int signal) {
  const int error = errno;
  if (first_signal == 0) first_signal = signal;
  [[maybe_unused]] const ssize_t written = ::write(wake_up, "", 1);
  errno = error;
}

void handle(int signal, void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = static_cast<int>(SA_RESETHAND);  // without SA_RESTART: what waits comes back
  ::sigaction(signal, &action, nullptr);
}

bool is_ignored(int signal) {
  struct sigaction action {};
  ::sigaction(signal, nullptr, &action);
  return action.sa_handler == SIG_IGN;
}

}  // namespace

EndSignals::EndSignals() {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
    throw std::system_error(errno, std::generic_category(), "pipe");
  read_end_ = Descriptor(ends[0]);
  write_end_ = Descriptor(ends[1]);
  first_signal = 0;
  wake_up = write_end_.get();
  for (const int signal : ending) {
    if (!is_ignored(signal)) handle(signal, take_signal);
  }
  for (const int signal : ignored) std::signal(signal, SIG_IGN);
}

EndSignals::~EndSignals() {
  for (const int signal : ending) {
    if (!is_ignored(signal)) handle(signal, SIG_DFL);
  }
  for (const int signal : ignored) std::signal(signal, SIG_DFL);
  wake_up = -1;
}

int EndSignals::first() const {
  return first_signal;
}

bool EndSignals::wait(std::chrono::nanoseconds time) const {
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
  const timespec limit{seconds.count(), (time - seconds).count()};
  pollfd first{descriptor(), POLLIN, 0};
  ::ppoll(&first, 1, &limit, nullptr);
  return first_signal != 0;
}

}  // namespace forms
