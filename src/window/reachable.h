// The forms that no control opens, and their names in menus and titles.
#pragma once

#include <QString>
#include <QWidget>
#include <algorithm>
#include <array>
#include <string_view>

#include "forms/form.h"

namespace window {

// Forms that no control opens.
struct Reachable {
  const char* form;
  const char* text;
  std::array<std::string_view, 2> from = {};  // the windows that have it; none: all
};
inline constexpr std::array reachable{
    Reachable{"frmI2C_General", "Register &Workbench"},
    Reachable{"frmGPIO", "&GPIO Panel"},
    Reachable{"frmScriptOps", "&Script Panel"},
    Reachable{"frm71385INTR", "&Interrupt Test", {"frmKVT71385", "frmKVT71390"}},
};

inline bool has_entry(std::string_view window, const Reachable& entry) {
  return entry.from.front().empty() || std::ranges::find(entry.from, window) != entry.from.end();
}

inline QString name_of(const Reachable& entry) {
  return QString(entry.text).remove('&');
}
// Empty for a window that no menu reaches. A second instance, "frmScriptOps#2", has the first one's name.
inline QString name_of(const forms::Form& form) {
  for (const Reachable& each : reachable) {
    if (form.name().substr(0, form.name().find('#')) == each.form) return name_of(each);
  }
  return {};
}

// Labels whose double click nothing in a window tells of, nor a key reaches; an entry of the menu does the
// same.
struct HiddenDoubleClick {
  const char* label;
  const char* text;
};
inline constexpr std::array hidden_double_clicks{
    HiddenDoubleClick{"Label13", "&Full or Short Layout"},
    HiddenDoubleClick{"lblOffset", "Proximity &Offset Constants"},
};

inline void bring_forward(QWidget& window) {
  window.showNormal();
  window.raise();
  window.activateWindow();
}

}  // namespace window
