// How the two-mode panels sample and collect.
#include <cmath>

#include "panels/two_mode/stability.h"
#include "panels/two_mode/two_mode_panel.h"
#include "registers/kvt71374.h"
#include "waveform/trace.h"

namespace varzelin {
namespace {

namespace map = registers::kvt71374;

constexpr int trigger_lamp = 6;  // element of ShpInd
constexpr int sample_lamp = 2;
constexpr int result_reply = 5;
constexpr double percent = 100;

// High bytes from which a proximity reading is negative. The triggered reading and the pair take 128 for a
// positive one, the real-time loop doesn't.
constexpr int negative_in_collection = 128;
constexpr int negative_when_triggered = 129;

}  // namespace

SignedCount TwoModePanel::decode(int low, int high) {
  return signed_readings() ? inverted_magnitude(low, high, negative_in_collection) : plain_count(low, high);
}

void TwoModePanel::Trig_KVT7134X() {
  if (store.SingleReading == 0) {
    connect_by_rule();
    flip_lamp(ShpInd(trigger_lamp));
    command_write(map::sync.byte);
    disconnect_by_rule();
  }
  store.TriggerDone = true_flag;
  DoEvents();
}

// --- the timed loop ---

void TwoModePanel::end_heartbeat() {
  constexpr int yields_for_the_loop = 100;
  DoEvents(yields_for_the_loop);
}

void TwoModePanel::fetch_sample() {
  if (store.ProxIRMode == 0) {
    Record_Triggered_Light_Count();
    return;
  }
  txtADHex.Text = txtProx_IR(6).Text.get();
  const auto difference = pair_difference();
  if (!difference) return;
  store.Sample_Value[slot()] = *difference;
  txtADDec.Text = std::to_string(*difference);
}

void TwoModePanel::Record_Triggered_Light_Count() {
  connect_by_rule();
  const SignedCount count = triggered_count();
  if (store.ReadAdc != 0 || store.ReadTimeBase != 0) store_sample(count.value);
  disconnect_by_rule();
  store.TriggerDone = false_flag;
}

SignedCount TwoModePanel::triggered_count() {
  read_registers(map::result_register, result_reply);
  const SignedCount count = signed_readings()
                                ? inverted_magnitude(reply(1), reply(2), negative_when_triggered)
                                : plain_count(reply(1), reply(2));
  store.ReadingSign = static_cast<std::int16_t>(count.sign);
  return count;
}

void TwoModePanel::store_sample(std::int32_t count) {
  store.Sample_Value[slot()] = count;
  show_reply_bytes();
  txtADDec.Text = std::to_string(count);
}

void TwoModePanel::Record_Prox_IR() {
  connect_by_rule();
  const SignedCount count = triggered_count();
  if (store.ReadAdc != 0) store_sample(count.value);
  if (store.ReadTimeBase != 0) {
    store.Sample_Value2[slot()] = reply_word(1);
    txtSampleByte(1).Text = forms::Hex2(reply(1));
    txtSampleByte(2).Text = forms::Hex(reply(2));
  }
  disconnect_by_rule();
  store.TriggerDone = false_flag;
}

void TwoModePanel::cmdRead_Click() {
  if (store.TriggerDone == 0) {
    MsgBox("Light Sensor Needs to be Triggered First");
    return;
  }
  Record_Triggered_Light_Count();
}

// --- real time ---

void TwoModePanel::collection_starts() {
  ConverterPanel::collection_starts();
  ShpInd(sample_lamp).Visible = true;
  filter.restart();
}

Measurement TwoModePanel::measure() {
  if (store.ProxIRMode == 0) return plain_measurement();
  store.ProxReject = false_flag;
  if (store.ProxAdjMode != 0) return filtered_measurement();
  Measurement result = pair_measurement(store.Reading);
  forms::resume_next([this] { store.IrVal = number_of(txtProx_IR(5)); });
  forms::resume_next([this] { store.ProxVal = number_of(txtProx_IR(4)); });
  if (ChStab.Value != 1) return result;
  forms::resume_next([this] { wait_for_stability(); });
  forms::resume_next([&] { result = pair_result(difference_of_pair()); });
  DoEvents();
  return result;
}

Measurement TwoModePanel::pair_result(std::int32_t difference) {
  store.Stab_Value[0] = difference;
  return ConverterPanel::pair_result(difference);
}

void TwoModePanel::wait_for_stability() {
  ShpInd(sample_lamp).Visible = true;
  const double tolerance = forms::Val(txtStabDif.Text) / percent;
  store.Stab_Wait = true_flag;
  const auto measure_again = [this](std::size_t which) {
    forms::resume_next([this] { cmdProx_IR_Click(); });
    forms::element(store.Stab_Value, which) = difference_of_pair();
  };
  measure_again(1);
  while (store.Stab_Wait != 0 && store.Sample_Run != 0 && loaded()) {
    leave_if_overtaken();
    DoEvents();
    const bool at_rest = settled(store.Stab_Value[0], store.Stab_Value[1], tolerance);
    ShpInd(sample_lamp).FillColor = lamp(at_rest ? store.Clr_LtGreen : store.Clr_Red);
    if (at_rest) {
      store.Stab_Wait = false_flag;
      break;
    }
    measure_again(0);
    forms::resume_next([this] { Sleep(number_of(txtStabDelay)); });
    measure_again(1);
  }
}

Measurement TwoModePanel::filtered_measurement() {
  forms::resume_next([this] { cmdProx_IR_Click(); });
  std::optional<std::int32_t> sample;
  forms::resume_next([&] {
    sample = filter.filtered({.ProxVal = number_of(txtProx_IR(4)),
                              .IrVal = number_of(txtProx_IR(5)),
                              .ProxDiff = forms::Val(txtProx_IR(6).Text)});
  });
  leave_if_overtaken();
  if (!sample) return unchanged();
  txtADCRaw.Text = std::to_string(*sample);
  const std::int32_t reading = reading_of(*sample);
  DoEvents();
  filter.show_thresholds(reading);
  return {.value = *sample, .raw = reading, .reading = reading};
}

// Zero is at mid-height.
std::int32_t TwoModePanel::signed_row() {
  if (store.Scale_Span == 0) forms::raise_error(forms::division_by_zero);
  constexpr int middle = plot_rows / 2;
  const double distance = store.Reading * (static_cast<double>(plot_rows) / store.Scale_Span);
  return limited_row(forms::CLng(store.Reading >= 0 ? middle - distance : std::abs(distance) + middle));
}

void TwoModePanel::end_pass() {
  ConverterPanel::end_pass();
  if (store.SingleReading == 0) txtReading2.Text = std::to_string(store.RawReading2);
}

}  // namespace varzelin
