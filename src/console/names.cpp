#include "console/names.h"

#include <algorithm>
#include <limits>

#include "console/arguments.h"
#include "console/refused.h"
#include "forms/form.h"

namespace console {
namespace {

std::string_view trimmed(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

int parse_index(std::string_view text, std::string_view whole_name) {
  const auto index = to_whole(trimmed(text));
  if (!index || *index < 0 || *index > std::numeric_limits<int>::max()) refuse_element(whole_name);
  return static_cast<int>(*index);
}

NamePart parse_part(std::string_view text, std::string_view whole_name) {
  NamePart part;
  const std::size_t bracket = text.find('(');
  part.name = text.substr(0, bracket);
  if (bracket == std::string_view::npos) return part;
  if (text.back() != ')') refuse_element(whole_name);
  std::string_view inside = text.substr(bracket + 1, text.size() - bracket - 2);
  for (;;) {
    const std::size_t comma = inside.find(',');
    part.indices.push_back(parse_index(inside.substr(0, comma), whole_name));
    if (comma == std::string_view::npos) return part;
    inside.remove_prefix(comma + 1);
  }
}

// "frmScriptOps#2" is another instance of frmScriptOps; instances are counted from 2.
std::string_view base_name(std::string_view name) {
  const std::size_t mark = name.find('#');
  if (mark == std::string_view::npos) return name;
  const auto number = to_whole(name.substr(mark + 1));
  return number && *number >= 2 ? name.substr(0, mark) : name;
}

}  // namespace

void refuse_element(std::string_view name) {
  throw Refused{"no such element: " + std::string(name)};
}

DottedName::DottedName(std::string_view name) : text(name) {
  for (std::string_view rest = name;;) {
    const std::size_t point = rest.find('.');
    parts.push_back(parse_part(rest.substr(0, point), name));
    if (point == std::string_view::npos) return;
    rest.remove_prefix(point + 1);
  }
}

std::string_view DottedName::first(std::size_t count) const {
  std::size_t end = 0;
  for (std::size_t begin = 0; count > 0 && end != std::string::npos; --count, begin = end + 1) {
    end = text.find('.', begin);
  }
  return std::string_view(text).substr(0, end);
}

forms::Form* find_known_form(const forms::FormSet& forms, std::string_view name) {
  forms::Form* form = forms.loaded(name);
  if (!form && !forms.knows(base_name(name))) throw Refused{"no such control: " + std::string(name)};
  return form;
}

forms::Form& find_form(const forms::FormSet& forms, std::string_view name) {
  forms::Form* form = find_known_form(forms, name);
  if (!form) throw Refused{"not loaded: " + std::string(name)};
  return *form;
}

forms::Control& find_control(const forms::FormSet& forms, const DottedName& name) {
  const std::string_view path = name.first(2);
  const forms::Form& form = find_form(forms, name.first(1));
  if (name.parts.size() < 2) throw Refused{"no such control: " + std::string(path)};
  const NamePart& part = name.parts[1];
  if (part.indices.size() <= 1) {
    forms::Control* control = form.find(part.name, part.indices.empty() ? -1 : part.indices[0]);
    if (control) return *control;
  }
  const bool has_name =
      std::ranges::any_of(form.controls(), [&](const auto* other) { return other->name() == part.name; });
  if (has_name) refuse_element(path);
  throw Refused{"no such control: " + std::string(path)};
}

forms::Control& find_control(const forms::FormSet& forms, std::string_view name) {
  const DottedName dotted(name);
  forms::Control& control = find_control(forms, dotted);
  if (dotted.parts.size() > 2) throw Refused{"no such control: " + dotted.text};
  return control;
}

std::string path_of(const forms::Control& control) {
  return control.form().name() + "." + control.full_name();
}

}  // namespace console
