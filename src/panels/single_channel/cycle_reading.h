// The second count of a triggered reading, as its bytes and as a number: integration cycles, or the time
// base.
#pragma once

#include "panels/common/panel_part.h"

namespace varzelin {

class CycleReading : public PanelPart {
 public:
  CycleReading(Program& owner, RegisterPanel& of_panel) : PanelPart(owner, of_panel) {}

  // Of the last reply, whose byte at `low_index` is the low one and the next one the high one.
  void show(std::size_t low_index);

 public:
  Label lblICycHex{panel, "lblICycHex", {.Caption = "Integration Count Hex"}};
  TextBox txtICycHex{panel, "txtICycHex"};
  Label lblICYCDec{panel, "lblICYCDec", {.Caption = "Integration Count Dec"}};
  TextBox txtICYCDec{panel, "txtICYCDec"};
};

}  // namespace varzelin
