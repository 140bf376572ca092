#include "panels/multi_function/cover_workbook.h"

#include <algorithm>
#include <cmath>

#include "panels/multi_function/multi_function_panel.h"

namespace varzelin {
namespace {

constexpr int light_once = 0x20;
constexpr int infrared_once = 0x40;
constexpr int negative_from = 129;
constexpr int light_continuous = 5;  // position of OptMeasure

// Elements of lblCoverRdgs.
constexpr int light_box = 0;
constexpr int infrared_box = 1;
constexpr int root_box = 2;
constexpr int result_box = 3;
constexpr int raw_box = 4;

constexpr const char* over_range = "O-Rnge";

}  // namespace

CoverWorkbook::CoverWorkbook(Program& owner, MultiFunctionPanel& of_panel)
    : PartOf(owner, of_panel),
      ChkCover(panel, "ChkCover", {.Caption = "Cover in place Mode"}),
      Frame12(panel, "Frame12", {.Caption = "Cover in place WorkBook", .Visible = false}),
      cmdALS_IR(panel, "cmdALS_IR", {.Caption = "ALS && IR", .Container = &Frame12}),
      lblCover(panel, "lblCover",
               forms::captioned({"ALS", "IR", "SQRT", "Lux", "Lux Raw"}, {.Container = &Frame12})),
      lblCoverRdgs(
          panel, "lblCoverRdgs",
          {{light_box, {.ToolTipText = "Raw ALS AD Count", .Container = &Frame12}},
           {infrared_box, {.ToolTipText = "Raw IR AD Count", .Container = &Frame12}},
           {root_box, {.ToolTipText = "SQRT (ALS_count/IR_count)", .Container = &Frame12}},
           {result_box,
            {.ToolTipText = "Lux_reading = Lux_raw * 70 * SQRT (ALS_count/IR_count)", .Container = &Frame12}},
           {raw_box, {.ToolTipText = "ALS Count / Gain (1,4,16,64)", .Container = &Frame12}}}),
      lblCoverlimits(
          panel, "lblCoverlimits",
          {{1, {.Caption = "Lux_Rdg = Lux_raw *  XX   * SQRT (ALS Cnt / IR_Cnt)", .Container = &Frame12}}}),
      txtRatio_Limit(
          panel, "txtRatio_Limit",
          {{0, {.Text = "70", .ToolTipText = "User Entry, Factor Constant", .Container = &Frame12}}}) {
  on(ChkCover, Event::Click, &CoverWorkbook::ChkCover_Click);
  on(cmdALS_IR, Event::Click, &CoverWorkbook::cmdALS_IR_Click);
}

// --- the mode ---

void CoverWorkbook::ChkCover_Click() {
  constexpr int yields_for_the_loop = 500;
  panel.cmdCollectData.Enabled = false;
  ChkCover.Enabled = false;
  if (store.Sample_Run != 0) {
    store.Sample_Run = false_flag;
    DoEvents(yields_for_the_loop);
  }
  if (ChkCover.Value == 1) {
    put_cover_on();
  } else {
    take_cover_off();
  }
  ChkCover.Enabled = true;
  panel.cmdCollectData.Enabled = true;
}

// The sensor stays in its light mode; each measurement commands past it.
void CoverWorkbook::put_cover_on() {
  panel.FrmMeasureDetails.Visible = false;
  Frame12.Visible = true;
  panel.clear_modes();
  panel.choose_measurement(light_continuous);
  panel.clear_modes();
  store.CoverMode = true_flag;
  panel.OptGraph(0).Caption = "Calc Lux";
  panel.Label16.Caption = "Calc_Lux";
  panel.Label36.Visible = true;
  panel.txtADCRaw.Visible = true;
  store.GraphUnit1 = store.GraphUnit2 = "Calc Lux";
}

void CoverWorkbook::take_cover_off() {
  panel.frmMeasure.Visible = true;
  panel.FrmMeasureDetails.Visible = true;
  Frame12.Visible = false;
  panel.clear_modes();
  panel.choose_measurement(light_continuous);
}

// --- the measurement ---

void CoverWorkbook::cmdALS_IR_Click() {
  if (store.Sample_Run == 0) cmdALS_IR.Enabled = false;
  struct EnabledAgain {
    ~EnabledAgain() { button.Enabled = true; }
    CommandButton& button;
  } const behind{cmdALS_IR};
  DoEvents();  // before the box, which a loop may fail over again and again
  panel.take_sample_delay();
  const int base = panel.pair_command();
  panel.connect_by_rule();
  MultiFunctionPanel::Bytes light;
  MultiFunctionPanel::Bytes infrared;
  panel.convert(base | light_once, light);
  panel.convert(base | infrared_once, infrared);
  // No root of nothing, no division by it.
  store.CoverIrCount = std::max(1, plain_count(infrared.low, infrared.high).value);
  store.CoverAlsCount = std::max(1, plain_count(light.low, light.high).value);
  const SignedCount with_sign = inverted_magnitude(light.low, light.high, negative_from);
  work_out(store.ProxScheme == 1 && with_sign.sign < 0, with_sign.value);
  panel.disconnect_by_rule();
}

void CoverWorkbook::work_out(bool is_negative, std::int32_t signed_light) {
  store.LuxRaw =
      forms::CLng(lux_of(store.CoverAlsCount, panel.selected_range(), store.ResistorScale, store.FullCount));
  store.ReadingSign = is_negative ? -1 : 1;
  std::int32_t shown = store.LuxRaw == 0 ? 1 : store.LuxRaw;
  if (is_negative) shown = signed_light;
  const bool light_fits = shown < store.FullCount - 1;
  lblCoverRdgs(light_box).Caption = light_fits ? std::to_string(shown) : over_range;
  panel.ShpOVRange(0).FillColor = lamp(light_fits ? store.Clr_LtGreen : store.Clr_Red);
  lblCoverRdgs(infrared_box).Caption = std::to_string(store.CoverIrCount);

  const double factor = forms::Val(txtRatio_Limit(0).Text);
  const double root = std::sqrt(static_cast<double>(store.CoverAlsCount) / store.CoverIrCount);
  store.LuxCover = store.LuxRaw * factor * root;
  lblCoverRdgs(raw_box).Caption = std::to_string(store.LuxRaw);
  lblCoverRdgs(root_box).Caption = forms::Format(root, "###.000");
  // It is the infrared that says so, not the result, which keeps its last text.
  if (store.CoverIrCount < store.FullCount - 1) {
    lblCoverRdgs(result_box).Caption = forms::Format(store.LuxCover, "######");
  } else {
    lblCoverRdgs(infrared_box).Caption = over_range;
  }
}

}  // namespace varzelin
