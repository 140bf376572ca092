// The constants that are subtracted from a proximity reading, by emitter current and modulation. They
// hold for 12 bits. The form stays loaded, hidden or not, and keeps what was typed until the program
// ends.
#pragma once

#include "bridge/program_form.h"

namespace varzelin {

class frmProxOff final : public ProgramForm {
 public:
  static constexpr const char* form_name = "frmProxOff";

  explicit frmProxOff(Program& owner);

  Frame FrmOffsets{*this, "FrmOffsets", {.Caption = "Prox. OffSet Constants (12 Bit A/D)"}};
  ControlArray<Label> LblOffsetLables;
  ControlArray<TextBox> txtProxOff;
};

}  // namespace varzelin
