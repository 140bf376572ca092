#include <set>

#include "support/simulated_board_fixture.h"

using namespace boards;

namespace {

class SimulatedSession : public SimulatedBoardTest {};
class SimulatedDevice : public ConnectedBoardTest {};

TEST_F(SimulatedSession, InitGivesAHandleAndNotifiesAttachLater) {
  EXPECT_EQ(board.WDU_VB_Init(session, match, events()), success);
  EXPECT_GT(session, 0);
  EXPECT_EQ(attaches, 0);
  board.deliver_notifications();
  EXPECT_EQ(attaches, 1);
  EXPECT_GT(device, 0);
  board.deliver_notifications();
  EXPECT_EQ(attaches, 1);
}

TEST_F(SimulatedSession, HandlesAreFreshEverySession) {
  connect();
  const Handle first_session = session, first_device = device;
  EXPECT_EQ(board.WDU_VB_Uninit(session), success);
  connect();
  EXPECT_NE(session, first_session);
  EXPECT_NE(device, first_device);
  EXPECT_EQ(board.WDU_VB_Uninit(first_session), statuses::invalid_handle);
  EXPECT_EQ(board.WDU_ResetDevice(first_device), statuses::invalid_handle);
  EXPECT_EQ(board.WDU_ResetDevice(device), success);
}

TEST_F(SimulatedSession, MissingDriverLeavesTheSessionAlone) {
  board.set_driver_present(false);
  EXPECT_FALSE(board.driver_present());
  session = 77;
  EXPECT_EQ(board.WDU_VB_Init(session, match, events()), statuses::driver_not_installed);
  EXPECT_EQ(session, 77);
  board.deliver_notifications();
  EXPECT_EQ(attaches, 0);
  board.set_driver_present(true);
  connect();
  EXPECT_EQ(attaches, 1);
}

TEST_F(SimulatedSession, AnotherDeviceIsNeverAttached) {
  EXPECT_EQ(board.WDU_VB_Init(session, {0x7A53, 0x2006}, events()), success);
  board.deliver_notifications();
  EXPECT_EQ(attaches, 0);
}

TEST_F(SimulatedSession, WithoutABoardTheSessionOpensAndWaitsForThePlug) {
  board.unplug();
  connect();
  EXPECT_GT(session, 0);
  EXPECT_EQ(attaches, 0);
  DeviceInfo info;
  EXPECT_EQ(board.WDU_GetDeviceInfo(0, info), statuses::invalid_handle);
  board.plug();
  EXPECT_EQ(attaches, 0);
  board.deliver_notifications();
  EXPECT_EQ(attaches, 1);
}

TEST_F(SimulatedSession, ARejectedDeviceIsNotOpen) {
  accept = false;
  connect();
  EXPECT_EQ(attaches, 1);
  EXPECT_EQ(board.WDU_SetInterface(device, 0, 0), statuses::invalid_handle);
  EXPECT_EQ(i2c({0, 0x88, 0}), statuses::invalid_handle);
  board.unplug();
  board.deliver_notifications();
  EXPECT_TRUE(detached.empty());
}

TEST_F(SimulatedSession, TheDeviceCanBeUsedInsideTheAttachNotification) {
  Status status = -1;
  EventTable table;
  table.attach = [&](Handle handle, const DeviceInfo& info) {
    EXPECT_EQ(info.vendor_id, 0x7A53);
    EXPECT_EQ(info.product_id, 0x2005);
    status = board.WDU_SetInterface(handle, 0, 0);
    return true;
  };
  ASSERT_EQ(board.WDU_VB_Init(session, match, table), success);
  board.deliver_notifications();
  EXPECT_EQ(status, success);
}

TEST_F(SimulatedSession, TheAttachNotificationMayEndTheSession) {
  EventTable table;
  table.attach = [&](Handle handle, const DeviceInfo&) {
    device = handle;
    EXPECT_EQ(board.WDU_VB_Uninit(session), success);
    return true;
  };
  ASSERT_EQ(board.WDU_VB_Init(session, match, table), success);
  board.deliver_notifications();
  EXPECT_EQ(board.WDU_ResetDevice(device), statuses::invalid_handle);
}

TEST_F(SimulatedSession, AnEmptyEventTableAttachesNothing) {
  ASSERT_EQ(board.WDU_VB_Init(session, match, {}), success);
  board.deliver_notifications();
  board.unplug();
  board.deliver_notifications();
  EXPECT_EQ(board.WDU_VB_Uninit(session), success);
}

TEST_F(SimulatedDevice, CloseHandleStillLeavesUninitToDo) {
  EXPECT_EQ(board.CloseHandle(session), success);
  EXPECT_EQ(board.WDU_VB_Uninit(session), success);
  EXPECT_EQ(board.CloseHandle(session), statuses::invalid_handle);
  EXPECT_EQ(board.WDU_VB_Uninit(session), statuses::invalid_handle);
}

TEST_F(SimulatedDevice, HandleZeroIsInvalidEverywhere) {
  EXPECT_EQ(board.WDU_VB_Uninit(0), statuses::invalid_handle);
  EXPECT_EQ(board.CloseHandle(0), statuses::invalid_handle);
  EXPECT_EQ(board.WDU_ResetDevice(0), statuses::invalid_handle);
  EXPECT_EQ(board.WDU_SetInterface(0, 0, 0), statuses::invalid_handle);
  EXPECT_EQ(board.WDU_ResetPipe(0, pipe_i2c_in), statuses::invalid_handle);
  DeviceInfo info;
  EXPECT_EQ(board.WDU_GetDeviceInfo(0, info), statuses::invalid_handle);
  device = 0;
  EXPECT_EQ(i2c({0, 0x88, 0}), statuses::invalid_handle);
  EXPECT_EQ(clock.milliseconds(), 0.0);
}

TEST_F(SimulatedDevice, UnplugIsNotifiedAndTheDeviceIsGone) {
  board.unplug();
  EXPECT_FALSE(board.plugged());
  EXPECT_EQ(i2c({0, 0x88, 0}), statuses::not_attached);
  EXPECT_TRUE(detached.empty());
  board.deliver_notifications();
  EXPECT_EQ(detached, std::vector<Handle>{device});
  board.deliver_notifications();
  EXPECT_EQ(detached.size(), 1u);

  DeviceInfo info;
  EXPECT_EQ(board.WDU_GetDeviceInfo(device, info), statuses::not_attached);
  EXPECT_EQ(board.WDU_ResetDevice(device), statuses::not_attached);
  EXPECT_EQ(board.WDU_SetInterface(device, 0, 0), statuses::not_attached);
  EXPECT_EQ(board.WDU_ResetPipe(device, pipe_i2c_in), statuses::not_attached);
  EXPECT_EQ(i2c({0, 0x88, 0}), statuses::not_attached);
  EXPECT_EQ(i2c_reply(2).status, statuses::not_attached);
  EXPECT_EQ(clock.milliseconds(), 0.0);
  EXPECT_EQ(board.WDU_VB_Uninit(session), success);
}

TEST_F(SimulatedDevice, ReplugGivesANewHandleAndTheOldOneIsStale) {
  const Handle old = device;
  board.unplug();
  board.plug();
  EXPECT_EQ(board.WDU_ResetDevice(old), statuses::not_attached);
  board.deliver_notifications();
  EXPECT_EQ(detached, std::vector<Handle>{old});
  EXPECT_EQ(attaches, 2);
  EXPECT_NE(device, old);
  EXPECT_EQ(board.WDU_ResetDevice(device), success);
  EXPECT_EQ(board.WDU_ResetDevice(old), statuses::invalid_handle);
}

TEST_F(SimulatedDevice, PluggingWhatIsPluggedChangesNothing) {
  board.plug();
  board.deliver_notifications();
  EXPECT_EQ(attaches, 1);
  EXPECT_TRUE(detached.empty());
  EXPECT_EQ(board.WDU_ResetDevice(device), success);
}

TEST_F(SimulatedDevice, NoNotificationAfterUninit) {
  EXPECT_EQ(board.WDU_VB_Uninit(session), success);
  EXPECT_EQ(i2c({0, 0x88, 0}), statuses::invalid_handle);
  board.unplug();
  board.deliver_notifications();
  board.plug();
  board.deliver_notifications();
  EXPECT_TRUE(detached.empty());
  EXPECT_EQ(attaches, 1);
}

TEST_F(SimulatedDevice, OpeningAnotherSessionEndsTheOneBefore) {
  const Handle old_session = session, old_device = device;
  connect();
  EXPECT_EQ(board.WDU_VB_Uninit(old_session), statuses::invalid_handle);
  EXPECT_EQ(board.WDU_ResetDevice(old_device), statuses::invalid_handle);
  EXPECT_EQ(board.WDU_ResetDevice(device), success);
}

TEST_F(SimulatedDevice, DeviceInformation) {
  DeviceInfo info;
  ASSERT_EQ(board.WDU_GetDeviceInfo(device, info), success);
  EXPECT_EQ(info.vendor_id, 0x7A53);
  EXPECT_EQ(info.product_id, 0x2005);
  ASSERT_EQ(info.configurations.size(), 1u);
  EXPECT_EQ(info.configurations[0].value, 1);
  ASSERT_EQ(info.configurations[0].interfaces.size(), 1u);
  const InterfaceInfo& interface = info.configurations[0].interfaces[0];
  EXPECT_EQ(interface.number, 0);
  ASSERT_EQ(interface.alternates.size(), 1u);
  EXPECT_EQ(interface.alternates[0].number, 0);
  EXPECT_EQ(interface.alternates[0].interface_class, 0xFF);
  std::vector<int> addresses;
  for (const PipeInfo& pipe : interface.alternates[0].pipes) {
    addresses.push_back(pipe.address);
    EXPECT_EQ(pipe.attributes, 2);
    EXPECT_EQ(pipe.max_packet, 64);
  }
  EXPECT_EQ(addresses, (std::vector<int>{0x01, 0x81, 0x02, 0x82}));
  EXPECT_EQ(info.active_configuration + info.active_interface + info.active_alternate, 0u);
}

TEST_F(SimulatedDevice, OnlyTheOneInterfaceAndItsPipesExist) {
  EXPECT_EQ(board.WDU_SetInterface(device, 0, 0), success);
  EXPECT_EQ(board.WDU_SetInterface(device, 1, 0), statuses::no_such_interface);
  EXPECT_EQ(board.WDU_SetInterface(device, 0, 1), statuses::no_such_interface);
  for (const std::int32_t pipe : {1, 0x81, 2, 0x82}) EXPECT_EQ(board.WDU_ResetPipe(device, pipe), success);
  EXPECT_EQ(board.WDU_ResetPipe(device, 3), statuses::no_such_pipe);
  EXPECT_EQ(send(3, {0}), statuses::no_such_pipe);
  EXPECT_EQ(receive(0x83, 2).status, statuses::no_such_pipe);
  EXPECT_EQ(send(pipe_i2c_in, {0}), statuses::no_such_pipe);
  EXPECT_EQ(receive(pipe_i2c_out, 2).status, statuses::no_such_pipe);
}

TEST(SimulatedStatuses, EveryStatusHasATextOfItsOwn) {
  forms::VirtualClock clock;
  const SimulatedBoard board(clock);
  const std::vector<Status> all{success,
                                statuses::driver_not_installed,
                                statuses::invalid_handle,
                                statuses::not_attached,
                                statuses::time_out,
                                statuses::transfer_failed,
                                statuses::no_such_pipe,
                                statuses::no_such_interface,
                                statuses::call_failed};
  std::set<std::string> texts{"Unknown error"};
  for (const Status status : all) {
    EXPECT_GE(status, 0);
    texts.insert(board.VB_Stat2Str(status));
  }
  EXPECT_EQ(texts.size(), all.size() + 1);
  EXPECT_EQ(board.VB_Stat2Str(-1), "Unknown error");
  EXPECT_EQ(board.VB_Stat2Str(12345), "Unknown error");
  EXPECT_EQ(board.board_name(), "simulated board");
}

struct Recorder : Driver::Observer {
  void call_begins() override { ++begun; }
  void call_ended(const CallRecord& record) override {
    calls.emplace_back(record.call);
    last_status = record.status;
    data.assign(record.data.begin(), record.data.end());
  }
  int begun = 0;
  std::vector<std::string> calls;
  Status last_status = -1;
  std::vector<std::uint8_t> data;
};

TEST_F(SimulatedDevice, AnObserverIsToldOfEveryCall) {
  Recorder recorder;
  board.observer = &recorder;
  EXPECT_EQ(i2c({0, 0x88, 0}), success);
  EXPECT_EQ(recorder.data, (Bytes{0, 0x88, 0}));
  EXPECT_EQ(i2c_reply(2).status, statuses::time_out);
  EXPECT_TRUE(recorder.data.empty());
  EXPECT_EQ(board.WDU_ResetDevice(device), success);
  EXPECT_EQ(board.CloseHandle(session), success);
  EXPECT_EQ(board.WDU_VB_Uninit(session), success);
  EXPECT_EQ(board.WDU_VB_Uninit(session), statuses::invalid_handle);
  EXPECT_EQ(recorder.last_status, statuses::invalid_handle);
  EXPECT_EQ(recorder.begun, 6);
  EXPECT_EQ(recorder.calls, (std::vector<std::string>{"WDU_Transfer", "WDU_Transfer", "WDU_ResetDevice",
                                                      "CloseHandle", "WDU_VB_Uninit", "WDU_VB_Uninit"}));
}

}  // namespace
