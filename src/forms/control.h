// What every control has: a name, a place on its form, properties, and events with handlers.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "forms/errors.h"
#include "forms/property.h"

namespace forms {

class Form;
class Control;

enum class Kind {
  Label,
  TextBox,
  CommandButton,
  CheckBox,
  OptionButton,
  Frame,
  ListBox,
  ComboBox,
  PictureBox,
  Shape,
  Timer,
  HScrollBar,
  VScrollBar,
  SSTab,
  Grid,
  Menu,
  CommonDialog
};
const char* kind_name(Kind kind);

enum class Event {
  Click,
  DblClick,
  Change,
  KeyPress,
  GotFocus,
  LostFocus,
  MouseDown,
  MouseUp,
  Timer,
  Scroll,
  SelectionChange
};
const char* event_name(Event event);
// False when there is no event of that name.
bool event_from_name(std::string_view name, Event& event);

// Character codes of the keys that handlers know.
inline constexpr int vbKeyBack = 8;
inline constexpr int vbKeyReturn = 13;

// What a handler may be given.
struct EventArgs {
  int index = -1;     // element of a control array
  int key_ascii = 0;  // KeyPress: the character code; a handler that sets 0 swallows the key
  int row = 0;        // SelectionChange, from 1
  int column = 0;
};
using Handler = std::function<void(EventArgs&)>;

// A member function as a handler. It may take nothing, the index of a control array's element, the key by
// reference, both in this order, or a grid's row and column. `owner` outlives the control.
template <class T>
Handler handler_of(T& owner, void (T::*handler)()) {
  return [&owner, handler](EventArgs&) { (owner.*handler)(); };
}
template <class T>
Handler handler_of(T& owner, void (T::*handler)(int)) {
  return [&owner, handler](EventArgs& args) { (owner.*handler)(args.index); };
}
template <class T>
Handler handler_of(T& owner, void (T::*handler)(int&)) {
  return [&owner, handler](EventArgs& args) { (owner.*handler)(args.key_ascii); };
}
template <class T>
Handler handler_of(T& owner, void (T::*handler)(int, int&)) {
  return [&owner, handler](EventArgs& args) { (owner.*handler)(args.index, args.key_ascii); };
}
template <class T>
Handler handler_of(T& owner, void (T::*handler)(int, int)) {
  return [&owner, handler](EventArgs& args) { (owner.*handler)(args.row, args.column); };
}

// The design-time values of a control, those that its kind has. One declaration of a control holds
// all of them.
struct Design {
  std::string Caption = {};
  std::string Text = {};
  std::string ToolTipText = {};
  Control* Container = nullptr;  // frame, tab or parent menu; null: the form itself
  bool Enabled = true;
  bool Visible = true;
  int Value = 0;           // check box 0/1, option button 0/1, scroll bar position
  int Interval = 0;        // timer, milliseconds
  bool MultiLine = false;  // text box
  int Width = 0;           // picture, pixels
  int Height = 0;
  int Tabs = 1;  // tab control
  int Tab = 0;   // the tab of a tab control that this control stands on
  Color BackColor = clr_button_face;
  Color ForeColor = clr_button_text;
  std::vector<std::string> List = {};
};

class Control : public PropertyOwner {
 public:
  // Registers the control with the form. `index` is -1 outside control arrays.
  Control(Form& form, Kind kind, std::string name, int index, const Design& design);
  ~Control() override;

  Form& form() const { return form_; }
  Kind kind() const { return kind_; }
  const std::string& name() const { return name_; }
  int index() const { return index_; }
  std::string full_name() const;  // "cmdSample", "OptGain(2)"
  Control* container() const { return container_; }
  int tab() const { return tab_; }

  Property<bool> Enabled;
  Property<bool> Visible;
  TextProperty ToolTipText;

  // It, every frame around it and its form are visible (and its tab is in front).
  bool shown() const;

  void handle(Event event, Handler handler);
  bool handles(Event event) const { return handlers_.contains(event); }
  // Runs the handler of the event, if there is one, in the caller's own stack.
  void raise(Event event, EventArgs& args);
  void raise(Event event) {
    EventArgs args;
    raise(event, args);
  }

  // Marks the control for the front ends, for changes that no property tells.
  void touched();

  // Front ends: whether the control waits in the runtime's list of changed controls.
  bool marked = false;

 protected:
  void property_changed(PropertyBase& property) override;

 private:
  Form& form_;
  const Kind kind_;
  const std::string name_;
  const int index_;
  Control* const container_;
  const int tab_;
  std::map<Event, Handler> handlers_;
};

using Elements = std::vector<std::pair<int, Design>>;

// Elements 0 to count-1 with the design that `make(i)` gives.
template <class Make>
Elements elements(int count, Make&& make) {
  Elements result;
  for (int i = 0; i < count; ++i) result.emplace_back(i, make(i));
  return result;
}

// Elements 0, 1, ... with these captions in one container.
Elements captioned(std::initializer_list<const char*> captions, Design common = {});
// The same for option buttons, of which one is selected.
Elements captioned_options(std::initializer_list<const char*> captions, int selected, Design common = {});

// Controls of one name told apart by an index. Elements may be missing; touching a missing one
// raises no_such_element.
template <class T>
class ControlArray {
 public:
  ControlArray(Form& form, const std::string& name, const Elements& designs) {
    for (const auto& [index, design] : designs) {
      elements_.emplace(index, std::make_unique<T>(form, name, design, index));
    }
  }

  T& operator()(int index) const {
    const auto found = elements_.find(index);
    if (found == elements_.end()) raise_error(no_such_element);
    return *found->second;
  }
  bool has(int index) const { return elements_.contains(index); }
  // Calls visit(element) in index order.
  template <class Visit>
  void each(Visit&& visit) const {
    for (const auto& entry : elements_) visit(*entry.second);
  }

 private:
  std::map<int, std::unique_ptr<T>> elements_;
};

// Makes a member function of any object the handler of an event, of a control or of all elements of an
// array.
template <class T, class... Args>
void handle(Control& control, Event event, T& owner, void (T::*handler)(Args...)) {
  control.handle(event, handler_of(owner, handler));
}
template <class C, class T, class... Args>
void handle(const ControlArray<C>& array, Event event, T& owner, void (T::*handler)(Args...)) {
  array.each([&](C& element) { handle(element, event, owner, handler); });
}

}  // namespace forms
