#include "forms/controls.h"

#include <algorithm>
#include <filesystem>

#include "forms/form.h"
#include "forms/runtime.h"

namespace forms {

Label::Label(Form& form, std::string name, const Design& design, int index)
    : Control(form, Kind::Label, std::move(name), index, design),
      Caption(*this, "Caption", design.Caption),
      BackColor(*this, "BackColor", design.BackColor),
      ForeColor(*this, "ForeColor", design.ForeColor) {}

TextBox::TextBox(Form& form, std::string name, const Design& design, int index)
    : Control(form, Kind::TextBox, std::move(name), index, design),
      Text(*this, "Text", design.Text),
      SelStart(*this, "SelStart", 0),
      BackColor(*this, "BackColor",
                design.BackColor == clr_button_face ? clr_window_background : design.BackColor),
      ForeColor(*this, "ForeColor", design.ForeColor == clr_button_text ? clr_window_text : design.ForeColor),
      MultiLine(design.MultiLine) {}

void TextBox::property_changed(PropertyBase& property) {
  Control::property_changed(property);
  if (&property == &Text) raise(Event::Change);
}

CommandButton::CommandButton(Form& form, std::string name, const Design& design, int index)
    : Control(form, Kind::CommandButton, std::move(name), index, design),
      Caption(*this, "Caption", design.Caption) {}

CheckBox::CheckBox(Form& form, std::string name, const Design& design, int index)
    : Control(form, Kind::CheckBox, std::move(name), index, design),
      Caption(*this, "Caption", design.Caption),
      Value(*this, "Value", design.Value) {}

bool CheckBox::accepts(const PropertyBase& property, std::int32_t value) const {
  return &property != &Value || value == 0 || value == 1;
}

void CheckBox::property_changed(PropertyBase& property) {
  Control::property_changed(property);
  if (&property == &Value) raise(Event::Click);
}

OptionButton::OptionButton(Form& form, std::string name, const Design& design, int index)
    : Control(form, Kind::OptionButton, std::move(name), index, design),
      Caption(*this, "Caption", design.Caption),
      Value(*this, "Value", design.Value != 0) {}

void OptionButton::clear_others() {
  for (Control* control : form().controls()) {
    auto* other = dynamic_cast<OptionButton*>(control);
    if (other && other != this && other->container() == container()) other->Value = false;
  }
}

void OptionButton::select_quietly() {
  Value.set_quietly(true);
  touched();
  clear_others();
}

void OptionButton::property_changed(PropertyBase& property) {
  Control::property_changed(property);
  if (&property != &Value || !Value) return;
  clear_others();
  raise(Event::Click);
}

Frame::Frame(Form& form, std::string name, const Design& design, int index)
    : Control(form, Kind::Frame, std::move(name), index, design), Caption(*this, "Caption", design.Caption) {}

ListControl::ListControl(Form& form, Kind kind, std::string name, int index, const Design& design)
    : Control(form, kind, std::move(name), index, design),
      ListIndex(*this, "ListIndex", -1),
      rows_(design.List) {}

std::string ListControl::List(int row) const {
  return row >= 0 && row < ListCount() ? rows_[static_cast<std::size_t>(row)] : std::string();
}

void ListControl::AddItem(std::string text) {
  rows_.push_back(std::move(text));
  touched();
}

void ListControl::Clear() {
  rows_.clear();
  ListIndex.set_quietly(-1);
  touched();
}

bool ListControl::accepts(const PropertyBase& property, std::int32_t value) const {
  return &property != &ListIndex || (value >= -1 && value < ListCount());
}

void ListControl::select_quietly(int row) {
  if (!accepts(ListIndex, row)) raise_error(invalid_property_value);
  ListIndex.set_quietly(row);
  Control::property_changed(ListIndex);
}

void ListControl::property_changed(PropertyBase& property) {
  Control::property_changed(property);
  if (&property == &ListIndex) raise(Event::Click);
}

ListBox::ListBox(Form& form, std::string name, const Design& design, int index)
    : ListControl(form, Kind::ListBox, std::move(name), index, design) {}

ComboBox::ComboBox(Form& form, std::string name, const Design& design, int index)
    : ListControl(form, Kind::ComboBox, std::move(name), index, design), Text(*this, "Text", design.Text) {}

void ComboBox::property_changed(PropertyBase& property) {
  if (&property == &ListIndex && ListIndex >= 0) Text.set_quietly(List(ListIndex));
  ListControl::property_changed(property);
}

Shape::Shape(Form& form, std::string name, const Design& design, int index)
    : Control(form, Kind::Shape, std::move(name), index, design), FillColor(*this, "FillColor", clr_black) {}

Timer::Timer(Form& form, std::string name, const Design& design, int index)
    : Control(form, Kind::Timer, std::move(name), index, design),
      Interval(*this, "Interval", design.Interval) {
  schedule();
}

Timer::~Timer() {
  form().runtime().stop_timer(*this);
}

void Timer::schedule() {
  if (Enabled && Interval > 0) {
    form().runtime().start_timer(*this, std::chrono::milliseconds(Interval.get()));
  } else {
    form().runtime().stop_timer(*this);
  }
}

void Timer::property_changed(PropertyBase& property) {
  Control::property_changed(property);
  if (&property == &Enabled || &property == &Interval) schedule();
}

ScrollBar::ScrollBar(Form& form, Kind kind, std::string name, int index, const Design& design)
    : Control(form, kind, std::move(name), index, design),
      Value(*this, "Value", design.Value),
      Min(*this, "Min", 0),
      Max(*this, "Max", 32767),
      LargeChange(*this, "LargeChange", 1),
      SmallChange(*this, "SmallChange", 1) {}

bool ScrollBar::accepts(const PropertyBase& property, std::int32_t value) const {
  const auto [low, high] = std::minmax(Min.get(), Max.get());
  return &property != &Value || (value >= low && value <= high);
}

void ScrollBar::property_changed(PropertyBase& property) {
  Control::property_changed(property);
  const auto [low, high] = std::minmax(Min.get(), Max.get());
  if (&property == &Min || &property == &Max) Value = std::clamp(Value.get(), low, high);
  if (&property == &Value) raise(Event::Change);
}

HScrollBar::HScrollBar(Form& form, std::string name, const Design& design, int index)
    : ScrollBar(form, Kind::HScrollBar, std::move(name), index, design) {}

VScrollBar::VScrollBar(Form& form, std::string name, const Design& design, int index)
    : ScrollBar(form, Kind::VScrollBar, std::move(name), index, design) {}

SSTab::SSTab(Form& form, std::string name, const Design& design, int index)
    : Control(form, Kind::SSTab, std::move(name), index, design), Tab(*this, "Tab", 0), Tabs(design.Tabs) {}

bool SSTab::accepts(const PropertyBase& property, std::int32_t value) const {
  return &property != &Tab || (value >= 0 && value < Tabs);
}

void SSTab::property_changed(PropertyBase& property) {
  Control::property_changed(property);
  if (&property == &Tab) raise(Event::Click);
}

Menu::Menu(Form& form, std::string name, const Design& design, int index)
    : Control(form, Kind::Menu, std::move(name), index, design), Caption(*this, "Caption", design.Caption) {}

CommonDialog::CommonDialog(Form& form, std::string name, const Design& design, int index)
    : Control(form, Kind::CommonDialog, std::move(name), index, design),
      DialogTitle(*this, "DialogTitle"),
      FileName(*this, "FileName"),
      FileTitle(*this, "FileTitle"),
      Filter(*this, "Filter"),
      FilterIndex(*this, "FilterIndex", 0),
      DefaultExt(*this, "DefaultExt"),
      Flags(*this, "Flags", 0),
      CancelError(*this, "CancelError", false) {}

void CommonDialog::show(bool save) {
  FileDialog dialog{save, DialogTitle.get(), Filter.get(), FilterIndex, FileName.get(), DefaultExt.get()};
  const auto chosen = form().runtime().file_dialog(dialog);
  if (!chosen) {
    if (CancelError) throw RunTimeError{cancel_was_selected, "Cancel was selected."};
    return;
  }
  FileName = *chosen;
  FileTitle = std::filesystem::path(*chosen).filename().string();
}

}  // namespace forms
