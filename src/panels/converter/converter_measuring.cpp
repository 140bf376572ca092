// How the panels over a converter sample and collect.
#include "panels/converter/converter_panel.h"
#include "waveform/trace.h"

namespace varzelin {
namespace {

constexpr int result_register = 2;
constexpr double no_peak = -999999.0;

}  // namespace

// --- the timed loop ---

bool ConverterPanel::sampling_allowed() {
  if (without_measurement()) {
    choose_measurement(first_continuous);
    DoEvents();
  }
  if (store.ExtTiming != 0) ChkEOC1(0).Value = 1;
  prepare_sampling();
  Label3(0).Caption = store.ReadTimeBase != 0 ? "TB" : "ADC";
  hold_session();
  DoEvents();
  if (store.OneShotMode != 0) show_delay_words();
  return true;
}

void ConverterPanel::start_sample() {
  if (store.ProxIRMode != 0) {
    cmdProx_IR_Click();
    pair_sampled();
  } else if (store.OneShotMode != 0) {
    cmdSetCommand_Click();
  }
  for (int step = 0; step < converter_.syncs; ++step) {
    if (!syncs(step)) continue;
    Sleep(number_of(txtSync1Delay(step)));
    cmdSync_Click();
  }
  Sleep(number_of(txtSampling_Delay));
}

bool ConverterPanel::syncs(int step) const {
  return store.ExtTiming != 0 && ChkEOC1(step).Value == 1;
}

void ConverterPanel::run_sampling_work() {
  run_deferred(sampling_work_);
}

// --- real time: how it begins ---

std::int32_t ConverterPanel::pace_of_text() const {
  return number_of(txtInterval);
}

// Begun anew in the middle of a pass's exchange, or while the session is still being opened, the set-up waits
// for the loop.
bool ConverterPanel::collection_allowed() {
  set_up_waits_ = within_exchange() || (in_collection() && store.Man_Usb_Conn == 0);
  if (!set_up_waits_) set_up_collection();
  return true;
}

void ConverterPanel::set_up_collection() {
  store.OverCount = store.UnderCount = 0;
  lblRange.Visible = false;
  store.PeakReading = no_peak;
  store.RangeChanged = false_flag;
  store.GainTarget = store.GainIndex;
  cmdSetCommand_Click();
  cmdSetControl_Click();
  take_sample_delay();
  show_interval(store.ProxIRMode == 0);
  store.Scale_Span = forms::to_int32(std::int64_t{store.Scale_Max} - store.Scale_Min);
  collection_span_ = store.Scale_Span;
  if (without_measurement()) {
    forms::resume_next([this] { choose_measurement(converter_.collected_measurement); });
    DoEvents();
  }
}

void ConverterPanel::collection_starts() {
  for (TextBox* box : {&txtReading, &txtReading2, &txtReading3}) box->Text = "";
  if (store.ExtTiming != 0) ChkEOC1(0).Value = 1;
  store.I2C_RdCnt = 2;
  TimerIPol.Enabled = false;
}

// A set-up finds no collection, and a stop in it is lost.
void ConverterPanel::collection_connected() {
  if (!std::exchange(set_up_waits_, false)) return;
  store.Sample_Run = false_flag;
  forms::resume_next([this] { set_up_collection(); });
  store.Sample_Run = true_flag;
}

void ConverterPanel::begin_pass() {
  forms::resume_next([this] { set_pace(pace_of_text()); });
}

// --- real time: a measurement ---

Measurement ConverterPanel::measure() {
  return store.ProxIRMode != 0 ? pair_measurement(store.Reading) : plain_measurement();
}

Measurement ConverterPanel::plain_measurement() {
  constexpr int result_reply = 3;
  if (store.OneShotMode != 0) {
    forms::resume_next([this] { cmdSetCommand_Click(); });
    DoEvents();
  }
  if (syncs(0)) {
    forms::resume_next([this] { Sleep(number_of(txtSync1Delay(0))); });
    cmdSync_Click();
  }
  if (store.OneShotMode != 0) forms::resume_next([this] { Sleep(number_of(txtSampling_Delay)); });
  fetch(2, result_register, result_reply);
  last_result_ = {.low = reply(1), .high = reply(2)};
  const SignedCount count = decode(last_result_.low, last_result_.high);
  store.ReadingSign = static_cast<std::int16_t>(count.sign);
  txtADCRaw.Text = std::to_string(count.value);
  const std::int32_t reading = reading_of(count.value);
  store.TripReading = reading;
  Measurement result{.value = count.value, .raw = count.value, .reading = reading};
  if (store.LuxMode != 0) {
    forms::resume_next([&] {
      result.value = result.reading = forms::CLng(
          lux_of(forms::Val(txtADCRaw.Text), selected_range(), store.ResistorScale, store.FullCount));
    });
    store.TripReading = result.reading;
  }
  return result;
}

std::int32_t ConverterPanel::reading_of(std::int32_t count) const {
  if (!converter_.reads_by_gain) return count;
  return forms::to_int32(std::int64_t{count} * store.GainMultiplier);
}

Measurement ConverterPanel::pair_measurement(std::int32_t reading_before) {
  forms::resume_next([this] { cmdProx_IR_Click(); });
  const std::optional<std::int32_t> difference = pair_difference();
  if (!difference) return {.value = reading_before, .raw = store.RawReading, .reading = reading_before};
  return pair_result(*difference);
}

Measurement ConverterPanel::pair_result(std::int32_t difference) {
  txtADCRaw.Text = std::to_string(difference);
  const std::int32_t reading = reading_of(difference);
  store.TripReading = reading;
  return {.value = difference, .raw = reading, .reading = reading};
}

void ConverterPanel::run_collection_work() {
  if (store.Sample_Run != 0) run_deferred(collection_work_);
}

// Without a span the row of the sample before stays.
std::int32_t ConverterPanel::measurement_row() {
  std::int32_t row = store.Trace_Y[trace_entry];
  forms::resume_next([&] { row = signed_readings() ? signed_row() : RegisterPanel::measurement_row(); });
  return row;
}

std::int32_t ConverterPanel::auto_scale_minimum() const {
  return signed_readings() ? -forms::CLng(forms::Int(forms::Val(txtScale.Text))) : 0;
}

}  // namespace varzelin
