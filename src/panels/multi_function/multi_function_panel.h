// The panels of KVT71385, KVT71388, KVT71390 and KVT71392: nine registers, light in lux, infrared,
// proximity, interrupt limits.
//
// A write takes its byte from the register's box, an option puts it there. What an option changes while a
// collection runs waits for the loop, all but the test register, which goes out at once.
#pragma once

#include "panels/converter/converter_panel.h"
#include "panels/multi_function/cover_workbook.h"
#include "panels/multi_function/interrupt_pin.h"
#include "panels/multi_function/limit_registers.h"
#include "panels/multi_function/multi_function_model.h"
#include "panels/multi_function/proximity_subtraction.h"
#include "panels/multi_function/reading_history.h"

namespace varzelin {

class MultiFunctionPanel final : public ConverterPanel {
 public:
  MultiFunctionPanel(Program& owner, const MultiFunctionModel& panel_model);

  // --- registers ---
  void Read_Registers() override;
  void Read_Command_Register();
  void cmdRDReg_Click(int Index);
  void cmdWrtReg_Click(int Index);
  void cmdRead_ADC_Click();
  void cmdReadTB_Click();
  void txtRegHex_KeyPress(int Index, int& KeyAscii);
  void txtRegHex_LostFocus(int Index);
  void OptMode_Click();

  // --- options ---
  void OptMeasure_Click(int Index) override;
  void OptMeasure_GotFocus();
  void OptITime_Click(int Index) override;
  void OptExtTime_Click(int Index) override;
  void OptMeasMode_Click(int Index) override;
  void OptIRMode_Click(int Index) override;
  void OptPSrc_Click(int Index) override;
  void OptMFreq_Click(int Index) override;
  void optINTP_Click(int Index);
  void OptTimeBase_Click();

  // The interrupt test, where there is one. Hidden in both layouts.
  void cmdIntr1_Click();

  // One reading of each, which no control asks for; the one of the timed loop is public for the interrupt
  // test.
  void Record_Prox_IR();
  void Record_Triggered_Light_Count() override;

  // --- for the parts ---
  using ConverterPanel::Bytes;
  using ConverterPanel::convert;
  using ConverterPanel::pair_command;
  using ConverterPanel::selected_range;
  using ConverterPanel::take_sample_delay;
  // Reads one register with its display; the byte.
  int read_register(int register_number);
  void clear_modes();

 protected:
  void load_model() override;
  void finish_load() override;
  void prepare_sampling() override;
  void pair_sampled() override { cmdProx_IR.Visible = false; }
  void fetch_sample() override;
  void sampling_pass_ends() override;
  void collection_starts() override;
  void collection_ended() override;
  Measurement measure() override;
  Measurement pair_result(std::int32_t difference) override;
  void run_collection_work() override;
  void control_written() override { history.forget_extremes(); }
  std::int32_t signed_row() override;
  void end_pass() override;
  void Trig_KVT7134X() override;
  SignedCount decode(int low, int high) override;
  SignedCount decode_proximity(int low, int high);
  void show_interval(bool used) override { txtInterval.Visible = used; }
  void scale_by_range() override;
  void redraw_chart() override;
  void show_layout(bool full) override;
  Shape& write_lamp(int register_number) override { return ShpIndwr(register_number); }
  bool sensor_answered() override { return store.BridgeStatus >= 1; }

 private:
  Measurement cover_measurement();
  void show_reading_kind(const Operation& operation);
  void choose_scheme(int scheme);
  void choose_scheme_by_revision(int position);
  void choose_reading(bool time_base);
  void scale_by_limits();
  // A register in its box, with its lamps.
  void show_read(int register_number, std::uint8_t value);
  void read_results(int first_box);
  void store_sample(SignedCount count);

  const MultiFunctionModel& model_;

 public:
  ControlArray<CommandButton> cmdRDReg;
  ControlArray<CommandButton> cmdWrtReg;
  ControlArray<Shape> ShpIndrd;
  ControlArray<Shape> ShpIndwr;
  // The registers' numbers and names, in columns.
  ControlArray<Label> lblRegister;
  ControlArray<OptionButton> OptTimeBase{
      *this, "OptTimeBase", forms::captioned_options({"Int", "Ext"}, 0, {.Container = &frmTimeBase})};
  CommandButton cmdIntr1{*this, "cmdIntr1", {.Caption = "Interrupt Batch", .Visible = false}};

  Frame FrmMeasureDetails{*this, "FrmMeasureDetails", {.Caption = "Measurement Details"}};
  ReadingHistory history{program, *this, FrmMeasureDetails};

  Frame fraINT{*this, "fraINT", {.Caption = "Interrupt Persistance"}};
  ControlArray<OptionButton> optINTP{
      *this, "optINTP", forms::captioned_options({"1", "4", "8", "16"}, 0, {.Container = &fraINT})};
  LimitRegisters limits{program, *this, fraINT};
  InterruptPin pin{program, *this, fraINT};
  CommandButton cmdSampleIIIntr{
      *this,
      "cmdSampleIIIntr",
      {.Caption = "Read / Clear I-Status",
       .ToolTipText =
           "Reads Register 0 and checks bit 2 for Interrupt Status. Click twice to verify Interrupt Clear",
       .Container = &fraINT}};
  Shape ShpINt{*this, "ShpINt", {.Container = &fraINT}};
  Label lblINt{*this, "lblINt", {.Caption = "R0-B2", .Container = &fraINT}};

  std::optional<CoverWorkbook> cover;
  std::optional<ProximitySubtraction> subtraction;
};

}  // namespace varzelin
