// Light measured behind a cover: light and infrared by two single conversions, and the light corrected by
// how much infrared there is in it.
#pragma once

#include "panels/common/panel_part.h"

namespace varzelin {

class MultiFunctionPanel;

class CoverWorkbook : public PartOf<MultiFunctionPanel> {
 public:
  CoverWorkbook(Program& owner, MultiFunctionPanel& of_panel);

  void ChkCover_Click();
  void cmdALS_IR_Click();

 private:
  void work_out(bool is_negative, std::int32_t signed_light);
  void put_cover_on();
  void take_cover_off();

 public:
  CheckBox ChkCover;
  Frame Frame12;
  CommandButton cmdALS_IR;
  ControlArray<Label> lblCover;
  ControlArray<Label> lblCoverRdgs;
  ControlArray<Label> lblCoverlimits;
  ControlArray<TextBox> txtRatio_Limit;
};

}  // namespace varzelin
