// Forms, controls and elements of control arrays by the names that commands give them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "forms/control.h"
#include "forms/form_set.h"

namespace console {

// One part of a dotted name: "OptGain(2)", "Cell(3,1)", "Text".
struct NamePart {
  std::string name;
  std::vector<int> indices;  // empty without parentheses
};

// A name taken apart at its points.
struct DottedName {
  // Throws Refused for an index that isn't a number.
  explicit DottedName(std::string_view text);

  // The first `count` parts as they were written.
  std::string_view first(std::size_t count) const;

  std::string text;
  std::vector<NamePart> parts;  // at least one
};

[[noreturn]] void refuse_element(std::string_view name);

// They load nothing, and throw Refused: "not loaded: …", "no such control: …" (for a form too),
// "no such element: …".
forms::Form& find_form(const forms::FormSet& forms, std::string_view name);
// None for a form that isn't loaded.
forms::Form* find_known_form(const forms::FormSet& forms, std::string_view name);
// The control that the first two parts name.
forms::Control& find_control(const forms::FormSet& forms, const DottedName& name);
// The control of a name that has nothing behind the control.
forms::Control& find_control(const forms::FormSet& forms, std::string_view name);

// "frmKVT71385.OptGain(2)"
std::string path_of(const forms::Control& control);

}  // namespace console
