// The menu bar of a form's window: the form's menu controls, and the "Windows" menu that reaches the
// windows that no control opens.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "forms/form.h"
#include "window/binding.h"

class QAction;
class QMenu;
class QMenuBar;

namespace window {

// Makes the actions of all menu controls of the form and their bindings.
std::vector<std::unique_ptr<Binding>> bind_menus(forms::Form& form, QMenuBar& bar);

struct WindowEntry {
  QString text;
  std::function<void()> open;
};
void add_windows_menu(QMenuBar& bar, const std::vector<WindowEntry>& entries);

}  // namespace window
