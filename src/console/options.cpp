#include "console/options.h"

#include <optional>

namespace console {

std::variant<Options, BadArgument> parse_options(std::span<const std::string_view> arguments) {
  constexpr std::string_view replay = "replay=";
  Options options;
  std::optional<bool> virtual_clock;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view name = arguments[i];
    if (name == "--help" || name == "--version") {
      (name == "--help" ? options.help : options.version) = true;
      return options;
    }
    if (name != "--board" && name != "--clock" && name != "--record")
      return BadArgument{"bad argument: " + std::string(name)};
    if (++i == arguments.size()) return BadArgument{"missing value of " + std::string(name)};
    const std::string_view value = arguments[i];
    if (name == "--board" && (value == "simulated" || value == "usb")) {
      options.board = value == "usb" ? Board::Usb : Board::Simulated;
    } else if (name == "--board" && value.size() > replay.size() && value.starts_with(replay)) {
      options.board = Board::Replay;
      options.replayed_file = value.substr(replay.size());
    } else if (name == "--record" && !value.empty()) {
      options.recorded_file = value;
    } else if (name == "--clock" && (value == "virtual" || value == "real")) {
      virtual_clock = value == "virtual";
    } else {
      return BadArgument{"bad value of " + std::string(name) + ": " + std::string(value)};
    }
  }
  if (options.board == Board::Usb && virtual_clock == true) {
    return BadArgument{"--board usb needs the real clock"};
  }
  options.virtual_clock = virtual_clock.value_or(options.board != Board::Usb);
  return options;
}

}  // namespace console
