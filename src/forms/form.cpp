#include "forms/form.h"

#include <cassert>

#include "forms/form_set.h"
#include "forms/runtime.h"

namespace forms {

Form::Form(FormSet& set, std::string name, std::string caption)
    : Caption(*this, "Caption", std::move(caption)),
      Activity(*this, "Activity"),
      ScaleWidth(*this, "ScaleWidth", 0.0),
      ScaleHeight(*this, "ScaleHeight", 0.0),
      set_(set),
      runtime_(set.runtime()),
      name_(std::move(name)) {}

Form::~Form() {
  runtime_.forget(*this);
}

Control* Form::find(std::string_view name, int index) const {
  for (Control* control : controls_) {
    if (control->index() == index && control->name() == name) return control;
  }
  return nullptr;
}

void Form::add(Control& control) {
  assert(!find(control.name(), control.index()));
  controls_.push_back(&control);
}

void Form::Show() {
  set_.show(*this);
}
void Form::Hide() {
  set_.hide(*this);
}

void Form::mark(Control& control) {
  runtime_.mark(control);
}

void Form::property_changed(PropertyBase&) {
  runtime_.mark(*this);
}

}  // namespace forms
