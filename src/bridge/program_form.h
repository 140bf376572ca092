// A form of the program, and the names of the controls as its declarations write them.
#pragma once

#include <string>

#include "bridge/program_access.h"
#include "forms/controls.h"
#include "forms/form.h"
#include "forms/picture.h"

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

class ProgramForm : public forms::Form, protected ProgramAccess {
 public:
  ProgramForm(Program& owner, std::string name, std::string caption);
  ~ProgramForm() override;

  // Every form stores itself as the one in front.
  void Form_Activate() override;
};

}  // namespace varzelin
