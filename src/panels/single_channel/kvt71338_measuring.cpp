// How the KVT71338 panel samples and collects.
#include "panels/single_channel/kvt71338.h"
#include "registers/kvt71338.h"
#include "waveform/trace.h"

namespace varzelin {
namespace {

namespace map = registers::kvt71338;

std::int32_t milliseconds(const TextBox& box) {
  return forms::CLng(forms::Val(box.Text));
}

}  // namespace

// --- may it start ---

bool frmKVT71338::powered() const {
  return field(map::power) != 0;
}

bool frmKVT71338::sampling_allowed() {
  if (powered()) return true;
  MsgBox("Device Reset Control bit is active");
  return false;
}

// The box may have switched the converter off behind the option's back: its handler runs in any case.
bool frmKVT71338::collection_allowed() {
  if (powered()) return true;
  constexpr int enabled = 1;
  OptPwr(enabled).select_quietly();
  OptPwr_Click(enabled);
  return true;
}

// --- the timed loop ---

void frmKVT71338::Trig_KVT7134X() {
  if (store.SingleReading == 0) {
    connect_by_rule();
    flip_lamp(ShpInd(sync_lamp));
    command_write(map::sync_command.byte);
    disconnect_by_rule();
  }
  store.TriggerDone = true_flag;
}

void frmKVT71338::Record_Triggered_Light_Count() {
  constexpr int data_reply = 5;
  connect_by_rule();
  read_registers(map::data_register, data_reply);
  if (store.ReadAdc != 0) {
    store.Sample_Value[slot()] = reply_word(1);
    show_reply_bytes();
  }
  if (store.ReadTimeBase != 0) {
    // Not of this reply: what was last read as a second count, which this panel never does.
    store.Sample_Value2[slot()] = store.RawReading2;
    cycle_reading.show(1);
  }
  disconnect_by_rule();
  store.TriggerDone = false_flag;
}

// --- real time ---

void frmKVT71338::take_scale() {
  if (OptGraph(0).Value) store.Scale_Max = scale_of(txtScale2);
  if (OptGraph(1).Value) store.Scale_Max = scale_of(txtScale);
  store.Scale_Span = forms::to_int32(std::int64_t{store.Scale_Max} - store.Scale_Min);
}

void frmKVT71338::collection_starts() {
  TimerIPol.Enabled = false;
  for (TextBox* box : {&txtCaclulated_Lux, &txtADC_Reading, &txtTimeBaseReading}) box->Text = "";
}

// The boxes are looked at anew each time: the user may change what a running collection sends.
void frmKVT71338::send_triggers() {
  if (ChkOneShot.Value == 1) {
    cmdSetCommand_Click();
    Sleep(milliseconds(txtOneShotDelay));
  }
  for (const int i : {0, 1}) {
    if (ChkSync(i).Value != 1) continue;
    cmdSync_Click();
    Sleep(milliseconds(txtDelaySync(i)));
  }
}

// The time base comes by the fast transfers. A count is of two bytes, whatever I2C_RdCnt says.
Measurement frmKVT71338::measure() {
  constexpr int count_bytes = 2;
  constexpr int count_reply = 3;
  const bool time_base = OptGraph(2).Value;
  const Route route =
      time_base ? Route{.out_pipe = store.I2C_Pipe, .transfers = Transfers::fast} : sensor_route();
  exchange({count_bytes, store.I2C_RdAdr, map::data_register}, count_reply, route);
  const std::int32_t count = reply_word(1);
  const Measurement result{.value = count, .raw = count, .reading = count};
  const std::string shown = forms::Format(count, "#######");
  if (time_base) {
    txtTimeBaseReading.Text = shown;
    return result;
  }
  txtADC_Reading.Text = shown;
  if (store.LuxMode != 0) {
    store.Scale_Max = scale_of(txtScale2);
    txtCaclulated_Lux.Text = lux_text(count, store.LuxFactor);
  }
  return result;
}

// Without a scale the row of the sample before stays.
std::int32_t frmKVT71338::measurement_row() {
  if (store.Scale_Max == 0) return store.Trace_Y[trace_entry];
  return limited_row(whole_trace_row(store.Reading, store.Scale_Max));
}

}  // namespace varzelin
