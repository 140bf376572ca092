// The whole program on an emulated USB board, through the real libusb and in real time.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>

#include "boards/usb/usb_board.h"
#include "support/test_program.h"
#include "usb/emulated_usb.h"

namespace varzelin::testing {

struct ProgramOnTheUsb {
  usb_testing::EmulatedBoard board;
  usb_testing::EmulatedUsb usb;
  forms::SystemClock clock;
  boards::UsbBoard driver;
  TestFrontEnd user;
  Recorder recorder;
  Program program{clock, driver, user};
  Store& store = program.store;

  // Skips the test where no board can be emulated.
  void start_program() {
    if (!usb.possible()) GTEST_SKIP() << "umockdev's library is not preloaded (run this test through ctest)";
    driver.observer = &recorder;
    add_forms(program);
    start(program);
  }
  void plug(const char* model) {
    usb.plug(board);
    board.brain([&](boards::SimulatedBoard& brain) { ASSERT_TRUE(brain.mount(model)); });
  }
  void click(forms::Control& control) {
    program.runtime.dispatch([&] { forms::user::click(control); });
  }
  bool all_good() const {
    return !recorder.packets.empty() &&
           std::ranges::all_of(recorder.packets, [](const Packet& each) { return each.status == 0; });
  }
};

}  // namespace varzelin::testing
