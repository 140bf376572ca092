// The interrupt test, worked through its window.
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <algorithm>
#include <functional>

#include "bridge/run_state.h"
#include "shell/start_panel.h"
#include "support/window_of_program.h"
#include "window/arranger.h"
#include "window/lamp.h"

namespace varzelin::testing {
namespace {

struct InterruptTestWindow : WindowOfProgram {
  static constexpr const char* form = "frm71385INTR";

  void choose_panel(std::string_view panel) {
    const auto row = std::ranges::find(model_list, panel, &ModelRow::panel);
    choose_model(static_cast<int>(row - model_list.begin()));
  }
  void open_from(std::string_view panel) {
    choose_panel(panel);
    ASSERT_TRUE(entry(panel, "Interrupt Test"));
    entry(panel, "Interrupt Test")->trigger();
    turn();
  }
  QString text(const char* label) { return widget<QLabel>(form, label).text(); }
  QString name(const std::string& control) { return widget<QWidget>(form, control.c_str()).accessibleName(); }
  // What the user does once while the test runs.
  void execute_until(const std::function<bool()>& when, const std::function<void()>& action) {
    QTimer timer;
    bool done = false;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
      if (done || !when()) return;
      done = true;
      action();
    });
    timer.start(0);
    click(form, "cmdRunCase1");
    turn();
    EXPECT_TRUE(done);
    turn();
  }
  bool waits_for_high() {
    return program.forms.loaded(form) &&
           widget<window::Lamp>(form, "ShpIndrd(0)").accessibleDescription() == "red";
  }
};

TEST_F(InterruptTestWindow, IsReachedFromTheWindowsOfTheTwoModelsThatHaveIt) {
  for (const auto& [panel, has] : {std::pair{"frmKVT71385", true},
                                   {"frmKVT71388", false},
                                   {"frmKVT71390", true},
                                   {"frmKVT71392", false},
                                   {"frmKVT71346", false},
                                   {"frmGPIO", false}}) {
    show(panel);
    EXPECT_EQ(entry(panel, "Interrupt Test") != nullptr, has) << panel;
    EXPECT_TRUE(entry(panel, "GPIO Panel")) << panel;
  }
}

TEST_F(InterruptTestWindow, ComesForwardFromTheMenu) {
  open_from("frmKVT71390");
  EXPECT_TRUE(window_of(form).isVisible());
  EXPECT_EQ(program.forms.front()->name(), form);
  EXPECT_EQ(program.store.Active_Form, program.forms.loaded(form));
  EXPECT_FALSE(windows.window_of("frmKVT71385"));
  EXPECT_FALSE(entry(form, "Interrupt Test"));
}

TEST_F(InterruptTestWindow, LampsAndValuesSayWhatTheyAreOf) {
  open_from("frmKVT71385");
  for (int step = 0; step < 6; ++step) {
    const std::string index = "(" + std::to_string(step) + ")";
    EXPECT_EQ(name("ShpIndrd" + index), text(("lblStep" + index).c_str()));
  }
  EXPECT_EQ(name("ShpIndrd(2)"), "Wait for Low Interrupt, Then Record ALS @ Low Int:");
  EXPECT_EQ(name("ShpIndrd(10)"), "Pin Sampled");
  EXPECT_EQ(name("ShpINTexternal"), "Pin 7");
  EXPECT_EQ(name("ShpALSCompare(3)"), "Slope > X");
  EXPECT_EQ(name("lblProx(0)"), "Proximity @ High Interrupt");
  EXPECT_EQ(name("lblRecordedLux(1)"), "ALS @ Low Interrupt");
  EXPECT_EQ(name("lblCase22_Delta(2)"), "Solution 2: Difference");
  EXPECT_EQ(name("lblMessage"), "Progress");
}

TEST_F(InterruptTestWindow, RunsUntilTheUserAborts) {
  open_from("frmKVT71385");
  board.set_port('B', 0xFF);
  execute_until([this] { return waits_for_high(); },
                [this] {
                  EXPECT_FALSE(widget<QPushButton>(form, "cmdRunCase1").isVisible());
                  EXPECT_EQ(text("lblMessage"), "Waiting for Interrupt High");
                  click(form, "cmdAbort1");
                });
  EXPECT_EQ(text("lblMessage"), "Test Aborted");
  EXPECT_TRUE(widget<QPushButton>(form, "cmdRunCase1").isVisible());
  EXPECT_FALSE(widget<QPushButton>(form, "cmdAbort1").isVisible());
  EXPECT_EQ(program.store.Usb_Open, 0);
}

TEST_F(InterruptTestWindow, ItsStatusLineTellsHowItGoes) {
  const auto state = [this] { return text(window::run_state_name); };
  open_from("frmKVT71385");
  EXPECT_EQ(state(), "idle");
  board.set_port('B', 0xFF);
  QString during;
  const auto both_are_read = [this] {
    const auto course = dynamic_cast<const Measuring&>(*program.forms.loaded(form)).run_state();
    return course.runs && course.readings == 2;
  };
  const auto abort = [&] {
    windows.show_changes();
    during = state();
    click(form, "cmdAbort1");
  };
  execute_until(both_are_read, abort);
  EXPECT_EQ(during, "testing, 2 readings");
  EXPECT_EQ(state(), "stopped by the user");
  board.set_sensor_answers(false);
  execute_until(both_are_read, abort);
  EXPECT_EQ(during, "testing; no answer from the sensor (2 of 2 readings)");
  EXPECT_EQ(state(), "stopped by the user; no answer from the sensor (2 of 2 readings)");
}

TEST_F(InterruptTestWindow, EndsWithTheWindowOfTheSensorPanelAndStaysItself) {
  open_from("frmKVT71385");
  board.set_port('B', 0xFF);
  execute_until([this] { return waits_for_high(); }, [this] { window_of("frmKVT71385").close(); });
  EXPECT_FALSE(program.forms.loaded("frmKVT71385"));
  EXPECT_EQ(text("lblMessage"), "Test Aborted");
  EXPECT_EQ(program.store.Man_Usb_Conn, 0);
  EXPECT_FALSE(program.runtime.ended());
}

TEST_F(InterruptTestWindow, EndsWithItsOwnWindow) {
  open_from("frmKVT71385");
  board.set_port('B', 0xFF);
  execute_until([this] { return waits_for_high(); }, [this] { window_of(form).close(); });
  EXPECT_FALSE(program.forms.loaded(form));
  EXPECT_EQ(program.store.Man_Usb_Conn, 0);
  EXPECT_EQ(program.store.Usb_Open, 0);
  EXPECT_TRUE(window_of("frmKVT71385").isVisible());
}

}  // namespace
}  // namespace varzelin::testing
