#include "support/simulated_board_fixture.h"

using namespace boards;

namespace {

// With a register file of nine registers in the socket, which shows what reaches the bus.
class SimulatedBridge : public ConnectedBoardTest {
 protected:
  void SetUp() override {
    ConnectedBoardTest::SetUp();
    ASSERT_TRUE(board.mount("KVT71385"));
  }
};

TEST_F(SimulatedBridge, PanelWriteHasNoReply) {
  EXPECT_EQ(i2c({0, 0x88, 0, 0xA0}), success);
  EXPECT_EQ(board.register_value(0), 0xA0);
  EXPECT_EQ(i2c_reply(2).status, statuses::time_out);
}

TEST_F(SimulatedBridge, PanelWriteTakesTheReadFormOfTheAddressAsTheWriteForm) {
  EXPECT_EQ(i2c({0, 0x89, 4, 1, 2, 3, 4}), success);
  EXPECT_EQ(board.register_value(4), 1);
  EXPECT_EQ(board.register_value(7), 4);
  EXPECT_EQ(i2c_reply(2).status, statuses::time_out);
}

TEST_F(SimulatedBridge, CountedWriteIsAnsweredByTheBytesAcknowledged) {
  EXPECT_EQ(i2c({1, 0x88, 4, 0x5A}), success);
  EXPECT_EQ(board.register_value(4), 0x5A);
  const Received reply = i2c_reply(2);
  EXPECT_EQ(reply.status, success);
  EXPECT_EQ(reply.transferred, 1u);
  EXPECT_EQ(reply.buffer, (Bytes{3, 0xEE}));

  i2c({2, 0x88, 4, 1, 2});
  EXPECT_EQ(i2c_reply(3).buffer, (Bytes{4, 0xEE, 0xEE}));
}

TEST_F(SimulatedBridge, PointerWriteSetsThePointerAndIsAnsweredByTwo) {
  board.set_register(6, 0x66);
  i2c({1, 0x88, 6});
  EXPECT_EQ(i2c_reply(1).buffer, Bytes{2});
  i2c({1, 0x89});
  EXPECT_EQ(i2c_reply(2).buffer, (Bytes{1, 0x66}));
}

TEST_F(SimulatedBridge, ReadRequestBringsCountAndData) {
  board.set_register(2, 0x34);
  board.set_register(3, 0x12);
  EXPECT_EQ(i2c({2, 0x89, 2}), success);
  const Received reply = i2c_reply(3);
  EXPECT_EQ(reply.transferred, 3u);
  EXPECT_EQ(reply.buffer, (Bytes{2, 0x34, 0x12}));
}

TEST_F(SimulatedBridge, ALongerReadIsLeftAsItWasBehindTheReply) {
  i2c({1, 0x89, 6});
  const Received reply = i2c_reply(6);
  EXPECT_EQ(reply.transferred, 2u);
  EXPECT_EQ(reply.buffer, (Bytes{1, 0xFF, 0xEE, 0xEE, 0xEE, 0xEE}));
}

TEST_F(SimulatedBridge, AShorterReadLosesTheRest) {
  i2c({2, 0x89, 6});
  EXPECT_EQ(i2c_reply(1).buffer, Bytes{2});
  EXPECT_EQ(i2c_reply(1).status, statuses::time_out);
}

TEST_F(SimulatedBridge, NothingAtTheAddressIsASingleZero) {
  i2c({2, 0x8B, 0});
  Received reply = i2c_reply(3);
  EXPECT_EQ(reply.status, success);
  EXPECT_EQ(reply.transferred, 1u);
  EXPECT_EQ(reply.buffer, (Bytes{0, 0xEE, 0xEE}));
  i2c({1, 0x8A, 0, 0x55});
  EXPECT_EQ(i2c_reply(2).buffer, (Bytes{0, 0xEE}));
  EXPECT_EQ(i2c({0, 0x8A, 0, 0x55}), success);
  i2c({2, 0, 0});
  EXPECT_EQ(i2c_reply(3).buffer, (Bytes{0, 0xEE, 0xEE}));
  EXPECT_EQ(board.register_value(0), 0);
}

TEST_F(SimulatedBridge, AnEmptySocketAcknowledgesNothing) {
  board.unmount();
  EXPECT_EQ(board.mounted_model(), "");
  i2c({1, 0x89});
  EXPECT_EQ(i2c_reply(2).buffer, (Bytes{0, 0xEE}));
  EXPECT_EQ(board.register_value(0), std::nullopt);
  EXPECT_FALSE(board.set_register(0, 1));
}

TEST_F(SimulatedBridge, ASilentSensorAcknowledgesNothingAndKeepsItsRegisters) {
  EXPECT_TRUE(board.sensor_answers());
  board.set_sensor_answers(false);
  EXPECT_FALSE(board.sensor_answers());
  i2c({1, 0x88, 0, 0x55});
  EXPECT_EQ(i2c_reply(1).buffer, Bytes{0});
  i2c({1, 0x89, 0});
  EXPECT_EQ(i2c_reply(2).buffer, (Bytes{0, 0xEE}));
  EXPECT_EQ(board.register_value(0), 0);
  EXPECT_EQ(board.mounted_model(), "KVT71385");
  board.set_sensor_answers(true);
  i2c({1, 0x88, 0, 0x55});
  EXPECT_EQ(i2c_reply(1).buffer, Bytes{3});
}

TEST_F(SimulatedBridge, TheSensorAnswersAtItsOwnAddressOnly) {
  ASSERT_TRUE(board.mount("KVT71385", 0x80));
  EXPECT_EQ(board.mounted_address(), 0x80);
  i2c({1, 0x89, 6});
  EXPECT_EQ(i2c_reply(1).buffer, Bytes{0});
  i2c({1, 0x81, 6});
  EXPECT_EQ(i2c_reply(2).buffer, (Bytes{1, 0xFF}));
}

TEST_F(SimulatedBridge, ANewRequestReplacesAPendingReply) {
  board.set_register(2, 0x22);
  board.set_register(3, 0x33);
  i2c({1, 0x89, 2});
  i2c({1, 0x89, 3});
  EXPECT_EQ(i2c_reply(2).buffer, (Bytes{1, 0x33}));
  EXPECT_EQ(i2c_reply(2).status, statuses::time_out);
}

TEST_F(SimulatedBridge, AWriteWithoutReplyLeavesThePendingOne) {
  board.set_register(2, 0x22);
  i2c({1, 0x89, 2});
  i2c({0, 0x88, 0, 1});
  EXPECT_EQ(i2c_reply(2).buffer, (Bytes{1, 0x22}));
}

TEST_F(SimulatedBridge, MalformedPacketsAreIgnored) {
  EXPECT_EQ(i2c({}), success);
  EXPECT_EQ(i2c({1}), success);
  EXPECT_EQ(i2c_reply(2).status, statuses::time_out);
}

TEST_F(SimulatedBridge, ResetOfTheDeviceDropsPendingReplies) {
  i2c({1, 0x89, 2});
  send(pipe_gpio_out, {0, 0, 0, 0});
  EXPECT_EQ(board.WDU_ResetDevice(device), success);
  EXPECT_EQ(i2c_reply(2).status, statuses::time_out);
  EXPECT_EQ(receive(pipe_gpio_in, 25).status, statuses::time_out);
}

TEST_F(SimulatedBridge, AReadWithNothingPendingTakesTheWholeTimeOut) {
  EXPECT_DOUBLE_EQ(time_of([&] { EXPECT_EQ(i2c_reply(2).status, statuses::time_out); }), 1000);
  EXPECT_DOUBLE_EQ(time_of([&] { EXPECT_EQ(receive(pipe_gpio_in, 25).status, statuses::time_out); }), 1000);
}

TEST_F(SimulatedBridge, BusTime) {
  EXPECT_TRUE(board.timing());
  EXPECT_NEAR(time_of([&] { i2c({0, 0x89, 0, 0xA0}); }), 0.37, 1e-9);
  EXPECT_NEAR(time_of([&] { i2c({1, 0x88, 0, 0xA0}); }), 0.37, 1e-9);
  EXPECT_NEAR(time_of([&] { i2c_reply(2); }), 0.1, 1e-9);
  // Address, pointer, and the address again.
  EXPECT_NEAR(time_of([&] { i2c({2, 0x89, 2}); }), 0.37, 1e-9);
  EXPECT_NEAR(time_of([&] { i2c_reply(3); }), 0.28, 1e-9);
  EXPECT_NEAR(time_of([&] { i2c({2, 0x89}); }), 0.19, 1e-9);
  // The bus stops at an address that nobody acknowledges.
  EXPECT_NEAR(time_of([&] { i2c({0, 0x8A, 0, 0xA0}); }), 0.19, 1e-9);
  EXPECT_NEAR(time_of([&] { i2c({2, 0x8B, 2}); }), 0.19, 1e-9);
  EXPECT_NEAR(time_of([&] { i2c_reply(3); }), 0.1, 1e-9);
  EXPECT_NEAR(time_of([&] { i2c({}); }), 0.1, 1e-9);
  EXPECT_NEAR(time_of([&] { send(pipe_gpio_out, {0, 0, 0, 0}); }), 0.1, 1e-9);
  EXPECT_NEAR(time_of([&] { receive(pipe_gpio_in, 25); }), 0.1, 1e-9);
}

TEST_F(SimulatedBridge, WithoutTimingNothingTakesTime) {
  board.set_timing(false);
  EXPECT_FALSE(board.timing());
  i2c({2, 0x89, 2});
  i2c_reply(3);
  EXPECT_EQ(i2c_reply(3).status, statuses::time_out);
  send(pipe_gpio_out, {0, 0, 0, 0});
  receive(pipe_gpio_in, 25);
  EXPECT_EQ(clock.milliseconds(), 0.0);
}

TEST_F(SimulatedBridge, AQueuedReplyStandsInForTheBoardsOwn) {
  board.queue_reply({9, 8, 7});
  EXPECT_EQ(board.queued_replies(), 1u);
  i2c({2, 0x89, 2});
  EXPECT_NEAR(time_of([&] { EXPECT_EQ(i2c_reply(3).buffer, (Bytes{9, 8, 7})); }), 0.28, 1e-9);
  EXPECT_EQ(board.queued_replies(), 0u);
  EXPECT_EQ(i2c_reply(3).status, statuses::time_out);
}

TEST_F(SimulatedBridge, QueuedRepliesComeInTurnAndWithoutARequest) {
  board.queue_reply({1, 2});
  board.queue_reply({3, 4, 5, 6});
  const Received first = i2c_reply(3);
  EXPECT_EQ(first.status, success);
  EXPECT_EQ(first.transferred, 2u);
  EXPECT_EQ(first.buffer, (Bytes{1, 2, 0xEE}));
  const Received second = i2c_reply(3);
  EXPECT_EQ(second.transferred, 3u);
  EXPECT_EQ(second.buffer, (Bytes{3, 4, 5}));
  i2c({1, 0x89, 6});
  EXPECT_EQ(i2c_reply(2).buffer, (Bytes{1, 0xFF}));
}

TEST_F(SimulatedBridge, ClearCountsAndForgetsQueuedReplies) {
  board.queue_reply({1});
  board.queue_reply({2});
  board.queue_port_reply({3});
  EXPECT_EQ(board.clear(), 3u);
  EXPECT_EQ(board.clear(), 0u);
  EXPECT_EQ(i2c_reply(1).status, statuses::time_out);
  EXPECT_EQ(receive(pipe_gpio_in, 1).status, statuses::time_out);
}

}  // namespace
