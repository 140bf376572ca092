#include "console/board_commands.h"

#include <algorithm>
#include <array>

namespace console {
namespace {

using boards::SimulatedBoard;
using BoardCommand = void (*)(SimulatedBoard&, Arguments&, Json& answer);

std::uint8_t byte(Arguments& arguments, const char* what) {
  return static_cast<std::uint8_t>(arguments.hex(what, 0xFF));
}

// A status fills 32 bits, the driver's own are signed.
boards::Status status_or(Arguments& arguments, boards::Status usual) {
  if (!arguments.more() || arguments.peek() == "after") return usual;
  const auto status = static_cast<boards::Status>(arguments.hex("STATUS", 0xFFFFFFFF));
  if (status == boards::success) throw Refused{"not a failure: 0"};
  return status;
}

std::size_t count(Arguments& arguments, const char* what) {
  const int value = arguments.whole(what);
  if (value < 0) throw Refused{"out of range: " + std::to_string(value)};
  return static_cast<std::size_t>(value);
}

// One of two words: true for the first.
bool either(Arguments& arguments, const char* first, const char* second) {
  const std::string& word = arguments.text((std::string(first) + "|" + second).c_str());
  arguments.end();
  if (word != first && word != second)
    throw Refused{"neither " + std::string(first) + " nor " + second + ": " + word};
  return word == first;
}

// "02", "2" and "02A0": two digits a byte, a single digit is one.
void append_bytes(std::vector<std::uint8_t>& bytes, const std::string& word) {
  const std::size_t step = word.size() == 1 ? 1 : 2;
  if (word.empty() || word.size() % step != 0) throw Refused{"not hexadecimal bytes: " + word};
  for (std::size_t i = 0; i < word.size(); i += step) {
    const std::string digits = word.substr(i, step);
    const auto value = to_hex("0x" + digits);
    if (!value) throw Refused{"not hexadecimal bytes: " + word};
    bytes.push_back(static_cast<std::uint8_t>(*value));
  }
}

std::vector<std::uint8_t> bytes(Arguments& arguments) {
  std::vector<std::uint8_t> result;
  do append_bytes(result, arguments.text("HEX"));
  while (arguments.more());
  return result;
}

void mount(SimulatedBoard& board, Arguments& arguments, Json&) {
  const std::string model = arguments.text("MODEL");
  const std::uint8_t address = arguments.more() ? byte(arguments, "ADDRESS") : std::uint8_t{0x88};
  arguments.end();
  if (address % 2 != 0) throw Refused{"not a write address: the lowest bit is set"};
  if (!board.mount(model, address)) throw Refused{"no such model: " + model};
}

void unmount(SimulatedBoard& board, Arguments& arguments, Json&) {
  arguments.end();
  board.unmount();
}

void scene(SimulatedBoard& board, Arguments& arguments, Json&) {
  const std::string what = arguments.text("light|ir|distance|resistor");
  const double value = arguments.number("VALUE");
  arguments.end();
  if (what == "light") {
    board.scene().light_lux = value;
  } else if (what == "ir") {
    board.scene().ir_counts = value;
  } else if (what == "distance") {
    board.scene().distance_mm = value;
  } else if (what == "resistor") {
    if (value <= 0) throw Refused{"out of range: a resistor without ohms"};
    board.scene().external_resistor_ohms = value;
  } else {
    throw Refused{"no such part of the scene: " + what};
  }
}

void noise(SimulatedBoard& board, Arguments& arguments, Json&) {
  const double width = arguments.number("COUNTS");
  arguments.end();
  if (width < 0) throw Refused{"out of range: a width below 0"};
  board.set_noise(width);
}

void sensor_register(SimulatedBoard& board, Arguments& arguments, Json& answer) {
  const std::string name = arguments.more() ? arguments.peek() : std::string();
  const std::uint8_t address = byte(arguments, "ADDRESS");
  const bool setting = arguments.more();
  const std::uint8_t new_value = setting ? byte(arguments, "VALUE") : std::uint8_t{0};
  arguments.end();
  if (board.mounted_model().empty()) throw Refused{"no sensor mounted"};
  if (setting) {
    if (!board.set_register(address, new_value)) throw Refused{"no such register: " + name};
  } else {
    const auto value = board.register_value(address);
    if (!value) throw Refused{"no such register: " + name};
    answer.value(std::int64_t{*value});
  }
}

void port(SimulatedBoard& board, Arguments& arguments, Json&) {
  const std::string name = arguments.text("B|C");
  const std::uint8_t level = byte(arguments, "VALUE");
  arguments.end();
  if (name.size() != 1 || !board.set_port(name[0], level)) throw Refused{"no such port: " + name};
}

void reply(SimulatedBoard& board, Arguments& arguments, Json&) {
  board.queue_reply(bytes(arguments));
}

void port_reply(SimulatedBoard& board, Arguments& arguments, Json&) {
  board.queue_port_reply(bytes(arguments));
}

void fail_call(SimulatedBoard& board, Arguments& arguments, Json&) {
  const std::string call = arguments.text("CALL");
  const boards::Status status = status_or(arguments, boards::statuses::call_failed);
  arguments.end();
  if (!board.fail_call(call, status)) throw Refused{"no such call: " + call};
}

void fail(SimulatedBoard& board, Arguments& arguments, Json&) {
  const std::size_t transfers = count(arguments, "N");
  const boards::Status status = status_or(arguments, boards::statuses::time_out);
  std::size_t good_ones = 0;
  if (arguments.more()) {
    const std::string& after = arguments.text("after");
    if (after != "after") throw Refused{"not after: " + after};
    good_ones = count(arguments, "M");
  }
  arguments.end();
  board.fail_transfers(transfers, status, good_ones);
}

void clear(SimulatedBoard& board, Arguments& arguments, Json& answer) {
  arguments.end();
  answer.value(board.clear());
}

void unplug(SimulatedBoard& board, Arguments& arguments, Json&) {
  arguments.end();
  board.unplug();
}

void plug(SimulatedBoard& board, Arguments& arguments, Json&) {
  arguments.end();
  board.plug();
}

void driver(SimulatedBoard& board, Arguments& arguments, Json&) {
  board.set_driver_present(either(arguments, "on", "off"));
}

void timing(SimulatedBoard& board, Arguments& arguments, Json&) {
  board.set_timing(either(arguments, "real", "none"));
}

struct Entry {
  std::string_view name;
  BoardCommand command;
};
constexpr std::array commands{
    Entry{"mount", mount},
    Entry{"unmount", unmount},
    Entry{"scene", scene},
    Entry{"noise", noise},
    Entry{"register", sensor_register},
    Entry{"port", port},
    Entry{"reply", reply},
    Entry{"port-reply", port_reply},
    Entry{"fail-call", fail_call},
    Entry{"fail", fail},
    Entry{"clear", clear},
    Entry{"unplug", unplug},
    Entry{"plug", plug},
    Entry{"driver", driver},
    Entry{"timing", timing},
};

}  // namespace

void board(Context& context, Arguments& arguments, Json& answer) {
  if (!context.board) throw Refused{"no simulated board"};
  const std::string name = arguments.text("COMMAND");
  const auto found = std::ranges::find(commands, name, &Entry::name);
  if (found == commands.end()) throw Refused{"no such command: board " + name};
  found->command(*context.board, arguments, answer);
}

}  // namespace console
