#include "window/menu_bar.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
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
    connect(action_, &QAction::triggered, this, [this] { post([this] { forms::user::click(menu_); }); });
  }
  void show() override {
    action_->setText(to_caption(menu_.Caption.get()));
    action_->setToolTip(to_qt(menu_.ToolTipText.get()));
    action_->setEnabled(menu_.Enabled);
    action_->setVisible(menu_.Visible);
  }

 private:
  forms::Menu& menu_;
  QAction* action_;
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

void add_windows_menu(QMenuBar& bar, const std::vector<WindowEntry>& entries) {
  QMenu* menu = bar.addMenu(QObject::tr("&Windows"));
  menu->setObjectName("Windows");
  for (const WindowEntry& entry : entries)
    QObject::connect(menu->addAction(entry.text), &QAction::triggered, entry.open);
}

}  // namespace window
