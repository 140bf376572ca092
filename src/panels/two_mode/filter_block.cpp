#include "panels/two_mode/filter_block.h"

namespace varzelin {
namespace {

// Passes of a collection that only prime the filter.
constexpr std::int32_t priming_passes = 4;
constexpr double percent = 100;

// Elements of lblFilter.
constexpr const char* captions[] = {
    "Low Limit",     "High Limit",    "Max. Delta %", "K Formula",     "IR Threshold", "Fixed Amount",
    "Weight",        "Gross Delta",   "On Threshold", "Off Threshold", "Prox-IR ADJ",  "Max. Change",
    "Delta Rejects", "Base Accepted", "Average ADJ",  "Average Prox",  "Average IR",   "Between"};

}  // namespace

FilterBlock::FilterBlock(Program& owner, RegisterPanel& of_panel, Frame& frame)
    : PanelPart(owner, of_panel),
      lblFilter(
          panel, "lblFilter",
          forms::elements(static_cast<int>(std::size(captions)),
                          [&frame](int i) { return Design{.Caption = captions[i], .Container = &frame}; })),
      txtProxLowLimit(panel, "txtProxLowLimit",
                      {.Text = "5", .ToolTipText = "Minimum Proximity Level", .Container = &frame}),
      txtProxHighLimit(panel, "txtProxHighLimit",
                       {.Text = "4000", .ToolTipText = "Maximum Proximity Level ", .Container = &frame}),
      txtProxDelta(panel, "txtProxDelta",
                   {.Text = "30",
                    .ToolTipText = "Maximum acceptable change in Prox-IR from one reading to the next.",
                    .Container = &frame}),
      txtProxConstant(panel, "txtProxConstant",
                      {.Text = ".200", .ToolTipText = "IR Compensation amount", .Container = &frame}),
      txtCorrectThreshold(panel, "txtCorrectThreshold",
                          {.Text = "100",
                           .ToolTipText = "IR level for calculated vs. Fixed IR Correction",
                           .Container = &frame}),
      txtCorrectionConstant(panel, "txtCorrectionConstant", {.Text = "-50", .Container = &frame}),
      txtProx_Weight(panel, "txtProx_Weight",
                     {.Text = "4",
                      .ToolTipText = "Constant used for Weighted average Calcuations ",
                      .Container = &frame}),
      txtProxGrossDelta(panel, "txtProxGrossDelta", {.Text = "10", .Container = &frame}),
      txtHighThreshold(panel, "txtHighThreshold", {.Text = "3500", .Container = &frame}),
      txtLowThreshold(panel, "txtLowThreshold", {.Text = "1800", .Container = &frame}),
      txtProxADJ(panel, "txtProxADJ", {.Container = &frame}),
      txtMaxChange(panel, "txtMaxChange", {.Container = &frame}),
      lblProxOvercount(panel, "lblProxOvercount", {.Caption = "0", .Container = &frame}),
      txtPROXGross(panel, "txtPROXGross",
                   forms::elements(3, [&frame](int) { return Design{.Container = &frame}; })) {}

ProximityFilterSettings FilterBlock::settings() const {
  const auto value = [](const TextBox& box) { return forms::Val(box.Text); };
  return {.low_limit = value(txtProxLowLimit),
          .high_limit = value(txtProxHighLimit),
          .maximum_delta = value(txtProxDelta) / percent,
          .ir_factor = value(txtProxConstant),
          .fixed_threshold = value(txtCorrectThreshold),
          .fixed_correction = value(txtCorrectionConstant),
          .weight = value(txtProx_Weight),
          .gross_delta = value(txtProxGrossDelta)};
}

ProximityFilterState FilterBlock::state() const {
  return {.ProxAdjPrev = store.ProxAdjPrev,
          .ProxPrev = store.ProxPrev,
          .IrPrev = store.IrPrev,
          .ProxOverCount = store.ProxOverCount,
          .ProxAdjStarted = store.ProxAdjStarted != 0};
}

void FilterBlock::keep(const ProximityFilterState& state) {
  store.ProxAdjPrev = state.ProxAdjPrev;
  store.ProxPrev = state.ProxPrev;
  store.IrPrev = state.IrPrev;
  store.ProxOverCount = state.ProxOverCount;
  store.ProxAdjStarted = flag(state.ProxAdjStarted);
}

void FilterBlock::restart() {
  ProximityFilterState begun = state();
  begun.restart();
  keep(begun);
}

std::optional<std::int32_t> FilterBlock::filtered(const ProximityPair& pair) {
  const ProximityFilterSettings chosen = settings();
  store.ProxVal = pair.ProxVal;
  store.IrVal = pair.IrVal;
  store.ProxDiff = pair.ProxDiff;
  store.ProxReject = false_flag;
  const Correction correction = correct(pair, chosen);
  store.ProxAdj = correction.ProxAdj;
  show(correction.lamps);
  txtProxADJ.Text = forms::Format(store.ProxAdj, "######.");
  if (store.Sample_Count < priming_passes) return std::nullopt;

  DoEvents();
  ProximityFilterState filter = state();
  const Judgement judgement = judge(filter, pair, store.ProxAdj, chosen);
  store.ProxReject = flag(judgement.ProxReject);
  store.TripReading = store.ProxAdj;
  if (judgement.max_change) txtMaxChange.Text = *judgement.max_change;
  if (judgement.over_count_shown) lblProxOvercount.Caption = std::to_string(filter.ProxOverCount);
  show(judgement.lamps);
  keep(filter);

  DoEvents();
  const ProximitySample taken = take(filter, pair, store.ProxAdj, judgement.ProxReject, chosen);
  if (taken.averages) {
    store.ProxAdj = taken.averages->ProxAdj;
    store.ProxVal = taken.averages->ProxVal;
    store.IrVal = taken.averages->IrVal;
    txtPROXGross(0).Text = forms::Format(store.ProxAdj, "######");
    txtPROXGross(1).Text = std::to_string(store.ProxVal);
    txtPROXGross(2).Text = std::to_string(store.IrVal);
  }
  keep(filter);
  return taken.sample;
}

void FilterBlock::show_thresholds(std::int32_t reading) {
  show(threshold_lamps(reading, forms::Val(txtHighThreshold.Text), forms::Val(txtLowThreshold.Text)));
}

void FilterBlock::show(const LampChanges& changes) {
  for (const LampChange& change : changes) {
    Shape& shape = panel.ShpInd(change.lamp);
    switch (change.action) {
      case LampAction::off:
        shape.FillColor = lamp(store.Clr_Black);
        break;
      case LampAction::green:
        shape.FillColor = lamp(store.Clr_LtGreen);
        break;
      case LampAction::red:
        shape.FillColor = lamp(store.Clr_Red);
        break;
      case LampAction::alternate:
        flip_lamp(shape);
        break;
      case LampAction::hide:
        shape.Visible = false;
        break;
      case LampAction::show:
        shape.Visible = true;
        break;
    }
  }
}

}  // namespace varzelin
