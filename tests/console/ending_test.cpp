// The end by a signal in a handler's sleep on the system's clock.
#include <chrono>
#include <csignal>
#include <sstream>

#include "console/console.h"
#include "forms/end_signals.h"
#include "support/console_fixture.h"

namespace console_test {
namespace {

using namespace std::chrono_literals;

// Counts what the thread would sleep.
class CountingClock final : public Clock {
 public:
  explicit CountingClock(bool is_virtual) : is_virtual_(is_virtual) {}
  Duration now() const override { return passed; }
  void pass(Duration time) override { passed += time; }
  void yielded() override {}
  std::chrono::system_clock::time_point date() const override { return {}; }
  std::tm local_time() const override { return {}; }
  bool is_virtual() const override { return is_virtual_; }

  Duration passed{};

 private:
  const bool is_virtual_;
};

struct ConsoleEnding : ::testing::TestWithParam<bool> {
  CountingClock clock{GetParam()};
  VirtualClock boards_clock;
  boards::SimulatedBoard board{boards_clock};
  std::istringstream in;
  std::ostringstream out;
  console::StreamLines lines{in};
  const forms::EndSignals signals;
  console::Console console{clock, board, lines, out};
};

TEST_P(ConsoleEnding, NoSignalLeavesASleepItsLength) {
  console.sleep(clock, 1h);
  EXPECT_EQ(clock.passed, 1h);
}

TEST_P(ConsoleEnding, ASignalEndsARealSleep) {
  console.end_on(signals);
  std::raise(SIGTERM);
  console.sleep(clock, 1h);
  EXPECT_EQ(clock.passed, GetParam() ? Clock::Duration(1h) : 0ns);
}

TEST_P(ConsoleEnding, ASignalEndsTheProgram) {
  console.end_on(signals);
  console.program().forms.add("frmBench", [&](std::string name) {
    return std::make_unique<frmBench>(console.program().forms, std::move(name));
  });
  std::raise(SIGTERM);
  console.run([](varzelin::Program& program) { program.forms.touch("frmBench").Show(); });
  EXPECT_EQ(out.str(), "* ended\n");
}

INSTANTIATE_TEST_SUITE_P(Clocks, ConsoleEnding, ::testing::Bool(),
                         [](const auto& each) { return std::string(each.param ? "Virtual" : "Real"); });

}  // namespace
}  // namespace console_test
