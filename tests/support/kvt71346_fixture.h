// The KVT71346/7 panel on the simulated board, chosen as a user chooses it.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "panels/single_channel/kvt71346.h"
#include "shell/start_panel.h"
#include "support/test_program.h"
#include "workbench/gpio_panel.h"

namespace varzelin::testing {

struct Kvt71346Fixture : ::testing::Test, TestProgram {
  frmKVT71346* panel = nullptr;

  void SetUp() override {
    choose(form<frmStartup>().cboDeviceSelect, 0);
    panel = &form<frmKVT71346>();
    forget_traffic();
  }

  void forget_traffic() {
    recorder.packets.clear();
    recorder.calls.clear();
  }
  // Selects a row of the mode list without any traffic.
  void set_mode(int row) {
    panel->Lst71346_Mode.select_quietly(row);
    panel->ModeIndex = static_cast<std::int16_t>(row);
  }
  // Posts `action` as the user's at the first yield at which `when` holds.
  void at(std::function<bool()> when, std::function<void()> action) {
    at_yield(std::move(when), std::move(action));
  }
  std::function<bool()> count_reaches(std::int32_t count) {
    return [this, count] { return store.Sample_Count >= count; };
  }
  std::function<void()> clicking(forms::Control& control) {
    return [&control] { forms::user::click(control); };
  }
  // Clicks the real-time button and stops once there are `count` samples.
  void collect(std::int32_t count) {
    store.Sample_Count = 0;  // of the run before
    at(count_reaches(count), clicking(panel->cmdStopData));
    click(panel->cmdCollectData);
  }
  // Clicks the timed button and stops once there are `count` samples.
  void sample(std::int32_t count) {
    store.Sample_Count = 0;
    at(count_reaches(count), clicking(panel->cmdEndSampling));
    click(panel->cmdSample);
  }
  void enter(forms::TextBox& box) {
    program.runtime.dispatch([&] { forms::user::enter(box); });
  }
  void leave(forms::TextBox& box) {
    program.runtime.dispatch([&] { forms::user::leave(box); });
  }
  // The bytes of the transfers on one pipe, in order.
  std::vector<std::vector<int>> sent_on(int pipe) {
    std::vector<std::vector<int>> result;
    for (const Packet& packet : recorder.packets) {
      if (packet.pipe == pipe) result.push_back(packet.bytes);
    }
    return result;
  }
  static forms::Color lamp(int color_index) { return forms::QBColor(color_index); }

  // As the panel is when no loop runs.
  void expect_idle() {
    EXPECT_TRUE(panel->cmdCollectData.Enabled);
    EXPECT_TRUE(panel->cmdSample.Enabled);
    EXPECT_TRUE(panel->cmdSample.Visible);
    EXPECT_FALSE(panel->cmdStopData.Visible);
    EXPECT_FALSE(panel->cmdEndSampling.Visible);
    EXPECT_TRUE(panel->cbReset.Visible);
    EXPECT_TRUE(panel->frmTimeBase.Visible);
    EXPECT_EQ(store.Sample_Run, 0);
    EXPECT_EQ(store.AbortRequested, 0);
    EXPECT_EQ(store.Man_Usb_Conn, 0);
    EXPECT_EQ(store.Usb_Open, 0);
  }
};

}  // namespace varzelin::testing
