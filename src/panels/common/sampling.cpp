// The two sampling loops of a sensor panel, their stop buttons, and the interval that paces them.
#include <array>
#include <utility>

#include "panels/common/sensor_panel.h"
#include "waveform/trace.h"

namespace varzelin {
namespace {

constexpr const char* collecting_text = "Data Collection In Process";
constexpr const char* halted_text = "Data Collection Halted";

// True as long as it lives.
struct Raised {
  explicit Raised(bool& of_owner) : flag(of_owner), outer(std::exchange(of_owner, true)) {}
  ~Raised() { flag = outer; }
  bool& flag;
  const bool outer;
};

constexpr std::array<Flag Store::*, 6> deferred_work_flags{&Store::PendingClearInt, &Store::PendingReadRegs,
                                                           &Store::PendingWriteR0,  &Store::PendingWriteR1,
                                                           &Store::PendingIntHigh,  &Store::PendingIntLow};

// Behind the last number comes the lowest one.
std::int32_t next_number(std::int32_t number) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(number) + 1);
}

}  // namespace

// --- timed sampling ---

void SensorPanel::cmdSample_Click() {
  if (!sampling_allowed()) return;
  const Raised on_stack(sampling_);
  start_sampling();
  run_begins(RunState::Kind::timed);
  if (model.sampling_holds_session) hold_session();
  while (store.AbortRequested != true_flag && loaded()) timed_pass();
  fetch_last_trigger();
  run_ends();
  end_sampling();
  run_is_over();
}

void SensorPanel::fetch_last_trigger() {
  if (store.TriggerDone != 0) Record_Triggered_Light_Count();
}

void SensorPanel::start_sampling() {
  Label18.Caption = collecting_text;
  offer(cmdSample, false);
  if (!model.exit_button.stays_in_loops) offer(Command4, false);
  if (model.heartbeat) shpSample.Visible = true;
  cmdCollectData.Enabled = false;
  offer(cmdEndSampling, true);
  store.AbortRequested = false_flag;
  store.PendingUpdate = false_flag;
  Tmr_Integration.Enabled = false;
  sampling_starts();
  store.Sample_Count = 0;
  clear_samples();
}

// The delay is the row's index, not the number that the row shows.
void SensorPanel::start_sample() {
  const std::int32_t delay = CboIntTime(5).ListIndex;
  Trig_KVT7134X();
  if (delay == 0) return;
  Sleep(delay);
  DoEvents();
}

void SensorPanel::timed_pass() {
  start_sample();
  if (store.Sample_Count < last_sample) {
    ++store.Sample_Count;
    show_count();
  }
  DoEvents();
  fetch_sample();
  run_took_reading();
  if (model.heartbeat) flip_lamp(shpSample, store.Clr_Black);
  DoEvents();
  sampling_pass_ends();
  run_sampling_work();
}

void SensorPanel::end_sampling() {
  if (model.yields_when_closed == 0) store.AbortRequested = false_flag;
  store.Man_Usb_Conn = false_flag;
  if (model.sampling_session_end == SessionEnd::disconnect) disconnect();
  if (model.sampling_session_end == SessionEnd::connect_again) connect();
  DoEvents(model.yields_when_closed);
  store.AbortRequested = false_flag;
  offer(cmdEndSampling, false);
  offer(cmdAbort, false);
  offer(cmdSample, true);
  offer(Command4, true);
  sampling_ended();
  cmdCollectData.Enabled = true;
}

// --- real-time collection ---

void SensorPanel::cmdCollectData_Click() {
  const std::int32_t interval_ms = pace_of_text();
  runtime().timeBeginPeriod(1);
  if (!collection_allowed()) return;
  if (collecting_) {
    // Begun from inside the running loop (a new interval, a new scale), the collection is that loop's
    // from here on. No second loop runs on top of it, so restarts don't grow the stack.
    start_collection(interval_ms);
    begun_anew_ = true;
    return;
  }
  const std::optional<forms::RunTimeError> error = collect(interval_ms);
  if (!error) run_ends();
  end_collection();
  run_is_over();
  if (error) throw *error;
}

void SensorPanel::start_collection(std::int32_t interval_ms) {
  // First, as a text that is no scale fails here: the buttons then are as they were.
  take_scale();
  interval_ms_ = interval_ms;
  store.Collections = next_number(store.Collections);
  run_begins(RunState::Kind::collection);
  Label18.Caption = collecting_text;
  cmdCollectData.Caption = "Real Time data display is executing, Click -Stop Real Time- to End";
  cmdSample.Enabled = false;
  cmdCollectData.Enabled = false;
  offer(cmdStopData, true);
  if (!model.exit_button.stays_in_loops) offer(Command4, false);
  store.PendingUpdate = false_flag;
  store.AbortRequested = false_flag;
  collection_starts();
  reset_trace();
  store.Sample_Count = 0;
  clear_samples();
  store.Sample_Run = true_flag;
  for (forms::Control* control :
       std::initializer_list<forms::Control*>{&Label6, &Label14, &txtTime1, &txtTime3}) {
    control->Visible = true;
  }
  begins_ = true;
  last_mark_ = timeGetTime();
  due_ = last_mark_ + interval_ms_;
}

void SensorPanel::take_scale() {
  store.Scale_Max = scale_of(txtScale);
  store.Scale_Span = forms::to_int32(std::int64_t{store.Scale_Max} - store.Scale_Min);
}

std::optional<forms::RunTimeError> SensorPanel::collect(std::int32_t interval_ms) {
  struct OnStack {
    explicit OnStack(SensorPanel& owner) : panel(owner) {
      panel.collecting_ = true;
      panel.loop_depth_ = panel.runtime().handlers_on_stack();
    }
    ~OnStack() {
      panel.collecting_ = false;
      panel.begun_anew_ = false;
    }
    SensorPanel& panel;
  } const on_stack(*this);
  start_collection(interval_ms);
  hold_session();
  session_held();
  try {
    while (store.Sample_Run == true_flag && loaded()) collection_pass();
  } catch (const forms::RunTimeError& error) {
    return error;  // reported once the panel is as it is without a loop
  }
  return std::nullopt;
}

void SensorPanel::collection_pass() {
  begun_anew_ = false;
  try {
    if (std::exchange(begins_, false)) {
      collection_connected();
    } else {
      whole_pass();
    }
  } catch (const Overtaken&) {
    // What waited for the pass that was left waits for the next one.
    for (const auto pending : deferred_work_flags) {
      if (store.*pending != 0) store.PendingUpdate = true_flag;
    }
  }
}

void SensorPanel::whole_pass() {
  begin_pass();
  if (paced()) pace(due_);
  leave_if_overtaken();
  txtTime3.Text = std::to_string(timeGetTime() - last_mark_);
  commit(measure());
  leave_if_overtaken();
  run_collection_work();
  leave_if_overtaken();
  const bool going_on = store.Sample_Run != 0;
  if (going_on) start_next_conversion();
  leave_if_overtaken();
  if (going_on) {
    const std::int64_t now = timeGetTime();
    due_ = now + interval_ms_;
    txtTime1.Text = std::to_string(now - last_mark_);
    last_mark_ = now;
    store.Trace_Y[trace_entry] = measurement_row();
    count_sample();
  }
  if (store.Sample_Count > settling_samples) {
    show_count();
    advance_trace();
  }
  show_measurement();
  end_pass();
}

void SensorPanel::commit(const Measurement& measurement) {
  leave_if_overtaken();
  store.Sample_Value[slot()] = measurement.value;
  store.RawReading = measurement.raw;
  if (measurement.second) store.Sample_Value2[slot()] = store.RawReading2 = *measurement.second;
  store.Reading = measurement.reading;
  run_took_reading();
}

std::int32_t SensorPanel::measurement_row() {
  return trace_row(store.Reading, store.Scale_Min, store.Scale_Max);
}

void SensorPanel::show_measurement() {
  txtReading.Text = forms::CStr(store.Reading);
}

void SensorPanel::end_collection() {
  store.Sample_Run = false_flag;
  store.Man_Usb_Conn = false_flag;
  if (model.yields_before_disconnect == 0) disconnect();
  DoEvents(model.yields_when_closed);
  store.AbortRequested = false_flag;
  cmdCollectData.Enabled = true;
  offer(cmdStopData, false);
  cmdCollectData.Caption = "Collect Data Graphical Real Time Data";
  DoEvents(model.yields_at_end);
  cmdSample.Enabled = true;
  offer(Command4, true);
  collection_ended();
  if (model.yields_before_disconnect == 0) return;
  DoEvents(model.yields_before_disconnect);
  disconnect();
}

bool SensorPanel::overtaken() const {
  return begun_anew_ && runtime().handlers_on_stack() == loop_depth_;
}

bool SensorPanel::stop_running_collection() {
  const bool was_running = store.Sample_Run != 0;
  store.Sample_Run = false_flag;
  DoEvents();
  return was_running;
}

void SensorPanel::restart_collection() {
  Restore_Screen(store, Picture1);
  cmdCollectData_Click();
}

// The loop wakes a little early: the rest of the wait goes to other handlers, not to the sleep. What the user
// does in the sleep is handled at once; the pass comes when it is due.
void SensorPanel::pace(std::int64_t due) {
  while (timeGetTime() < due - model.wake_margin && !begun_anew_) {
    DoEvents();
    const std::int64_t now = timeGetTime();
    if (now < due - model.sleep_margin) Pause(due - model.sleep_margin - now);
  }
}

// --- what both loops use ---

void SensorPanel::offer(forms::Control& button, bool offered) {
  (model.buttons_stay ? button.Enabled : button.Visible) = offered;
}

std::size_t SensorPanel::slot(std::int64_t sample) {
  if (sample < 0 || sample > last_sample) forms::raise_error(forms::subscript_out_of_range);
  return static_cast<std::size_t>(sample);
}

void SensorPanel::clear_samples() {
  store.Sample_Value.fill(1);
  store.Sample_Value2.fill(1);
}

void SensorPanel::reset_trace() {
  clear_trace(store);
  Restore_Screen(store, Picture1);
  store.Trace_Pos = trace_entry;
}

void SensorPanel::count_sample() {
  if (store.Sample_Count < last_sample) ++store.Sample_Count;
}

void SensorPanel::show_count() {
  lblLoop_Count.Caption = std::to_string(std::int64_t{store.Sample_Count} - settling_samples);
}

void SensorPanel::advance_trace() {
  Scroll_Trace(store, Picture1, store.Trace_Pos);
  if (store.Trace_Pos < 2) {
    Sleep(model.full_trace_sleep);
  } else {
    --store.Trace_Pos;
  }
}

// --- stop buttons ---

void SensorPanel::cmdAbort_Click() {
  store.AbortRequested = true_flag;
  cmdAbort.Visible = false;
}

void SensorPanel::cmdEndSampling_Click() {
  store.AbortRequested = true_flag;
  Label18.Caption = halted_text;
  if (model.heartbeat) shpSample.Visible = false;
  cmdStopData_Click();
}

void SensorPanel::cmdStopData_Click() {
  store.Sample_Run = false_flag;
  end_heartbeat();
  store.AbortRequested = true_flag;
  Label18.Caption = halted_text;
  DoEvents();
}

// --- interval and scale boxes ---

void SensorPanel::txtInterval_KeyPress(int& KeyAscii) {
  if (KeyAscii != forms::vbKeyReturn) return;
  store.IntervalMs = interval_of_text();
  store.Sample_Run = false_flag;
  DoEvents();
  build_time_labels(store.IntervalMs);
  draw_labels();
  clear_trace(store);
  Restore_Screen(store, Picture1);
  DoEvents();
  cmdCollectData_Click();
}

// Leaving the box changes the labels but not the pace: IntervalMs stays.
void SensorPanel::txtInterval_LostFocus() {
  const std::int32_t interval_ms = interval_of_text();
  store.Sample_Run = false_flag;
  DoEvents();
  build_time_labels(interval_ms);
  draw_labels();
  clear_trace(store);
  Restore_Screen(store, Picture1);
  DoEvents();
}

void SensorPanel::txtScale_Click() {
  store.Sample_Run = false_flag;
  DoEvents();
}

}  // namespace varzelin
