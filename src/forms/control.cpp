#include "forms/control.h"

#include <array>

#include "forms/controls.h"
#include "forms/form.h"
#include "forms/runtime.h"

namespace forms {
namespace {

constexpr std::array kind_names{"Label", "TextBox",     "CommandButton", "CheckBox",   "OptionButton",
                                "Frame", "ListBox",     "ComboBox",      "PictureBox", "Shape",
                                "Timer", "HScrollBar",  "VScrollBar",    "SSTab",      "Grid",
                                "Menu",  "CommonDialog"};
constexpr std::array event_names{"Click",     "DblClick", "Change", "KeyPress", "GotFocus",       "LostFocus",
                                 "MouseDown", "MouseUp",  "Timer",  "Scroll",   "SelectionChange"};

}  // namespace

const char* kind_name(Kind kind) {
  return kind_names[static_cast<std::size_t>(kind)];
}
const char* event_name(Event event) {
  return event_names[static_cast<std::size_t>(event)];
}

bool event_from_name(std::string_view name, Event& event) {
  for (std::size_t i = 0; i < event_names.size(); ++i) {
    if (name == event_names[i]) {
      event = static_cast<Event>(i);
      return true;
    }
  }
  return false;
}

Control::Control(Form& form, Kind kind, std::string name, int index, const Design& design)
    : Enabled(*this, "Enabled", design.Enabled),
      Visible(*this, "Visible", design.Visible),
      ToolTipText(*this, "ToolTipText", design.ToolTipText),
      form_(form),
      kind_(kind),
      name_(std::move(name)),
      index_(index),
      container_(design.Container),
      tab_(design.Tab) {
  form.add(*this);
}

// Controls go before their form's base does, so the form can't take them off the list.
Control::~Control() {
  if (marked) form_.runtime().forget(*this);
}

std::string Control::full_name() const {
  return index_ < 0 ? name_ : name_ + "(" + std::to_string(index_) + ")";
}

bool Control::shown() const {
  for (const Control* control = this; control; control = control->container_) {
    if (!control->Visible) return false;
    const auto* tabs = dynamic_cast<const SSTab*>(control->container_);
    if (tabs && tabs->Tab != control->tab_) return false;
  }
  return form_.visible();
}

void Control::handle(Event event, Handler handler) {
  handlers_[event] = std::move(handler);
}

void Control::raise(Event event, EventArgs& args) {
  const auto found = handlers_.find(event);
  if (found == handlers_.end()) return;
  args.index = index_;
  form_.runtime().keep(form_);
  found->second(args);
}

void Control::touched() {
  form_.mark(*this);
}

void Control::property_changed(PropertyBase&) {
  touched();
}

Elements captioned(std::initializer_list<const char*> captions, Design common) {
  Elements result;
  for (const char* caption : captions) {
    common.Caption = caption;
    result.emplace_back(static_cast<int>(result.size()), common);
  }
  return result;
}

Elements captioned_options(std::initializer_list<const char*> captions, int selected, Design common) {
  Elements result = captioned(captions, std::move(common));
  result.at(static_cast<std::size_t>(selected)).second.Value = 1;
  return result;
}

}  // namespace forms
