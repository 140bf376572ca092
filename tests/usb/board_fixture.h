// A board on the emulated USB, and a host that talks to it through the driver interface. Time is real.
#pragma once

#include <chrono>

#include "boards/usb/usb_board.h"
#include "support/board_host.h"
#include "usb/emulated_usb.h"

class UsbBoardTest : public BoardHost {
 protected:
  usb_testing::EmulatedBoard board;
  usb_testing::EmulatedBoard other_board;
  usb_testing::EmulatedUsb usb;
  boards::UsbBoard driver;
  boards::Status interface_status = 1;
  std::vector<std::string> advices;
  std::vector<std::string> remarks;

  void SetUp() override {
    if (!usb.possible()) GTEST_SKIP() << "umockdev's library is not preloaded (run this test through ctest)";
    driver.on_advice = [this](const std::string& text) { advices.push_back(text); };
    driver.on_remark = [this](const std::string& text) { remarks.push_back(text); };
  }

  // Accepts a device whose interface can be set, as the program does.
  boards::EventTable events() {
    return {[this](boards::Handle handle, const boards::DeviceInfo&) {
              device = handle;
              ++attaches;
              interface_status = driver.WDU_SetInterface(handle, 0, 0);
              return interface_status == boards::success;
            },
            [this](boards::Handle handle) { detached.push_back(handle); }};
  }

  void open_session() { ASSERT_EQ(driver.WDU_VB_Init(session, match, events()), boards::success); }
  void connect() {
    usb.plug(board);
    open_session();
    driver.deliver_notifications();
    ASSERT_EQ(attaches, 1);
    ASSERT_EQ(interface_status, boards::success);
  }
  // Lets notifications come until `condition` holds. False: it doesn't within five seconds.
  template <class Condition>
  bool comes(Condition&& condition) {
    const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (!condition() && std::chrono::steady_clock::now() < give_up) driver.deliver_notifications();
    return condition();
  }

  void mount(std::string_view model) {
    board.brain([&](boards::SimulatedBoard& brain) { ASSERT_TRUE(brain.mount(model)); });
  }
  int sensor_register(std::uint8_t address) {
    return board.brain(
        [&](boards::SimulatedBoard& brain) { return int{brain.register_value(address).value()}; });
  }

  boards::Driver& board_driver() override { return driver; }

  template <class Action>
  static double milliseconds_of(Action&& action) {
    const auto begin = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
  }
};

// The same with the session open, the board attached and a sensor with registers in its socket.
class ConnectedUsbBoardTest : public UsbBoardTest {
 protected:
  void SetUp() override {
    UsbBoardTest::SetUp();
    if (IsSkipped()) return;
    connect();
    mount("KVT71385");
  }
};
