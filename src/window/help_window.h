// A page with the first steps and the keys.
#pragma once

#include <QWidget>
#include <vector>

#include "window/menu_bar.h"

namespace window {

class HelpWindow final : public QWidget {
 public:
  // `menus` are those whose keys it tells.
  HelpWindow(const std::vector<MenuOfWindow>& menus, const QString& title_suffix);
};

}  // namespace window
