// Watching the interrupt of the sensors with eight registers: its flag in the control register by a timer,
// its pin on bit 7 of the board's port B, low while the sensor interrupts, and the command that clears it.
#pragma once

#include "panels/common/panel_part.h"
#include "panels/single_channel/eight_register_model.h"

namespace varzelin {

class InterruptWatch : public PanelPart {
 public:
  InterruptWatch(Program& owner, RegisterPanel& of_panel, const EightRegisterModel& panel_model);

  void cmdClearInt_Click();
  void cmdClrInt_Click();
  void cmdSample_Portb_Click();
  void ChkIpol_Click();
  void TimerIPol_Timer();

  // Samples the port; the reply's first byte is the pins of port B.
  void Sample_PortB();
  // The flag as a read of the control register brought it.
  void show_flag(std::uint8_t control_byte);

  // While a collection runs the pin is watched in place of the flag: polling and the loop exclude each other.
  void collection_starts();
  void begin_pass();
  void collection_ended();

 private:
  void show_pin();

  const EightRegisterModel& model_;

 public:
  CommandButton cmdClearInt{panel, "cmdClearInt", {.Caption = "Clear Int"}};
  Label lblIntClear{panel, "lblIntClear", {.Caption = "Int Clear"}};
  CommandButton cmdClrInt{
      panel,
      "cmdClrInt",
      {.Caption = "Clear Interrupt",
       .ToolTipText = "Write I2C Clear Interrupt, reads Reg and External INT Pin Status."}};
  CommandButton cmdSample_Portb{panel,
                                "cmdSample_Portb",
                                {.Caption = "Sample External Int Pin",
                                 .ToolTipText = "Sample the External INT Signal, does not use I2C Buss"}};
  TextBox txtPbInt{panel, "txtPbInt"};
  CheckBox ChkIpol{panel, "ChkIpol", {.Caption = "Poll Interrupt"}};
  Shape ShpISample{panel, "ShpISample"};
  Shape ShpINt{panel, "ShpINt"};
  Label lblINt{panel, "lblINt", {.Caption = "Reg b001 Bit &h20"}};
  Shape ShpINTexternal{panel, "ShpINTexternal"};
  Label lblINTexternal{panel, "lblINTexternal", {.Caption = "External INT Pin"}};
  Timer TimerIPol{panel, "TimerIPol", {.Enabled = false, .Interval = 250}};
};

}  // namespace varzelin
