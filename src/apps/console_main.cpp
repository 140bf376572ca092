// The console program: commands on standard input, answers on standard output.

#include <exception>
#include <iostream>
#include <memory>
#include <vector>

#include <unistd.h>

#include "boards/simulated/simulated_board.h"
#include "console/console.h"
#include "console/options.h"
#include "shell/application.h"

namespace {

constexpr const char* program_name = "varzelin-als-console";

enum ExitStatus { success = 0, could_not_start = 1, bad_arguments = 2 };

int fail(ExitStatus status, std::string_view why) {
  std::cerr << program_name << ": " << why << '\n';
  return status;
}

int run(bool virtual_clock) {
  std::unique_ptr<forms::Clock> clock;
  if (virtual_clock) {
    clock = std::make_unique<forms::VirtualClock>();
  } else {
    clock = std::make_unique<forms::SystemClock>();
  }
  boards::SimulatedBoard board(*clock);
  console::DescriptorLines lines(STDIN_FILENO);
  console::Console console(*clock, board, lines, std::cout);
  varzelin::add_forms(console.program());
  console.run(varzelin::start);
  return success;
}

}  // namespace

int main(int count, char** words) {
  std::ios::sync_with_stdio(false);
  const std::vector<std::string_view> arguments(words + 1, words + count);
  const auto parsed = console::parse_options(arguments);
  if (const auto* bad = std::get_if<console::BadArgument>(&parsed)) return fail(bad_arguments, bad->text);
  const auto& options = std::get<console::Options>(parsed);
  if (options.help) {
    std::cout << console::usage;
    return success;
  }
  if (options.version) {
    std::cout << program_name << ' ' << varzelin::application_version << '\n';
    return success;
  }
  if (options.usb_board) return fail(could_not_start, "the USB board is not built into this program");
  try {
    return run(options.virtual_clock);
  } catch (const std::exception& error) {
    return fail(could_not_start, error.what());
  }
}
