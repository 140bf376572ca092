// Recordings of a board, and playing them back.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <sstream>
#include <stdexcept>

#include "boards/recording/recording_board.h"
#include "boards/recording/replaying_board.h"
#include "boards/simulated/simulated_board.h"

using namespace boards;

namespace {

using Bytes = std::vector<std::uint8_t>;

// What a program saw of its driver, in words.
struct Host {
  explicit Host(Driver& its_driver, forms::Clock& its_clock) : driver(its_driver), clock(its_clock) {}

  void note(const std::string& what, Status status) {
    seen.push_back(what + ' ' + std::to_string(status) +
                   (status == success ? "" : ' ' + driver.VB_Stat2Str(status)) + " at " +
                   std::to_string(clock.milliseconds()));
  }
  void open() {
    const Status status = driver.WDU_VB_Init(
        session, {0x7A53, 0x2005},
        {[this](Handle handle, const DeviceInfo& info) {
           device = handle;
           note("attach " +
                    std::to_string(info.configurations.at(0).interfaces.at(0).alternates.at(0).pipes.size()),
                driver.WDU_SetInterface(handle, 0, 0));
           return true;
         },
         [this](Handle handle) { note("detach " + std::to_string(handle), success); }});
    note("init " + std::to_string(session), status);
    driver.deliver_notifications();
  }
  void info() {
    DeviceInfo info;
    note("info", driver.WDU_GetDeviceInfo(device, info));
    seen.push_back(std::to_string(info.product_id) + ' ' + std::to_string(info.configurations.size()));
  }
  void send(Bytes packet) {
    std::size_t transferred = 0;
    const Status status = driver.WDU_Transfer(device, pipe_i2c_out, false, packet, transferred);
    note("sent " + std::to_string(transferred), status);
  }
  void receive(std::size_t size) {
    std::size_t transferred = 0;
    Bytes buffer(size, 0xEE);
    const Status status = driver.WDU_Transfer(device, pipe_i2c_in, true, buffer, transferred);
    std::string text = "received " + std::to_string(transferred);
    for (const int byte : buffer) text += ' ' + std::to_string(byte);
    note(text, status);
  }

  Driver& driver;
  forms::Clock& clock;
  Handle session = 0;
  Handle device = 0;
  std::vector<std::string> seen;
};

// A session with everything that a recording has to keep; `unplug` and `plug` do so where there is a plug.
void journey(Host& host, const std::function<void()>& unplug, const std::function<void()>& plug) {
  host.driver.model_chosen("KVT71385");
  host.open();
  host.info();
  host.send({2, 0x88, 4, 0xA5, 0x5A});
  host.receive(3);  // a short reply
  host.send({2, 0x89, 4});
  host.receive(3);
  host.receive(3);  // a time-out
  host.note("pipe", host.driver.WDU_ResetPipe(host.device, pipe_i2c_in));
  host.note("pipe", host.driver.WDU_ResetPipe(host.device, 3));
  unplug();
  host.send({2, 0x89, 1});
  host.driver.deliver_notifications();
  plug();
  host.driver.deliver_notifications();
  host.note("reset", host.driver.WDU_ResetDevice(host.device));
  host.note("close", host.driver.CloseHandle(host.session));
  host.note("uninit", host.driver.WDU_VB_Uninit(host.session));
  host.info();
}

struct Recorded {
  std::vector<std::string> seen;
  std::string text;
};

Recorded record() {
  forms::VirtualClock clock;
  SimulatedBoard board(clock);
  std::ostringstream out;
  RecordingBoard recording(board, clock, out);
  Host host(recording, clock);
  journey(
      host, [&] { board.unplug(); }, [&] { board.plug(); });
  return {host.seen, out.str()};
}

std::string with(std::string text, const std::string& part, const std::string& other) {
  const auto at = text.find(part);
  EXPECT_NE(at, std::string::npos) << part;
  return text.replace(at, part.size(), other);
}

const auto nothing = [] {};

TEST(BoardRecording, IsReadable) {
  const std::string text = record().text;
  EXPECT_EQ(text.find("varzelin-board-recording 1\nboard simulated board\n"), 0u);
  const auto has = [&](const std::string& line) { return text.find(line) != std::string::npos; };
  EXPECT_TRUE(has(" model KVT71385\n")) << text;
  EXPECT_TRUE(has(" WDU_VB_Init 7A53 2005 -> 0 0.000 1\n")) << text;
  EXPECT_TRUE(has(" write 02 88 04 A5 5A -> 0 0.460 5\n")) << text;
  EXPECT_TRUE(has(" 82 read 3 -> 0 0.100 04\n")) << text;
  EXPECT_TRUE(has(" 82 read 3 -> 0 0.280 02 A5 5A\n")) << text;
  EXPECT_TRUE(has("\ntext 536870916 The transfer timed out\n")) << text;
  EXPECT_TRUE(has(" accepted\n")) << text;
}

TEST(BoardRecording, ReplaysTheSameToTheSameProgram) {
  const Recorded recorded = record();
  forms::VirtualClock clock;
  std::istringstream in(recorded.text);
  ReplayingBoard replay(in, clock);
  Host host(replay, clock);
  journey(host, nothing, nothing);
  EXPECT_EQ(host.seen, recorded.seen);
  EXPECT_FALSE(replay.difference());
  EXPECT_TRUE(replay.at_end());
  replay.end();
  EXPECT_FALSE(replay.difference());
  EXPECT_EQ(replay.board_name(), "simulated board, replayed");
}

TEST(BoardRecording, TellsTheFirstDifferenceAndFailsFromThenOn) {
  const std::string text = with(record().text, "write 02 88 04 A5 5A", "write 02 88 04 A5 5B");
  forms::VirtualClock clock;
  std::istringstream in(text);
  ReplayingBoard replay(in, clock);
  std::vector<std::string> advices;
  replay.on_advice = [&](const std::string& advice) { advices.push_back(advice); };
  Host host(replay, clock);
  journey(host, nothing, nothing);
  ASSERT_TRUE(replay.difference());
  const auto begin = text.substr(0, text.find("A5 5B"));
  EXPECT_EQ(replay.difference()->line, 1u + static_cast<unsigned>(std::ranges::count(begin, '\n')));
  EXPECT_NE(replay.difference()->expected.find("02 88 04 A5 5B"), std::string::npos);
  EXPECT_NE(replay.difference()->got.find("02 88 04 A5 5A"), std::string::npos);
  EXPECT_EQ(advices, std::vector{replay.VB_Stat2Str(replay_differs)});
  EXPECT_EQ(replay.WDU_VB_Uninit(host.session), replay_differs);
  EXPECT_EQ(replay.WDU_ResetDevice(host.device), replay_differs);
}

TEST(BoardRecording, ACallBeyondTheEndIsADifference) {
  const Recorded recorded = record();
  forms::VirtualClock clock;
  std::istringstream in(recorded.text);
  ReplayingBoard replay(in, clock);
  Host host(replay, clock);
  journey(host, nothing, nothing);
  EXPECT_EQ(replay.WDU_ResetDevice(1), replay_differs);
  ASSERT_TRUE(replay.difference());
  EXPECT_EQ(replay.difference()->expected, "the end of the recording");
  EXPECT_EQ(replay.difference()->got, "WDU_ResetDevice 1");
}

TEST(BoardRecording, AProgramThatRejectsTheDeviceDiffers) {
  forms::VirtualClock clock;
  std::istringstream in(with(record().text, " accepted", " rejected"));
  ReplayingBoard replay(in, clock);
  Host host(replay, clock);
  journey(host, nothing, nothing);
  ASSERT_TRUE(replay.difference());
  EXPECT_NE(replay.difference()->expected.find("rejected"), std::string::npos);
}

TEST(BoardRecording, RefusesALineThatIsLongerThanAny) {
  const std::string longest(1024 * 1024 - 1, 'x');
  const std::string begin = "varzelin-board-recording 1\n#";
  forms::VirtualClock clock;
  std::istringstream good(begin + longest + "\n#");
  EXPECT_NO_THROW(ReplayingBoard(good, clock));
  std::istringstream without_end("varzelin-board-recording 1");
  EXPECT_NO_THROW(ReplayingBoard(without_end, clock));
  for (const char* end : {"x\n", "x"}) {
    std::istringstream bad(begin + longest + end);
    try {
      const ReplayingBoard board(bad, clock);
      ADD_FAILURE() << "taken";
    } catch (const std::runtime_error& error) {
      EXPECT_STREQ(error.what(), "line 2 of the recording: longer than 1 MiB");
    }
  }
}

TEST(BoardRecording, RefusesWhatIsNoRecording) {
  forms::VirtualClock clock;
  const std::string good = record().text;
  for (const std::string& bad :
       {std::string(), std::string("hello\n"), with(good, "recording 1", "recording 2"),
        with(good, "-> 0", "-> none"), with(good, "-> 0 0.460", "-> 0 1e300"),
        with(good, "-> 0 0.460", "-> 0 -1"), with(good, "02 A5 5A\n", "02 A5 5G\n"),
        with(good, "02 A5 5A\n", "102\n"), with(good, "active 0 0 0", "active 0 7 0"),
        with(good, "active", "actve"), with(good, "0.000 model", "model"), with(good, "attach ", "attach x"),
        with(good, "attach 257", "attach x -> 0 1"),
        with(good, "WDU_VB_Init", "WDU_VB_Init 1\n0 WDU_VB_Init")}) {
    std::istringstream in(bad);
    EXPECT_THROW(ReplayingBoard(in, clock), std::runtime_error) << bad;
  }
}

}  // namespace
