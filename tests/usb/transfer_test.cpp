// The USB board's transfers, on the real libusb.
#include <libusb.h>

#include "usb/board_fixture.h"

using namespace boards;

namespace {

class UsbTransfer : public ConnectedUsbBoardTest {};

TEST_F(UsbTransfer, DeviceInformationIsTheDevicesOwn) {
  DeviceInfo info;
  ASSERT_EQ(driver.WDU_GetDeviceInfo(device, info), success);
  EXPECT_EQ(info.vendor_id, 0x7A53);
  EXPECT_EQ(info.product_id, 0x2005);
  ASSERT_EQ(info.configurations.size(), 1u);
  EXPECT_EQ(info.configurations[0].value, 1);
  ASSERT_EQ(info.configurations[0].interfaces.size(), 1u);
  const auto& settings = info.configurations[0].interfaces[0].alternates;
  ASSERT_EQ(settings.size(), 1u);
  EXPECT_EQ(settings[0].interface_class, 0xFF);
  std::vector<int> pipes;
  for (const PipeInfo& pipe : settings[0].pipes) {
    pipes.push_back(pipe.address);
    EXPECT_EQ(pipe.attributes, 2);
    EXPECT_EQ(pipe.max_packet, 64);
  }
  EXPECT_EQ(pipes, (std::vector<int>{0x01, 0x81, 0x02, 0x82}));
  EXPECT_EQ(info.active_configuration + info.active_interface + info.active_alternate, 0u);
}

TEST_F(UsbTransfer, CountedWriteAndReadOfRegisters) {
  EXPECT_EQ(i2c({2, 0x88, 4, 0xA5, 0x5A}), success);
  Received reply = i2c_reply(3);
  EXPECT_EQ(reply.status, success);
  EXPECT_EQ(reply.transferred, 1u);
  EXPECT_EQ(reply.buffer, (Bytes{4, 0xEE, 0xEE}));
  EXPECT_EQ(sensor_register(4), 0xA5);
  EXPECT_EQ(sensor_register(5), 0x5A);

  EXPECT_EQ(i2c({2, 0x89, 4}), success);
  reply = i2c_reply(3);
  EXPECT_EQ(reply.transferred, 3u);
  EXPECT_EQ(reply.buffer, (Bytes{2, 0xA5, 0x5A}));
}

TEST_F(UsbTransfer, PointerWriteAndPanelWrites) {
  EXPECT_EQ(i2c({1, 0x88, 1}), success);
  EXPECT_EQ(i2c_reply(2).buffer, (Bytes{2, 0xEE}));
  EXPECT_EQ(i2c({0, 0x88, 1, 0x3C}), success);
  EXPECT_EQ(sensor_register(1), 0x3C);
  EXPECT_EQ(i2c({0, 0x89, 0x80}), success);
}

TEST_F(UsbTransfer, ASensorThatDoesNotAnswerIsAGoodTransfer) {
  EXPECT_EQ(i2c({1, 0x45, 0}), success);
  const Received reply = i2c_reply(2);
  EXPECT_EQ(reply.status, success);
  EXPECT_EQ(reply.transferred, 1u);
  EXPECT_EQ(reply.buffer, (Bytes{0, 0xEE}));
}

TEST_F(UsbTransfer, Ports) {
  EXPECT_EQ(send(pipe_gpio_out, {0x12, 0x34, 0xFF, 0xFF}), success);
  const Received reply = receive(pipe_gpio_in, 25);
  EXPECT_EQ(reply.status, success);
  EXPECT_EQ(reply.transferred, 25u);
  EXPECT_EQ(Bytes(reply.buffer.begin(), reply.buffer.begin() + 4), (Bytes{0x12, 0x34, 0xFF, 0xFF}));
}

TEST_F(UsbTransfer, AReplyLongerThanAskedForIsAnError) {
  EXPECT_EQ(send(pipe_gpio_out, {0x12, 0x34, 0xFF, 0xFF}), success);
  EXPECT_EQ(receive(pipe_gpio_in, 4).status, LIBUSB_ERROR_OVERFLOW);
}

TEST_F(UsbTransfer, TimeOut) {
  Received reply{};
  const double time = milliseconds_of([&] { reply = i2c_reply(2); });
  EXPECT_EQ(reply.status, LIBUSB_ERROR_TIMEOUT);
  EXPECT_EQ(reply.transferred, 0u);
  EXPECT_EQ(reply.buffer, Bytes(2, 0xEE));
  EXPECT_GE(time, 999.0);
  EXPECT_LT(time, 1500.0);
  EXPECT_EQ(driver.VB_Stat2Str(reply.status), "Operation timed out");
  EXPECT_EQ(board.counts().open_urbs, 0);
  EXPECT_EQ(i2c({1, 0x89, 0}), success);
  EXPECT_EQ(i2c_reply(2).status, success);
}

// A front end gets its turns while a board is silent, and none where it answers at once.
TEST_F(UsbTransfer, ATransferThatWaitsTellsSo) {
  int turns = 0;
  driver.on_wait = [&] { ++turns; };
  EXPECT_EQ(i2c_reply(2).status, LIBUSB_ERROR_TIMEOUT);
  EXPECT_GE(turns, 10);
  turns = 0;
  EXPECT_EQ(i2c({1, 0x89, 0}), success);
  EXPECT_EQ(turns, 0);
  driver.on_wait = nullptr;
}

TEST_F(UsbTransfer, WhatIsThrownWhileATransferWaitsEndsItAndComesOut) {
  driver.on_wait = [] { throw std::runtime_error("enough"); };
  const double time = milliseconds_of([&] { EXPECT_THROW(i2c_reply(2), std::runtime_error); });
  EXPECT_LT(time, 999.0) << "the time-out ended it";
  driver.on_wait = nullptr;
  EXPECT_EQ(i2c({2, 0x89, 4}), success);
  EXPECT_EQ(i2c_reply(3).status, success);
}

TEST_F(UsbTransfer, BytesBeforeATimeOutAreKept) {
  board.bring_and_hang(pipe_i2c_in, {2, 0xA5});
  const Received reply = i2c_reply(3);
  EXPECT_EQ(reply.status, LIBUSB_ERROR_TIMEOUT);
  EXPECT_EQ(reply.transferred, 2u);
  EXPECT_EQ(reply.buffer, (Bytes{2, 0xA5, 0xEE}));
}

TEST_F(UsbTransfer, AStallStaysUntilThePipeIsReset) {
  board.stall(pipe_i2c_out);
  EXPECT_EQ(i2c({0, 0x88, 1, 1}), LIBUSB_ERROR_PIPE);
  EXPECT_EQ(i2c({0, 0x88, 1, 1}), LIBUSB_ERROR_PIPE);
  EXPECT_EQ(board.counts().halts_cleared, 0);
  EXPECT_EQ(driver.VB_Stat2Str(LIBUSB_ERROR_PIPE), "Pipe error");
  EXPECT_EQ(driver.WDU_ResetPipe(device, pipe_i2c_out), success);
  EXPECT_EQ(board.counts().halts_cleared, 1);
  EXPECT_EQ(i2c({0, 0x88, 1, 1}), success);
  EXPECT_EQ(driver.WDU_ResetPipe(device, 3), LIBUSB_ERROR_NOT_FOUND);
  EXPECT_TRUE(detached.empty());
}

TEST_F(UsbTransfer, ResetOfTheDeviceClearsAStallAndDropsAnswers) {
  EXPECT_EQ(i2c({1, 0x89, 0}), success);
  board.stall(pipe_i2c_out);
  EXPECT_EQ(driver.WDU_ResetDevice(device), success);
  EXPECT_EQ(board.counts().resets, 1);
  EXPECT_EQ(i2c({1, 0x88, 0}), success);
  EXPECT_EQ(i2c_reply(2).buffer, (Bytes{2, 0xEE}));
}

TEST_F(UsbTransfer, OnlyInterfaceAndPipesOfTheBoard) {
  EXPECT_EQ(driver.WDU_SetInterface(device, 1, 0), LIBUSB_ERROR_NOT_FOUND);
  EXPECT_EQ(driver.WDU_SetInterface(device, 0, 1), LIBUSB_ERROR_NOT_FOUND);
  EXPECT_NE(send(3, {0}), success);
  EXPECT_EQ(send(pipe_i2c_in, {0}), LIBUSB_ERROR_INVALID_PARAM);
  EXPECT_EQ(receive(pipe_i2c_out, 2).status, LIBUSB_ERROR_INVALID_PARAM);
  EXPECT_EQ(i2c({0, 0x88, 1, 1}), success);
}

TEST_F(UsbTransfer, AnEmptyPacketGoesThrough) {
  EXPECT_EQ(i2c({}), success);
  EXPECT_EQ(i2c({1, 0x89, 0}), success);
  EXPECT_EQ(i2c_reply(2).transferred, 2u);
}

TEST_F(UsbTransfer, CapturesAreToldStatusAndPlaceAsLinuxKnowsThem) {
  EXPECT_EQ(driver.urb_status(success), 0);
  EXPECT_EQ(driver.urb_status(LIBUSB_ERROR_TIMEOUT), -ENOENT);
  EXPECT_EQ(driver.urb_status(LIBUSB_ERROR_PIPE), -EPIPE);
  EXPECT_EQ(driver.urb_status(LIBUSB_ERROR_OVERFLOW), -EOVERFLOW);
  EXPECT_EQ(driver.urb_status(LIBUSB_ERROR_NO_DEVICE), -ENODEV);
  EXPECT_EQ(driver.urb_status(LIBUSB_ERROR_IO), -EPROTO);
  EXPECT_EQ(i2c({0, 0x88, 1, 1}), success);
  EXPECT_EQ(driver.transfer_place(), (UsbPlace{1, 2}));
  EXPECT_EQ(send(pipe_i2c_in, {0}), LIBUSB_ERROR_INVALID_PARAM);
  EXPECT_EQ(driver.transfer_place(), std::nullopt);
  EXPECT_EQ(driver.WDU_VB_Uninit(session), success);
  EXPECT_EQ(i2c({0, 0x88, 1, 1}), LIBUSB_ERROR_NO_DEVICE);
  EXPECT_EQ(driver.transfer_place(), std::nullopt);
}

TEST_F(UsbTransfer, ANumberBeyondAByteIsNoPipe) {
  EXPECT_EQ(i2c({1, 0x89, 0}), success);
  EXPECT_EQ(receive(0x182, 2).status, LIBUSB_ERROR_INVALID_PARAM);
  EXPECT_EQ(driver.WDU_ResetPipe(device, 0x182), LIBUSB_ERROR_INVALID_PARAM);
  EXPECT_EQ(driver.WDU_ResetPipe(device, -1), LIBUSB_ERROR_INVALID_PARAM);
  EXPECT_EQ(board.counts().halts_cleared, 0);
}

TEST_F(UsbTransfer, ABoardThatAResetLosesIsTakenAnew) {
  board.refuse_claims(ENOENT, 1);
  EXPECT_EQ(driver.WDU_ResetDevice(device), LIBUSB_ERROR_NOT_FOUND);
  const Handle before = device;
  EXPECT_TRUE(comes([&] { return attaches == 2; }));
  EXPECT_EQ(detached, std::vector{before});
  EXPECT_EQ(i2c({0, 0x88, 1, 1}), success);
  EXPECT_TRUE(advices.empty());
}

}  // namespace
