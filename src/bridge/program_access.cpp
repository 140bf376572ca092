#include "bridge/program_access.h"

namespace varzelin {

void ProgramAccess::flip_lamp(forms::Shape& shape, double other) {
  const bool was_light = shape.FillColor.get() == lamp(store.Clr_LtGreen);
  shape.FillColor = lamp(was_light ? other : store.Clr_LtGreen);
}

void ProgramAccess::show_action(forms::Shape& shape, bool good) {
  if (good) {
    flip_lamp(shape);
  } else {
    shape.FillColor = lamp(store.Clr_Red);
  }
}

void ProgramAccess::show_verdict(forms::Label& label, bool good) {
  label.Caption = good ? "Good" : "Fail";
  label.BackColor = good ? forms::clr_dark_green : forms::clr_red;
}

}  // namespace varzelin
