// The menu bar of a form's window: the form's menu controls, and the menus that every window has.
#pragma once

#include <QKeySequence>
#include <QString>
#include <functional>
#include <memory>
#include <vector>

#include "forms/form.h"
#include "window/binding.h"

class QAction;
class QMenu;
class QMenuBar;

namespace window {

// Makes the actions of all menu controls of the form and their bindings.
std::vector<std::unique_ptr<Binding>> bind_menus(forms::Form& form, QMenuBar& bar);

// An entry of a menu that every window has.
struct MenuEntry {
  QString text;
  std::function<void()> act;
  QKeySequence keys = {};
  // Whether it would do something now; asked when the menu opens. None: always.
  std::function<bool()> possible = {};
};
struct MenuOfWindow {
  QString title;
  std::vector<MenuEntry> entries;
};
// The menu's object name is its title.
void add_menu(QMenuBar& bar, const MenuOfWindow& menu);
// The menus' keys alone, for a window without a menu bar.
void add_keys(QWidget& window, const std::vector<MenuOfWindow>& menus);

}  // namespace window
