#include "window/binding.h"

#include <QFocusEvent>
#include <QMouseEvent>
#include <QWidget>
#include <utility>

#include "forms/user.h"
#include "window/look.h"
#include "window/tips.h"

namespace window {

using forms::Event;
using forms::Kind;

bool usable(const forms::Control& control) {
  for (const forms::Control* each = &control; each; each = each->container()) {
    if (!each->Enabled) return false;
  }
  return control.shown();
}

namespace {

bool by_keyboard(Qt::FocusReason reason) {
  return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
         reason == Qt::ShortcutFocusReason;
}

}  // namespace

void Binding::show() {
  if (!widget_) return;
  widget_->setEnabled(control_.Enabled);
  widget_->setVisible(control_.Visible);
  const QString own = to_qt(control_.ToolTipText.get());
  if (const QString& tip = own.isEmpty() ? table_tip_ : own; widget_->toolTip() != tip)
    widget_->setToolTip(tip);
}

void Binding::adopt(QWidget* widget) {
  widget_ = widget;
  widget->setObjectName(to_qt(control_.full_name()));
  table_tip_ = tip_of(control_);
  watch(widget);
}

void Binding::watch(QWidget* part) {
  part->installEventFilter(this);
}

void Binding::clicked() {
  const auto click = [this, still_here = alive()] {
    if (!still_here.expired()) post([this] { forms::user::click(control_); });
  };
  guard ? guard(click) : click();
}

void Binding::acts() {
  if (focused_ && !std::exchange(told_of_focus_, true) && control_.handles(Event::GotFocus))
    notify([this] { forms::user::focus(control_); });
}

void Binding::released(QPoint) {
  acts();
  if (control_.handles(Event::Click)) notify([this] { forms::user::click(control_); });
}

void Binding::clicked_twice() {
  acts();
  if (control_.handles(Event::DblClick)) notify([this] { forms::user::double_click(control_); });
}

bool Binding::eventFilter(QObject* object, QEvent* event) {
  switch (event->type()) {
    case QEvent::FocusIn:
    case QEvent::FocusOut: {
      if (object != widget_) break;
      if (event->type() == QEvent::FocusIn) focused_ = true;
      // The focus stays with the control while another window or a menu has it.
      const auto reason = static_cast<QFocusEvent*>(event)->reason();
      if (reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason ||
          reason == Qt::MenuBarFocusReason) {
        break;
      }
      if (event->type() == QEvent::FocusIn) {
        if (!by_keyboard(reason)) acts();
        break;
      }
      focused_ = false;
      if (std::exchange(told_of_focus_, false) && control_.handles(Event::LostFocus))
        notify([this] { forms::user::leave(control_); }, When::Always);
      break;
    }
    case QEvent::MouseButtonRelease: {
      const auto* mouse = static_cast<QMouseEvent*>(event);
      if (mouse->button() == Qt::LeftButton) released(mouse->pos());
      break;
    }
    case QEvent::MouseButtonDblClick:
      if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) clicked_twice();
      break;
    case QEvent::PaletteChange:
      if (object == widget_) show();
      break;
    default:
      break;
  }
  return QObject::eventFilter(object, event);
}

std::unique_ptr<Binding> bind(forms::Control& control, QWidget* parent) {
  switch (control.kind()) {
    case Kind::CommandButton:
    case Kind::CheckBox:
    case Kind::OptionButton:
      return bind_button(control, parent);
    case Kind::TextBox:
      return bind_text_box(control, parent);
    case Kind::ListBox:
    case Kind::ComboBox:
      return bind_list(control, parent);
    case Kind::Grid:
      return bind_grid(control, parent);
    case Kind::HScrollBar:
    case Kind::VScrollBar:
    case Kind::SSTab:
      return bind_range(control, parent);
    case Kind::Label:
    case Kind::Frame:
    case Kind::Shape:
    case Kind::PictureBox:
      return bind_display(control, parent);
    case Kind::Timer:
    case Kind::Menu:
    case Kind::CommonDialog:
      break;
  }
  return nullptr;
}

}  // namespace window
