// Keeps one control and its widget in step.
//
// Program to screen: show() brings the widget to the control's state; the windows call it for changed
// controls. User to program: what a user does is posted to the message loop, which finds the control
// later, if it then is still there and usable. No handler ever runs in Qt's own call stack.
#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <memory>

#include "forms/control.h"
#include "forms/form.h"
#include "forms/runtime.h"

class QWidget;

namespace window {

// Shown, enabled, and so is everything around it.
bool usable(const forms::Control& control);

class Binding : public QObject {
 public:
  explicit Binding(forms::Control& control) : control_(control) {}

  forms::Control& control() const { return control_; }
  // Null for controls without a place in the window: menu entries, timers, dialogs.
  QWidget* widget() const { return widget_; }
  virtual void show();

  // Of a button or a menu's entry: asks the user something before the click goes its way, then calls it or
  // doesn't.
  std::function<void(std::function<void()> click)> guard;

 protected:
  // The widget that stands for the control: named, and watched for focus and clicks.
  void adopt(QWidget* widget);
  // What of a widget takes the mouse, where that isn't the widget itself.
  void watch(QWidget* part);
  bool eventFilter(QObject* object, QEvent* event) override;
  // The user acts on the control: the program is told now of a focus that came by the keyboard.
  void acts();
  // The user's click on a button or a menu's entry, by way of the guard.
  void clicked();
  // A mouse button went up on the control, or was clicked twice.
  virtual void released(QPoint position);
  virtual void clicked_twice();

  // Where a control that isn't usable may be acted on: losing the focus is what hiding leads to.
  enum class When { Usable, Always };
  // Runs `action` in the message loop, unless the control is gone or not usable by then.
  // False: too many events wait.
  template <class Action>
  bool notify(Action action, When when = When::Usable) {
    return control_.form().runtime().post(
        [this, alive = std::weak_ptr<int>(alive_), action = std::move(action), when]() mutable {
          if (!alive.expired() && (when == When::Always || usable(control_))) action();
        });
  }
  // The same for an action that changed the widget: until its turn the widget is ahead of the control,
  // and afterwards it shows what became of the control.
  template <class Action>
  void post(Action action) {
    acts();
    ++ahead_;
    const bool waits = notify(
        [this, action = std::move(action)]() mutable {
          --ahead_;
          control_.touched();
          if (usable(control_)) action();
        },
        When::Always);
    if (waits) return;
    --ahead_;
    control_.touched();
  }
  bool ahead() const { return ahead_ > 0; }
  std::weak_ptr<int> alive() const { return alive_; }

 private:
  forms::Control& control_;
  QWidget* widget_ = nullptr;
  QString table_tip_;  // for a control without one
  int ahead_ = 0;
  bool focused_ = false;
  // What the keyboard brings the focus to isn't told before an action: going through a window acts on
  // nothing.
  bool told_of_focus_ = false;
  std::shared_ptr<int> alive_ = std::make_shared<int>(0);
};

// The binding for a control of any kind, with its widget below `parent`. The entries of menus are
// made by the form's window (menu_bar.h).
std::unique_ptr<Binding> bind(forms::Control& control, QWidget* parent);

// One maker a group of kinds.
std::unique_ptr<Binding> bind_button(forms::Control& control, QWidget* parent);
std::unique_ptr<Binding> bind_text_box(forms::Control& control, QWidget* parent);
std::unique_ptr<Binding> bind_list(forms::Control& control, QWidget* parent);
std::unique_ptr<Binding> bind_grid(forms::Control& control, QWidget* parent);
std::unique_ptr<Binding> bind_range(forms::Control& control, QWidget* parent);
std::unique_ptr<Binding> bind_display(forms::Control& control, QWidget* parent);

}  // namespace window
