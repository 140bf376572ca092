// The command line of the console program.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace console {

enum class Board { Simulated, Usb, Replay };

struct Options {
  bool help = false;
  bool version = false;
  Board board = Board::Simulated;
  std::string replayed_file;  // of Board::Replay
  std::string recorded_file;  // empty: nothing is recorded
  bool virtual_clock = true;
};

struct BadArgument {
  std::string text;  // one line
};

inline constexpr std::string_view usage =
    "usage: varzelin-als-console [--board simulated|usb|replay=FILE] [--clock virtual|real]\n"
    "                            [--record FILE]\n"
    "\n"
    "The program without windows: commands come on standard input, one a line.\n"
    "\n"
    "  --board simulated|usb   the board (simulated)\n"
    "  --board replay=FILE     no board: a recording answers\n"
    "  --clock virtual|real    the clock (virtual; real with --board usb)\n"
    "  --record FILE           write down every call of the board's driver\n"
    "  --help                  print this and exit\n"
    "  --version               print the version and exit\n";

// `arguments` without the program's name. --help and --version end the reading of arguments.
std::variant<Options, BadArgument> parse_options(std::span<const std::string_view> arguments);

}  // namespace console
