// A test over the panel of KVT71385: how a proximity interrupt can tell two cases apart. It waits for the
// interrupt of a near target, records proximity and light, waits for the target to leave, records again, and
// decides by the user's thresholds.
//
// It has no bus code of its own: it works the sensor panel's controls.
#pragma once

#include "bridge/program_form.h"
#include "bridge/run_state.h"

namespace varzelin {

class MultiFunctionPanel;

class frm71385INTR final : public ProgramForm, public Measuring {
 public:
  static constexpr const char* form_name = "frm71385INTR";

  explicit frm71385INTR(Program& owner);

  RunState run_state() const override;

  void Form_Load() override;
  void cmdWriteLimits_Click();
  void cmdSampleII_Click() { sample_pin(); }
  void cmdClearIntr_Click() { clear_interrupt(); }
  void cmdRecordLux_Click(int Index) { record_light(Index); }
  void mcdRecordProx_Click(int Index) { record_proximity(Index); }
  void OptResolution_Click(int Index);
  // Refused, in words, while a loop of a sensor panel runs.
  // Returns when the test has ended: completed, aborted, or because one of both panels was closed. A
  // run-time error ends it as aborted and is reported then.
  void cmdRunCase1_Click();
  void cmdAbort1_Click() { AbortTest = true; }

 private:
  // The sensor panel, loaded on first touch. Null in a test once one of both panels was closed: what is left
  // of the test must not load it again.
  MultiFunctionPanel* sensor_panel();
  bool panels_closed() const;

  // Each says false once a panel was closed, and does nothing then.
  bool sample_pin();
  bool clear_interrupt();
  bool record(int measurement, Label& recorded);
  bool record_light(int Index);
  bool record_proximity(int Index);

  // --- the test; each step says false when it is to end as aborted ---
  bool run_test();
  bool prime_sensor();
  bool wait_for_high_interrupt();
  bool record_at_high();
  bool wait_for_low_interrupt();
  bool clear_high_interrupt();
  bool record_at_low();
  bool decide();
  void decide_by_light();
  bool decide_by_slope();

  void clear_results();
  void begin_test();
  void complete_test();
  void abort_test();
  void hold_session();
  void release_session();
  void show(Shape& shape, double color_index) { shape.FillColor = lamp(color_index); }

  bool AbortTest = false;
  RunState course_;                       // of the last test, but for what shows by itself
  bool mirrors_resolution_ = false;       // from the sensor panel, not to it
  MultiFunctionPanel* driven_ = nullptr;  // by the test that runs

 public:
  Shape ShpAttach{*this, "ShpAttach"};

  Frame Frame1{*this, "Frame1", {.Caption = "Case 1: Setting Threshold"}};
  TextBox txtIHigh{
      *this, "txtIHigh", {.Text = "25000", .ToolTipText = "High Proximity Threshold", .Container = &Frame1}};
  TextBox txtILow{
      *this, "txtILow", {.Text = "1499", .ToolTipText = "Low Proximity Threshold", .Container = &Frame1}};
  Label lblLuxThreshold{*this, "lblLuxThreshold", {.Caption = "ALS Too Low Limit", .Container = &Frame1}};
  TextBox txtLuxThreshold{*this, "txtLuxThreshold", {.Text = "1000", .Container = &Frame1}};
  CommandButton cmdWriteLimits{*this, "cmdWriteLimits", {.Caption = "Write Limits", .Container = &Frame1}};

  Frame Frame2{*this, "Frame2", {.Caption = "Measurements: Register Save Values"}};
  ControlArray<CommandButton> cmdRecordLux{
      *this, "cmdRecordLux",
      forms::captioned({"Record Lux1", "Record Lux2", "Record Lux3"}, {.Container = &Frame2})};
  ControlArray<CommandButton> mcdRecordProx{
      *this, "mcdRecordProx",
      forms::captioned({"Record Prox1", "Record Prox2", "Record Prox3"}, {.Container = &Frame2})};
  ControlArray<Label> lblLux1{*this, "lblLux1",
                              forms::captioned({"000000", "000000", "000000"}, {.Container = &Frame2})};
  ControlArray<Label> Label2{*this, "Label2",
                             forms::captioned({"00000", "00000", "00000"}, {.Container = &Frame2})};

  Frame Frame3{*this, "Frame3", {.Caption = "Interrupt Status"}};
  CommandButton cmdSampleII{*this, "cmdSampleII", {.Caption = "Sample", .Container = &Frame3}};
  CommandButton cmdClearIntr{*this, "cmdClearIntr", {.Caption = "Clear Interrupt", .Container = &Frame3}};
  Shape ShpINTexternal{*this, "ShpINTexternal", {.Container = &Frame3}};

  Frame Frame4{*this, "Frame4", {.Caption = "Resolution / Time Base"}};
  ControlArray<OptionButton> OptResolution{*this, "OptResolution",
                                           forms::captioned({"16 Bit", "12 Bit"}, {.Container = &Frame4})};

  Frame Frame5{*this, "Frame5", {.Caption = "Calculate Case"}};
  CommandButton cmdRunCase1{
      *this,
      "cmdRunCase1",
      {.Caption = "Execute", .ToolTipText = "Click Here to start Interrupt Sequence", .Container = &Frame5}};
  CommandButton cmdAbort1{
      *this,
      "cmdAbort1",
      {.Caption = "Abort", .ToolTipText = "Stops Execution of Interrupt Sequence", .Container = &Frame5}};
  Label lblMessage{*this, "lblMessage", {.Container = &Frame5}};
  // At the high interrupt and at the low one.
  ControlArray<Label> lblRecordedLux{*this, "lblRecordedLux",
                                     forms::captioned({"000000", "000000"}, {.Container = &Frame5})};
  ControlArray<Label> lblProx{*this, "lblProx", forms::captioned({"0000", "0000"}, {.Container = &Frame5})};
  // What was compared, when light decides and when the slope does.
  ControlArray<Label> lblCase21{*this, "lblCase21",
                                forms::captioned({"", "", "", ""}, {.Container = &Frame5})};
  ControlArray<Label> lblCase22_Delta{*this, "lblCase22_Delta",
                                      forms::captioned({"", "", "", ""}, {.Container = &Frame5})};
  ControlArray<Shape> ShpALSCompare;
  ControlArray<Label> lblALSCompare{
      *this, "lblALSCompare",
      forms::captioned({"ALS<X", "ALS>X", "Slope <X", "Slope > X"}, {.Container = &Frame5})};
  // Of the test's steps, and behind them that of each sample of the pin.
  ControlArray<Shape> ShpIndrd;
  ControlArray<Label> lblStep{
      *this, "lblStep",
      forms::captioned({"Wait for High Interrupt, Then Record  ALS @ 0 mm:", "High Interrupt Cleared",
                        "Wait for Low Interrupt, Then Record ALS @ Low Int:", "Received Interrupt Low ",
                        "Case2 Solution 1 Detect (ALS@ 0mm > User Limit)", "Case2 Solution 2 Detect"},
                       {.Container = &Frame5})};

  Frame Frame6{*this, "Frame6", {.Caption = "Case 2 Parameters"}};
  TextBox txtDeltaTime{
      *this,
      "txtDeltaTime",
      {.Text = "400", .ToolTipText = "Case 2, Solution Time Deta Time in mSec.", .Container = &Frame6}};
  TextBox txtDeltaADC{
      *this,
      "txtDeltaADC",
      {.Text = "100", .ToolTipText = "Case 2, Solution2, Delta ALS Change User Input", .Container = &Frame6}};
  TextBox txtCase2Sol1Lux{*this,
                          "txtCase2Sol1Lux",
                          {.Text = "400",
                           .ToolTipText = "Case 2 Solution 1, Minimum ALS reading at High Threshold",
                           .Container = &Frame6}};
};

}  // namespace varzelin
