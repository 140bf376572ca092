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
  // What a handler of it is at, for front ends to say behind the caption; empty: nothing that takes long.
  TextProperty Activity;
  // The client area in the platform's units, 15 to a pixel. A front end sets it, then raises Form_Resize.
  Property<double> ScaleWidth;
  Property<double> ScaleHeight;
  bool visible() const { return visible_; }
  // False once it was unloaded, though a handler of it may still be on the stack.
  bool loaded() const { return loaded_; }

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

  // Makes a member function of the form the handler of an event.
  template <class Source, class F, class... Args>
  void on(Source& control, Event event, void (F::*handler)(Args...)) {
    handle(control, event, static_cast<F&>(*this), handler);
  }

 private:
  friend class Control;
  friend class FormSet;

  // Two controls of one name and index are a mistake in the form's declaration.
  void add(Control& control);

  FormSet& set_;
  Runtime& runtime_;
  const std::string name_;
  std::vector<Control*> controls_;
  bool visible_ = false;
  bool loaded_ = true;
};

}  // namespace forms
