#include "bridge/program_access.h"

namespace varzelin {

void ProgramAccess::flip_lamp(forms::Shape& shape) {
  const bool was_light = shape.FillColor.get() == lamp(store.Clr_LtGreen);
  shape.FillColor = lamp(was_light ? store.Clr_DkGreen : store.Clr_LtGreen);
}

void ProgramAccess::show_verdict(forms::Label& label, bool good) {
  constexpr forms::Color good_back{0x008000};
  constexpr forms::Color fail_back{0x0000FF};
  label.Caption = good ? "Good" : "Fail";
  label.BackColor = good ? good_back : fail_back;
}

}  // namespace varzelin
