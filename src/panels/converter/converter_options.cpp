// The options of the converter: each changes a field, and is written or left to the loop.
#include "panels/converter/converter_panel.h"

namespace varzelin {

// --- the operation ---

const ConverterPanel::Operation& ConverterPanel::operation_of(int position) {
  static constexpr std::array<Operation, 10> operations{
      {{.code = 0, .frame_caption = "No Measurement:Power Down"},
       {.code = 1, .frame_caption = "Read ALS Once ", .lux = true},
       {.code = 2, .frame_caption = "Read IR Once"},
       {.code = 3, .frame_caption = "Read Prox. Once", .proximity = true},
       {.code = 3, .frame_caption = "Read Prox-IR Once", .pair = true},
       {.code = 5, .frame_caption = "ALS Continuous", .lux = true},
       {.code = 6, .frame_caption = "IR Continuous"},
       {.code = 7, .frame_caption = "Prox Continuous", .proximity = true},
       {.code = 3, .frame_caption = "Prox-IR Continuous", .pair = true},
       {.code = 3, .frame_caption = "Prox-IR ADJ Continuous", .pair = true, .filtered = true}}};
  return forms::element(operations, position);
}

void ConverterPanel::choose_measurement(int position) {
  OptionButton& option = OptMeasure(position);
  if (option.Value) {
    OptMeasure_Click(position);
  } else {
    option.Value = true;
  }
}

// The lowest bit goes with the operation: a persistence that stood there loses half.
void ConverterPanel::take_operation(int position) {
  const Operation& operation = operation_of(position);
  store.OneShotMode = true_flag;
  store.RegImage[0] = static_cast<std::uint8_t>(pair_command());
  store.RegImage[0] = converter_.fields->operation.in(store.RegImage[0], operation.code);
  store.LuxMode = flag(operation.lux);
  store.ProxMode = flag(operation.proximity);
  store.ProxIRMode = flag(operation.pair);
}

void ConverterPanel::show_reading_words(const char* graph, const char* reading, const char* left,
                                        const char* right) {
  OptGraph(0).Caption = graph;
  Label16.Caption = reading;
  store.GraphUnit1 = left;
  store.GraphUnit2 = right;
}

void ConverterPanel::show_delay_words() {
  Label9(0).Caption = store.OneShotMode != 0 ? "Delay Command to Sample" : "Delay Between Samples";
}

// --- width and range ---

void ConverterPanel::show_sample_delay() {
  constexpr int margin_ms = 2;
  txtInterval.Text = std::to_string(store.SampleDelayMs + margin_ms);
  txtSampling_Delay.Text = std::to_string(store.SampleDelayMs);
}

double ConverterPanel::range_lux() const {
  return lux_of(store.FullCount + 1.0, selected_range(), store.ResistorScale, store.FullCount);
}

void ConverterPanel::scale_right_side() {
  store.Scale_Max = forms::CLng(forms::Val(txtScale2.Text) + 1);
  const std::int64_t step = forms::CLng(store.Scale_Max / 10.0);
  for (std::size_t i = 0; i < store.Label_Right.size(); ++i) {
    store.Label_Right[i] = std::to_string(static_cast<std::int64_t>(i) * step);
  }
}

void ConverterPanel::OptGain_Click(int Index) {
  set_field(converter_.fields->range, Index);
  store.GainIndex = store.RangeIndex = static_cast<std::int16_t>(Index);
  store.GainMultiplier = static_cast<std::int16_t>(forms::element(converter_.gain_multipliers, Index));
  lblKfactor.Caption = std::to_string(store.GainMultiplier);
  commit({.pending = {&Store::PendingWriteR1, &Store::PendingWriteR0}, .registers = {1, 0}});
  scale_by_range();
  cmdScale_Click();
  redraw_chart();
}

// --- the emitter ---

void ConverterPanel::OptPSrc_Click(int Index) {
  set_field(converter_.fields->current, forms::element(converter_.fields->current_values, Index));
  store.IrdrIndex = static_cast<std::int16_t>(Index);
  commit({.pending = {&Store::PendingWriteR1, &Store::PendingWriteR0}, .registers = {1, 0}});
}

void ConverterPanel::OptMFreq_Click(int Index) {
  set_field(converter_.fields->modulation, forms::element(converter_.fields->modulation_values, Index));
  commit({.pending = {&Store::PendingWriteR1, &Store::PendingWriteR0}, .registers = {1, 0}});
}

// --- what follows by itself ---

void ConverterPanel::OptGainMode_Click(int Index) {
  take_range_mode(&Store::GainAuto, Index, OptIRDRMode(0));
}

void ConverterPanel::OptIRDRMode_Click(int Index) {
  take_range_mode(&Store::IrdrAuto, Index, OptGainMode(0));
}

void ConverterPanel::take_range_mode(Flag Store::*automatic, int Index, OptionButton& other_manual) {
  const bool follows = Index == 1;
  store.*automatic = flag(follows);
  if (follows && converter_.range_modes_exclude) other_manual.Value = true;
  Frame14.Visible = follows;
}

void ConverterPanel::OptGraph_Click() {
  store.I2C_RdCnt = store.SingleReading != 0 ? 2 : 4;
}

}  // namespace varzelin
