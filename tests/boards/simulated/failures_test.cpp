#include "support/simulated_board_fixture.h"

using namespace boards;

namespace {

class SimulatedFailures : public ConnectedBoardTest {
 protected:
  void SetUp() override {
    ConnectedBoardTest::SetUp();
    ASSERT_TRUE(board.mount("KVT71385"));
  }
};

TEST_F(SimulatedFailures, ACallFailsOnce) {
  DeviceInfo info;
  std::size_t transferred = 0;
  Bytes packet{0, 0x88, 0};
  const auto fails_once = [&](const char* call, auto&& make_call) {
    EXPECT_TRUE(board.fail_call(call, 0x1234)) << call;
    EXPECT_EQ(make_call(), 0x1234) << call;
    EXPECT_EQ(make_call(), success) << call;
  };
  fails_once("WDU_GetDeviceInfo", [&] { return board.WDU_GetDeviceInfo(device, info); });
  fails_once("WDU_SetInterface", [&] { return board.WDU_SetInterface(device, 0, 0); });
  fails_once("WDU_ResetDevice", [&] { return board.WDU_ResetDevice(device); });
  fails_once("WDU_ResetPipe", [&] { return board.WDU_ResetPipe(device, pipe_i2c_in); });
  fails_once("WDU_Transfer",
             [&] { return board.WDU_Transfer(device, pipe_i2c_out, false, packet, transferred); });
  fails_once("CloseHandle", [&] { return board.CloseHandle(session); });
  fails_once("WDU_VB_Uninit", [&] { return board.WDU_VB_Uninit(session); });
  session = 77;
  EXPECT_TRUE(board.fail_call("WDU_VB_Init"));
  EXPECT_EQ(board.WDU_VB_Init(session, match, events()), statuses::call_failed);
  EXPECT_EQ(session, 77);
  EXPECT_EQ(board.WDU_VB_Init(session, match, events()), success);
}

TEST_F(SimulatedFailures, OtherCallsGoOn) {
  board.fail_call("WDU_SetInterface", 0x1234);
  EXPECT_EQ(board.WDU_ResetDevice(device), success);
  EXPECT_EQ(i2c({0, 0x88, 0}), success);
  EXPECT_EQ(board.WDU_SetInterface(device, 0, 0), 0x1234);
}

TEST_F(SimulatedFailures, UnknownOperationsAndSuccessAreRefused) {
  EXPECT_FALSE(board.fail_call("WDU_Wakeup", 0x1234));
  EXPECT_FALSE(board.fail_call("", 0x1234));
  EXPECT_FALSE(board.fail_call("WDU_SetInterface", success));
  EXPECT_FALSE(board.fail_transfers(1, success));
  EXPECT_EQ(board.WDU_SetInterface(device, 0, 0), success);
  EXPECT_EQ(i2c({0, 0x88, 0}), success);
}

TEST_F(SimulatedFailures, TransfersOfAllPipesFailAfterTheGoodOnes) {
  EXPECT_TRUE(board.fail_transfers(3, 0x1234, 2));
  EXPECT_EQ(board.transfers_to_fail(), 3u);
  EXPECT_EQ(i2c({1, 0x89, 6}), success);
  EXPECT_EQ(send(pipe_gpio_out, {0, 0, 0, 0}), success);
  EXPECT_EQ(i2c_reply(2).status, 0x1234);
  EXPECT_EQ(receive(pipe_gpio_in, 25).status, 0x1234);
  EXPECT_EQ(i2c({0, 0x88, 0, 0x55}), 0x1234);
  EXPECT_EQ(board.transfers_to_fail(), 0u);
  EXPECT_EQ(board.register_value(0), 0);
  EXPECT_EQ(i2c_reply(2).buffer, (Bytes{1, 0xFF}));
}

TEST_F(SimulatedFailures, ATransferThatTimesOutByItselfIsNotAGoodOne) {
  board.fail_transfers(1, 0x1234, 1);
  EXPECT_EQ(i2c_reply(2).status, statuses::time_out);
  EXPECT_EQ(i2c({0, 0x88, 0}), success);
  EXPECT_EQ(i2c({0, 0x88, 0}), 0x1234);
}

TEST_F(SimulatedFailures, TheDefaultIsATimeOutWhichTakesItsTime) {
  board.fail_transfers(1);
  EXPECT_DOUBLE_EQ(time_of([&] { EXPECT_EQ(i2c({0, 0x88, 0}), statuses::time_out); }), 1000);
  board.fail_transfers(1, statuses::transfer_failed);
  EXPECT_DOUBLE_EQ(time_of([&] { EXPECT_EQ(i2c({0, 0x88, 0}), statuses::transfer_failed); }), 0);
}

TEST_F(SimulatedFailures, AFailedTransferLeavesTheBufferAndTheQueuedReply) {
  board.queue_reply({7, 8});
  board.fail_transfers(2, 0x1234);
  for (int i = 0; i < 2; ++i) {
    const Received failed = i2c_reply(2);
    EXPECT_EQ(failed.status, 0x1234);
    EXPECT_EQ(failed.transferred, 0u);
    EXPECT_EQ(failed.buffer, (Bytes{0xEE, 0xEE}));
  }
  EXPECT_EQ(i2c_reply(2).buffer, (Bytes{7, 8}));
}

TEST_F(SimulatedFailures, ALaterOrderReplacesAnEarlierOne) {
  board.fail_transfers(5, 0x1234);
  board.fail_transfers(1, 0x4321);
  EXPECT_EQ(i2c({0, 0x88, 0}), 0x4321);
  EXPECT_EQ(i2c({0, 0x88, 0}), success);
}

TEST_F(SimulatedFailures, ThePlugIsPulledInTheMiddleOfATransfer) {
  board.unplug_after(2);
  EXPECT_EQ(i2c({0, 0x88, 0, 0x11}), success);
  EXPECT_EQ(i2c({1, 0x89, 0}), success);
  EXPECT_TRUE(board.plugged());
  const Received cut = i2c_reply(2);
  EXPECT_EQ(cut.status, statuses::transfer_failed);
  EXPECT_EQ(cut.transferred, 0u);
  EXPECT_EQ(cut.buffer, (Bytes{0xEE, 0xEE}));
  EXPECT_FALSE(board.plugged());
  EXPECT_EQ(i2c_reply(2).status, statuses::not_attached);
  board.deliver_notifications();
  EXPECT_EQ(detached, std::vector<Handle>{device});

  board.plug();
  board.deliver_notifications();
  EXPECT_EQ(i2c({1, 0x89, 0}), success);
  EXPECT_EQ(i2c_reply(2).status, success);
}

TEST_F(SimulatedFailures, ThePlugCanBePulledInTheFirstTransfer) {
  board.unplug_after(0);
  EXPECT_EQ(i2c({0, 0x88, 0, 0x11}), statuses::transfer_failed);
  EXPECT_EQ(board.register_value(0), 0);
  EXPECT_FALSE(board.plugged());
}

TEST_F(SimulatedFailures, WithoutPowerTheBoardForgets) {
  i2c({0, 0x88, 0, 0x11});
  i2c({1, 0x89, 0});
  send(pipe_gpio_out, {0, 0, 0xFF, 0xFF});
  board.set_port('C', 0x12);
  board.unplug();
  board.plug();
  board.deliver_notifications();
  EXPECT_EQ(board.mounted_model(), "KVT71385");
  EXPECT_EQ(board.register_value(0), 0);
  EXPECT_EQ(i2c_reply(2).status, statuses::time_out);
  EXPECT_EQ(receive(pipe_gpio_in, 25).status, statuses::time_out);
  send(pipe_gpio_out, {0, 0, 0, 0, 2});
  EXPECT_EQ(receive(pipe_gpio_in, 4).buffer, (Bytes{0xFF, 0x12, 0, 0}));
}

TEST_F(SimulatedFailures, ClearForgetsEveryOrder) {
  board.fail_call("WDU_ResetDevice", 0x1234);
  board.fail_transfers(3, 0x1234);
  board.unplug_after(0);
  board.clear();
  EXPECT_EQ(board.transfers_to_fail(), 0u);
  EXPECT_EQ(board.WDU_ResetDevice(device), success);
  EXPECT_EQ(i2c({0, 0x88, 0}), success);
  EXPECT_TRUE(board.plugged());
}

TEST_F(SimulatedFailures, UnusableHandlesDoNotUseUpOrderedFailures) {
  board.fail_transfers(1, 0x1234);
  const Handle good = device;
  device = 0;
  EXPECT_EQ(i2c({0, 0x88, 0}), statuses::invalid_handle);
  device = good;
  EXPECT_EQ(i2c({0, 0x88, 0}), 0x1234);
}

}  // namespace
