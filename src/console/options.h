// The command line of the console program.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace console {

struct Options {
  bool help = false;
  bool version = false;
  bool usb_board = false;
  bool virtual_clock = true;
};

struct BadArgument {
  std::string text;  // one line
};

inline constexpr std::string_view usage =
    "usage: varzelin-als-console [--board simulated|usb] [--clock virtual|real]\n"
    "\n"
    "The program without windows: commands come on standard input, one a line.\n"
    "\n"
    "  --board simulated|usb   the board (simulated)\n"
    "  --clock virtual|real    the clock (virtual; real with --board usb)\n"
    "  --help                  print this and exit\n"
    "  --version               print the version and exit\n";

// `arguments` without the program's name. --help and --version end the reading of arguments.
std::variant<Options, BadArgument> parse_options(std::span<const std::string_view> arguments);

}  // namespace console
