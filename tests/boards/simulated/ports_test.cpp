#include "support/simulated_board_fixture.h"

using namespace boards;

namespace {

class SimulatedPorts : public ConnectedBoardTest {
 protected:
  Bytes answer_to(Bytes packet) {
    EXPECT_EQ(send(pipe_gpio_out, std::move(packet)), success);
    const Received reply = receive(pipe_gpio_in, 25);
    EXPECT_EQ(reply.status, success);
    EXPECT_EQ(reply.transferred, 25u);
    EXPECT_EQ(Bytes(reply.buffer.begin() + 4, reply.buffer.end()), Bytes(21, 0));
    return Bytes(reply.buffer.begin(), reply.buffer.begin() + 4);
  }
};

const std::vector<std::uint8_t> sample{0, 0, 0, 0, 2};

TEST_F(SimulatedPorts, NothingIsAnsweredBeforeThePacket) {
  EXPECT_EQ(receive(pipe_gpio_in, 25).status, statuses::time_out);
}

TEST_F(SimulatedPorts, InputsReadTheOutsideAndOutputsTheirData) {
  EXPECT_EQ(answer_to({0xFF, 0xFF, 0, 0}), (Bytes{0xFF, 0xFF, 0, 0}));
  EXPECT_EQ(answer_to({0x00, 0x00, 0x0F, 0x03}), (Bytes{0xF0, 0xFC, 0x0F, 0x03}));
  EXPECT_TRUE(board.set_port('B', 0x3C));
  EXPECT_TRUE(board.set_port('C', 0x00));
  EXPECT_EQ(answer_to({0x05, 0x02, 0x0F, 0x03}), (Bytes{0x35, 0x02, 0x0F, 0x03}));
}

TEST_F(SimulatedPorts, SamplingLeavesTheOutputs) {
  answer_to({0x01, 0x02, 0x0F, 0x03});
  EXPECT_EQ(answer_to(sample), (Bytes{0xF1, 0xFE, 0x0F, 0x03}));
  EXPECT_EQ(answer_to({0, 0, 0, 0, 1}), (Bytes{0xFF, 0xFF, 0, 0}));
}

TEST_F(SimulatedPorts, ShortPacketsAreIgnored) {
  answer_to({0x00, 0x00, 0xFF, 0xFF});
  EXPECT_EQ(send(pipe_gpio_out, {1, 2, 3}), success);
  EXPECT_EQ(send(pipe_gpio_out, {}), success);
  EXPECT_EQ(receive(pipe_gpio_in, 25).status, statuses::time_out);
  EXPECT_EQ(answer_to(sample), (Bytes{0, 0, 0xFF, 0xFF}));
}

TEST_F(SimulatedPorts, AnAnswerIsFetchedOnceAndAsFarAsAskedFor) {
  send(pipe_gpio_out, {0xFF, 0xFF, 0, 0});
  const Received reply = receive(pipe_gpio_in, 2);
  EXPECT_EQ(reply.transferred, 2u);
  EXPECT_EQ(receive(pipe_gpio_in, 25).status, statuses::time_out);
  send(pipe_gpio_out, {0xFF, 0xFF, 0, 0});
  EXPECT_EQ(receive(pipe_gpio_in, 30).transferred, 25u);
}

TEST_F(SimulatedPorts, LevelsAreHighUntilSet) {
  EXPECT_EQ(board.port('B'), 0xFF);
  EXPECT_EQ(board.port('C'), 0xFF);
  board.set_port('C', 0x12);
  EXPECT_EQ(board.port('B'), 0xFF);
  EXPECT_EQ(board.port('C'), 0x12);
  EXPECT_FALSE(board.set_port('A', 0));
  EXPECT_EQ(board.port('A'), std::nullopt);
}

TEST_F(SimulatedPorts, AQueuedReplyStandsInForThePorts) {
  board.queue_port_reply({0x40});
  send(pipe_gpio_out, sample);
  const Received reply = receive(pipe_gpio_in, 3);
  EXPECT_EQ(reply.buffer, (Bytes{0x40, 0xEE, 0xEE}));
  EXPECT_EQ(receive(pipe_gpio_in, 25).status, statuses::time_out);
  // The I2C pipe has replies of its own.
  board.queue_port_reply({0x41});
  EXPECT_EQ(receive(pipe_i2c_in, 1).status, statuses::time_out);
  EXPECT_EQ(receive(pipe_gpio_in, 1).buffer, Bytes{0x41});
}

TEST(PortsOfTheBoard, TheInterruptPinIsBit7OfPortBUnlessALevelWasSet) {
  Ports ports;
  EXPECT_EQ(ports.level('B', false), 0xFF);
  EXPECT_EQ(ports.level('B', true), 0x7F);
  EXPECT_EQ(ports.level('C', true), 0xFF);
  EXPECT_EQ(ports.serve(sample, true)->bytes[0], 0x7F);
  EXPECT_EQ(ports.serve(sample, false)->bytes[0], 0xFF);
  ports.set_level('B', 0x80);
  EXPECT_EQ(ports.level('B', true), 0x80);
  EXPECT_EQ(ports.serve(sample, true)->bytes[0], 0x80);
}

}  // namespace
