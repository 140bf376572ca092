// The kinds of control, each with its own properties and the events that setting them raises.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "forms/control.h"

namespace forms {

class Label : public Control {
 public:
  Label(Form& form, std::string name, const Design& design = {}, int index = -1);
  TextProperty Caption;
  Property<Color> BackColor;
  Property<Color> ForeColor;
};

// Setting Text raises Change.
class TextBox : public Control {
 public:
  TextBox(Form& form, std::string name, const Design& design = {}, int index = -1);
  TextProperty Text;
  Property<std::int32_t> SelStart;  // caret, characters from the start
  Property<Color> BackColor;
  Property<Color> ForeColor;
  const bool MultiLine;

 protected:
  void property_changed(PropertyBase& property) override;
};

class CommandButton : public Control {
 public:
  CommandButton(Form& form, std::string name, const Design& design = {}, int index = -1);
  TextProperty Caption;
};

// Value is 0 or 1. A change raises Click; another value raises invalid_property_value.
class CheckBox : public Control {
 public:
  CheckBox(Form& form, std::string name, const Design& design = {}, int index = -1);
  TextProperty Caption;
  Property<std::int32_t> Value;

 protected:
  bool accepts(const PropertyBase& property, std::int32_t value) const override;
  void property_changed(PropertyBase& property) override;
};

// The option buttons of one container exclude each other. Becoming true raises Click.
class OptionButton : public Control {
 public:
  OptionButton(Form& form, std::string name, const Design& design = {}, int index = -1);
  TextProperty Caption;
  Property<bool> Value;
  // Selects it and clears the others without raising Click.
  void select_quietly();

 protected:
  void property_changed(PropertyBase& property) override;

 private:
  void clear_others();
};

class Frame : public Control {
 public:
  Frame(Form& form, std::string name, const Design& design = {}, int index = -1);
  TextProperty Caption;
};

// What list boxes and drop-downs share. A change of ListIndex raises Click; an index that is
// neither -1 (none) nor a row raises invalid_property_value.
class ListControl : public Control {
 public:
  Property<std::int32_t> ListIndex;
  const std::vector<std::string>& List() const { return rows_; }
  std::string List(int row) const;  // empty outside the rows
  int ListCount() const { return static_cast<int>(rows_.size()); }
  void AddItem(std::string text);
  void Clear();
  // Selects a row without raising Click.
  void select_quietly(int row);

 protected:
  ListControl(Form& form, Kind kind, std::string name, int index, const Design& design);
  bool accepts(const PropertyBase& property, std::int32_t value) const override;
  void property_changed(PropertyBase& property) override;

 private:
  std::vector<std::string> rows_;
};

class ListBox : public ListControl {
 public:
  ListBox(Form& form, std::string name, const Design& design = {}, int index = -1);
};

// Text is the text in its box: the design text until a row is selected, then that row.
class ComboBox : public ListControl {
 public:
  ComboBox(Form& form, std::string name, const Design& design = {}, int index = -1);
  TextProperty Text;

 protected:
  void property_changed(PropertyBase& property) override;
};

// A filled shape: the lamps.
class Shape : public Control {
 public:
  Shape(Form& form, std::string name, const Design& design = {}, int index = -1);
  Property<Color> FillColor;
};

// Raises Timer every Interval milliseconds while Enabled and Interval is above 0. Off at design time
// where the design says Enabled false.
class Timer : public Control {
 public:
  Timer(Form& form, std::string name, const Design& design = {}, int index = -1);
  ~Timer() override;
  Property<std::int32_t> Interval;

 protected:
  void property_changed(PropertyBase& property) override;

 private:
  void schedule();
};

// Value stays within Min to Max; a change raises Change.
class ScrollBar : public Control {
 public:
  Property<std::int32_t> Value;
  Property<std::int32_t> Min;
  Property<std::int32_t> Max;
  Property<std::int32_t> LargeChange;
  Property<std::int32_t> SmallChange;

 protected:
  ScrollBar(Form& form, Kind kind, std::string name, int index, const Design& design);
  bool accepts(const PropertyBase& property, std::int32_t value) const override;
  void property_changed(PropertyBase& property) override;
};

class HScrollBar : public ScrollBar {
 public:
  HScrollBar(Form& form, std::string name, const Design& design = {}, int index = -1);
};

class VScrollBar : public ScrollBar {
 public:
  VScrollBar(Form& form, std::string name, const Design& design = {}, int index = -1);
};

// A tab control; controls stand on the tab that their design names. Tab counts from 0; a change
// raises Click.
class SSTab : public Control {
 public:
  SSTab(Form& form, std::string name, const Design& design = {}, int index = -1);
  Property<std::int32_t> Tab;
  const int Tabs;

 protected:
  bool accepts(const PropertyBase& property, std::int32_t value) const override;
  void property_changed(PropertyBase& property) override;
};

// A menu entry, or a menu when others name it as their container.
class Menu : public Control {
 public:
  Menu(Form& form, std::string name, const Design& design = {}, int index = -1);
  TextProperty Caption;
};

// The system's file dialogs. After Cancel FileName is as it was, and with CancelError a run-time
// error 32755 is raised.
class CommonDialog : public Control {
 public:
  static constexpr int cancel_was_selected = 32755;

  CommonDialog(Form& form, std::string name, const Design& design = {}, int index = -1);
  TextProperty DialogTitle;
  TextProperty FileName;
  TextProperty FileTitle;  // the name without its folder
  TextProperty Filter;     // "text|pattern|text|pattern"
  Property<std::int32_t> FilterIndex;
  TextProperty DefaultExt;
  Property<std::int32_t> Flags;
  Property<bool> CancelError;
  void ShowOpen() { show(false); }
  void ShowSave() { show(true); }

 private:
  void show(bool save);
};

}  // namespace forms
