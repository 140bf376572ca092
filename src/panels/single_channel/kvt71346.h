// The panel of KVT71346 and KVT71347, the simplest sensors: no register file, one mode byte whose
// write starts a conversion, and a bus read that returns the count. The count is shown, drawn and
// recorded as it comes from the device.
#pragma once

#include <array>

#include "panels/common/sensor_panel.h"

namespace varzelin {

class frmKVT71346 final : public SensorPanel {
 public:
  static constexpr const char* form_name = "frmKVT71346";

  explicit frmKVT71346(Program& owner);

  void Form_Unload(bool& Cancel) override;

  void cmdSetMode_Click();
  void cbReset_Click();
  void OptMode_Click(int Index);
  void OptTimeBase_Click(int Index);
  void Lst71346_Mode_MouseUp();
  void LstMode2_MouseUp();
  void lst_MainOptions_MouseUp();

  // The mode bytes of the sensor's command set, by row of Lst71346_Mode.
  static constexpr std::array<std::uint8_t, 6> ModeTable{0x8C, 0x0C, 0x00, 0x04, 0x08, 0xA5};
  std::int16_t ModeIndex = 0;

 protected:
  void build_time_labels_at_load() override;
  void load_model() override;
  void finish_load() override;
  void sampling_starts() override;
  void sampling_ended() override;
  void collection_starts() override;
  void Trig_KVT7134X() override;
  void Record_Triggered_Light_Count() override;
  Measurement measure() override;
  std::int32_t measurement_row() override;
  void show_measurement() override;
  std::string data_file_header() override;

 private:
  std::uint8_t mode_byte() const;
  void select_mode(int row);
  // Selects the row of LstMode2 that has the diode of the present mode.
  void show_diode_of_mode();
  Measurement reply_counts() const;
  void test_communications();
  // A mode that measures goes on with a collection that ran before.
  void restart_if(bool was_running);

 public:
  ListBox lst_MainOptions{
      *this,
      "lst_MainOptions",
      {.List = {"Device", "Mode & Status", "Time Base", "Integration Counter", "Recording", "Analysis"}}};
  ControlArray<OptionButton> OptMode{
      *this, "OptMode",
      forms::captioned({"Collect Data From", "Power Down", "Test Communications"}, {.Container = &frmMode})};
  ListBox LstMode2{*this, "LstMode2", {.Container = &frmMode, .List = {"Diode 1", "Diode 2", "Difference"}}};
  ListBox Lst71346_Mode{*this,
                        "Lst71346_Mode",
                        {.ToolTipText = "Selects the various modes available with the KVT71346/7.",
                         .Container = &frmMode,
                         .List = {"ADC Power Down  -8C", "ADC Reset       -0C", "Diode1 - 100mS  -00",
                                  "Diode2 - 100mS  -04", "D1-D2  - 200mS  -08", "Loop Bk Com Test-xx"}}};
  CommandButton cmdSetMode{*this,
                           "cmdSetMode",
                           {.Caption = "Update KVT7134x Mode",
                            .ToolTipText = "Writes selected mode control byte to the KVT71346.",
                            .Container = &frmMode}};
  Label lblModeByte{*this, "lblModeByte", {.Caption = "Mode Byte", .Container = &frmMode}};
  TextBox txtModeByte{*this, "txtModeByte", {.Container = &frmMode}};
  Label lblRegSet{*this, "lblRegSet", {.Caption = "Control Register Not Initialized"}};
  CommandButton cbReset{*this,
                        "cbReset",
                        {.Caption = "Reset  KVT7134x",
                         .ToolTipText = "The resets the KVT71346 and then places it in D1, Internal "
                                        "Integration Sensing Mode."}};
  ControlArray<OptionButton> OptTimeBase;
};

}  // namespace varzelin
