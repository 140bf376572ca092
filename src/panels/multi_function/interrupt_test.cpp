// The interrupt test's controls and what each does by itself.
#include "panels/multi_function/interrupt_test.h"

#include "panels/multi_function/multi_function_panel.h"

namespace varzelin {
namespace {

// Positions of the sensor panel's OptMeasure.
constexpr int light_continuous = 5;
constexpr int proximity_continuous = 7;

constexpr int comparisons = 4;
constexpr int steps = 6;
constexpr int sample_lamp = 10;  // element of ShpIndrd

forms::Elements step_lamps(Frame& of_steps, Frame& of_status) {
  forms::Elements lamps = forms::elements(steps, [&](int) { return Design{.Container = &of_steps}; });
  lamps.emplace_back(sample_lamp, Design{.Container = &of_status});
  return lamps;
}

}  // namespace

frm71385INTR::frm71385INTR(Program& owner)
    : ProgramForm(owner, form_name, "KVT71385 Interrupt Development"),
      ShpALSCompare(*this, "ShpALSCompare",
                    forms::elements(comparisons, [this](int) { return Design{.Container = &Frame5}; })),
      ShpIndrd(*this, "ShpIndrd", step_lamps(Frame5, Frame3)) {
  on(cmdWriteLimits, Event::Click, &frm71385INTR::cmdWriteLimits_Click);
  on(cmdSampleII, Event::Click, &frm71385INTR::cmdSampleII_Click);
  on(cmdClearIntr, Event::Click, &frm71385INTR::cmdClearIntr_Click);
  on(cmdRecordLux, Event::Click, &frm71385INTR::cmdRecordLux_Click);
  on(mcdRecordProx, Event::Click, &frm71385INTR::mcdRecordProx_Click);
  on(OptResolution, Event::Click, &frm71385INTR::OptResolution_Click);
  on(cmdRunCase1, Event::Click, &frm71385INTR::cmdRunCase1_Click);
  on(cmdAbort1, Event::Click, &frm71385INTR::cmdAbort1_Click);
}

void frm71385INTR::Form_Load() {
  const MultiFunctionPanel& panel = *sensor_panel();
  mirrors_resolution_ = true;
  for (const int width : {0, 1}) {
    if (panel.OptITime(width).Value) OptResolution(width).Value = true;
  }
  mirrors_resolution_ = false;
}

// --- the sensor panel ---

MultiFunctionPanel* frm71385INTR::sensor_panel() {
  if (panels_closed()) return nullptr;
  if (driven_) return driven_;
  return &static_cast<MultiFunctionPanel&>(program.forms.touch(kvt71385_form_name));
}

bool frm71385INTR::panels_closed() const {
  return driven_ && !(driven_->loaded() && loaded());
}

void frm71385INTR::OptResolution_Click(int Index) {
  if (mirrors_resolution_) return;
  MultiFunctionPanel* panel = sensor_panel();
  if (!panel) return;
  panel->OptITime(Index).select_quietly();
  panel->OptITime_Click(Index);
}

void frm71385INTR::cmdWriteLimits_Click() {
  MultiFunctionPanel* panel = sensor_panel();
  if (!panel) return;
  panel->limits.txtIHigh.Text = txtIHigh.Text.get();
  panel->limits.txtILow.Text = txtILow.Text.get();
  panel->limits.cmdWrtILimits_Click();
  panel->limits.cmdReadILimits_Click();
}

bool frm71385INTR::sample_pin() {
  MultiFunctionPanel* panel = sensor_panel();
  if (!panel) return false;
  panel->pin.Sample_PortB();
  panel->pin.show_pin(ShpINTexternal, ShpIndrd(sample_lamp));
  return true;
}

bool frm71385INTR::clear_interrupt() {
  MultiFunctionPanel* panel = sensor_panel();
  if (!panel) return false;
  panel->cmdRead_All_Click();
  return sample_pin();
}

bool frm71385INTR::record_light(int Index) {
  return record(light_continuous, lblLux1(Index));
}

bool frm71385INTR::record_proximity(int Index) {
  return record(proximity_continuous, Label2(Index));
}

// Another measurement than the one before is selected on the way; its result isn't waited for.
bool frm71385INTR::record(int measurement, Label& recorded) {
  MultiFunctionPanel* panel = sensor_panel();
  if (!panel) return false;
  if (!panel->OptMeasure(measurement).Value) panel->choose_measurement(measurement);
  store.Sample_Count = 1;
  const std::int32_t missing_before = panel->missing_replies();
  panel->Record_Triggered_Light_Count();
  if (driven_) {
    ++course_.readings;
    course_.unanswered += panel->missing_replies() != missing_before;
  }
  recorded.Caption = panel->txtADDec.Text.get();
  return true;
}

}  // namespace varzelin
