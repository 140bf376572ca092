// List boxes and drop-downs.
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QListWidget>

#include "forms/controls.h"
#include "forms/user.h"
#include "window/binding.h"
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

class ListBinding final : public RowsBinding {
 public:
  ListBinding(forms::ListBox& box, QWidget* parent) : RowsBinding(box), rows_(new QListWidget(parent)) {
    adopt(rows_);
    watch(rows_->viewport());
    // With the mouse a row is taken when the button goes up.
    connect(rows_, &QListWidget::currentRowChanged, this, [this](int row) {
      if (!showing_ && !(QApplication::mouseButtons() & Qt::LeftButton)) post_row(row);
    });
  }

  void show() override {
    showing_ = true;
    show_rows();
    if (!ahead()) {
      rows_->setCurrentRow(list().ListIndex);
      if (list().ListIndex < 0) rows_->clearSelection();
    }
    showing_ = false;
    Binding::show();
  }

 protected:
  void released(QPoint position) override {
    if (rows_->indexAt(position).isValid() || rows_->currentRow() != list().ListIndex)
      post_row(rows_->currentRow());
  }

  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() == QEvent::KeyPress) {
      const int key = static_cast<QKeyEvent*>(event)->key();
      if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space) {
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

  QListWidget* rows_;
  bool showing_ = false;
};

class ComboBinding final : public RowsBinding {
 public:
  ComboBinding(forms::ComboBox& box, QWidget* parent)
      : RowsBinding(box), combo_(box), drop_down_(new QComboBox(parent)) {
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
    if (event->type() == QEvent::Wheel && !drop_down_->hasFocus()) {
      event->ignore();  // turning over the panel doesn't turn the choice
      return true;
    }
    if (event->type() == QEvent::KeyPress && drop_down_->currentIndex() < 0) {
      const int key = static_cast<QKeyEvent*>(event)->key();
      if (key == Qt::Key_Down || key == Qt::Key_Up || key == Qt::Key_Return || key == Qt::Key_Enter) {
        drop_down_->showPopup();  // nothing is chosen yet: look before taking the first row
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
  QComboBox* drop_down_;
};

}  // namespace

std::unique_ptr<Binding> bind_list(forms::Control& control, QWidget* parent) {
  if (auto* combo = dynamic_cast<forms::ComboBox*>(&control))
    return std::make_unique<ComboBinding>(*combo, parent);
  return std::make_unique<ListBinding>(dynamic_cast<forms::ListBox&>(control), parent);
}

}  // namespace window
