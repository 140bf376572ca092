// The interrupt test over the panel of KVT71385 on the simulated board.
#pragma once

#include <deque>

#include "panels/multi_function/interrupt_test.h"
#include "panels/multi_function/multi_function_panel.h"
#include "support/panel_fixture.h"

namespace varzelin::testing {

using ByteLists = std::vector<std::vector<int>>;

struct InterruptTest : ::testing::Test, PanelProgram {
  // What the sensor measures, one count a reading; the last one stays. Empty: what it measures by itself.
  std::deque<int> proximities;
  std::deque<int> lights;
  // The level of the pin, asked before each transfer. None: the sensor's own.
  std::function<bool()> pin_is_low;

  MultiFunctionPanel* sensor = nullptr;
  frm71385INTR* test = nullptr;

  void SetUp() override {
    sensor = dynamic_cast<MultiFunctionPanel*>(&open("frmKVT71385"));
    reopen();
    forget_traffic();
    recorder.before_call = [this] { answer(); };
  }
  void reopen() {
    program.runtime.dispatch([this] {
      test = &form<frm71385INTR>();
      test->Show();
    });
  }

  void answer() {
    constexpr int result_reply = 5;
    if (pin_is_low) board.set_port('B', pin_is_low() ? 0x7F : 0xFF);
    const bool of_result = store.Pipe_Num == boards::pipe_i2c_out + in_pipe_offset &&
                           store.Xfer_Size == result_reply && !recorder.packets.empty() &&
                           recorder.packets.back().pipe == boards::pipe_i2c_out;
    std::deque<int>& counts = store.LuxMode != 0 ? lights : proximities;
    if (!of_result || counts.empty() || board.queued_replies() != 0) return;
    queue_count(counts.front());
    if (counts.size() > 1) counts.pop_front();
  }

  // --- the user ---

  // A test that doesn't end fails soon.
  void execute() {
    user.yields_left = 200'000;
    click(test->cmdRunCase1);
  }
  // Does something once, so many yields after `when` holds the first time.
  void later(std::function<bool()> when, int yields, std::function<void()> action) {
    at_yield(
        [when = std::move(when), yields, held = false]() mutable {
          held = held || when();
          return held && yields-- <= 0;
        },
        std::move(action));
  }
  std::function<bool()> message_is(const char* text) {
    return [this, text] { return test->lblMessage.Caption == text; };
  }
  void set_width(int position) { click(test->OptResolution(position)); }

  // --- what to expect ---

  // The colours of the step lamps, from the first one on.
  std::vector<int> steps() const { return colours(test->ShpIndrd, 6); }
  std::vector<int> comparisons() const { return colours(test->ShpALSCompare, 4); }
  static std::vector<int> colours(const ControlArray<Shape>& lamps, int count) {
    std::vector<int> shown;
    for (int i = 0; i < count; ++i) {
      for (const int color : {0, 2, 10, 12}) {
        if (lamps(i).FillColor.get() == lamp(color)) shown.push_back(color);
      }
    }
    return shown;
  }
  using Texts = std::vector<std::string>;
  static Texts texts(const ControlArray<Label>& labels) {
    Texts shown;
    labels.each([&](const Label& label) { shown.push_back(label.Caption); });
    return shown;
  }
  void expect_released(const char* message) {
    EXPECT_EQ(test->lblMessage.Caption, message);
    EXPECT_EQ(store.Man_Usb_Conn, 0);
    EXPECT_EQ(store.Usb_Open, 0);
    EXPECT_TRUE(test->cmdRunCase1.Visible);
  }
  void expect_aborted() {
    expect_released("Test Aborted");
    EXPECT_FALSE(test->cmdAbort1.Visible);
  }
};

// Readings and pin by script. At 16 bits, so that all counts of a table are positive.
struct InterruptTestRun : InterruptTest {
  void SetUp() override {
    InterruptTest::SetUp();
    set_width(0);
    pin_is_low = [this] { return test->lblMessage.Caption != "Clearing High Interrupt"; };
  }
  // The readings of the two that prime the sensor come first.
  void run(std::deque<int> proximity, std::deque<int> light) {
    proximities = std::move(proximity);
    proximities.push_front(0);
    proximities.push_front(0);
    lights = std::move(light);
    execute();
  }
};

}  // namespace varzelin::testing
