// What every form of the program has at hand: the program, its store, and the platform's operations
// by their names.
#pragma once

#include <string>

#include "bridge/program.h"
#include "forms/controls.h"
#include "forms/form.h"
#include "forms/picture.h"
#include "forms/text.h"

namespace varzelin {

using forms::CheckBox;
using forms::ComboBox;
using forms::CommandButton;
using forms::CommonDialog;
using forms::ControlArray;
using forms::Design;
using forms::Event;
using forms::Frame;
using forms::Label;
using forms::ListBox;
using forms::Menu;
using forms::OptionButton;
using forms::PictureBox;
using forms::QBColor;
using forms::Shape;
using forms::TextBox;
using forms::Timer;

class ProgramForm : public forms::Form {
 public:
  ProgramForm(Program& owner, std::string name, std::string caption);
  ~ProgramForm() override;

  // Every form stores itself as the one in front.
  void Form_Activate() override;

 protected:
  Program& program;
  Store& store;

  void DoEvents(int times = 1) { runtime().DoEvents(times); }
  void Sleep(std::int64_t milliseconds) { runtime().Sleep(milliseconds); }
  std::int64_t timeGetTime() const { return runtime().timeGetTime(); }
  int MsgBox(std::string text, int buttons = forms::vbOKOnly, std::string title = {}) {
    return runtime().MsgBox(std::move(text), buttons, std::move(title));
  }
  // The default instance of a form, loaded on first touch.
  template <class F>
  F& form() {
    return program.forms.touch<F>();
  }
  std::string Date() const { return forms::date_short(runtime().clock().local_time()); }
  std::string Time() const { return forms::time_short(runtime().clock().local_time()); }
  // The lamp colour of an index kept in the store.
  static forms::Color lamp(double color_index) { return QBColor(color_index); }
  // Light and dark green alternate, so that a repeated good action shows that it was done. Anything else
  // becomes light green.
  void flip_lamp(Shape& shape);
  // The result of a communications test: "Good" on green or "Fail" on red.
  static void show_verdict(Label& label, bool good);
};

}  // namespace varzelin
