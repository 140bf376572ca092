#include "window/menu_bar.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QShortcut>
#include <algorithm>
#include <map>

#include "forms/controls.h"
#include "forms/user.h"
#include "window/look.h"

namespace window {
namespace {

class MenuBinding final : public Binding {
 public:
  MenuBinding(forms::Menu& menu, QAction* action) : Binding(menu), menu_(menu), action_(action) {
    action_->setObjectName(to_qt(menu.full_name()));
    connect(action_, &QAction::triggered, this, [this] { clicked(); });
  }
  void show() override {
    if (const QString caption = to_caption(menu_.Caption.get()); caption != shown_) {
      shown_ = caption;
      action_->setText(caption);
    }
    action_->setToolTip(to_qt(menu_.ToolTipText.get()));
    action_->setEnabled(menu_.Enabled);
    action_->setVisible(menu_.Visible);
  }

 private:
  forms::Menu& menu_;
  QAction* action_;
  QString shown_;  // the caption without the mark of its key
};

}  // namespace

std::vector<std::unique_ptr<Binding>> bind_menus(forms::Form& form, QMenuBar& bar) {
  std::vector<std::unique_ptr<Binding>> bindings;
  std::map<const forms::Control*, QMenu*> menus;
  const auto is_menu = [&](const forms::Control* control) {
    return std::ranges::any_of(form.controls(),
                               [&](const forms::Control* other) { return other->container() == control; });
  };
  for (forms::Control* control : form.controls()) {
    auto* menu = dynamic_cast<forms::Menu*>(control);
    if (!menu) continue;
    const auto parent = menus.find(menu->container());
    QMenu* const above = parent == menus.end() ? nullptr : parent->second;
    QAction* action;
    if (is_menu(menu)) {
      QMenu* const own = above ? above->addMenu(QString()) : bar.addMenu(QString());
      menus[menu] = own;
      action = own->menuAction();
    } else {
      action = above ? above->addAction(QString()) : bar.addAction(QString());
    }
    bindings.push_back(std::make_unique<MenuBinding>(*menu, action));
    bindings.back()->show();
  }
  return bindings;
}

// An entry is greyed out while the menu is open only: its keys are to work as soon as it is possible.
void add_menu(QMenuBar& bar, const MenuOfWindow& menu_of_window) {
  QMenu* menu = bar.addMenu(menu_of_window.title);
  menu->setObjectName(QString(menu_of_window.title).remove('&'));
  for (const MenuEntry& entry : menu_of_window.entries) {
    QAction* action = menu->addAction(entry.text);
    action->setShortcut(entry.keys);
    QObject::connect(action, &QAction::triggered, entry.act);
    if (!entry.possible) continue;
    QObject::connect(menu, &QMenu::aboutToShow, action,
                     [action, possible = entry.possible] { action->setEnabled(possible()); });
    QObject::connect(menu, &QMenu::aboutToHide, action, [action] { action->setEnabled(true); });
  }
}

void add_keys(QWidget& window, const std::vector<MenuOfWindow>& menus) {
  for (const MenuOfWindow& menu : menus) {
    for (const MenuEntry& entry : menu.entries) {
      if (!entry.keys.isEmpty()) new QShortcut(entry.keys, &window, entry.act);
    }
  }
}

}  // namespace window
