// The panels of KVT71374 and KVT71376: two registers that are written, one converter for light, infrared and
// proximity, and a filter over proximity minus infrared.
#pragma once

#include "panels/converter/converter_panel.h"
#include "panels/two_mode/filter_block.h"
#include "panels/two_mode/two_mode_model.h"

namespace varzelin {

class TwoModePanel final : public ConverterPanel {
 public:
  TwoModePanel(Program& owner, const TwoModeModel& panel_model);

  // --- registers ---
  void Read_Registers() override;
  void Read_Command_Register();
  void cmdRead_ADC_Click();
  void cmdReadTB_Click();
  // Count and cycles in one exchange. No control starts it.
  void Read_Measurements();
  void txtRegHex_KeyPress(int Index, int& KeyAscii);
  void OptMode_Click(int Index);

  // --- options ---
  void OptMeasure_Click(int Index) override;
  void OptITime_Click(int Index) override;
  void OptExtTime_Click(int Index) override;
  void OptMeasMode_Click(int Index) override;
  void OptIRMode_Click(int Index) override;
  void ChStab_Click();
  void txtScale_Click() override {}

  // --- measuring ---
  // Shows the last trigger's reading, or says that there was no trigger.
  void cmdRead_Click();
  void cmdBatchShow_Click();
  void Record_Triggered_Light_Count() override;
  void Record_Prox_IR();

 protected:
  void finish_load() override;
  void load_model() override;
  void end_heartbeat() override;
  void prepare_sampling() override { txtADHex.Text = ""; }
  void pair_sampled() override { txtADHex.Text = ""; }
  void fetch_sample() override;
  void collection_starts() override;
  // A stop while the session opened is lost.
  void session_held() override { store.Sample_Run = true_flag; }
  Measurement measure() override;
  Measurement pair_result(std::int32_t difference) override;
  std::int32_t signed_row() override;
  void end_pass() override;
  void Trig_KVT7134X() override;
  SignedCount decode(int low, int high) override;
  void show_interval(bool used) override { txtInterval.Enabled = used; }
  void scale_by_range() override;
  void redraw_chart() override;
  void show_layout(bool full) override;
  bool sensor_answered() override;

 private:
  // A pair of registers into their boxes, with their lamps.
  void read_pair(int first_register, int first_lamp);
  void show_results(int first_register, int first_lamp, int count);
  void read_back(int register_number, std::uint8_t value);
  // What the one-shot display shows; a running loop keeps what it began with.
  void choose_reading(bool time_base);
  void show_full_count_scale(bool has_sign);
  void show_reading_kind(const Operation& operation);
  SignedCount triggered_count();
  void store_sample(std::int32_t count);
  // Waits until two pairs in a row differ by little, or the collection stops.
  void wait_for_stability();
  Measurement filtered_measurement();
  std::int32_t difference_of_pair() const { return number_of(txtProx_IR(6)); }

  Measurement unchanged() const {
    return {.value = store.Sample_Value[slot()], .raw = store.RawReading, .reading = store.Reading};
  }

 public:
  Frame Frame12{*this, "Frame12", {.Caption = "Proximity Filter", .Visible = false}};
  FilterBlock filter{program, *this, Frame12};

  Frame FrProxIRStab{*this, "FrProxIRStab", {.Caption = "Prox-IR Stability", .Visible = false}};
  CheckBox ChStab{*this, "ChStab", {.Caption = "Stability Enable"}};
  Label lblStabDif{*this, "lblStabDif", {.Caption = "Difference %", .Visible = false}};
  TextBox txtStabDif{*this, "txtStabDif", {.Text = "5", .Visible = false}};
  Label lblStabDelay{*this, "lblStabDelay", {.Caption = "Delay (mS)", .Visible = false}};
  TextBox txtStabDelay{*this, "txtStabDelay", {.Text = "10", .Visible = false}};

  ControlArray<Label> lblRegister;
  CommandButton cmdRead{*this, "cmdRead", {.Caption = "Read"}};
  CommandButton cmdBatchShow{*this, "cmdBatchShow", {.Caption = "Run Script"}};
};

}  // namespace varzelin
