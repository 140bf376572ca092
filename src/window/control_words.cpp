#include "window/control_words.h"

#include <algorithm>

#include "forms/form.h"

namespace window {

std::string_view words_for(const forms::Control& control, std::span<const ControlWords> table) {
  const std::string& form_name = control.form().name();
  const std::string_view form = std::string_view(form_name).substr(0, form_name.find('#'));
  const std::string element = control.full_name();
  const auto closeness = [&](const ControlWords& line) {
    const bool is_element = line.control == element;
    if (!is_element && line.control != control.name()) return 0;
    if (!line.form.empty() && line.form != form) return 0;
    return 1 + is_element + 2 * !line.form.empty();
  };
  const auto best = std::ranges::max_element(table, {}, closeness);
  return best == table.end() || closeness(*best) == 0 ? std::string_view() : best->words;
}

}  // namespace window
