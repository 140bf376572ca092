// Tool tips.
#include "window/tips.h"
#include "support/panel_window.h"

namespace varzelin::testing {
namespace {

// What a person works, reads or sees changing.
bool wants_tip(const forms::Control& control) {
  using forms::Kind;
  switch (control.kind()) {
    case Kind::Label:
    case Kind::Frame:
    case Kind::Timer:
    case Kind::Menu:
    case Kind::CommonDialog:
      return false;
    default:
      return true;
  }
}

struct WindowTips : WindowOfProgram {
  template <class Visit>
  void each_widget(Visit&& visit) {
    for (const std::string& name : program.forms.names()) {
      show(name);
      for (const forms::Control* control : program.forms.loaded(name)->controls()) {
        const auto* widget =
            window_of(name).findChild<QWidget*>(QString::fromStdString(control->full_name()));
        if (widget) visit(name + " " + control->full_name(), *control, *widget);
      }
    }
  }
};

TEST_F(WindowTips, EveryControlHasOne) {
  each_widget([](const std::string& where, const forms::Control& control, const QWidget& widget) {
    const bool holds_others = widget.layout() != nullptr;
    const bool without_room = widget.maximumWidth() == 0;
    if (wants_tip(control) && !holds_others && !without_room) {
      EXPECT_FALSE(widget.toolTip().isEmpty()) << where;
    }
  });
}

TEST_F(WindowTips, AControlsOwnTipStays) {
  int own = 0;
  each_widget([&](const std::string& where, const forms::Control& control, const QWidget& widget) {
    if (control.ToolTipText.get().empty()) return;
    ++own;
    EXPECT_EQ(widget.toolTip().toStdString(), control.ToolTipText.get()) << where;
  });
  EXPECT_GT(own, 200);
}

// Those of the table are the window's.
TEST_F(WindowTips, TheTableGoesIntoNoControl) {
  show("frmKVT71344");
  const forms::Control& button = *program.forms.loaded("frmKVT71344")->find("cmdCollectData");
  EXPECT_EQ(button.ToolTipText.get(), "");
  EXPECT_FALSE(window::tip_of(button).isEmpty());
}

TEST_F(WindowTips, TheClosestLineOfTheTableCounts) {
  const auto tip = [&](const char* form, const char* array, int index) {
    show(form);
    return window::tip_of(*program.forms.loaded(form)->find(array, index)).toStdString();
  };
  EXPECT_EQ(tip("frmKVT71344", "txtSampleByte", 1), "Byte of the last reply, hexadecimal");
  EXPECT_TRUE(tip("frmKVT71344", "txtSampleByte", 0).starts_with("First byte"));
  EXPECT_EQ(tip("frmKVT71344", "cmdSetControl", -1), "Writes the byte of its box to the second register");
  EXPECT_EQ(tip("frmKVT71338", "cmdSetControl", -1), "Reads the register into its box");
  EXPECT_EQ(tip("frmI2C_General", "cmdRead", -1), "Reads a single byte");
}

}  // namespace
}  // namespace varzelin::testing
