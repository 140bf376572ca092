#include "bridge/program_form.h"

namespace varzelin {

ProgramForm::ProgramForm(Program& owner, std::string name, std::string caption)
    : Form(owner.forms, std::move(name), std::move(caption)), program(owner), store(owner.store) {}

ProgramForm::~ProgramForm() {
  if (store.Active_Form == this) store.Active_Form = nullptr;
}

void ProgramForm::Form_Activate() {
  store.Active_Form = this;
}

void ProgramForm::flip_lamp(Shape& shape) {
  const bool was_light = shape.FillColor.get() == lamp(store.Clr_LtGreen);
  shape.FillColor = lamp(was_light ? store.Clr_DkGreen : store.Clr_LtGreen);
}

void ProgramForm::show_verdict(Label& label, bool good) {
  constexpr forms::Color good_back{0x008000};
  constexpr forms::Color fail_back{0x0000FF};
  label.Caption = good ? "Good" : "Fail";
  label.BackColor = good ? good_back : fail_back;
}

}  // namespace varzelin
