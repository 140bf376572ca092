// The panel of KVT71338: one command register, and a data pair that holds either the count or a time base.
// The sensor runs from an external resistor, from which the panel works out what a count is in lux.
//
// Lux is shown; the chart and the measurement file hold counts.
#pragma once

#include "panels/common/register_panel.h"
#include "panels/single_channel/calculator_block.h"
#include "panels/single_channel/cycle_reading.h"

namespace varzelin {

class frmKVT71338 final : public RegisterPanel {
 public:
  static constexpr const char* form_name = "frmKVT71338";

  explicit frmKVT71338(Program& owner);

  // --- registers ---
  void cmdSetCommand_Click() { write_register(0); }
  void cmdSetControl_Click();
  void Read_Registers() override;
  void Read_Command_Register();
  void cmdRead_ADC_Click();
  void cmdReadTB_Click();
  void cmdSync_Click();
  void TimerIPol_Timer();

  // --- options ---
  void OptITime_Click(int Index);
  void OptGain_Click(int Index);
  void OptMeasure_Click(int Index);
  void OptMeasQty_Click(int Index);
  void OptPwr_Click(int Index);
  void OptREXT_Click(int Index);
  void OptGraph_Click(int Index);
  void OptMode_Click();
  // The calculator.
  void Frame7_Click();
  // Turns from the short layout to the full one and back.
  void Label13_DblClick();

 protected:
  void load_model() override;
  void load_register_image() override;
  void finish_load() override;
  bool sampling_allowed() override;
  void run_sampling_work() override { run_deferred(sampling_work_); }
  bool collection_allowed() override;
  void take_scale() override;
  void collection_starts() override;
  void collection_connected() override { send_triggers(); }
  Measurement measure() override;
  void run_collection_work() override { run_deferred(collection_work_); }
  void start_next_conversion() override { send_triggers(); }
  std::int32_t measurement_row() override;
  bool auto_scale_possible() const override;
  void choose_auto_scale() override;
  void Trig_KVT7134X() override;
  void Record_Triggered_Light_Count() override;
  bool sensor_answered() override;

 private:
  static constexpr int sync_lamp = 12;  // element of ShpInd

  bool powered() const;
  // Reads the data pair into two boxes, and turns their lamps over.
  void read_data_pair(int first_box, int first_lamp);
  // What a read-back of the command register ends with, once its reply is there.
  void show_command_register();
  // Whether a triggered reading shows the time base, or the count.
  void choose_time_base(bool time_base);
  // Both scale boxes and the value labels, for a range of so many lux.
  void rebuild_scales(double full_scale_lux);
  // What the check boxes say is to be sent before a reading, with its waits.
  void send_triggers();
  void show_layout(bool full);

  // What a loop does of what was asked for meanwhile.
  const std::vector<DeferredWork> sampling_work_;
  const std::vector<DeferredWork> collection_work_;

 public:
  ControlArray<OptionButton> OptMode{
      *this, "OptMode", {{2, Design{.Caption = "Test Comm", .Container = &frmMode}}}};
  ControlArray<CheckBox> ChkExternalTime{
      *this, "ChkExternalTime", {{2, Design{.Caption = "External Time", .Container = &frmTimeBase}}}};

  Frame frmadccontrol{*this, "frmadccontrol", {.Caption = "ADC Control"}};
  Frame frmPower{*this, "frmPower", {.Caption = "Power", .Container = &frmadccontrol}};
  ControlArray<OptionButton> OptPwr{
      *this, "OptPwr",
      forms::captioned_options({"Power Down", "Enable ADC-Core"}, 0, {.Container = &frmPower})};
  Frame frmMeasQty{*this, "frmMeasQty", {.Caption = "Conversion", .Container = &frmadccontrol}};
  ControlArray<OptionButton> OptMeasQty{
      *this, "OptMeasQty",
      forms::captioned_options({"Continuous", "One Shot"}, 1, {.Container = &frmMeasQty})};
  Frame frmMeasure{*this, "frmMeasure", {.Caption = "Measurement", .Container = &frmadccontrol}};
  ControlArray<OptionButton> OptMeasure{
      *this,
      "OptMeasure",
      {{1, Design{.Caption = "Visible Light", .Container = &frmMeasure, .Value = 1}},
       {2, Design{.Caption = "IR Sensing", .Container = &frmMeasure}}}};
  CheckBox ChkOneShot{
      *this, "ChkOneShot", {.Caption = "Xmit One Shot Cmd", .Container = &frmadccontrol, .Visible = false}};
  TextBox txtOneShotDelay{*this,
                          "txtOneShotDelay",
                          {.Text = "5",
                           .ToolTipText = "Wait behind the one shot command (mS)",
                           .Container = &frmadccontrol,
                           .Visible = false}};
  ControlArray<CheckBox> ChkSync{
      *this, "ChkSync",
      forms::captioned({"1st Sync", "2nd Sync"}, {.Container = &frmadccontrol, .Visible = false})};
  ControlArray<TextBox> txtDelaySync{*this, "txtDelaySync", forms::elements(2, [this](int) {
                                       return Design{.Text = "5",
                                                     .ToolTipText = "Wait behind the sync command (mS)",
                                                     .Container = &frmadccontrol,
                                                     .Visible = false};
                                     })};
  CommandButton cmdSync{*this,
                        "cmdSync",
                        {.Caption = "Send Sync",
                         .ToolTipText = "Send Start /Stop Integration to ADC. Used when in External Timing",
                         .Container = &frmadccontrol}};
  Label lblSync{*this, "lblSync", {.Caption = "Sync &&h80"}};

  Frame frItime{*this, "frItime", {.Caption = "Integration Time"}};
  ControlArray<OptionButton> OptITime{
      *this, "OptITime",
      forms::captioned_options({"16", "12", "8", "4", "ADC Value", "Time Base"}, 1, {.Container = &frItime})};
  Frame frGain{*this, "frGain", {.Caption = "Range - LUX Sensitivity Select"}};
  ControlArray<OptionButton> OptGain;

  Frame frmGraphSelect{*this, "frmGraphSelect", {.Caption = "Graph Option Select"}};
  ControlArray<OptionButton> OptGraph{
      *this,
      "OptGraph",
      {{0, Design{.Caption = "ADC Reading", .Container = &frmGraphSelect, .Value = 1}},
       {1, Design{.Caption = "Calculated Lux", .Container = &frmGraphSelect}},
       {2, Design{.Caption = "Time Base Counter", .Container = &frmGraphSelect, .Visible = false}}}};

  Label lblADC_Reading{*this, "lblADC_Reading", {.Caption = "ADC Reading"}};
  TextBox txtADC_Reading{*this, "txtADC_Reading"};
  Label Label28{*this, "Label28", {.Caption = "Calculated Lux"}};
  TextBox txtCaclulated_Lux{*this, "txtCaclulated_Lux"};
  TextBox txtTimeBaseReading{*this, "txtTimeBaseReading", {.Visible = false}};
  Label lblReading{*this, "lblReading", {.Caption = "Graph Reading"}};

  Label lblScale2{*this, "lblScale2", {.Caption = "ADC Scale Max"}};
  TextBox txtScale2{*this, "txtScale2", {.Text = "4095"}};
  Label lblScaleMin2{*this, "lblScaleMin2", {.Caption = "ADC Scale Min"}};
  TextBox txtScaleMin2{*this, "txtScaleMin2", {.Text = "0"}};

  ControlArray<Label> lblRegister{*this,
                                  "lblRegister",
                                  {{0, Design{.Caption = "b000"}},
                                   {4, Design{.Caption = "ADC low"}},
                                   {5, Design{.Caption = "ADC high"}},
                                   {6, Design{.Caption = "T.B. low"}},
                                   {7, Design{.Caption = "T.B. high"}}}};
  CommandButton cmdSetCommand{*this, "cmdSetCommand", {.Caption = "Write Command Register b000"}};
  CommandButton cmdSetControl{*this, "cmdSetControl", {.Caption = "Read Command Register b000"}};
  CommandButton cmdRead_All{*this, "cmdRead_All", {.Caption = "Read Regs b000-011"}};
  CommandButton cmdRead_ADC{*this, "cmdRead_ADC", {.Caption = "Read ADC "}};
  CommandButton cmdReadTB{*this, "cmdReadTB", {.Caption = "Read T.B. Counter"}};
  // For registers and an interrupt that this sensor doesn't have: never shown.
  CommandButton cmdSetIntHigh{
      *this, "cmdSetIntHigh", {.Caption = "Write High Int Limit b010", .Visible = false}};
  CommandButton cmdSetIntLow{
      *this, "cmdSetIntLow", {.Caption = "Write Low Int Limit b011", .Visible = false}};
  CommandButton cmdClearInt{*this, "cmdClearInt", {.Caption = "Clear Int", .Visible = false}};

  CycleReading cycle_reading{program, *this};

  Timer TimerIPol{*this, "TimerIPol", {.Enabled = false, .Interval = 250}};

  CalculatorBlock calculator{program, *this};
};

}  // namespace varzelin
