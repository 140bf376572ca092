// How the interrupt test runs, from Execute to its end.
#include <algorithm>
#include <optional>

#include "panels/multi_function/interrupt_detection.h"
#include "panels/multi_function/interrupt_test.h"
#include "panels/multi_function/multi_function_panel.h"
#include "workbench/workbench.h"

namespace varzelin {
namespace {

// Elements of the recorded values.
constexpr int at_high = 0;
constexpr int at_low = 1;
constexpr int behind_delay = 2;

// Elements of ShpIndrd.
constexpr int high_wait = 0;
constexpr int high_cleared = 1;
constexpr int low_wait = 2;
constexpr int low_received = 3;
constexpr int light_solution = 4;
constexpr int slope_solution = 5;
constexpr int steps = 6;

// Elements of ShpALSCompare.
constexpr int light_below = 0;
constexpr int light_above = 1;
constexpr int slope_below = 2;
constexpr int slope_above = 3;

constexpr std::int64_t settling_ms = 120;

// Of whichever panel: all of them have one bus and one store.
bool a_loop_runs(const forms::FormSet& forms) {
  return std::ranges::any_of(forms.all_loaded(), [](const forms::Form* form) {
    const auto* panel = dynamic_cast<const SensorPanel*>(form);
    return panel && panel->loop_runs();
  });
}

double number(const Label& label) {
  return forms::Val(label.Caption);
}
double number(const TextBox& box) {
  return forms::Val(box.Text);
}

}  // namespace

void frm71385INTR::cmdRunCase1_Click() {
  if (driven_) return;
  // On top of a loop the test would take the reply that the loop waits for, and close its session.
  if (a_loop_runs(set())) {
    lblMessage.Caption = "Stop Data Collection First";
    return;
  }
  struct Running {
    Running(MultiFunctionPanel*& of_driven, MultiFunctionPanel* panel) : driven(of_driven) { driven = panel; }
    ~Running() { driven = nullptr; }
    MultiFunctionPanel*& driven;
  } const running(driven_, sensor_panel());
  course_ = {.kind = RunState::Kind::test, .end = RunState::End::run_time_error};
  begin_test();
  std::optional<forms::RunTimeError> error;
  bool completed = false;
  try {
    completed = run_test();
    course_.end = completed ? RunState::End::completed : RunState::End::by_user;
  } catch (const forms::RunTimeError& raised) {
    error = raised;  // reported once the panel is as it is without a test
  }
  if (completed) {
    complete_test();
  } else {
    abort_test();
  }
  if (error) throw *error;
}

RunState frm71385INTR::run_state() const {
  RunState state = course_;
  state.runs = driven_ != nullptr;
  state.board_gone = store.Dev_Ctx.device == 0;
  return state;
}

// --- begin and end ---

void frm71385INTR::begin_test() {
  clear_results();
  hold_session();
  AbortTest = false;
  cmdAbort1.Visible = true;
  cmdRunCase1.Visible = false;
  store.IntPinAsserted = false_flag;
  lblMessage.Caption = "Waiting for Interrupt High";
}

void frm71385INTR::clear_results() {
  for (int step = 0; step < steps; ++step) show(ShpIndrd(step), store.Clr_Black);
  ShpALSCompare.each([this](Shape& compared) { show(compared, store.Clr_Black); });
  for (const auto* labels : {&lblRecordedLux, &lblProx, &lblCase21, &lblCase22_Delta}) {
    labels->each([](Label& label) { label.Caption = ""; });
  }
}

void frm71385INTR::complete_test() {
  cmdRunCase1.Visible = true;
  release_session();
  lblMessage.Caption = "Test Completed";
}

void frm71385INTR::abort_test() {
  cmdAbort1.Visible = false;
  cmdRunCase1.Visible = true;
  lblMessage.Caption = "Exec Abort";
  release_session();
  lblMessage.Caption = "Test Aborted";
}

// Held before it is open, and until it is closed: so the session is one of the test from its first yield to
// its last.
void frm71385INTR::hold_session() {
  store.Man_Usb_Conn = true_flag;
  form<frmI2C_General>().cmdUSBConnect_Click();
}

void frm71385INTR::release_session() {
  form<frmI2C_General>().cmdUSBDisconnect_Click();
  store.Man_Usb_Conn = false_flag;
}

// --- the steps ---

bool frm71385INTR::run_test() {
  return prime_sensor() && wait_for_high_interrupt() && record_at_high() && wait_for_low_interrupt() &&
         record_at_low() && decide() && !panels_closed();
}

bool frm71385INTR::prime_sensor() {
  if (!record_proximity(at_high) || !clear_interrupt()) return false;
  Sleep(settling_ms);
  return record_proximity(at_high) && clear_interrupt();
}

// Without the board the pin reads low for ever: no wait is entered then, and an abort is seen between two
// turns.
bool frm71385INTR::wait_for_high_interrupt() {
  for (;;) {
    show(ShpIndrd(high_wait), store.Clr_Red);
    if (!clear_interrupt()) return false;
    while (store.IntPinAsserted == 0) {
      if (AbortTest || !sample_pin()) return false;
    }
    if (!record_proximity(at_high)) return false;
    if (target_is_near(number(Label2(at_high)), number(txtILow))) return true;
    if (AbortTest) return false;
  }
}

bool frm71385INTR::record_at_high() {
  if (!record_light(at_high)) return false;
  for (const int step : {high_wait, high_cleared}) show(ShpIndrd(step), store.Clr_LtGreen);
  lblProx(at_high).Caption = Label2(at_high).Caption.get();
  lblRecordedLux(at_high).Caption = lblLux1(at_high).Caption.get();
  return true;
}

bool frm71385INTR::wait_for_low_interrupt() {
  for (;;) {
    if (!clear_high_interrupt()) return false;
    lblMessage.Caption = "Waiting for Interrupt Low";
    while (store.IntPinAsserted == 0) {
      if (AbortTest || !sample_pin()) return false;
      show(ShpIndrd(low_wait), store.Clr_LtGreen);
    }
    if (!record_proximity(at_low)) return false;
    if (target_is_away(number(Label2(at_low)), number(txtILow))) return true;
    if (AbortTest) return false;
  }
}

bool frm71385INTR::clear_high_interrupt() {
  if (!record_proximity(at_low)) return false;
  show(ShpIndrd(low_wait), store.Clr_Red);
  lblMessage.Caption = "Clearing High Interrupt";
  while (store.IntPinAsserted != 0) {
    if (AbortTest || !clear_interrupt()) return false;
  }
  return true;
}

bool frm71385INTR::record_at_low() {
  lblProx(at_low).Caption = Label2(at_low).Caption.get();
  if (!record_light(at_low)) return false;
  for (const int step : {low_wait, low_received}) show(ShpIndrd(step), store.Clr_LtGreen);
  lblRecordedLux(at_low).Caption = lblLux1(at_low).Caption.get();
  lblMessage.Caption = "Received Interrupt Low";
  lblCase21(0).Caption = lblRecordedLux(at_high).Caption.get();
  lblCase21(1).Caption = txtCase2Sol1Lux.Text.get();
  return true;
}

// --- the decision ---

bool frm71385INTR::decide() {
  if (!light_decides(number(lblRecordedLux(at_high)), number(txtCase2Sol1Lux))) return decide_by_slope();
  decide_by_light();
  return true;
}

void frm71385INTR::decide_by_light() {
  show(ShpIndrd(light_solution), store.Clr_LtGreen);
  lblCase21(3).Caption = lblRecordedLux(at_low).Caption.get();
  lblCase21(2).Caption = lblRecordedLux(at_high).Caption.get();
  const bool below = number(lblRecordedLux(at_low)) < number(lblRecordedLux(at_high));
  show(ShpALSCompare(below ? light_below : light_above), store.Clr_LtGreen);
}

bool frm71385INTR::decide_by_slope() {
  show(ShpIndrd(slope_solution), store.Clr_LtGreen);
  Sleep(forms::CLng(number(txtDeltaTime)));
  if (!record_proximity(behind_delay)) return false;
  const double moved = slope(number(Label2(at_low)), number(Label2(behind_delay)));
  lblCase22_Delta(1).Caption = Label2(behind_delay).Caption.get();
  lblCase22_Delta(0).Caption = Label2(at_low).Caption.get();
  lblCase22_Delta(3).Caption = txtDeltaADC.Text.get();
  lblCase22_Delta(2).Caption = forms::CStr(moved);
  const bool above = moved > number(txtDeltaADC);
  show(ShpALSCompare(above ? slope_above : slope_below), store.Clr_LtGreen);
  return true;
}

}  // namespace varzelin
