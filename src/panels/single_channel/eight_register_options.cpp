// The options of the panels over eight registers: each changes a field, and is written or left to the loop.
#include <array>

#include "panels/single_channel/eight_register_panel.h"
#include "registers/kvt71344.h"

namespace varzelin {
namespace {

namespace map = registers::kvt71344;

// OptMeasure's position that is the one measurement of a sensor with the light count alone.
constexpr int light_count = 2;
// Positions of OptMode.
constexpr int measure_mode = 0;
constexpr int power_down_mode = 1;
// Largest top bytes of a count of 15 bits and of 11. The lower resolutions leave the limit that stands.
constexpr std::array<std::int16_t, 2> top_byte_limits{127, 7};
// Elements of ChkCommand.
constexpr int reset_box = 0;
constexpr int power_box = 1;
constexpr int timing_box = 2;
constexpr int device_box = 3;

}  // namespace

void EightRegisterPanel::OptMeasure_Click(int Index) {
  set_field(map::measurement, Index);
  commit({.pending = {&Store::PendingWriteR0}, .registers = {0}});
}

void EightRegisterPanel::OptITime_Click(int Index) {
  limit_top_byte(Index);
  set_field(map::resolution, Index);
  commit({.pending = {&Store::PendingWriteR0}, .registers = {0}});
}

void EightRegisterPanel::limit_top_byte(int resolution) {
  const auto position = static_cast<std::size_t>(resolution);
  if (model_.limits_top_byte && position < top_byte_limits.size()) store.MsbLimit = top_byte_limits[position];
}

void EightRegisterPanel::OptGain_Click(int Index) {
  set_field(map::range, Index);
  commit({.pending = {&Store::PendingWriteR1}, .registers = {1}});
}

void EightRegisterPanel::OpInt_Click(int Index) {
  set_field(map::trips, Index);
  commit({.pending = {&Store::PendingWriteR1}, .registers = {1}});
}

// --- the command bits ---

void EightRegisterPanel::ChkCommand_Click(int Index) {
  const bool checked = ChkCommand(Index).Value == 1;
  switch (Index) {
    case reset_box:
      set_field(map::running, !checked);
      if (model_.one_measurement) follow_reset(checked);
      break;
    case power_box:
      if (model_.one_measurement && !checked) follow_power(false);
      set_field(map::power_down, checked);
      if (model_.one_measurement && checked) follow_power(true);
      break;
    case timing_box:
      choose_timing(checked);
      break;
    case device_box:
      set_field(map::power_down, checked);
      set_field(map::running, !checked);
      break;
  }
  commit({.pending = {&Store::PendingWriteR0}, .registers = {0}});
}

void EightRegisterPanel::follow_reset(bool active) {
  if (!active) return;
  OptMeasure(light_count).Value = false;
  OptMode(measure_mode).Value = false;
}

void EightRegisterPanel::follow_power(bool down) {
  OptMode(power_down_mode).Value = down;
  if (!down) OptMeasure(light_count).Value = false;
}

void EightRegisterPanel::choose_timing(bool external) {
  const auto select_time_base = [this](int position) {
    store.EventsEnabled = false_flag;
    OptTimeBase(position).Value = true;
    store.EventsEnabled = true_flag;
  };
  store.SingleReading = flag(!external);
  Label16.Caption = external ? "Calc. Reading" : "Lux Reading";
  show_two_readings(external);
  store.I2C_RdCnt = external ? 4 : 2;
  if (external) {
    OptGraph(2).Value = true;
    OptGraph(0).Caption = "Raw Lux Count";
    for (const int i : {0, 1, 2}) OptGraph(i).Visible = true;
    select_time_base(1);
    set_field(map::external_timing, 1);
    // The integration time is what the host makes it.
    frItime.Visible = false;
  } else {
    OptGraph(0).Caption = "Lux Count";
    OptGraph(0).Value = true;
    for (const int i : {1, 2}) OptGraph(i).Visible = false;
    set_field(map::external_timing, 0);
    frItime.Visible = true;
    select_time_base(0);
  }
}

void EightRegisterPanel::show_two_readings(bool both) {
  Label17.Visible = both;
  txtReading2.Visible = both;
  txtReading3.Visible = both;
}

void EightRegisterPanel::OptTimeBase_Click(int Index) {
  const bool was_running = stop_running_collection();
  if (store.EventsEnabled == true_flag) ChkCommand(timing_box).Value = Index;
  commit({.pending = {&Store::PendingWriteR0}, .registers = {0}});
  if (was_running) restart_collection();
}

void EightRegisterPanel::OptGraph_Click() {
  store.I2C_RdCnt = store.SingleReading != 0 ? 2 : 4;
}

// --- modes ---

void EightRegisterPanel::OptMode_Click(int Index) {
  toggle_leds();
  switch (Index) {
    case measure_mode:
      LstMode2.Visible = true;
      DoEvents();
      if (!model_.one_measurement) break;
      store.RegImage[map::command_register] =
          map::measurement.in(store.RegImage[map::command_register], field(map::measurement) | light_count);
      ChkCommand(reset_box).Value = 0;
      ChkCommand(power_box).Value = 0;
      OptMeasure(light_count).Value = true;
      DoEvents();
      break;
    case power_down_mode:
      ChkCommand(power_box).Value = 1;
      if (model_.one_measurement) OptMeasure(light_count).Value = false;
      DoEvents();
      break;
    default:
      LstMode2.Visible = false;
      test_communications();
      break;
  }
}

void EightRegisterPanel::LstMode2_MouseUp() {
  const std::int32_t row = LstMode2.ListIndex;
  if (row < 0) return;
  store.Sample_Run = false_flag;
  DoEvents();
  OptMeasure(row).Value = true;
}

void EightRegisterPanel::LstDeviceSel_MouseUp() {
  SensorPanel::LstDeviceSel_MouseUp();
  const bool light_count_alone = LstDeviceSel.ListIndex == model_.light_count_row;
  for (const int diode : {0, 1}) OptMeasure(diode).Visible = !light_count_alone;
  OptMeasure(light_count).Caption = light_count_alone ? "Light Count" : "D1-D2";
  if (light_count_alone) OptMeasure(light_count).Value = true;
}

// --- reset ---

void EightRegisterPanel::cbReset_Click() {
  constexpr int settled_ms = 250;
  constexpr int restarted_ms = 50;
  cbReset.Caption = "Resetting ADC";
  if (model_.resets_by_power_down) {
    ChkCommand(device_box).Value = 1;
    Sleep(settled_ms);
    DoEvents(2);
    ChkCommand(device_box).Value = 0;
    Sleep(restarted_ms);
    store.IntegrationMs = 0;
  } else {
    for (const int value : {1, 0}) {
      ChkCommand(reset_box).Value = value;
      wait_integration();
    }
  }
  cbReset.Caption = "Reset";
}

}  // namespace varzelin
