// What a bus trace keeps, and what it says in words.
#include "boards/trace/bus_trace.h"

#include "boards/simulated/statuses.h"
#include "boards/trace/packet_words.h"
#include "support/simulated_board_fixture.h"

namespace boards {
namespace {

using std::chrono::microseconds;

class BusTraceTest : public SimulatedBoardTest {
 protected:
  BusTraceTest() {
    board.mount("KVT71346/7");
    connect();
    trace.start();
  }
  void fill(std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) i2c({0, 0x88, static_cast<std::uint8_t>(i)});
  }
  std::string said(const Transfer& transfer) { return in_words(transfer, kept.request_of(transfer)); }
  BusTrace trace{board, clock};
  const Transfers& kept = trace.transfers();
};

TEST_F(BusTraceTest, KeepsTransfersWithTimeAndBytes) {
  clock.pass(microseconds(1500));
  i2c({2, 0x89, 0});
  i2c_reply(3);
  ASSERT_EQ(kept.size(), 2u);
  EXPECT_EQ(kept[0].number, 1u);
  EXPECT_EQ(kept[0].begin, microseconds(1500));
  EXPECT_EQ(kept[0].end, microseconds(1870));
  EXPECT_EQ(kept[0].pipe, 2);
  EXPECT_EQ(kept[0].status, success);
  EXPECT_EQ(kept[0].bytes, (Bytes{2, 0x89, 0}));
  EXPECT_EQ(kept[0].transferred, 3u);
  EXPECT_EQ(kept[0].request, 0u);
  EXPECT_EQ(kept[1].begin, kept[0].end);
  EXPECT_GT(kept[1].end, kept[1].begin);
  EXPECT_EQ(kept[1].pipe, 0x82);
  EXPECT_EQ(kept[1].size, 3u);
  EXPECT_EQ(kept[1].bytes, (Bytes{2, 0, 0}));
  EXPECT_EQ(kept[1].request, 1u);
}

TEST_F(BusTraceTest, AFailedWriteKeepsThePacketThatDidNotGoThrough) {
  board.fail_transfers(1, statuses::transfer_failed);
  i2c({0, 0x88, 0x55});
  ASSERT_EQ(kept.size(), 1u);
  EXPECT_EQ(kept[0].status, statuses::transfer_failed);
  EXPECT_EQ(kept[0].transferred, 0u);
  EXPECT_EQ(kept[0].bytes, (Bytes{0, 0x88, 0x55}));
  EXPECT_EQ(kept[0].urb_status, -EPROTO);
}

TEST_F(BusTraceTest, ATimeOutIsATransferTakenBack) {
  i2c_reply(2);
  EXPECT_EQ(kept[0].urb_status, -ENOENT);
  EXPECT_TRUE(kept[0].bytes.empty());
  EXPECT_EQ(kept[0].end - kept[0].begin, std::chrono::milliseconds(1000));
}

TEST_F(BusTraceTest, OtherCallsAreNoTransfers) {
  board.WDU_ResetPipe(device, pipe_i2c_out);
  EXPECT_EQ(kept.size(), 0u);
}

TEST_F(BusTraceTest, TheOldestGivesWayToTheNewest) {
  fill(Transfers::most + 5);
  EXPECT_EQ(kept.size(), 100'000u);
  EXPECT_EQ(kept.first_number(), 6u);
  EXPECT_EQ(kept.next_number(), 100'006u);
  EXPECT_EQ(kept[0].number, 6u);
  EXPECT_EQ(kept.find(5), nullptr);
  EXPECT_EQ(kept.find(6), &kept[0]);
  EXPECT_EQ(kept.find(100'005), &kept[99'999]);
  EXPECT_EQ(kept.find(100'006), nullptr);
}

TEST_F(BusTraceTest, NumbersGoOnAfterClearing) {
  fill(3);
  trace.clear();
  EXPECT_EQ(kept.size(), 0u);
  EXPECT_EQ(kept.find(3), nullptr);
  fill(1);
  EXPECT_EQ(kept[0].number, 4u);
}

TEST_F(BusTraceTest, ListensFromStartToStopOnly) {
  trace.stop();
  EXPECT_EQ(board.observer, nullptr);
  fill(1);
  EXPECT_EQ(kept.size(), 0u);
  trace.start();
  fill(1);
  EXPECT_EQ(kept.size(), 1u);
  trace.stop();
  EXPECT_EQ(kept.size(), 1u);
}

TEST_F(BusTraceTest, IsOutOfTheDriversWayWhenItIsGone) {
  { BusTrace other(board, clock); }
  EXPECT_NE(board.observer, nullptr);
  {
    BusTrace other(board, clock);
    other.start();
  }
  EXPECT_EQ(board.observer, nullptr);
}

TEST_F(BusTraceTest, AnAnswerAfterAPauseBelongsToNoPacketBeforeIt) {
  i2c({2, 0x89, 0});
  trace.stop();
  trace.start();
  i2c_reply(3);
  EXPECT_EQ(kept[1].request, 0u);
  EXPECT_EQ(said(kept[1]), "answer 02, 00 00");
}

TEST_F(BusTraceTest, AnAnswerBelongsToThePacketOfItsOwnPipe) {
  i2c({2, 0x89, 0});
  send(pipe_gpio_out, {0, 0, 0, 0});
  i2c_reply(3);
  receive(pipe_gpio_in, 25);
  EXPECT_EQ(kept[2].request, 1u);
  EXPECT_EQ(kept[3].request, 2u);
}

TEST_F(BusTraceTest, WordsOfARoundTrip) {
  i2c({2, 0x89, 0});
  i2c_reply(3);
  EXPECT_EQ(said(kept[0]), "read r0 at 88, 2 bytes");
  EXPECT_EQ(said(kept[1]), "r0 = 00 00 at 88");
}

TEST_F(BusTraceTest, AnAnswerWhosePacketIsForgottenIsToldAsItIs) {
  i2c({2, 0x89, 0});
  trace.clear();
  i2c_reply(3);
  EXPECT_EQ(said(kept[0]), "answer 02, 00 00");
}

// The program reads on after a failed packet.
TEST_F(BusTraceTest, APacketThatFailedTakesNoAnswer) {
  i2c({1, 0x89, 0});
  board.fail_transfers(1, statuses::transfer_failed);
  i2c({1, 0x88, 7, 5});
  i2c_reply(2);
  EXPECT_EQ(kept[2].request, 1u);
  EXPECT_EQ(said(kept[2]), "r0 = 00 at 88");
}

TEST_F(BusTraceTest, APacketIsAnsweredOnce) {
  i2c({1, 0x89, 0});
  i2c_reply(2);
  board.queue_reply({1, 0x55});
  i2c_reply(2);
  EXPECT_EQ(kept[2].request, 0u);
  EXPECT_EQ(said(kept[2]), "answer 01, 55");
}

TEST_F(BusTraceTest, WhatTheDriverRefusesWasOnNoBoard) {
  i2c({1, 0x89, 0});
  receive(pipe_i2c_out, 2);
  device = 0;
  i2c_reply(2);
  EXPECT_EQ(kept[0].place, UsbPlace{});
  EXPECT_EQ(kept[1].place, std::nullopt);
  EXPECT_EQ(said(kept[1]), "wrong direction");
  EXPECT_TRUE(kept[1].bytes.empty());
  EXPECT_EQ(kept[2].place, std::nullopt);
}

struct Said {
  std::int32_t pipe;
  std::vector<std::uint8_t> request;  // of an answer
  std::vector<std::uint8_t> bytes;
  const char* words;
  bool refusal = false;
};

Transfer transfer_of(std::int32_t pipe, std::vector<std::uint8_t> bytes) {
  Transfer transfer{};
  transfer.pipe = pipe;
  transfer.read = to_host(pipe);
  transfer.bytes = std::move(bytes);
  return transfer;
}

TEST(PacketWords, EachPacketFormHasItsWords) {
  std::vector<std::uint8_t> ports(25);
  ports[0] = 0x0F;
  ports[3] = 0xF0;
  const Said all[] = {
      // A panel's write has count 0; either form of the address names the same device.
      {2, {}, {0, 0x88, 0x01, 0x05}, "write r1 = 05 at 88"},
      {2, {}, {0, 0x89, 0x1A, 0x05}, "write r1A = 05 at 88"},
      {2, {}, {0, 0x88, 0x04, 1, 2, 3, 4}, "write r4 = 01 02 03 04 at 88"},
      {2, {}, {0, 0x88, 0x83}, "command 83 at 88"},
      {2, {}, {1, 0xA0, 0x10, 0xFF}, "write r10 = FF at A0"},
      {2, {}, {2, 0x88, 0x02, 0xFF, 0x00}, "write r2 = FF 00 at 88"},
      {2, {}, {1, 0x88, 0x07}, "point to r7 at 88"},
      {2, {}, {1, 0x89, 0x07}, "read r7 at 88, 1 byte"},
      {2, {}, {4, 0x89, 0x00}, "read r0 at 88, 4 bytes"},
      {2, {}, {2, 0x89}, "read at 88, 2 bytes"},
      {2, {}, {0, 0x88}, "address at 88"},
      {2, {}, {0}, "no packet"},
      {2, {}, {}, "no packet"},
      {0x82, {1, 0x89, 0x07}, {1, 0xA0}, "r7 = A0 at 88"},
      {0x82, {2, 0x89}, {2, 0xA0, 0x01}, "read = A0 01 at 88"},
      {0x82, {2, 0x89, 0x07}, {2, 0xA0}, "r7 = A0 at 88, 1 byte of 2 came"},
      {0x82, {2, 0x89, 0x07}, {2}, "r7 at 88, 0 bytes of 2 came"},
      {0x82, {1, 0x89, 0x07}, {0, 0}, "not acknowledged at 88", true},
      {0x82, {2, 0x89, 0x07}, {1, 0, 0}, "not acknowledged at 88", true},
      {0x82, {1, 0x88, 0x07, 0x55}, {3, 0}, "acknowledged at 88"},
      {0x82, {1, 0x88, 0x07}, {2, 0}, "acknowledged at 88"},
      {0x82, {1, 0x88, 0x07, 0x55}, {0, 0}, "not acknowledged at 88", true},
      {0x82, {1, 0x88, 0x07, 0x55}, {1, 0}, "1 byte of 3 acknowledged at 88", true},
      {0x82, {1, 0x88, 0x07, 0x55}, {2, 0}, "2 bytes of 3 acknowledged at 88", true},
      {0x82, {0, 0x88, 0x07, 0x55}, {2, 7}, "answer 02, 07"},
      {0x82, {}, {2}, "answer 02"},
      {0x82, {1, 0x89, 0x07}, {}, "no answer"},
      {1, {}, {0x0F, 0xAA, 0xFF, 0x00}, "set ports B = 0F, C = AA, outputs B FF, C 00"},
      {1, {}, {0, 0, 0, 0, 2}, "read the ports"},
      {1, {}, {0, 0, 0}, "no packet"},
      {0x81, {}, ports, "ports B = 0F, C = 00, outputs B 00, C F0"},
      {0x81, {}, {1, 2}, "answer 01 02"},
      {0x81, {}, {}, "no answer"},
      {3, {}, {1, 2}, "unknown pipe"},
  };
  for (const Said& each : all) {
    const Transfer request = transfer_of(2, each.request);
    const Transfer transfer = transfer_of(each.pipe, each.bytes);
    const Transfer* const known = each.request.empty() ? nullptr : &request;
    EXPECT_EQ(in_words(transfer, known), each.words);
    EXPECT_EQ(is_refusal(transfer, known), each.refusal) << each.words;
  }
}

}  // namespace
}  // namespace boards
