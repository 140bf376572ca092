// The interrupt limits of the sensors with eight registers, entered in decimal.
#pragma once

#include <string>

#include "panels/common/panel_part.h"
#include "panels/single_channel/eight_register_model.h"

namespace varzelin {

class InterruptLimits : public PanelPart {
 public:
  InterruptLimits(Program& owner, RegisterPanel& of_panel, const EightRegisterModel& panel_model);

  void txtIUpperLimit_KeyPress(int& KeyAscii);
  void txtILowerLimit_KeyPress(int& KeyAscii);

  // Puts the limit that stands in a register's box into its decimal box; other registers have none.
  void show_limit_of(int register_number);

 private:
  struct Limit {
    int register_number;
    TextBox& box;
    Flag Store::*pending;
    LimitRules rules;
    std::string message;       // what it must be, up to the maximum
    std::string refused_text;  // what the box shows behind the message
  };
  Limit high();
  Limit low();
  void enter(const Limit& limit);

  const EightRegisterModel& model_;

 public:
  Label lblIUpperLimit{panel, "lblIUpperLimit", {.Caption = "High Limit"}};
  TextBox txtIUpperLimit;
  Label lblILowerLimit{panel, "lblILowerLimit", {.Caption = "Low Limit"}};
  TextBox txtILowerLimit{panel, "txtILowerLimit", {.Text = "0"}};
};

}  // namespace varzelin
