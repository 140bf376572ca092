// The options of the KVT71338 panel, its calculator, and the chart's scales that follow both.
#include "panels/single_channel/kvt71338.h"
#include "registers/kvt71338.h"

namespace varzelin {
namespace {

namespace map = registers::kvt71338;

constexpr std::array<std::int32_t, 3> resistors{500000, 250000, 100000};  // ohms, by position of OptREXT

// What goes with a position of OptITime.
struct Integration {
  const char* full_count_text;
  std::int32_t full_count;
  const char* interval;  // milliseconds; null: it stays
};
constexpr std::array<Integration, 6> integrations{{{"65535", 65535, "100"},
                                                   {"4095", 4095, "7"},
                                                   {"255", 255, "2"},
                                                   {"15", 15, "2"},
                                                   {"TB", 65535, nullptr},
                                                   {"TB", 0, nullptr}}};
// From here on the host times the integrations.
constexpr int external_adc = 4;
constexpr int external_time_base = 5;

// Positions of the other options.
constexpr int visible_light = 1;
constexpr int one_shot_conversion = 1;
constexpr int adc_graph = 0;
constexpr int lux_graph = 1;
constexpr int time_base_graph = 2;

std::int32_t whole_number(const TextBox& box) {
  return forms::CLng(forms::Int(forms::Val(box.Text)));
}

}  // namespace

// --- the command register ---

void frmKVT71338::OptITime_Click(int Index) {
  const Integration& chosen = forms::element(integrations, Index);
  const bool external = Index >= external_adc;
  const bool time_base = Index == external_time_base;
  txtTimeBaseReading.Visible = time_base;
  Label16.Visible = time_base;
  set_field(map::integration, Index);
  store.SingleReading = flag(!external);
  ChkExternalTime(2).Value = external;
  for (const int i : {0, 1}) {
    ChkSync(i).Visible = external;
    ChkSync(i).Value = external;
    txtDelaySync(i).Visible = external;
  }
  if (!external || time_base) OptGraph(time_base_graph).Visible = time_base;
  // In a collection the host's timing alone doesn't say what a triggered reading shows.
  if (Index != external_adc || store.Sample_Run == 0) choose_time_base(time_base);
  calculator.txt2N.Text = chosen.full_count_text;
  store.FullCount = chosen.full_count;
  if (chosen.interval) txtInterval.Text = chosen.interval;
  commit({.pending = {&Store::PendingWriteR0}, .registers = {0}});
  Frame7_Click();
  rebuild_scales(forms::element(range_lux, store.RangeIndex));
  cmdScale_Click();
}

void frmKVT71338::choose_time_base(bool time_base) {
  store.ReadTimeBase = flag(time_base);
  store.ReadAdc = flag(!time_base);
  cmdRead_ADC.Enabled = !time_base;
  cmdReadTB.Enabled = time_base;
}

void frmKVT71338::OptGain_Click(int Index) {
  store.RangeIndex = static_cast<std::int16_t>(Index);
  set_field(map::range, Index);
  commit({.pending = {&Store::PendingWriteR1}, .registers = {0}});
  Frame7_Click();
  if (store.LuxMode != 0) txtScale.Text = OptGain(Index).Caption;
  cmdScale_Click();
}

// The caption has the resistor's factor in it already, so here it counts twice.
void frmKVT71338::OptMeasure_Click(int Index) {
  const bool visible = Index == visible_light;
  store.LuxMode = false_flag;
  set_field(map::measurement, !visible);
  commit({.pending = {&Store::PendingWriteR0}, .registers = {0}});
  store.LuxMode = flag(visible);
  txtCaclulated_Lux.Visible = visible;
  Label28.Visible = visible;
  OptGraph(adc_graph).Caption = visible ? "ADC-Visible Light" : "ADC-IR";
  OptGraph(lux_graph).Visible = visible;
  rebuild_scales(forms::Val(OptGain(store.RangeIndex).Caption));
}

void frmKVT71338::OptMeasQty_Click(int Index) {
  const bool one_shot = Index == one_shot_conversion;
  set_field(map::conversion, !one_shot);
  store.OneShotMode = flag(one_shot);
  ChkOneShot.Visible = one_shot;
  ChkOneShot.Value = one_shot;
  txtOneShotDelay.Visible = one_shot;
  if (!one_shot) txtOneShotDelay.Text = "";
  commit({.pending = {&Store::PendingWriteR0, &Store::PendingWriteR1}, .registers = {0}});
}

void frmKVT71338::OptPwr_Click(int Index) {
  set_field(map::power, Index);
  commit({.pending = {&Store::PendingWriteR0}, .registers = {0}});
}

void frmKVT71338::OptMode_Click() {
  toggle_leds();
  test_communications();
  OptMode(2).Value = false;
  DoEvents();
}

// --- the calculator ---

void frmKVT71338::OptREXT_Click(int Index) {
  store.RextOhms = forms::element(resistors, Index);
  calculator.txtREXT.Text = std::to_string(store.RextOhms);
  for (std::size_t range = 0; range < range_lux.size(); ++range) {
    OptGain(static_cast<int>(range)).Caption = range_caption(range, store.RextOhms);
  }
  Frame7_Click();
  OptGain_Click(store.RangeIndex);
}

void frmKVT71338::Frame7_Click() {
  if (store.RextOhms == 0) store.RextOhms = reference_ohms;
  store.FsrLux = forms::CLng(forms::Int(forms::Val(OptGain(store.RangeIndex).Caption)));
  const Calculation calculation = calculate(store.RextOhms, store.FullCount, store.FsrLux);
  calculator.show(calculation);
  store.LuxFactor = calculation.lux_factor.value_or(store.LuxFactor);
}

// --- the chart's scales ---

void frmKVT71338::rebuild_scales(double full_scale_lux) {
  const bool lux = store.LuxMode != 0;
  txtScale2.Text = std::to_string(store.FullCount);
  if (!lux) txtScale.Text = txtScale2.Text;
  store.Scale_Max = whole_number(txtScale2) + 1;
  const std::int32_t step = store.Scale_Max / 10;
  for (std::size_t i = 0; i < store.Label_Right.size(); ++i) {
    store.Label_Right[i] = std::to_string(static_cast<std::int32_t>(i) * step);
  }
  store.Label_Left = store.Label_Right;
  if (lux && store.FullCount != 0) {
    txtScale.Text = forms::CStr(lux_scale(full_scale_lux, store.RextOhms, store.FullCount));
  }
  store.GraphUnit1 = lux ? "Lux" : "AD Cnt";
  store.GraphUnit2 = "AD Cnt";
}

// One less than what a collection takes.
void frmKVT71338::OptGraph_Click(int Index) {
  if (Index == adc_graph) store.Scale_Max = whole_number(txtScale2);
  if (Index == lux_graph) store.Scale_Max = whole_number(txtScale);
  store.I2C_RdCnt = store.SingleReading != 0 ? 2 : 4;
}

bool frmKVT71338::auto_scale_possible() const {
  constexpr std::int32_t too_few = 15;
  constexpr std::int32_t too_high = 70000;
  if (store.Sample_Count <= too_few) return false;
  const std::int32_t last = store.Sample_Value[slot(store.Sample_Count - 1)];
  return last > 0 && last < too_high;
}

void frmKVT71338::choose_auto_scale() {
  txtScale.Text = forms::CStr(store.Reading * 1.15);
  txtScale2.Text = txtScale.Text;
}

}  // namespace varzelin
