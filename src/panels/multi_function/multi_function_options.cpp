// The options of the multi-function panels, and the scales and limits that follow them.
#include "panels/multi_function/multi_function_panel.h"
#include "registers/kvt71385.h"
#include "waveform/trace.h"

namespace varzelin {
namespace {

namespace map = registers::kvt71385;

constexpr int scheme_0 = 0;
constexpr int scheme_1 = 1;
constexpr std::int32_t signed_minimum = -100;  // of scales and limits, whatever the width
constexpr const char* signed_minimum_text = "-100";

struct Width {
  int bits;
  std::int32_t full_count;
  int sample_delay_ms;
  const char* words;  // of the limits' format; null: limits and words stay as they are
};
constexpr std::array<Width, 4> widths{
    {{16, 65536, 118, "16 Bits"}, {12, 4096, 8, "12 Bits"}, {8, 256, 0, nullptr}, {4, 16, 0, nullptr}}};

}  // namespace

// --- the operation ---

void MultiFunctionPanel::OptMeasure_GotFocus() {
  store.EventsEnabled = true_flag;
}

void MultiFunctionPanel::clear_modes() {
  for (const auto mode : std::initializer_list<Flag Store::*>{
           &Store::OneShotMode, &Store::ProxMode, &Store::ProxIRMode, &Store::LuxMode, &Store::CoverMode}) {
    store.*mode = false_flag;
  }
}

void MultiFunctionPanel::OptMeasure_Click(int Index) {
  const Operation& operation = operation_of(Index);
  OptIRMode(scheme_1).Enabled = false;
  choose_scheme(scheme_0);
  take_operation(Index);
  Frame14.Visible = false;
  show_reading_kind(operation);
  Frame9.Visible = operation.pair && store.LayoutCompact == 0;
  Frame10.Visible = operation.pair;
  fraINT.Visible = !operation.pair;
  Frame3.Caption = operation.frame_caption;
  store.OneShotMode = flag(Index < first_continuous);
  choose_scheme_by_revision(Index);
  if (store.ProxScheme == 1 && (store.ProxMode != 0 || store.ProxIRMode != 0)) store.RegImage[0] |= 0x01;
  if (store.LuxMode != 0) {
    choose_scheme(scheme_0);
    txtScale.Text = forms::CStr(range_lux());
    store.Scale_Min = 0;
  }
  scale_right_side();
  show_register(map::operation_register);
  if (!deferred({&Store::PendingWriteR0})) cmdSetCommand_Click();
  show_delay_words();
  if (store.EventsEnabled == 0) return;
  // Limits and scales follow, without the bus.
  store.EventsEnabled = false_flag;
  for (int width = 0; width < 4; ++width) {
    if (OptITime(width).Value) OptITime_Click(width);
  }
  for (int range = 0; range < 4; ++range) {
    if (OptGain(range).Value) OptGain_Click(range);
  }
  store.EventsEnabled = true_flag;
  cmdScale_Click();
}

void MultiFunctionPanel::show_reading_kind(const Operation& operation) {
  if (operation.code == map::power_down) return;
  if (operation.pair) {
    show_reading_words("Prox-IR", "Prox-IR", "Prox-IR", "Prox-IR");
    return;
  }
  Label36.Visible = operation.lux;
  txtADCRaw.Visible = operation.lux;
  if (operation.lux) {
    show_reading_words("Lux Count", "Lux Reading", "Lux", "AD Cnt");
  } else if (operation.proximity) {
    show_reading_words("ADC Count", "ADC Reading", "Prox-IR Cnt", "Prox-IR Cnt");
  } else {
    show_reading_words("ADC Count", "ADC Reading", "IR Cnt", "IR Cnt");
  }
}

// Selects it and runs its handler, a second time when the selection was another one.
void MultiFunctionPanel::choose_scheme(int scheme) {
  OptIRMode(scheme).Value = true;
  OptIRMode_Click(scheme);
}

// Proximity runs under scheme 1. The first revision of the chip wants its test register set for that; the
// register goes out at once, also in a running loop.
void MultiFunctionPanel::choose_scheme_by_revision(int position) {
  TextBox& test_register = txtRegHex(map::test_register);
  const bool proximity = operation_of(position).proximity;
  OptIRMode(scheme_0).Enabled = !proximity;
  OptIRMode(scheme_1).Enabled = proximity;
  if (!proximity) {
    choose_scheme(scheme_0);
    test_register.Text = "00";
    cmdWrtReg_Click(map::test_register);
    return;
  }
  OptIRMode(scheme_1).Value = true;
  if (store.Rev_Sel == "A") test_register.Text = "01";
  if (store.Rev_Sel == "B") test_register.Text = "00";
  cmdWrtReg_Click(map::test_register);
  OptIRMode_Click(scheme_1);
}

void MultiFunctionPanel::OptIRMode_Click(int Index) {
  const bool has_sign = Index == scheme_1;
  set_field(converter_.fields->scheme, Index);
  store.ProxScheme = static_cast<std::int16_t>(Index);
  store.SinglePolarity = flag(!has_sign);
  txtScale.Text = txtScale2.Text = std::to_string(has_sign ? store.FullCount / 2 : store.FullCount);
  txtScaleMin.Text = has_sign ? signed_minimum_text : "0000";
  txtScaleMin2.Text = has_sign ? signed_minimum_text : model_.unsigned_minimum;
  if (!has_sign) scale_right_side();
  limits.lblIlimitsformat(0).Caption = has_sign ? "2s Complement" : "Single Polarity";
  cmdScale_Click();
  if (!deferred({&Store::PendingWriteR1})) cmdSetControl_Click();
}

// --- width and range ---

void MultiFunctionPanel::OptITime_Click(int Index) {
  const Width& width = forms::element(widths, Index);
  set_field(converter_.fields->width, Index);
  store.AdcBits = static_cast<std::int16_t>(width.bits);
  store.FullCount = width.full_count;
  store.SampleDelayMs = static_cast<std::int16_t>(width.sample_delay_ms);
  if (width.words) {
    limits.lblIlimitsformat(1).Caption = width.words;
    const bool has_sign = store.ProxScheme == 1;
    store.LimitMax = has_sign ? width.full_count / 2 : width.full_count;
    store.LimitMin = has_sign ? signed_minimum : 0;
  }
  store.InternalTiming = true_flag;
  choose_reading(false);
  if (store.ProxScheme == 1) store.Label_Right = store.Label_Left;
  limits.show_bounds();
  scale_by_limits();
  if (!deferred({&Store::PendingWriteR0, &Store::PendingWriteR1})) {
    // The read-back isn't of the result, which has these boxes, too.
    for (const int i : {4, 5}) ShpIndrd(i).Visible = false;
    cmdSetCommand_Click();
    cmdSetControl_Click();
    for (const int i : {4, 5}) ShpIndrd(i).Visible = true;
  }
  show_sample_delay();
  txtScale2.Text = std::to_string(store.FullCount);
  scale_right_side();
  if (store.LuxMode != 0) txtScale.Text = std::to_string(selected_range());
  cmdScale_Click();
  if (subtraction) subtraction->Tally_Prox_Offset();
}

void MultiFunctionPanel::scale_by_limits() {
  txtScale.Text = txtScale2.Text = std::to_string(store.LimitMax);
  txtScaleMin.Text = txtScaleMin2.Text = std::to_string(store.LimitMin);
}

void MultiFunctionPanel::scale_by_range() {
  if (store.LuxMode == 0) {
    scale_by_limits();
    return;
  }
  txtScale.Text = forms::CStr(range_lux());
  txtScale2.Text = std::to_string(store.LimitMax);
  txtScaleMin2.Text = std::to_string(store.LimitMin);
}

void MultiFunctionPanel::redraw_chart() {
  DrawGrid(program, Picture1);
  DrawGridLabels2(store, Picture2, Picture1);
}

// --- timing ---

// What a one-shot sample shows. A running loop keeps what it began with.
void MultiFunctionPanel::choose_reading(bool time_base) {
  if (store.Sample_Run != 0) return;
  store.ReadAdc = flag(!time_base);
  store.ReadTimeBase = flag(time_base);
  cmdRead_ADC.Enabled = !time_base;
  cmdReadTB.Enabled = time_base;
}

void MultiFunctionPanel::OptExtTime_Click(int Index) {
  const bool external = Index == 1;
  set_field(converter_.fields->external_timing, external);
  store.ExtTiming = flag(external);
  ChkEOC1(0).Visible = external;
  txtSync1Delay(0).Visible = external;
  OptMeasMode(1).Enabled = external;
  if (!external) {
    OptMeasMode(0).select_quietly();
    OptMeasMode_Click(0);
  }
  store.InternalTiming = flag(!external);
  choose_reading(false);
  show_register(map::operation_register);
  if (!deferred({&Store::PendingWriteR0})) cmdSetCommand_Click();
}

void MultiFunctionPanel::OptMeasMode_Click(int Index) {
  const bool time_base = Index == 1;
  set_field(converter_.fields->time_base, time_base);
  Label3(0).Caption = time_base ? "Time Base" : "ADC";
  OptGraph(0).Caption = time_base ? "TB Count" : "ADC Count";
  store.InternalTiming = flag(!time_base);
  if (time_base) OptMeasMode(1).Enabled = true;
  choose_reading(time_base);
  commit({.pending = {&Store::PendingWriteR0}, .registers = {0}});
}

void MultiFunctionPanel::OptTimeBase_Click() {
  if (stop_running_collection()) restart_collection();
}

// --- emitter and interrupt ---

void MultiFunctionPanel::OptPSrc_Click(int Index) {
  ConverterPanel::OptPSrc_Click(Index);
  if (subtraction) subtraction->Tally_Prox_Offset();
}

void MultiFunctionPanel::OptMFreq_Click(int Index) {
  ConverterPanel::OptMFreq_Click(Index);
  if (subtraction) subtraction->Tally_Prox_Offset();
}

// The position goes where that of the emitter current is: the automatic current steps on from it.
void MultiFunctionPanel::optINTP_Click(int Index) {
  set_field(map::persistence, Index);
  store.IrdrIndex = static_cast<std::int16_t>(Index);
  commit({.pending = {&Store::PendingWriteR1, &Store::PendingWriteR0}, .registers = {1, 0}});
}

}  // namespace varzelin
