// A form: named controls and their handlers, loaded, shown, hidden and unloaded by its form set.
#pragma once

#include <string>
#include <type_traits>
#include <vector>

#include "forms/control.h"
#include "forms/property.h"

namespace forms {

class FormSet;
class Runtime;

class Form : public PropertyOwner {
 public:
  Form(FormSet& set, std::string name, std::string caption);
  ~Form() override;

  const std::string& name() const { return name_; }  // "frmGPIO"; "frmScriptOps#2"
  TextProperty Caption;
  // The client area in the platform's units, 15 to a pixel. A front end sets it, then raises Form_Resize.
  Property<double> ScaleWidth;
  Property<double> ScaleHeight;
  bool visible() const { return visible_; }

  Runtime& runtime() const { return runtime_; }
  FormSet& set() const { return set_; }
  // In the order of declaration.
  const std::vector<Control*>& controls() const { return controls_; }
  // Null when there is none; index -1 for a control outside arrays.
  Control* find(std::string_view name, int index = -1) const;

  void Show();
  void Hide();

  virtual void Form_Load() {}
  // Comes to the front.
  virtual void Form_Activate() {}
  // Before an unload; Cancel keeps the form. UnloadMode is 0 for the window's close box, 1 for code.
  virtual void Form_QueryUnload(bool& /*Cancel*/, int /*UnloadMode*/) {}
  virtual void Form_Unload(bool& /*Cancel*/) {}
  virtual void Form_Resize() {}

  // Marks a control, or the form itself, as changed for the front ends.
  void mark(Control& control);

 protected:
  void property_changed(PropertyBase& property) override;

  // Makes a member function the handler of an event. It may take nothing, the index of a control
  // array's element, the key by reference, both in this order, or a grid's row and column.
  template <class F, class... Args>
  void on(Control& control, Event event, void (F::*handler)(Args...)) {
    F* self = static_cast<F*>(this);
    control.handle(event, [self, handler](EventArgs& args) { call(self, handler, args); });
  }
  template <class T, class F, class... Args>
  void on(ControlArray<T>& array, Event event, void (F::*handler)(Args...)) {
    array.each([&](T& element) { on(element, event, handler); });
  }

 private:
  friend class Control;
  friend class FormSet;

  template <class F>
  static void call(F* self, void (F::*handler)(), EventArgs&) {
    (self->*handler)();
  }
  template <class F>
  static void call(F* self, void (F::*handler)(int), EventArgs& args) {
    (self->*handler)(args.index);
  }
  template <class F>
  static void call(F* self, void (F::*handler)(int&), EventArgs& args) {
    (self->*handler)(args.key_ascii);
  }
  template <class F>
  static void call(F* self, void (F::*handler)(int, int&), EventArgs& args) {
    (self->*handler)(args.index, args.key_ascii);
  }
  template <class F>
  static void call(F* self, void (F::*handler)(int, int), EventArgs& args) {
    (self->*handler)(args.row, args.column);
  }

  void add(Control& control) { controls_.push_back(&control); }

  FormSet& set_;
  Runtime& runtime_;
  const std::string name_;
  std::vector<Control*> controls_;
  bool visible_ = false;
};

}  // namespace forms
