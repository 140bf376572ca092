// The USB board's session and notifications, on the real libusb.
#include <libusb.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>

#include "boards/usb/statuses.h"
#include "usb/board_fixture.h"

using namespace boards;

namespace {

class UsbSession : public UsbBoardTest {};
class UsbDevice : public ConnectedUsbBoardTest {};

TEST_F(UsbSession, WithoutLibusbNoSessionOpens) {
  open_session();  // the sanitizer checks each type once, and needs files for that
  ASSERT_EQ(driver.WDU_VB_Uninit(session), success);
  rlimit files{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &files), 0);
  const rlimit no_more_files{0, files.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &no_more_files), 0);
  session = 77;
  const Status status = driver.WDU_VB_Init(session, match, events());
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &files), 0);
  EXPECT_NE(status, success);
  EXPECT_EQ(session, 77);
  EXPECT_EQ(driver.VB_Stat2Str(status), "libusb can't be initialised: Other error");
  driver.deliver_notifications();
}

TEST_F(UsbSession, InitReturnsAtOnceAndTheNextTurnAttaches) {
  usb.plug(board);
  open_session();
  EXPECT_GT(session, 0);
  EXPECT_EQ(attaches, 0);
  EXPECT_EQ(board.counts().claims, 0);
  driver.deliver_notifications();
  EXPECT_EQ(attaches, 1);
  EXPECT_GT(device, 0);
  EXPECT_EQ(interface_status, success);
  EXPECT_EQ(board.counts().claims, 1);
  EXPECT_EQ(board.counts().settings, 1);
  EXPECT_TRUE(advices.empty());
}

TEST_F(UsbSession, WithoutABoardTheSessionOpensAndWaitsForThePlug) {
  open_session();
  driver.deliver_notifications();
  EXPECT_EQ(attaches, 0);
  DeviceInfo info;
  EXPECT_EQ(driver.WDU_GetDeviceInfo(0, info), LIBUSB_ERROR_NO_DEVICE);
  EXPECT_EQ(i2c({0, 0x88, 0}), LIBUSB_ERROR_NO_DEVICE);
  usb.plug(board);
  ASSERT_TRUE(comes([&] { return attaches == 1; }));
  EXPECT_EQ(interface_status, success);
}

TEST_F(UsbSession, RescansWhereTheSystemDoesNotTell) {
  UsbBoard rescanning(usb::Watch::Rescan);
  int attached = 0, gone = 0;
  const auto wait_for = [&](const int& count) {
    const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (count == 0 && std::chrono::steady_clock::now() < give_up) rescanning.deliver_notifications();
    return count;
  };
  ASSERT_EQ(rescanning.WDU_VB_Init(
                session, match,
                {[&](Handle, const DeviceInfo&) { return ++attached > 0; }, [&](Handle) { ++gone; }}),
            success);
  rescanning.deliver_notifications();
  EXPECT_EQ(attached, 0);
  usb.plug(board);
  EXPECT_EQ(wait_for(attached), 1);
  usb.unplug(board);
  EXPECT_EQ(wait_for(gone), 1);
}

TEST_F(UsbSession, ABoardThatIsNotConfiguredYetIsClaimedLater) {
  open_session();
  board.refuse_claims(ENOENT, 3);
  usb.plug(board);
  ASSERT_TRUE(comes([&] { return board.counts().claims == 1; }));
  EXPECT_EQ(attaches, 1);
  EXPECT_EQ(interface_status, success);
}

TEST_F(UsbSession, ABoardThatIsNeverConfiguredIsToldAfterHalfASecond) {
  board.refuse_claims(ENOENT);
  usb.plug(board);
  open_session();
  double longest_turn = 0;
  const double time = milliseconds_of([&] {
    EXPECT_TRUE(comes([&] {
      longest_turn = std::max(longest_turn, milliseconds_of([&] { driver.deliver_notifications(); }));
      return attaches == 1;
    }));
  });
  EXPECT_EQ(interface_status, LIBUSB_ERROR_NOT_FOUND);
  EXPECT_GE(time, 499.0);
  EXPECT_LT(time, 1500.0);
  EXPECT_LT(longest_turn, 250.0);
}

TEST_F(UsbSession, ABoardInOtherHandsIsToldWithTheReason) {
  board.refuse_claims(EBUSY);
  usb.plug(board);
  open_session();
  driver.deliver_notifications();
  EXPECT_EQ(attaches, 1);
  EXPECT_EQ(interface_status, LIBUSB_ERROR_BUSY);
  EXPECT_EQ(driver.VB_Stat2Str(interface_status),
            "Resource busy. Another program holds the board; leave that program and try again");
  EXPECT_EQ(advices, std::vector{driver.VB_Stat2Str(LIBUSB_ERROR_BUSY)});
  EXPECT_EQ(i2c({0, 0x88, 0}), LIBUSB_ERROR_BUSY);
  device = 0;
  EXPECT_EQ(i2c({0, 0x88, 0}), LIBUSB_ERROR_BUSY);

  open_session();
  driver.deliver_notifications();
  EXPECT_EQ(attaches, 2);
  EXPECT_EQ(advices.size(), 1u);

  board.refuse_claims(0, 0);
  open_session();
  driver.deliver_notifications();
  EXPECT_EQ(interface_status, success);
}

TEST_F(UsbSession, DeniedAccessNamesTheRule) {
  usb.plug(board);
  usb.deny_access(board);
  open_session();
  constexpr uid_t nobody = 65534;
  const bool root = geteuid() == 0;
  ASSERT_EQ(seteuid(root ? nobody : geteuid()), 0);
  driver.deliver_notifications();
  ASSERT_EQ(seteuid(getuid()), 0);
  EXPECT_EQ(attaches, 1);
  EXPECT_EQ(interface_status, LIBUSB_ERROR_ACCESS);
  const std::string text = driver.VB_Stat2Str(interface_status);
  EXPECT_EQ(text.find("Access denied (insufficient permissions)"), 0u);
  EXPECT_NE(text.find("sudo cp data/70-varzelin-als.rules /etc/udev/rules.d/"), std::string::npos);
  EXPECT_EQ(advices, std::vector{text});
}

TEST_F(UsbSession, ASessionThatSawNoBoardSaysSoOnce) {
  for (int i = 0; i < 2; ++i) {
    open_session();
    driver.deliver_notifications();
    EXPECT_EQ(driver.WDU_VB_Uninit(session), success);
    EXPECT_EQ(advices, std::vector<std::string>{usb::no_board_text});
  }
}

TEST_F(UsbSession, APulledPlugIsTold) {
  connect();
  usb.unplug(board);
  ASSERT_TRUE(comes([&] { return detached.size() == 1; }));
  EXPECT_EQ(advices, std::vector<std::string>{usb::unplugged_text});
  EXPECT_EQ(driver.WDU_VB_Uninit(session), success);
  EXPECT_EQ(advices.size(), 1u);
}

TEST_F(UsbSession, APlugPulledWithinATransferIsTold) {
  connect();
  board.pull_within_transfer(0);
  EXPECT_EQ(i2c_reply(2).status, LIBUSB_ERROR_NO_DEVICE);
  driver.deliver_notifications();
  EXPECT_EQ(advices, std::vector<std::string>{usb::unplugged_text});
}

TEST_F(UsbSession, TheNumberOfBoardsIsToldAlsoWhenTheFirstIsRefused) {
  board.refuse_claims(EBUSY);
  usb.plug(board);
  usb.plug(other_board);
  open_session();
  driver.deliver_notifications();
  EXPECT_EQ(interface_status, LIBUSB_ERROR_BUSY);
  ASSERT_EQ(remarks.size(), 1u);
  EXPECT_EQ(remarks[0].find("2 boards are plugged in."), 0u);
}

TEST_F(UsbSession, OfTwoBoardsTheFirstIsUsedAndTheNumberTold) {
  usb.plug(board);
  usb.plug(other_board);
  open_session();
  driver.deliver_notifications();
  EXPECT_EQ(attaches, 1);
  EXPECT_EQ(board.counts().claims, 1);
  EXPECT_EQ(other_board.counts().claims, 0);
  ASSERT_EQ(advices.size(), 1u);
  EXPECT_EQ(advices[0], "2 boards are plugged in. The program works with the first one, on bus 1, device 2");
  EXPECT_EQ(remarks, advices);
  usb.unplug(board);
  ASSERT_TRUE(comes([&] { return attaches == 2; }));
  EXPECT_EQ(detached.size(), 1u);
  EXPECT_EQ(other_board.counts().claims, 1);
}

TEST_F(UsbSession, ARejectedBoardIsFreeForOthers) {
  usb.plug(board);
  ASSERT_EQ(driver.WDU_VB_Init(session, match,
                               {[&](Handle handle, const DeviceInfo&) {
                                  device = handle;
                                  return false;
                                },
                                [&](Handle handle) { detached.push_back(handle); }}),
            success);
  driver.deliver_notifications();
  EXPECT_EQ(board.counts().releases, 1);
  EXPECT_EQ(driver.WDU_SetInterface(device, 0, 0), LIBUSB_ERROR_NO_DEVICE);
}

TEST_F(UsbSession, ANotificationMayEndTheSession) {
  usb.plug(board);
  EventTable table = events();
  table.attach = [&](Handle handle, const DeviceInfo&) {
    device = handle;
    EXPECT_EQ(driver.WDU_VB_Uninit(session), success);
    return true;
  };
  ASSERT_EQ(driver.WDU_VB_Init(session, match, table), success);
  driver.deliver_notifications();
  EXPECT_EQ(i2c({0, 0x88, 0}), LIBUSB_ERROR_NO_DEVICE);
  EXPECT_EQ(board.counts().releases, 1);

  table = events();
  table.detach = [&](Handle handle) {
    detached.push_back(handle);
    EXPECT_EQ(driver.WDU_VB_Uninit(session), success);
  };
  ASSERT_EQ(driver.WDU_VB_Init(session, match, table), success);
  driver.deliver_notifications();
  usb.unplug(board);
  EXPECT_TRUE(comes([&] { return !detached.empty(); }));
  EXPECT_EQ(driver.WDU_VB_Uninit(session), LIBUSB_ERROR_INVALID_PARAM);
}

TEST_F(UsbDevice, ClosingGivesTheBoardBack) {
  EXPECT_EQ(driver.CloseHandle(session), success);
  EXPECT_EQ(driver.WDU_VB_Uninit(session), success);
  EXPECT_EQ(board.counts().releases, 1);
  EXPECT_EQ(driver.CloseHandle(session), LIBUSB_ERROR_INVALID_PARAM);
  EXPECT_EQ(driver.WDU_VB_Uninit(session), LIBUSB_ERROR_INVALID_PARAM);
  EXPECT_EQ(i2c({0, 0x88, 0}), LIBUSB_ERROR_NO_DEVICE);
  driver.deliver_notifications();
  EXPECT_TRUE(detached.empty());
}

TEST_F(UsbDevice, OpeningAnotherSessionEndsTheOneBefore) {
  const Handle old_session = session, old_device = device;
  open_session();
  driver.deliver_notifications();
  EXPECT_EQ(interface_status, success);
  EXPECT_NE(device, old_device);
  EXPECT_EQ(driver.WDU_VB_Uninit(old_session), LIBUSB_ERROR_INVALID_PARAM);
  EXPECT_EQ(driver.WDU_SetInterface(old_device, 0, 0), LIBUSB_ERROR_NO_DEVICE);
  EXPECT_EQ(board.counts().releases, 1);
}

TEST_F(UsbDevice, UnplugIsNotifiedAndTheHandleIsStale) {
  usb.unplug(board);
  ASSERT_TRUE(comes([&] { return !detached.empty(); }));
  EXPECT_EQ(detached, std::vector{device});
  DeviceInfo info;
  EXPECT_EQ(driver.WDU_GetDeviceInfo(device, info), LIBUSB_ERROR_NO_DEVICE);
  EXPECT_EQ(driver.WDU_ResetDevice(device), LIBUSB_ERROR_NO_DEVICE);
  EXPECT_EQ(driver.WDU_ResetPipe(device, pipe_i2c_in), LIBUSB_ERROR_NO_DEVICE);
  EXPECT_EQ(i2c_reply(2).status, LIBUSB_ERROR_NO_DEVICE);
  EXPECT_EQ(driver.VB_Stat2Str(LIBUSB_ERROR_NO_DEVICE),
            "No such device (it may have been disconnected). Plug the board in; the next connect finds it");
  EXPECT_EQ(driver.WDU_VB_Uninit(session), success);
}

TEST_F(UsbDevice, ReplugGivesANewHandle) {
  const Handle old = device;
  usb.unplug(board);
  board.refuse_claims(ENOENT, 2);
  usb.plug(board);
  ASSERT_TRUE(comes([&] { return attaches == 2; }));
  EXPECT_EQ(detached, std::vector{old});
  EXPECT_NE(device, old);
  EXPECT_EQ(interface_status, success);
  EXPECT_EQ(i2c({1, 0x89, 0}), success);
  EXPECT_EQ(i2c_reply(2).transferred, 2u);
}

TEST_F(UsbDevice, AFailedTransferTellsOfTheUnplugBeforeTheSystemDoes) {
  board.power(false);
  EXPECT_EQ(i2c({1, 0x89, 0}), LIBUSB_ERROR_NO_DEVICE);
  EXPECT_TRUE(detached.empty());
  driver.deliver_notifications();
  EXPECT_EQ(detached, std::vector{device});
  usb.unplug(board);
  usb.plug(board);
  ASSERT_TRUE(comes([&] { return attaches == 2; }));
  EXPECT_EQ(detached.size(), 1u);
  EXPECT_EQ(interface_status, success);
}

TEST_F(UsbDevice, UnplugWithinATransfer) {
  board.pull_within_transfer(0);
  EXPECT_EQ(i2c({1, 0x89, 0}), success);
  Received reply{};
  EXPECT_LT(milliseconds_of([&] { reply = i2c_reply(2); }), 500.0);
  EXPECT_EQ(reply.status, LIBUSB_ERROR_NO_DEVICE);
  EXPECT_EQ(reply.transferred, 0u);
  EXPECT_EQ(reply.buffer, Bytes(2, 0xEE));
  EXPECT_TRUE(comes([&] { return !detached.empty(); }));
  EXPECT_EQ(board.counts().open_urbs, 0);
}

// Its own processor time, so that a busy machine doesn't count; of real time only that nothing waits.
TEST_F(UsbDevice, TenThousandTurnsOfAConnectAreCheap) {
  const auto processor_time = [] {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
  };
  const double begin = processor_time();
  const double time = milliseconds_of([&] {
    for (int i = 0; i < 10000; ++i) driver.deliver_notifications();
  });
  EXPECT_LT(processor_time() - begin, 30.0);
  EXPECT_LT(time, 1000.0);
}

}  // namespace
