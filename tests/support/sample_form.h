// A form with every kind of control, whose handlers only write down that they ran.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "forms/controls.h"
#include "forms/form.h"
#include "forms/grid.h"
#include "forms/picture.h"

namespace varzelin::testing {

class SampleForm final : public forms::Form {
 public:
  static constexpr const char* form_name = "frmSample";

  explicit SampleForm(forms::FormSet& set) : Form(set, form_name, "Sample") {
    using forms::Event;
    for (forms::Control* control : controls()) {
      for (const Event event : {Event::Click, Event::DblClick, Event::MouseUp, Event::GotFocus,
                                Event::LostFocus, Event::Scroll, Event::SelectionChange}) {
        control->handle(event, [this, control, event](forms::EventArgs&) {
          events.push_back(control->full_name() + " " + event_name(event));
          if (on_event) on_event();
        });
      }
    }
    txtKeys.handle(Event::KeyPress, [this](forms::EventArgs& args) {
      keys.push_back(args.key_ascii);
      if (args.key_ascii == 'x') args.key_ascii = 0;
      if (args.key_ascii == 'q') args.key_ascii = 'Q';
    });
  }

  std::vector<std::string> events;
  std::vector<int> keys;
  std::function<void()> on_event;
  bool refuses_unload = false;
  void Form_QueryUnload(bool& Cancel, int) override { Cancel = refuses_unload; }
  int activations = 0;
  void Form_Activate() override { ++activations; }
  std::function<void()> on_resize;
  void Form_Resize() override {
    if (on_resize) on_resize();
  }

  forms::Menu mnuFile{*this, "mnuFile", {.Caption = "File"}};
  forms::Menu mnuOpen{*this, "mnuOpen", {.Caption = "Open", .Container = &mnuFile}};
  forms::Menu mnuAlone{*this, "mnuAlone", {.Caption = "Alone"}};
  forms::Frame fra{*this, "fra", {.Caption = "Mode & Status"}};
  forms::Label lbl{*this, "lbl", {.Caption = "Words", .ToolTipText = "Said"}};
  forms::CommandButton cmd{*this, "cmd", {.Caption = "Do", .ToolTipText = "Does it"}};
  forms::CommandButton cmdOther{*this, "cmdOther", {.Caption = "Other"}};
  forms::CheckBox chk{*this, "chk", {.Caption = "Check"}};
  forms::ControlArray<forms::OptionButton> opt{
      *this, "opt", forms::captioned({"First", "Second", "Third"}, {.Container = &fra})};
  forms::TextBox txt{*this, "txt", {.Text = "plain"}};
  forms::TextBox txtKeys{*this, "txtKeys"};
  forms::TextBox txtLog{*this, "txtLog", {.MultiLine = true}};
  forms::ListBox lst{*this, "lst", {.List = {"one", "two", "three"}}};
  forms::ComboBox cbo{*this, "cbo", {.Text = "Choose", .List = {"red", "green"}}};
  forms::Shape shp{*this, "shp"};
  forms::HScrollBar hsb{*this, "hsb"};
  forms::VScrollBar vsb{*this, "vsb"};
  forms::SSTab tabs{*this, "tabs", {.Tabs = 2}};
  forms::Grid grid{*this, "grid"};
  forms::PictureBox pic{*this, "pic", {.Width = 100, .Height = 50, .BackColor = forms::clr_white}};
  forms::PictureBox picTop{*this, "picTop", {.Width = 20, .Height = 10}};
  forms::Timer tmr{*this, "tmr"};
  forms::CommonDialog dlg{*this, "dlg"};
};

}  // namespace varzelin::testing
