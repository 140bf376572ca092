// What the panels over a sensor with one converter share: the options of the converter, external timing,
// readings in lux or with a sign, proximity minus infrared as a pair of conversions, the range that follows
// the readings, and the scale that does.
//
// In the real-time loop a run-time error ends a statement, not the loop.
#pragma once

#include "panels/common/register_panel.h"
#include "panels/converter/arithmetic.h"
#include "panels/converter/converter_model.h"

namespace varzelin {

class ConverterPanel : public RegisterPanel {
 public:
  // The frame, which may still be to be constructed, is that of the model's framed lamps.
  ConverterPanel(Program& owner, const ConverterModel& converter_model, Frame* lamp_frame = nullptr);

  // --- registers ---
  virtual void cmdSetCommand_Click() { write_register(0); }
  virtual void cmdSetControl_Click() { write_register(1); }
  void cmdSync_Click();
  // Nothing looks at what comes, and nothing enables the timer.
  void TimerIPol_Timer();

  // --- options ---
  virtual void OptMeasure_Click(int Index) = 0;
  virtual void OptITime_Click(int Index) = 0;
  virtual void OptExtTime_Click(int Index) = 0;
  virtual void OptMeasMode_Click(int Index) = 0;
  virtual void OptIRMode_Click(int Index) = 0;
  void OptGain_Click(int Index);
  virtual void OptPSrc_Click(int Index);
  virtual void OptMFreq_Click(int Index);
  void OptGainMode_Click(int Index);
  void OptIRDRMode_Click(int Index);
  void OptGraph_Click();
  void LstDeviceSel_MouseUp() override;
  // Turns from the short layout to the full one and back.
  void Label13_DblClick();

  // Selects a measurement, and runs its handler though it was selected already. Raises no_such_element.
  void choose_measurement(int position);

  // One conversion of proximity and one of infrared.
  void cmdProx_IR_Click();

 protected:
  // The operations and what goes with them, by position of OptMeasure.
  struct Operation {
    int code;
    const char* frame_caption;
    bool lux = false;
    bool proximity = false;
    bool pair = false;  // proximity minus infrared, one conversion each
    bool filtered = false;
  };
  static const Operation& operation_of(int position);
  // Positions from here on convert continuously.
  static constexpr int first_continuous = 5;

  // --- steps of the families' option handlers ---

  // The image and the mode's flags.
  void take_operation(int position);
  // OneShotMode, and what the delay box is then.
  void show_delay_words();
  // SampleDelayMs, and the interval that goes with it.
  void show_sample_delay();
  std::int32_t selected_range() const {  // full scale, lux
    return forms::element(store.RangeLux, store.RangeIndex);
  }
  double range_lux() const;  // the same, as the resistor has it
  // Scale_Max from its box, and the labels at the right in tenths of it.
  void scale_right_side();
  // Behind a change of range.
  virtual void scale_by_range() = 0;
  virtual void redraw_chart() = 0;
  virtual void show_layout(bool full) = 0;

  // What the chart and the reading show, and the headings of the chart's scales.
  void show_reading_words(const char* graph, const char* reading, const char* left, const char* right);

  // --- registers ---
  // The end of the load: the sensor gets this width and the emitter its setting, the layout is the short one.
  void set_sensor_at_load(int width);
  void load_register_image() override;
  void load_model() override;
  // Fetches so many registers; the reply may be longer than they are.
  void fetch(int count, int first_register, int reply_size) {
    exchange({count, store.I2C_RdAdr, first_register}, reply_size, sensor_route());
  }
  void toggle_led_enables();
  bool without_measurement() const;

  // --- the loops ---
  void end_heartbeat() override {}
  std::int32_t pace_of_text() const override;
  bool sampling_allowed() override;
  // Of the panel, before a timed run; and behind each of its pairs.
  virtual void prepare_sampling() = 0;
  virtual void pair_sampled() = 0;
  void start_sample() override;
  void fetch_last_trigger() override {}
  void run_sampling_work() override;
  bool collection_allowed() override;
  void take_scale() override {}
  void collection_starts() override;
  void collection_connected() override;
  void begin_pass() override;
  bool paced() const override { return store.OneShotMode == 0; }
  Measurement measure() override;
  void run_collection_work() override;
  std::int32_t measurement_row() override;
  virtual std::int32_t signed_row() = 0;
  void end_pass() override;
  std::int32_t auto_scale_minimum() const override;

  // A reply's bytes as a count, in the present mode.
  virtual SignedCount decode(int low, int high) = 0;
  // Whether readings have a sign.
  bool signed_readings() const { return store.ProxMode != 0 && store.ProxScheme == 1; }
  // R1 was written in the loop.
  virtual void control_written() {}
  // A collection begins: the interval says nothing where each pair takes its own time.
  virtual void show_interval(bool used) = 0;

  Measurement plain_measurement();
  // Out of range it is the reading before.
  Measurement pair_measurement(std::int32_t reading_before);
  // What the difference of a pair brings.
  virtual Measurement pair_result(std::int32_t difference);
  std::int32_t reading_of(std::int32_t count) const;
  // The difference of the last pair; none when one of both was out of range.
  std::optional<std::int32_t> pair_difference() const;

  // A conversion commanded past the image, and its reply fetched after SampleDelayMs.
  struct Bytes {
    int low = 0;
    int high = 0;
  };
  std::int32_t collection_span_ = 0;  // of the scale, as the collection began
  Bytes last_result_;                 // of whatever was measured last
  // False when a transfer failed and the family's rule is to stop then.
  bool convert(int command, Bytes& result);
  bool write_between_yields(int command);
  bool fetch_converted(Bytes& result);
  // What every conversion of a pair has of the command register.
  int pair_command() const;
  void take_sample_delay();
  bool stopped_by_failure() const { return converter_.pair.stops_at_failure && store.Usb_Status != 0; }

  static std::int32_t number_of(const TextBox& box) { return forms::CLng(forms::Val(box.Text)); }

  const ConverterModel& converter_;

 private:
  // What takes the range up or down.
  struct Trip;

  void set_up_collection();
  bool syncs(int step) const;  // under external timing, the step's box is ticked
  void measure_pair();
  void show_pair(const Bytes& proximity, const Bytes& infrared);
  void show_over_range(int lamp_number, std::int32_t count);
  void follow_range();
  void check_trip(const Trip& trip, bool beyond);
  void show_switch(const char* words);
  void follow_scale();
  void rescale_by_peak();
  void take_range_mode(Flag Store::*automatic, int Index, OptionButton& other_manual);

  bool set_up_waits_ = false;  // for the bus, which a pass has
  const std::vector<DeferredWork> sampling_work_;
  const std::vector<DeferredWork> collection_work_;

 public:
  // --- operation ---
  Frame frmMeasure{*this, "frmMeasure", {.Caption = "Operation"}};
  ControlArray<OptionButton> OptMeasure;
  Frame Frame3{*this, "Frame3", {.Caption = "No Measurement:Power Down"}};
  ControlArray<Label> Label3{*this, "Label3", forms::captioned({"ADC"}, {.Container = &Frame3})};

  // --- the converter ---
  Frame frmadccontrol{*this, "frmadccontrol", {.Caption = "A/D Control"}};
  Frame frItime{*this, "frItime", {.Caption = "Integration Time", .Container = &frmadccontrol}};
  ControlArray<OptionButton> OptITime{*this, "OptITime",
                                      forms::captioned({"16", "12", "8 ", "4"}, {.Container = &frItime})};
  Label lblBits{*this, "lblBits", {.Caption = "N-bit A/D Converter", .Container = &frItime}};
  Frame frGain;
  ControlArray<OptionButton> OptGain;
  Frame Frame11{*this, "Frame11", {.Caption = "K Factor"}};
  Label lblKfactor{*this, "lblKfactor", {.Caption = "1", .Container = &Frame11}};
  Frame Frame4{*this, "Frame4", {.Caption = "Measurement Select"}};
  ControlArray<OptionButton> OptMeasMode{
      *this, "OptMeasMode", forms::captioned_options({"ADC", "Time Base"}, 0, {.Container = &Frame4})};
  Frame Frame5{*this, "Frame5", {.Caption = "Timing Internal - External Sync"}};
  ControlArray<OptionButton> OptExtTime{
      *this, "OptExtTime", forms::captioned_options({"Internal", "External"}, 0, {.Container = &Frame5})};
  ControlArray<CheckBox> ChkEOC1;
  ControlArray<TextBox> txtSync1Delay;
  Label lblSync{*this, "lblSync", {.Caption = "Sync &&h80", .Container = &Frame5}};
  CommandButton cmdSync{*this, "cmdSync", {.Caption = "Send Sync", .Container = &Frame5}};

  // --- the emitter ---
  Frame Frame1{*this, "Frame1", {.Caption = "Proximity"}};
  Frame Frame6{*this, "Frame6", {.Caption = "IRDR Pin Source Current", .Container = &Frame1}};
  ControlArray<OptionButton> OptPSrc{
      *this, "OptPSrc", forms::captioned({"100mA", "50mA", "25mA", "12.5mA"}, {.Container = &Frame6})};
  Frame Frame7{*this, "Frame7", {.Caption = "IR Modulation Frequency kHz", .Container = &Frame1}};
  ControlArray<OptionButton> OptMFreq;
  Frame Frame8{*this, "Frame8", {.Caption = "Proximity Sensing", .Container = &Frame1}};
  ControlArray<OptionButton> OptIRMode{
      *this, "OptIRMode", forms::captioned_options({"Scheme0", "Scheme1"}, 0, {.Container = &Frame8})};

  // --- proximity minus infrared ---
  Frame Frame10{*this, "Frame10", {.Caption = "Proximity and IR", .Visible = false}};
  Frame Frame9{*this, "Frame9", {.Caption = "Proximity and IR Bytes", .Visible = false}};
  ControlArray<Label> lblProx_IR;
  ControlArray<TextBox> txtProx_IR;
  Label lblOVRange{*this, "lblOVRange", {.Caption = "Over Range   V", .Container = &Frame10}};
  ControlArray<Shape> ShpOVRange{*this, "ShpOVRange",
                                 forms::elements(2, [this](int) { return Design{.Container = &Frame10}; })};
  CommandButton cmdProx_IR{*this, "cmdProx_IR", {.Caption = "Prox-IR"}};

  // --- what follows by itself ---
  Frame frmGainMode{*this, "frmGainMode", {.Caption = "Gain Mode"}};
  ControlArray<OptionButton> OptGainMode{
      *this, "OptGainMode", forms::captioned_options({"Manual", "Auto"}, 0, {.Container = &frmGainMode})};
  Frame frmIRDRMode{*this, "frmIRDRMode", {.Caption = "IRDR"}};
  ControlArray<OptionButton> OptIRDRMode{
      *this, "OptIRDRMode", forms::captioned_options({"Manual", "Auto"}, 0, {.Container = &frmIRDRMode})};
  Frame Frame14{*this, "Frame14", {.Caption = "Auto-Gain Switch%", .Visible = false}};
  ControlArray<Label> lblGainTrip{*this, "lblGainTrip",
                                  forms::captioned({"UpGain%", "DnGain%"}, {.Container = &Frame14})};
  ControlArray<TextBox> txtGainTrip{
      *this,
      "txtGainTrip",
      {{0, Design{.Text = ".90", .Container = &Frame14}}, {1, Design{.Text = ".20", .Container = &Frame14}}}};
  Label lblRange{*this, "lblRange", {.Caption = "Range Change", .Visible = false}};
  CheckBox chkAutoAuto{*this, "chkAutoAuto", {.Caption = "Auto-Auto"}};

  // --- readings and scales ---
  ControlArray<Label> Label9{*this, "Label9", forms::captioned({"Delay Command to Sample"})};
  TextBox txtSampling_Delay{*this, "txtSampling_Delay"};
  Label Label36{*this, "Label36", {.Caption = "AD Count"}};
  TextBox txtADCRaw{*this, "txtADCRaw"};
  TextBox txtReading3{*this, "txtReading3"};
  ControlArray<OptionButton> OptGraph{*this, "OptGraph", forms::captioned_options({"ADC Count"}, 0)};
  Label lblScale2{*this, "lblScale2", {.Caption = "Scale Max Right"}};
  TextBox txtScale2{*this, "txtScale2"};
  Label lblScaleMin2{*this, "lblScaleMin2", {.Caption = "Scale Min Right"}};
  TextBox txtScaleMin2{*this, "txtScaleMin2", {.Text = "0"}};

  // --- registers ---
  ControlArray<OptionButton> OptMode;
  Frame Frame2{*this, "Frame2", {.Caption = "Register Commands"}};
  CommandButton cmdSetCommand;
  CommandButton cmdSetControl;
  CommandButton cmdRead_All{*this, "cmdRead_All", {.Caption = "Read Regs b000-01", .Container = &Frame2}};
  CommandButton cmdRead_ADC{*this, "cmdRead_ADC", {.Caption = "Read ADC ", .Container = &Frame2}};
  CommandButton cmdReadTB{*this, "cmdReadTB", {.Caption = "Read T.B.", .Container = &Frame2}};

  Timer TimerIPol{*this, "TimerIPol", {.Enabled = false, .Interval = 250}};
};

}  // namespace varzelin
