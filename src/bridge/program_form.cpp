#include "bridge/program_form.h"

namespace varzelin {

ProgramForm::ProgramForm(Program& owner, std::string name, std::string caption)
    : Form(owner.forms, std::move(name), std::move(caption)), ProgramAccess(owner) {}

ProgramForm::~ProgramForm() {
  if (store.Active_Form == this) store.Active_Form = nullptr;
}

void ProgramForm::Form_Activate() {
  store.Active_Form = this;
}

}  // namespace varzelin
