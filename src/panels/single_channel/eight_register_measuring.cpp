// How the panels over eight registers measure.
#include "panels/single_channel/eight_register_panel.h"
#include "registers/kvt71344.h"
#include "waveform/trace.h"

namespace varzelin {
namespace {

namespace map = registers::kvt71344;

// The ratio of light count and cycle count is shown on a scale of 15 bits.
constexpr double ratio_scale = 32768;

}  // namespace

// --- may it start ---

bool EightRegisterPanel::in_reset() const {
  return field(map::running) == 0;
}
bool EightRegisterPanel::powered_down() const {
  return field(map::power_down) != 0;
}

bool EightRegisterPanel::ready_to_measure() {
  if (in_reset()) {
    MsgBox("Device Reset Control bit is active");
    return false;
  }
  if (powered_down()) {
    MsgBox("Device ADC Core Power Down Control bit is active");
    return false;
  }
  return true;
}

bool EightRegisterPanel::sampling_allowed() {
  if (!ready_to_measure()) return false;
  if (model_.connects_before_sampling) hold_session();
  return true;
}

bool EightRegisterPanel::collection_allowed() {
  if (!model_.resets_before_collection) return ready_to_measure();
  if (in_reset() || powered_down()) cbReset_Click();
  return true;
}

// --- around the loops ---

void EightRegisterPanel::sampling_starts() {
  cbReset.Visible = false;
}
void EightRegisterPanel::sampling_ended() {
  cbReset.Visible = true;
}

void EightRegisterPanel::collection_starts() {
  store.I2C_RdCnt = store.SingleReading == 0 ? 4 : 2;
  txtReading3.Text = "";
  watch.collection_starts();
}

void EightRegisterPanel::cmdEndSampling_Click() {
  RegisterPanel::cmdEndSampling_Click();
  if (model_.stop_disconnects) disconnect_by_rule();
}

// --- trigger and reading ---

// Under internal timing the sensor converts all the time: the trigger only opens the gate.
void EightRegisterPanel::Trig_KVT7134X() {
  if (model_.measures_by_rule) connect_by_rule();
  if (store.SingleReading == 0) {
    flip_lamp(ShpInd(sync_lamp));
    command_write(map::end_of_conversion.byte);
  }
  store.TriggerDone = true_flag;
  if (model_.measures_by_rule) disconnect_by_rule();
}

// The reply is asked for with both counts, whatever was requested: with a read count of 2 the second isn't
// fresh.
void EightRegisterPanel::Record_Triggered_Light_Count() {
  if (model_.measures_by_rule) {
    DoEvents();
    connect_by_rule();
  }
  read_registers(map::result_register, results_reply);
  store.Sample_Value[slot()] = reply_word(1);
  if (store.SingleReading == 0) store.Sample_Value2[slot()] = reply_word(3);
  txtReading.Text = forms::Str(store.Sample_Value[slot()]);
  txtReading2.Text = forms::Str(store.Sample_Value2[slot()]);
  show_reply_bytes();
  cycle_reading.show(3);
  store.TriggerDone = false_flag;
  if (model_.measures_by_rule) {
    DoEvents();
    disconnect_by_rule();
  }
}

Measurement EightRegisterPanel::measure() {
  read_registers(map::result_register, results_reply);
  std::int32_t top_byte = reply(2);
  if (model_.limits_top_byte) {
    for (const int i : {1, 2}) txtSampleByte(i).Text = forms::Hex2(reply(static_cast<std::size_t>(i)));
    txtADHex.Text = txtSampleByte(2).Text + txtSampleByte(1).Text;
    if (top_byte > store.MsbLimit) top_byte = 0;
  }
  const std::int32_t count = top_byte * 256 + reply(1);
  Measurement result{.value = count, .raw = count, .reading = count};
  if (store.SingleReading != 0) return result;
  txtReading3.Text = forms::CStr(count);
  const std::int32_t cycles = reply_word(3);
  result.second = cycles;
  if (OptGraph(2).Value && cycles != 0) {
    result.reading = forms::CLng(static_cast<double>(count) / cycles * ratio_scale);
  }
  if (OptGraph(1).Value) result.reading = cycles;
  return result;
}

std::int32_t EightRegisterPanel::measurement_row() {
  return limited_row(whole_trace_row(store.Reading, store.Scale_Max));
}

void EightRegisterPanel::show_measurement() {
  RegisterPanel::show_measurement();
  if (store.SingleReading == 0) txtReading2.Text = forms::CStr(store.RawReading2);
}

}  // namespace varzelin
