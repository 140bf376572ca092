// What follows the readings by itself: the range or the emitter current, and the chart's scale.
#include "panels/converter/converter_panel.h"
#include "waveform/trace.h"

namespace varzelin {

// So many readings past a limit are borne, in a row or not; the next one switches.
constexpr int borne_readings = 5;
constexpr int last_position = 3;

struct ConverterPanel::Trip {
  std::int16_t Store::*count;
  int step;  // of both positions
  int end;   // position that has none behind it
  const char* words;
};

void ConverterPanel::end_pass() {
  if (store.Reading > store.PeakReading) store.PeakReading = store.Reading;
  if (store.GainAuto != 0 || store.IrdrAuto != 0) follow_range();
  if (chkAutoAuto.Value == 1) follow_scale();
}

// In lux the reading is held against counts all the same.
void ConverterPanel::follow_range() {
  static constexpr Trip under{&Store::UnderCount, -1, 0, "Under Range Detected.. Sensitivity set to:"};
  static constexpr Trip over{&Store::OverCount, 1, last_position,
                             "Over Range Detected... Sensitivity set to :"};
  if (store.ProxIRMode != 0) store.TripReading = forms::Val(txtProx_IR(4).Text);
  const auto limit = [this](int box) { return store.FullCount * forms::Val(txtGainTrip(box).Text); };
  forms::resume_next([&] { check_trip(under, limit(1) > store.TripReading); });
  forms::resume_next([&] { check_trip(over, limit(0) < store.TripReading); });
  store.RangeChanged = false_flag;
  if (lblRange.Visible) DoEvents();
}

void ConverterPanel::check_trip(const Trip& trip, bool beyond) {
  if (!beyond) return;
  if (++(store.*trip.count) <= borne_readings) return;
  store.OverCount = store.UnderCount = 0;
  const auto next_to = [&trip](std::int16_t position, std::int16_t& target) {
    if (position != trip.end) target = static_cast<std::int16_t>(position + trip.step);
  };
  next_to(store.GainIndex, store.GainTarget);
  next_to(store.IrdrIndex, store.IrdrTarget);
  store.RangeChanged = true_flag;
  DoEvents();
  leave_if_overtaken();
  if (store.GainAuto != 0) OptGain(store.GainTarget).Value = true;
  if (store.IrdrAuto != 0) OptPSrc(store.IrdrTarget).Value = true;
  DoEvents();
  leave_if_overtaken();
  if (store.GainAuto != 0 || store.IrdrAuto != 0) show_switch(trip.words);
}

// Also at the end of the table, where nothing was switched. The readings of a settling emitter are dropped.
void ConverterPanel::show_switch(const char* words) {
  constexpr int dropped_pairs = 3;
  lblRange.Caption = words + forms::Str(store.GainMultiplier);
  lblRange.Visible = true;
  forms::resume_next([this] { cmdSetCommand_Click(); });
  forms::resume_next([this] { cmdSetControl_Click(); });
  for (int i = 0; i < dropped_pairs; ++i) forms::resume_next([this] { cmdProx_IR_Click(); });
  toggle_trace_colour(store);
}

void ConverterPanel::follow_scale() {
  constexpr double headroom = 1.15;
  constexpr double wide = 0.1;
  constexpr std::int32_t least = 10;
  forms::resume_next([this] {
    if (store.PeakReading * headroom > forms::Val(txtScale.Text)) rescale_by_peak();
  });
  forms::resume_next([this] {
    if (store.Reading > least && forms::Val(txtScale.Text) * wide > store.PeakReading) rescale_by_peak();
  });
}

void ConverterPanel::rescale_by_peak() {
  const std::int32_t reading = store.Reading;
  store.Reading = forms::CLng(store.PeakReading);
  forms::resume_next([this] { cmdAutoScale_Click(); });
  store.Reading = reading;
  leave_if_overtaken();
  DoEvents();
}

}  // namespace varzelin
