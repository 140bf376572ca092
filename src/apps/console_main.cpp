// The console program: commands on standard input, answers on standard output.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <vector>

#include <unistd.h>

#include "boards/recording/recording_board.h"
#include "boards/recording/recording_file.h"
#include "boards/recording/replaying_board.h"
#include "boards/simulated/simulated_board.h"
#include "boards/usb/usb_board.h"
#include "console/console.h"
#include "console/options.h"
#include "forms/end_signals.h"
#include "shell/application.h"
#include "shell/ending.h"

namespace {

constexpr const char* program_name = "varzelin-als-console";

enum ExitStatus { success = 0, bad_arguments = 2, recording_failed = 3 };

ExitStatus fail(ExitStatus status, std::string_view why) {
  std::cerr << program_name << ": " << why << '\n';
  return status;
}

void check_output() {
  if (!std::cout.flush()) throw std::runtime_error("can't write standard output");
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

// What the program is run with.
struct Setting {
  const forms::EndSignals& signals;
  forms::Clock& clock;
  boards::SimulatedBoard* bench;
};

void run_console(const Setting& setting, boards::Driver& driver) {
  driver.on_advice = [](const std::string& text) { std::cerr << program_name << ": " << text << std::endl; };
  console::DescriptorLines lines(STDIN_FILENO, setting.signals.descriptor());
  console::Console console(setting.clock, driver, lines, std::cout, setting.bench);
  console.end_on(setting.signals);
  varzelin::add_forms(console.program());
  console.run(varzelin::start);
  check_output();
}

ExitStatus record_console(const Setting& setting, boards::Driver& board, const std::string& path) {
  boards::RecordingFile file(path);
  const auto not_whole = [&] {
    const std::string earlier = file.earlier();
    return fail(recording_failed,
                "the recording could not be written whole" +
                    (earlier.empty() ? "" : "; what " + path + " held before is in " + earlier));
  };
  try {
    boards::RecordingBoard recording(board, setting.clock, file.out());
    run_console(setting, recording);
  } catch (...) {
    not_whole();
    throw;
  }
  return file.finish() ? success : not_whole();
}

bool is_same_file(const std::string& one, const std::string& other) {
  std::error_code missing;
  return std::filesystem::equivalent(one, other, missing);
}

// The exit status.
int run(const console::Options& options) {
  if (is_same_file(options.replayed_file, options.recorded_file)) {
    return fail(bad_arguments, "--record onto the recording that is replayed");
  }
  const forms::EndSignals signals;
  const auto clock = make_clock(options.virtual_clock);
  const auto board = make_board(options, *clock);
  const Setting setting{signals, *clock, dynamic_cast<boards::SimulatedBoard*>(board.get())};
  if (options.recorded_file.empty()) {
    run_console(setting, *board);
  } else if (const ExitStatus status = record_console(setting, *board, options.recorded_file)) {
    return status;
  }
  if (const int signal = signals.first()) return 128 + signal;
  auto* replay = dynamic_cast<boards::ReplayingBoard*>(board.get());
  if (!replay) return success;
  replay->end();
  return replay->difference() ? recording_failed : success;
}

int follow(const std::vector<std::string_view>& arguments) {
  const auto parsed = console::parse_options(arguments);
  if (const auto* bad = std::get_if<console::BadArgument>(&parsed)) return fail(bad_arguments, bad->text);
  const auto& options = std::get<console::Options>(parsed);
  if (!options.help && !options.version) return run(options);
  if (options.help) {
    std::cout << console::usage;
  } else {
    std::cout << program_name << ' ' << varzelin::application_version << '\n';
  }
  check_output();
  return success;
}

}  // namespace

int main(int count, char** words) {
  std::ios::sync_with_stdio(false);
  return varzelin::status_of(program_name, [&] { return follow({words + 1, words + count}); });
}
