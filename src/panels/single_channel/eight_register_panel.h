// The panels of the sensors with eight registers, KVT71344, KVT71345 and KVT71356: command, control, two
// interrupt limits, and two pairs that are read, the light count and the integration cycle counter.
//
// Under internal timing the sensor integrates by itself and a reading is the light count. Under external
// timing the host ends each integration, and the ratio of both counts is a light level that doesn't depend
// on how long the host let it integrate.
#pragma once

#include "panels/single_channel/cycle_reading.h"
#include "panels/single_channel/eight_register_model.h"
#include "panels/single_channel/interrupt_limits.h"
#include "panels/single_channel/interrupt_watch.h"

namespace varzelin {

class EightRegisterPanel final : public RegisterPanel {
 public:
  EightRegisterPanel(Program& owner, const EightRegisterModel& panel_model);

  // --- registers ---
  void cmdSetCommand_Click() { write_register(0); }
  void cmdSetControl_Click() { write_register(1); }
  void cmdSetIntHigh_Click() { write_register(2); }
  void cmdSetIntLow_Click() { write_register(3); }
  void cmdRead_All_Click() override;
  void Read_Registers() override;
  void cmdRead_Measurements_Click();
  void cmdSync_Click();
  void txtRegHex_KeyPress(int Index, int& KeyAscii);

  // --- options ---
  void OptMeasure_Click(int Index);
  void OptITime_Click(int Index);
  void OptGain_Click(int Index);
  void OpInt_Click(int Index);
  void ChkCommand_Click(int Index);
  void OptTimeBase_Click(int Index);
  void OptGraph_Click();
  void OptMode_Click(int Index);
  void LstMode2_MouseUp();
  void LstDeviceSel_MouseUp() override;
  void cbReset_Click();

  void cmdEndSampling_Click() override;

 protected:
  void load_register_image() override;
  void finish_load() override;
  bool sampling_allowed() override;
  void sampling_starts() override;
  void sampling_ended() override;
  void sampling_pass_ends() override { cmdRead_Measurements_Click(); }
  void run_sampling_work() override { run_deferred(register_work_); }
  bool collection_allowed() override;
  void collection_starts() override;
  void collection_ended() override { watch.collection_ended(); }
  void begin_pass() override { watch.begin_pass(); }
  Measurement measure() override;
  void run_collection_work() override { run_deferred(register_work_); }
  std::int32_t measurement_row() override;
  void show_measurement() override;
  void Trig_KVT7134X() override;
  void Record_Triggered_Light_Count() override;
  void exchange_for_test() override;
  bool sensor_answered() override;

 private:
  // Light count and cycle count, two bytes each, behind the status.
  static constexpr int results_reply = 5;
  static constexpr int sync_lamp = 12;  // element of ShpInd

  bool in_reset() const;
  bool powered_down() const;
  // Says why no measurement may start; true when one may.
  bool ready_to_measure();
  void choose_timing(bool external);
  void show_two_readings(bool both);
  void follow_reset(bool active);
  void follow_power(bool down);
  // Takes over the largest top byte of a count at a position of OptITime.
  void limit_top_byte(int resolution);

  const EightRegisterModel& model_;
  // What a loop does of what was asked for meanwhile, in this order.
  const std::vector<DeferredWork> register_work_;

 public:
  Frame frmMeasure{*this, "frmMeasure", {.Caption = "Measurement"}};
  ControlArray<OptionButton> OptMeasure;
  Frame frItime{*this, "frItime", {.Caption = "AD Resolution"}};
  ControlArray<OptionButton> OptITime;
  Frame frGain;
  ControlArray<OptionButton> OptGain;
  Frame frControl{*this, "frControl", {.Caption = "Interrupt Control"}};
  ControlArray<OptionButton> OpInt;
  ControlArray<CheckBox> ChkCommand;
  ControlArray<OptionButton> OptMode{
      *this, "OptMode", forms::captioned({"Measure", "Power Down", "Test Comm"}, {.Container = &frmMode})};
  ListBox LstMode2;
  ControlArray<OptionButton> OptTimeBase{
      *this, "OptTimeBase",
      forms::captioned_options({"Internal Time Base", "External Time Base"}, 0, {.Container = &frmTimeBase})};
  Frame frmGraphSelect{*this, "frmGraphSelect", {.Caption = "Graph Option Select"}};
  ControlArray<OptionButton> OptGraph;

  ControlArray<Label> lblRegister;
  CommandButton cmdSetCommand;
  CommandButton cmdSetControl;
  CommandButton cmdSetIntHigh;
  CommandButton cmdSetIntLow;
  CommandButton cmdRead_All;
  CommandButton cmdRead_Measurements;
  CommandButton cmdSync{
      *this,
      "cmdSync",
      {.Caption = "Send EOC", .ToolTipText = "Send Start Integration to ADC. Used when in External Timing"}};
  Label lblSync{*this, "lblSync", {.Caption = "EOC &&h80"}};
  CommandButton cbReset;

  TextBox txtReading3{*this, "txtReading3", {.Visible = false}};
  CycleReading cycle_reading{program, *this};

  InterruptLimits limits{program, *this, model_};
  InterruptWatch watch{program, *this, model_};
};

}  // namespace varzelin
