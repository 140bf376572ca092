// List boxes and drop-downs.
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QListWidget>

#include "forms/controls.h"
#include "forms/user.h"
#include "window/binding.h"
#include "window/choosing.h"
#include "window/look.h"

namespace window {
namespace {

class RowsBinding : public Binding {
 public:
  explicit RowsBinding(forms::ListControl& list) : Binding(list), list_(list) {}

 protected:
  forms::ListControl& list() const { return list_; }
  void post_row(int row) {
    post([this, row] {
      if (row >= 0 && row < list_.ListCount()) forms::user::click_row(list_, row);
    });
  }

 private:
  forms::ListControl& list_;
};

// Keys and the focus move its cursor and choose nothing: a row may write to the sensor.
class CursorList final : public QListWidget {
 public:
  using QListWidget::QListWidget;
  int selected_row() const {
    const auto selected = selectedItems();
    return selected.isEmpty() ? -1 : row(selected.front());
  }

 protected:
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                       const QEvent* event) const override {
    return chooses(event) ? QListWidget::selectionCommand(index, event) : QItemSelectionModel::NoUpdate;
  }
};

class ListBinding final : public RowsBinding {
 public:
  ListBinding(forms::ListBox& box, QWidget* parent) : RowsBinding(box), rows_(new CursorList(parent)) {
    adopt(rows_);
    watch(rows_->viewport());
    // With the mouse a row is taken when the button goes up. A screen reader selects it by itself.
    connect(rows_, &QListWidget::itemSelectionChanged, this, [this] {
      if (!showing_ && !(QApplication::mouseButtons() & Qt::LeftButton)) post_row(rows_->selected_row());
    });
  }

  void show() override {
    showing_ = true;
    show_rows();
    if (!ahead() && rows_->selected_row() != list().ListIndex) {
      rows_->setCurrentRow(list().ListIndex);
      if (list().ListIndex < 0) rows_->clearSelection();
    }
    showing_ = false;
    Binding::show();
  }

 protected:
  void released(QPoint position) override {
    if (rows_->indexAt(position).isValid() || rows_->selected_row() != list().ListIndex)
      post_row(rows_->currentRow());
  }

  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() == QEvent::KeyPress) {
      if (is_choosing_key(static_cast<QKeyEvent*>(event)->key())) {
        post_row(rows_->currentRow());
        return true;
      }
    }
    return RowsBinding::eventFilter(object, event);
  }

 private:
  void show_rows() {
    const auto& texts = list().List();
    for (int row = 0; row < static_cast<int>(texts.size()); ++row) {
      const QString text = to_qt(texts[static_cast<std::size_t>(row)]);
      if (row >= rows_->count()) {
        rows_->addItem(text);
      } else if (rows_->item(row)->text() != text) {
        rows_->item(row)->setText(text);
      }
    }
    while (rows_->count() > static_cast<int>(texts.size())) delete rows_->takeItem(rows_->count() - 1);
  }

  CursorList* rows_;
  bool showing_ = false;
};

// Opens with a row to take: the chosen one, or the first.
class DropDown final : public QComboBox {
 public:
  using QComboBox::QComboBox;
  void showPopup() override {
    QComboBox::showPopup();
    if (currentIndex() < 0) view()->setCurrentIndex(model()->index(0, modelColumn()));
  }
};

// A key that would choose while the list is closed.
bool chooses_unseen(const QKeyEvent& key) {
  switch (key.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return true;
    default:
      return !key.text().isEmpty() && key.text().front().isPrint() &&
             !(key.modifiers() & (Qt::ControlModifier | Qt::AltModifier));
  }
}

class ComboBinding final : public RowsBinding {
 public:
  ComboBinding(forms::ComboBox& box, QWidget* parent)
      : RowsBinding(box), combo_(box), drop_down_(new DropDown(parent)) {
    adopt(drop_down_);
    drop_down_->setFocusPolicy(Qt::StrongFocus);
    connect(drop_down_, &QComboBox::activated, this, [this](int row) { post_row(row); });
  }

  void show() override {
    show_rows();
    if (!ahead()) drop_down_->setCurrentIndex(combo_.ListIndex);
    drop_down_->setPlaceholderText(to_qt(combo_.Text.get()));
    Binding::show();
  }

 protected:
  void released(QPoint) override {}

  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() == QEvent::Wheel) {
      event->ignore();  // a turn of the wheel over it chooses nothing, which would open a panel or write
      return true;
    }
    if (event->type() == QEvent::KeyPress && chooses_unseen(*static_cast<QKeyEvent*>(event))) {
      drop_down_->showPopup();
      return true;
    }
    return RowsBinding::eventFilter(object, event);
  }

 private:
  void show_rows() {
    const auto& texts = list().List();
    for (int row = 0; row < static_cast<int>(texts.size()); ++row) {
      const QString text = to_qt(texts[static_cast<std::size_t>(row)]);
      if (row >= drop_down_->count()) {
        drop_down_->addItem(text);
      } else if (drop_down_->itemText(row) != text) {
        drop_down_->setItemText(row, text);
      }
    }
    while (drop_down_->count() > static_cast<int>(texts.size()))
      drop_down_->removeItem(drop_down_->count() - 1);
  }

  forms::ComboBox& combo_;
  DropDown* drop_down_;
};

}  // namespace

std::unique_ptr<Binding> bind_list(forms::Control& control, QWidget* parent) {
  if (auto* combo = dynamic_cast<forms::ComboBox*>(&control))
    return std::make_unique<ComboBinding>(*combo, parent);
  return std::make_unique<ListBinding>(dynamic_cast<forms::ListBox&>(control), parent);
}

}  // namespace window
