// Runs QEMU with the evaluation board on its usb-redir, and lets the guest work the board's plug.
//
//   board_server COMMAND...
//
// COMMAND finds two connected sockets at its start: descriptor 3 for usb-redir, 4 for the control line. A
// line on the latter is a command and is answered by one line, "ok" or "error". Ends with the status of
// COMMAND.
//
//   mount MODEL       puts a sensor into the board's socket
//   plug [PRODUCT]    plugs the board in, or a device with another product number (hexadecimal)
//   unplug            pulls it
//   pull-within N     pulls it while a transfer to the host is pending, after N that went well
//   stall PIPE        the endpoint (hexadecimal) is halted
//   hang PIPE         the next transfer on it is never answered
//   reply HEX...      the next transfer on pipe 82 brings these bytes
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <sstream>
#include <string>
#include <system_error>

#include "qemu/redirected_board.h"

namespace {

constexpr int usb_descriptor = 3;
constexpr int control_descriptor = 4;
constexpr int not_run = 127;

struct Ends {
  int ours;
  int theirs;
};

Ends connected_sockets() {
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
    throw std::system_error(errno, std::generic_category(), "socketpair");
  }
  return {ends[0], ends[1]};
}

// Far from the descriptors that the command gets, so that neither is overwritten before it is copied.
int moved_away(int descriptor) {
  return fcntl(descriptor, F_DUPFD_CLOEXEC, 64);
}

pid_t run(char** command, int usb, int control) {
  const pid_t child = fork();
  if (child != 0) return child;
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  const int high_usb = moved_away(usb), high_control = moved_away(control);
  dup2(high_usb, usb_descriptor);
  dup2(high_control, control_descriptor);
  execvp(command[0], command);
  std::perror(command[0]);
  _exit(not_run);
}

bool obey(usb_testing::RedirectedBoard& board, const std::string& line) {
  std::istringstream words(line);
  std::string command;
  words >> command;
  int number = 0;
  if (command == "mount") {
    std::string model;
    return words >> model && board.device().brain().mount(model);
  }
  if (command == "plug") {
    if (words >> std::hex >> number) {
      board.plug(static_cast<std::uint16_t>(number));
    } else {
      board.plug();
    }
    return true;
  }
  if (command == "unplug") return board.unplug(), true;
  if (command == "pull-within") {
    if (!(words >> number)) return false;
    return board.device().pull_within_transfer(number), true;
  }
  words >> std::hex;
  if (command == "reply") {
    usb_testing::BridgeDevice::Bytes bytes;
    while (words >> number) bytes.push_back(static_cast<std::uint8_t>(number));
    return board.device().brain().queue_reply(std::move(bytes)), words.eof();
  }
  if (!(words >> number)) return false;
  if (command == "stall") return board.device().stall(number), true;
  if (command == "hang") return board.device().bring_and_hang(number, {}), true;
  return false;
}

// The guest's serial line: what it sends in one go may come in pieces.
class ControlLine {
 public:
  ControlLine(int socket, usb_testing::RedirectedBoard& board) : socket_(socket), board_(board) {}

  void serve() {
    char bytes[256];
    const auto size = recv(socket_, bytes, sizeof bytes, MSG_DONTWAIT);
    if (size > 0) pending_.append(bytes, static_cast<std::size_t>(size));
    for (std::size_t end; (end = pending_.find('\n')) != std::string::npos; pending_.erase(0, end + 1)) {
      const std::string answer = obey(board_, pending_.substr(0, end)) ? "ok\n" : "error\n";
      if (send(socket_, answer.data(), answer.size(), MSG_NOSIGNAL) < 0) return;
    }
  }

 private:
  int socket_;
  usb_testing::RedirectedBoard& board_;
  std::string pending_;
};

}  // namespace

int main(int count, char** arguments) {
  if (count < 2) {
    std::fprintf(stderr, "usage: board_server COMMAND...\n");
    return 2;
  }
  const Ends usb = connected_sockets(), control = connected_sockets();
  const pid_t child = run(arguments + 1, usb.theirs, control.theirs);
  close(usb.theirs);
  close(control.theirs);

  usb_testing::RedirectedBoard board(usb.ours);
  ControlLine line(control.ours, board);
  while (board.serve()) {
    const short usb_events = board.has_to_write() ? POLLIN | POLLOUT : POLLIN;
    pollfd waits[] = {{usb.ours, usb_events, 0}, {control.ours, POLLIN, 0}};
    poll(waits, std::size(waits), -1);
    if (waits[1].revents != 0) line.serve();
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : not_run;
}
