// The sensor's interrupt pin, on bit 7 of the board's port B: low while the sensor interrupts.
#pragma once

#include "panels/common/panel_part.h"

namespace varzelin {

class MultiFunctionPanel;

class InterruptPin : public PartOf<MultiFunctionPanel> {
 public:
  InterruptPin(Program& owner, MultiFunctionPanel& of_panel, Frame& frame);

  void cmdSampleInterrupt_Click();
  // Leaves the board's reply in the transfer buffer, the pins of port B first.
  void Sample_PortB();
  // What was sampled, on the lamps of any form; the second one turns over at each sample.
  void show_pin(Shape& pin, Shape& sampled);

  CommandButton cmdSampleInterrupt;
  CheckBox ChkSampleInt;
  Shape ShpINTexternal;
  Label lblINTexternal;
  Label lblStatus;
};

}  // namespace varzelin
