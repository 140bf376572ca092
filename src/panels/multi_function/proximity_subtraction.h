// The constant part of a proximity reading under scheme 1, which depends on the emitter, taken off it.
#pragma once

#include "panels/common/panel_part.h"
#include "panels/converter/converter_panel.h"

namespace varzelin {

class ProximitySubtraction : public PartOf<ConverterPanel> {
 public:
  ProximitySubtraction(Program& owner, ConverterPanel& of_panel);

  void ChkSubract_Click() { Tally_Prox_Offset(); }
  void lblOffset_DblClick();

  // The constant that fits the emitter's setting, into lblOffset.
  void Tally_Prox_Offset();
  // What is taken off a reading, 0 when nothing is.
  double offset() const;

  Frame frmProxOffset{panel, "frmProxOffset", {.Caption = "Prox Offset"}};
  CheckBox ChkSubract{panel,
                      "ChkSubract",
                      {.Caption = "Subtract",
                       .ToolTipText = "Check to Enable Offset Subtraction",
                       .Container = &frmProxOffset}};
  Label lblOffset{panel,
                  "lblOffset",
                  {.Caption = "8888",
                   .ToolTipText = "Double Click to Edit Offset Constants.",
                   .Container = &frmProxOffset}};
};

}  // namespace varzelin
