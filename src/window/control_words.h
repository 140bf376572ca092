// Words for controls, in a table, and who of it is meant.
#pragma once

#include <span>
#include <string_view>

#include "forms/control.h"

namespace window {

// A line without a form is for all that have the control. One for the form goes before, and one for an
// element before that of its array.
struct ControlWords {
  std::string_view form;
  std::string_view control;
  std::string_view words;
};

// Empty for a control that the table doesn't have. A second instance ("frmScriptOps#2") has the first one's.
std::string_view words_for(const forms::Control& control, std::span<const ControlWords> table);

}  // namespace window
