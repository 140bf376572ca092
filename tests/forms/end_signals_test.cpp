// Signals that ask the program to end, and those that a failing write brings.
#include "forms/end_signals.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <chrono>
#include <csignal>

namespace forms {
namespace {

using namespace std::chrono_literals;

bool is_readable(int descriptor) {
  pollfd asked{descriptor, POLLIN, 0};
  return ::poll(&asked, 1, 0) == 1;
}

TEST(EndSignals, EachIsTakenAndKept) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    const EndSignals signals;
    EXPECT_EQ(signals.first(), 0);
    EXPECT_FALSE(is_readable(signals.descriptor()));
    std::raise(signal);
    EXPECT_EQ(signals.first(), signal);
    EXPECT_TRUE(is_readable(signals.descriptor()));
  }
}

TEST(EndSignals, TheFirstOneCounts) {
  const EndSignals signals;
  std::raise(SIGINT);
  std::raise(SIGTERM);
  EXPECT_EQ(signals.first(), SIGINT);
}

TEST(EndSignals, ASecondOfAKindEndsTheProcess) {
  EXPECT_EXIT(
      {
        const EndSignals signals;
        std::raise(SIGTERM);
        std::raise(SIGTERM);
        ::_exit(0);
      },
      ::testing::KilledBySignal(SIGTERM), "");
}

TEST(EndSignals, TheyEndTheProcessAgainBehindIt) {
  { const EndSignals signals; }
  for (const int signal : {SIGHUP, SIGPIPE}) {
    EXPECT_EXIT(
        {
          std::raise(signal);
          ::_exit(0);
        },
        ::testing::KilledBySignal(signal), "");
  }
}

TEST(EndSignals, OneThatIsIgnoredStaysSo) {
  std::signal(SIGHUP, SIG_IGN);
  {
    const EndSignals signals;
    std::raise(SIGHUP);
    EXPECT_EQ(signals.first(), 0);
  }
  EXPECT_EQ(std::signal(SIGHUP, SIG_DFL), SIG_IGN);
}

TEST(EndSignals, AWriteThatCannotBeIsAnErrorOfThatWrite) {
  for (const int signal : {SIGPIPE, SIGXFSZ}) {
    const EndSignals signals;
    std::raise(signal);
    EXPECT_EQ(signals.first(), 0);
  }
}

TEST(EndSignals, WaitingEndsByTheTimeOrASignal) {
  const EndSignals signals;
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_FALSE(signals.wait(2ms));
  EXPECT_GE(std::chrono::steady_clock::now() - begin, 2ms);
  std::raise(SIGTERM);
  EXPECT_TRUE(signals.wait(1ms));
}

}  // namespace
}  // namespace forms
