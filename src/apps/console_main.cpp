// The console program: commands on standard input, answers on standard output.

#include <exception>
#include <fstream>
#include <iostream>
#include <memory>
#include <vector>

#include <unistd.h>

#include "boards/recording/recording_board.h"
#include "boards/recording/replaying_board.h"
#include "boards/simulated/simulated_board.h"
#include "boards/usb/usb_board.h"
#include "console/console.h"
#include "console/options.h"
#include "shell/application.h"

namespace {

constexpr const char* program_name = "varzelin-als-console";

enum ExitStatus { success = 0, could_not_start = 1, bad_arguments = 2, recording_failed = 3 };

int fail(ExitStatus status, std::string_view why) {
  std::cerr << program_name << ": " << why << '\n';
  return status;
}

std::unique_ptr<forms::Clock> make_clock(bool is_virtual) {
  if (is_virtual) return std::make_unique<forms::VirtualClock>();
  return std::make_unique<forms::SystemClock>();
}

std::unique_ptr<boards::Driver> make_board(const console::Options& options, forms::Clock& clock) {
  if (options.board == console::Board::Usb) return std::make_unique<boards::UsbBoard>();
  if (options.board == console::Board::Simulated) return std::make_unique<boards::SimulatedBoard>(clock);
  std::ifstream file(options.replayed_file);
  if (!file) throw std::runtime_error("can't read " + options.replayed_file);
  return std::make_unique<boards::ReplayingBoard>(file, clock);
}

void run_console(forms::Clock& clock, boards::Driver& driver, boards::SimulatedBoard* bench) {
  driver.on_advice = [](const std::string& text) { std::cerr << program_name << ": " << text << std::endl; };
  console::DescriptorLines lines(STDIN_FILENO);
  console::Console console(clock, driver, lines, std::cout, bench);
  varzelin::add_forms(console.program());
  console.run(varzelin::start);
}

int run(const console::Options& options) {
  const auto clock = make_clock(options.virtual_clock);
  const auto board = make_board(options, *clock);
  auto* bench = dynamic_cast<boards::SimulatedBoard*>(board.get());
  if (options.recorded_file.empty()) {
    run_console(*clock, *board, bench);
  } else {
    std::ofstream file(options.recorded_file);
    if (!file) return fail(could_not_start, "can't write " + options.recorded_file);
    boards::RecordingBoard recording(*board, *clock, file);
    run_console(*clock, recording, bench);
    if (!file) return fail(recording_failed, "the recording could not be written whole");
  }
  auto* replay = dynamic_cast<boards::ReplayingBoard*>(board.get());
  if (!replay) return success;
  replay->end();
  return replay->difference() ? recording_failed : success;
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
  try {
    return run(options);
  } catch (const std::exception& error) {
    return fail(could_not_start, error.what());
  }
}
