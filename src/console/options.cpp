#include "console/options.h"

#include <optional>

namespace console {

std::variant<Options, BadArgument> parse_options(std::span<const std::string_view> arguments) {
  Options options;
  std::optional<bool> virtual_clock;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view name = arguments[i];
    if (name == "--help" || name == "--version") {
      (name == "--help" ? options.help : options.version) = true;
      return options;
    }
    if (name != "--board" && name != "--clock") return BadArgument{"bad argument: " + std::string(name)};
    if (++i == arguments.size()) return BadArgument{"missing value of " + std::string(name)};
    const std::string_view value = arguments[i];
    if (name == "--board" && (value == "simulated" || value == "usb")) {
      options.usb_board = value == "usb";
    } else if (name == "--clock" && (value == "virtual" || value == "real")) {
      virtual_clock = value == "virtual";
    } else {
      return BadArgument{"bad value of " + std::string(name) + ": " + std::string(value)};
    }
  }
  if (options.usb_board && virtual_clock == true) {
    return BadArgument{"--board usb needs the real clock"};
  }
  options.virtual_clock = virtual_clock.value_or(!options.usb_board);
  return options;
}

}  // namespace console
