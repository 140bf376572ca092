#include "window/accessible_drop_down.h"

#include <QAbstractItemView>
#include <QAccessibleWidget>
#include <QComboBox>
#include <QPointer>
#include <vector>

namespace window {
namespace {

QComboBox* drop_down_of(const QAbstractItemView& list) {
  for (QObject* each = list.parent(); each; each = each->parent()) {
    if (auto* found = qobject_cast<QComboBox*>(each)) return found;
  }
  return nullptr;
}

class RowAccessible final : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  RowAccessible(QAbstractItemView& list, int row) : list_(&list), row_(row) {}

  int row() const { return row_; }

  bool isValid() const override { return list_ && index().isValid(); }
  QObject* object() const override { return nullptr; }
  QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(list_); }
  QAccessibleInterface* child(int) const override { return nullptr; }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  QAccessible::Role role() const override { return QAccessible::ListItem; }

  QString text(QAccessible::Text what) const override {
    return what == QAccessible::Name ? index().data().toString() : QString();
  }
  void setText(QAccessible::Text, const QString&) override {}
  QRect rect() const override {
    const QRect place = list_->visualRect(index());
    return {list_->viewport()->mapToGlobal(place.topLeft()), place.size()};
  }
  QAccessible::State state() const override {
    QAccessible::State state;
    state.selectable = true;
    state.selected = list_->selectionModel()->isSelected(index());
    state.focusable = true;
    state.focused = list_->hasFocus() && list_->currentIndex() == index();
    state.disabled = !list_->isEnabled();
    state.invisible = !list_->isVisible();
    return state;
  }

  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
  }
  QStringList actionNames() const override { return {pressAction()}; }
  QStringList keyBindingsForAction(const QString&) const override { return {}; }
  void doAction(const QString& action) override {
    if (action != pressAction() || !isValid() || !list_->isEnabled()) return;
    if (QComboBox* drop_down = drop_down_of(*list_); drop_down && drop_down->isEnabled()) {
      drop_down->setCurrentIndex(row_);
      drop_down->hidePopup();
      emit drop_down->activated(row_);
    }
  }

 private:
  QModelIndex index() const { return list_->model()->index(row_, 0); }
  QPointer<QAbstractItemView> list_;
  const int row_;
};

class RowsAccessible final : public QAccessibleWidget {
 public:
  explicit RowsAccessible(QAbstractItemView& list);
  ~RowsAccessible() override;

  QString text(QAccessible::Text what) const override;
  int childCount() const override { return list_.model() ? list_.model()->rowCount() : 0; }
  QAccessibleInterface* child(int row) const override;
  QAccessibleInterface* childAt(int x, int y) const override;
  QAccessibleInterface* focusChild() const override { return child(list_.currentIndex().row()); }
  int indexOfChild(const QAccessibleInterface* child) const override;

 private:
  QAbstractItemView& list_;
  mutable std::vector<QAccessible::Id> rows_;  // those that were asked for
};

RowsAccessible::RowsAccessible(QAbstractItemView& list)
    : QAccessibleWidget(&list, QAccessible::List), list_(list) {}

RowsAccessible::~RowsAccessible() {
  for (const QAccessible::Id row : rows_) QAccessible::deleteAccessibleInterface(row);
}

QString RowsAccessible::text(QAccessible::Text what) const {
  const QComboBox* drop_down = drop_down_of(list_);
  return what == QAccessible::Name && drop_down ? drop_down->accessibleName() + ": rows"
                                                : QAccessibleWidget::text(what);
}

QAccessibleInterface* RowsAccessible::child(int row) const {
  if (row < 0 || row >= childCount()) return nullptr;
  while (static_cast<int>(rows_.size()) <= row) {
    rows_.push_back(
        QAccessible::registerAccessibleInterface(new RowAccessible(list_, static_cast<int>(rows_.size()))));
  }
  return QAccessible::accessibleInterface(rows_[static_cast<std::size_t>(row)]);
}

QAccessibleInterface* RowsAccessible::childAt(int x, int y) const {
  return child(list_.indexAt(list_.viewport()->mapFromGlobal(QPoint(x, y))).row());
}

int RowsAccessible::indexOfChild(const QAccessibleInterface* child) const {
  const auto* row = dynamic_cast<const RowAccessible*>(child);
  return row ? row->row() : -1;
}

// Qt tells the chosen row in the place of the name.
class DropDownAccessible final : public QAccessibleWidget {
 public:
  explicit DropDownAccessible(QComboBox& drop_down)
      : QAccessibleWidget(&drop_down, QAccessible::ComboBox), drop_down_(drop_down) {}

  QString text(QAccessible::Text what) const override {
    return what == QAccessible::Value ? drop_down_.currentText() : QAccessibleWidget::text(what);
  }
  int childCount() const override { return 1; }
  QAccessibleInterface* child(int index) const override {
    return index == 0 ? QAccessible::queryAccessibleInterface(drop_down_.view()) : nullptr;
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    return child->object() == drop_down_.view() ? 0 : -1;
  }
  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.expandable = true;
    state.expanded = drop_down_.view()->isVisible();
    return state;
  }
  QStringList actionNames() const override {
    return QStringList{showMenuAction()} + QAccessibleWidget::actionNames();
  }
  void doAction(const QString& action) override {
    if (action != showMenuAction()) {
      QAccessibleWidget::doAction(action);
    } else if (drop_down_.view()->isVisible()) {
      drop_down_.hidePopup();
    } else {
      drop_down_.showPopup();
    }
  }

 private:
  QComboBox& drop_down_;
};

}  // namespace

QAccessibleInterface* accessible_drop_down(QComboBox& drop_down) {
  return new DropDownAccessible(drop_down);
}

QAccessibleInterface* rows_of_drop_down(QAbstractItemView& list) {
  return new RowsAccessible(list);
}

}  // namespace window
