// The options of the two-mode panels, and the scales that follow them.
#include "panels/two_mode/two_mode_panel.h"
#include "registers/kvt71374.h"
#include "waveform/trace.h"

namespace varzelin {
namespace {

namespace map = registers::kvt71374;

struct Width {
  int bits;
  std::int32_t full_count;  // powers of two where the width is below a byte's
  int sample_delay_ms;
};
constexpr std::array<Width, 4> widths{{{16, 65535, 118}, {12, 4095, 8}, {8, 256, 2}, {4, 16, 2}}};

constexpr int filtered_position = 9;
constexpr std::int32_t scheme_scale = 25000;
constexpr const char* scheme_scale_text = "25000";

}  // namespace

// --- the operation ---

void TwoModePanel::OptMeasure_Click(int Index) {
  const Operation& operation = operation_of(Index);
  store.Scale_Min = 0;
  take_operation(Index);
  store.ProxAdjMode = flag(operation.filtered);
  FrProxIRStab.Visible = false;
  Frame14.Visible = false;
  show_reading_kind(operation);
  Frame10.Visible = operation.pair;
  Frame9.Visible = operation.pair && store.LayoutCompact == 0;
  Frame3.Caption = operation.frame_caption;
  store.OneShotMode = flag(Index < first_continuous);
  Frame12.Visible = Index == filtered_position;
  show_full_count_scale(store.ProxScheme == 1 && (operation.proximity || operation.pair));
  txtScale2.Text = std::to_string(store.FullCount);
  scale_right_side();
  scale_by_range();
  cmdScale_Click();
  show_register(map::operation_register);
  commit({.pending = {&Store::PendingWriteR0}, .registers = {0}});
  show_delay_words();
}

void TwoModePanel::show_reading_kind(const Operation& operation) {
  Label36.Visible = operation.lux;
  txtADCRaw.Visible = operation.lux;
  if (operation.lux) {
    show_reading_words("Lux Count", "Lux Reading", "Lux", "AD Cnt");
  } else if (operation.filtered) {
    show_reading_words("Prox-IR-ADJ", "Prox-IR-ADJ", "Prox-IR", "Prox-IR");
  } else if (operation.pair) {
    show_reading_words("Prox-IR", "Prox-IR", "Prox-IR", "Prox-IR");
  } else {
    show_reading_words("ADC Count", "ADC Reading", "AD Cnt", "AD Cnt");
  }
}

void TwoModePanel::show_full_count_scale(bool has_sign) {
  const std::string full = std::to_string(store.FullCount);
  if (has_sign) store.RegImage[map::operation_register] |= map::scheme.mask();
  txtScale.Text = full;
  txtScaleMin.Text = has_sign ? "-" + full : "0000";
  store.Scale_Min = has_sign ? -store.FullCount : 0;
  store.Scale_Max = store.FullCount;
}

void TwoModePanel::OptIRMode_Click(int Index) {
  const bool has_sign = Index == 1;
  store.ProxScheme = static_cast<std::int16_t>(Index);
  txtScale.Text = scheme_scale_text;
  txtScaleMin.Text = has_sign ? std::string("-") + scheme_scale_text : "0000";
  store.Scale_Min = has_sign ? -scheme_scale : 0;
  store.Scale_Max = scheme_scale;
  cmdScale_Click();
  set_field(map::scheme, Index);
  commit({.pending = {&Store::PendingWriteR0}, .registers = {0}});
}

// --- width and range ---

void TwoModePanel::OptITime_Click(int Index) {
  const Width& width = forms::element(widths, Index);
  OptExtTime(0).select_quietly();
  OptExtTime_Click(0);
  set_field(map::width, Index);
  store.AdcBits = static_cast<std::int16_t>(width.bits);
  store.FullCount = width.full_count;
  store.SampleDelayMs = static_cast<std::int16_t>(width.sample_delay_ms);
  store.SingleReading = true_flag;
  choose_reading(false);
  commit({.pending = {&Store::PendingWriteR0, &Store::PendingWriteR1}, .registers = {0, 1}});
  show_sample_delay();
  txtScale2.Text = std::to_string(store.FullCount);
  scale_right_side();
  scale_by_range();
  cmdScale_Click();
}

void TwoModePanel::scale_by_range() {
  txtScale.Text = store.LuxMode != 0 ? forms::CStr(range_lux()) : std::to_string(store.FullCount);
}

void TwoModePanel::redraw_chart() {
  cmdWaveformINit_Click();
}

// --- timing ---

void TwoModePanel::choose_reading(bool time_base) {
  if (store.Sample_Run != 0) return;
  store.ReadAdc = flag(!time_base);
  store.ReadTimeBase = flag(time_base);
  cmdReadTB_Click();
}

void TwoModePanel::OptExtTime_Click(int Index) {
  const bool external = Index == 1;
  set_field(map::external_timing, external);
  store.ExtTiming = flag(external);
  for (int step = 0; step < converter_.syncs; ++step) {
    ChkEOC1(step).Visible = external;
    txtSync1Delay(step).Visible = external;
  }
  if (!external) {
    OptMeasMode(0).select_quietly();
    OptMeasMode_Click(0);
  }
  store.SingleReading = flag(!external);
  commit({.pending = {&Store::PendingWriteR0}, .registers = {0}});
}

void TwoModePanel::OptMeasMode_Click(int Index) {
  const bool time_base = Index == 1;
  set_field(map::time_base, time_base);
  Label3(0).Caption = time_base ? "Time Base" : "ADC";
  OptGraph(0).Caption = time_base ? "TB Count" : "ADC Count";
  store.SingleReading = flag(!time_base);
  choose_reading(time_base);
  commit({.pending = {&Store::PendingWriteR0}, .registers = {0}});
}

void TwoModePanel::ChStab_Click() {
  const bool enabled = ChStab.Value == 1;
  for (forms::Control* setting :
       std::initializer_list<forms::Control*>{&lblStabDif, &txtStabDif, &lblStabDelay, &txtStabDelay}) {
    setting->Visible = enabled;
  }
}

}  // namespace varzelin
