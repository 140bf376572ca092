// The resistor calculator as the panel shows it: from the external resistor by way of the oscillator and the
// integration time to the lux of a count.
#pragma once

#include "panels/common/panel_part.h"
#include "panels/single_channel/resistor_calculator.h"

namespace varzelin {

class CalculatorBlock : public PanelPart {
 public:
  CalculatorBlock(Program& owner, RegisterPanel& of_panel) : PanelPart(owner, of_panel) {}

  void show(const Calculation& calculation);

 public:
  Frame Frame7{panel, "Frame7", {.Caption = "Calculator"}};

  Frame Frame2{panel, "Frame2", {.Caption = "External Resistor", .Container = &Frame7}};
  ControlArray<OptionButton> OptREXT{
      panel, "OptREXT", forms::captioned_options({"500k ", "250k ", "100k "}, 0, {.Container = &Frame2})};
  Label lblREXT{panel, "lblREXT", {.Caption = "REXT (Ohm)", .Container = &Frame2}};
  TextBox txtREXT{panel, "txtREXT", {.Text = "500000", .Container = &Frame2}};
  Label lblRREF{panel, "lblRREF", {.Caption = "RREF (Ohm)", .Container = &Frame2}};
  TextBox txtRREF{panel, "txtRREF", {.Text = "500000", .Container = &Frame2}};

  Frame Frame3{panel, "Frame3", {.Caption = "Oscillator", .Container = &Frame7}};
  Label lblFOSC_Freq{panel, "lblFOSC_Freq", {.Caption = "Frequency (kHz)", .Container = &Frame3}};
  TextBox txtFOSC_Freq{panel, "txtFOSC_Freq", {.Text = "655", .Container = &Frame3}};
  Label lblFoscPeriod{panel, "lblFoscPeriod", {.Caption = "Period (mS)", .Container = &Frame3}};
  TextBox txtFoscPeriod{panel, "txtFoscPeriod", {.Container = &Frame3}};

  Frame Frame5{panel, "Frame5", {.Caption = "Integration", .Container = &Frame7}};
  Label lblClockCounts2{panel, "lblClockCounts2", {.Caption = "Clock Counts", .Container = &Frame5}};
  TextBox txtClockCounts2{panel, "txtClockCounts2", {.Container = &Frame5}};
  Label lblCalcITIme{panel, "lblCalcITIme", {.Caption = "Time (mS)", .Container = &Frame5}};
  TextBox txtCalcITIme{panel, "txtCalcITIme", {.Container = &Frame5}};
  Label lblFSR{panel, "lblFSR", {.Caption = "Full Scale (lux)", .Container = &Frame5}};
  TextBox txtFSR{panel, "txtFSR", {.Container = &Frame5}};

  Frame Frame6{panel, "Frame6", {.Caption = "Lux per Count", .Container = &Frame7}};
  Label lblFSR2{panel, "lblFSR2", {.Caption = "Full Scale (lux)", .Container = &Frame6}};
  TextBox txtFSR2{panel, "txtFSR2", {.Container = &Frame6}};
  Label lbl2N{panel, "lbl2N", {.Caption = "Full Count", .Container = &Frame6}};
  TextBox txt2N{panel, "txt2N", {.Container = &Frame6}};
  Label lblLFactor{panel, "lblLFactor", {.Caption = "Lux / Count", .Container = &Frame6}};
  TextBox txtLFactor{panel, "txtLFactor", {.Container = &Frame6}};
};

}  // namespace varzelin
