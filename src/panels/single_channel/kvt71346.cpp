#include "panels/single_channel/kvt71346.h"

#include "panels/single_channel/kvt71346_model.h"
#include "waveform/trace.h"
#include "workbench/workbench.h"

namespace varzelin {
namespace {

// Rows of Lst71346_Mode.
constexpr int power_down_row = 0;
constexpr int reset_row = 1;
constexpr int diode1_row = 2;
constexpr int difference_row = 4;
constexpr int loop_back_row = 5;
// LstMode2 shows the rows from diode1_row on.
constexpr int mode2_offset = diode1_row;
// The external time base's modes stand this many above the internal ones.
constexpr int external_offset = 3;

constexpr int slow_read_wait_ms = 100;
constexpr int slow_reply_size = 6;
constexpr int fast_reply_size = 5;

}  // namespace

frmKVT71346::frmKVT71346(Program& owner)
    : SensorPanel(owner, kvt71346_model),
      OptTimeBase(*this, "OptTimeBase",
                  {{0, {.Caption = "Internal Time Base", .Container = &frmTimeBase, .Value = 1}},
                   {1, {.Caption = "External Time Base", .Container = &frmTimeBase}}}) {
  on(cmdSetMode, Event::Click, &frmKVT71346::cmdSetMode_Click);
  on(cbReset, Event::Click, &frmKVT71346::cbReset_Click);
  on(OptMode, Event::Click, &frmKVT71346::OptMode_Click);
  on(OptTimeBase, Event::Click, &frmKVT71346::OptTimeBase_Click);
  on(Lst71346_Mode, Event::MouseUp, &frmKVT71346::Lst71346_Mode_MouseUp);
  on(LstMode2, Event::MouseUp, &frmKVT71346::LstMode2_MouseUp);
  on(lst_MainOptions, Event::MouseUp, &frmKVT71346::lst_MainOptions_MouseUp);
}

// --- load and unload ---

void frmKVT71346::load_model() {
  Lst71346_Mode.ListIndex = power_down_row;
  LstMode2.ListIndex = 0;
}

void frmKVT71346::build_time_labels_at_load() {
  store.Label_Time[0] = "0";
  for (std::size_t i = 1; i <= 10; ++i) {
    store.Label_Time[i] = forms::Format(40.0 * static_cast<double>(i), "###");
  }
}

void frmKVT71346::finish_load() {
  ShpAttach.FillColor = lamp(store.Clr_Red);
}

void frmKVT71346::Form_Unload(bool& /*Cancel*/) {
  form<frmI2C_General>().txthDriver.Text = "";
  if (store.Drv_Handle <= 0) return;
  store.Usb_Status = program.driver.WDU_VB_Uninit(store.Drv_Handle);
  DoEvents(2);
  store.Usb_Open = false_flag;
}

// --- the mode ---

std::uint8_t frmKVT71346::mode_byte() const {
  if (ModeIndex < 0 || static_cast<std::size_t>(ModeIndex) >= ModeTable.size()) {
    forms::raise_error(forms::subscript_out_of_range);
  }
  return ModeTable[static_cast<std::size_t>(ModeIndex)];
}

void frmKVT71346::cmdSetMode_Click() {
  // The difference takes two conversions of 100 ms. Only the text changes, not IntervalMs.
  txtInterval.Text = ModeIndex == difference_row ? "240" : "120";
  connect_by_rule();
  const std::uint8_t mode = mode_byte();
  txtModeByte.Text = forms::Hex2(mode);
  const bool single = ModeIndex < 6 || ModeIndex >= 8;
  store.SingleReading = flag(single);
  Label17.Visible = !single;
  txtReading2.Visible = !single;
  store.I2C_RdCnt = single ? 2 : 4;
  register_write(mode, 0);
  lblRegSet.Caption = "Control Register set to " + txtModeByte.Text + " Hex";
  lblRegSet.ForeColor = forms::clr_black;
  disconnect_by_rule();
}

void frmKVT71346::select_mode(int row) {
  Lst71346_Mode.ListIndex = row;
  DoEvents();
  ModeIndex = static_cast<std::int16_t>(Lst71346_Mode.ListIndex.get());
}

void frmKVT71346::show_diode_of_mode() {
  if (ModeIndex >= diode1_row) LstMode2.ListIndex = (ModeIndex - mode2_offset) % external_offset;
}

void frmKVT71346::Lst71346_Mode_MouseUp() {
  ModeIndex = static_cast<std::int16_t>(Lst71346_Mode.ListIndex.get());
  show_diode_of_mode();
  cmdSetMode_Click();
  store.EventsEnabled = false_flag;
  if (ModeIndex >= diode1_row) OptTimeBase(ModeIndex <= difference_row ? 0 : 1).Value = true;
  store.EventsEnabled = true_flag;
}

void frmKVT71346::LstMode2_MouseUp() {
  const bool was_running = stop_running_collection();
  select_mode(LstMode2.ListIndex + mode2_offset);
  DoEvents();
  cmdSetMode_Click();
  DoEvents();
  restart_if(was_running);
}

void frmKVT71346::OptTimeBase_Click(int Index) {
  const bool was_running = stop_running_collection();
  if (store.EventsEnabled == true_flag) {
    int row = ModeIndex;
    if (Index == 0 && row > difference_row) row -= external_offset;
    if (Index == 1 && row >= diode1_row && row <= difference_row) row += external_offset;
    select_mode(row);
    show_diode_of_mode();
    cmdSetMode_Click();
  }
  restart_if(was_running);
}

void frmKVT71346::restart_if(bool was_running) {
  if (was_running && ModeIndex >= diode1_row) restart_collection();
}

void frmKVT71346::lst_MainOptions_MouseUp() {
  const std::int32_t row = lst_MainOptions.ListIndex;
  Frame* const shown_by_row[] = {&FrmDevice, &frmMode, &frmTimeBase};
  if (row < 0 || row > 2) return;
  for (Frame* frame : shown_by_row) frame->Visible = frame == shown_by_row[row];
}

// --- OptMode ---

void frmKVT71346::OptMode_Click(int Index) {
  toggle_leds();
  switch (Index) {
    case 0:
      LstMode2.Visible = true;
      select_mode(LstMode2.ListIndex + mode2_offset);
      cmdSetMode_Click();
      break;
    case 1:
      LstMode2.Visible = false;
      select_mode(power_down_row);
      cmdSetMode_Click();
      break;
    default:
      test_communications();
      break;
  }
}

void frmKVT71346::test_communications() {
  hold_session();
  txtADHex.Text = "";
  LstMode2.Visible = false;
  select_mode(loop_back_row);
  cmdSetMode_Click();
  show_comm_test(true);
  for (int time = 0; time < 2; ++time) {
    Trig_KVT7134X();
    Sleep(slow_read_wait_ms);
    Record_Triggered_Light_Count();
  }
  if (forms::Right(txtADHex.Text, 2) != "A5") show_comm_test(false);
  LblCommTest.Visible = true;
  release_session();
  DoEvents();
  OptMode(2).Value = false;
  DoEvents();
}

void frmKVT71346::cbReset_Click() {
  cbReset.Caption = "Resetting ADC";
  Lst71346_Mode.ListIndex = reset_row;
  ModeIndex = reset_row;
  cmdSetMode_Click();
  wait_integration();
  select_mode(diode1_row);
  cmdSetMode_Click();
  wait_integration();
  Lst71346_Mode.ListIndex = -1;
  cbReset.Caption = "Reset";
}

// --- measuring ---

void frmKVT71346::Trig_KVT7134X() {
  const std::uint8_t mode = mode_byte();
  command_write(mode);
  txtModeByte.Text = forms::Hex2(mode);
  store.TriggerDone = true_flag;
}

void frmKVT71346::Record_Triggered_Light_Count() {
  if (store.TriggerDone != true_flag) {
    txtADDec.Text = "No Trig";
    return;
  }
  // The sensor has no registers, so the request has no register byte.
  send({store.I2C_RdCnt, store.I2C_RdAdr}, sensor_route());
  Sleep(slow_read_wait_ms);
  receive(slow_reply_size, sensor_route());
  DoEvents();
  const Measurement counts = reply_counts();
  store.Sample_Value[slot()] = counts.value;
  if (counts.second) store.Sample_Value2[slot()] = *counts.second;
  txtReading.Text = forms::Str(store.Sample_Value[slot()]);
  txtReading2.Text = forms::Str(store.Sample_Value2[slot()]);
  show_reply_bytes();
  DoEvents();
  store.TriggerDone = false_flag;
}

Measurement frmKVT71346::reply_counts() const {
  const std::int32_t count = reply_word(1);
  Measurement counts{.value = count, .raw = count, .reading = count};
  if (store.SingleReading == 0) counts.second = reply_word(3);
  return counts;
}

void frmKVT71346::sampling_starts() {
  cbReset.Visible = false;
  frmTimeBase.Visible = false;
}

void frmKVT71346::sampling_ended() {
  cbReset.Visible = true;
  frmTimeBase.Visible = true;
}

void frmKVT71346::collection_starts() {
  store.IntervalMs = interval_of_text();
  store.Sample_Run = false_flag;
  DoEvents();
}

Measurement frmKVT71346::measure() {
  exchange({store.I2C_RdCnt, store.I2C_RdAdr}, fast_reply_size, sensor_route());
  return reply_counts();
}

std::int32_t frmKVT71346::measurement_row() {
  const std::int32_t row = whole_trace_row(store.Reading, store.Scale_Max);
  // A row below the plot goes to its top on this panel.
  return row > plot_rows || row < 1 ? 1 : row;
}

void frmKVT71346::show_measurement() {
  if (store.Sample_Count == 0) return;  // the first transfer failed already
  const std::size_t last = slot(std::int64_t{store.Sample_Count} - 1);
  txtReading.Text = forms::CStr(store.Sample_Value[last]);
  if (store.SingleReading == 0) txtReading2.Text = forms::CStr(store.Sample_Value2[last]);
}

std::string frmKVT71346::data_file_header() {
  return "Seq,Lux,Integration,Mode " + txtModeByte.Text.get();
}

}  // namespace varzelin
