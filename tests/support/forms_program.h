// The forms runtime alone, on a virtual clock, with forms that a test makes up.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "forms/controls.h"
#include "forms/form.h"
#include "forms/form_set.h"
#include "forms/runtime.h"
#include "support/error_of.h"
#include "support/test_front_end.h"

namespace varzelin::testing {

using Notes = std::vector<std::string>;

struct FormsProgram {
  Notes notes;  // outlives the forms, which may write their last ones
  forms::VirtualClock clock;
  TestFrontEnd user;
  forms::Runtime runtime{clock, user};
  forms::FormSet forms{runtime};

  // Makes a form known that is constructed from the form set, its name and the notes.
  template <class F>
  void add(const std::string& name) {
    forms.add(name,
              [this](const std::string& instance) { return std::make_unique<F>(forms, instance, notes); });
  }
  template <class F>
  F& form(const std::string& name) {
    return static_cast<F&>(forms.touch(name));
  }
  // Notes each event as "control.Event", after the control has changed.
  void note(forms::Control& control, std::initializer_list<forms::Event> events) {
    for (const forms::Event event : events) {
      control.handle(event, [this, &control, event](forms::EventArgs&) {
        notes.push_back(control.full_name() + "." + forms::event_name(event));
      });
    }
  }
  void pass(int milliseconds) { clock.pass(std::chrono::milliseconds(milliseconds)); }
  Notes take_notes() { return std::exchange(notes, {}); }
};

}  // namespace varzelin::testing
