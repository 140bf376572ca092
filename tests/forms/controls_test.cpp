// Controls and their properties: what changes, what excludes what, which events come of it.
#include <gtest/gtest.h>

#include "forms/user.h"
#include "support/forms_program.h"

namespace varzelin::testing {
namespace {

using forms::Event;

class Panel final : public forms::Form {
 public:
  Panel(forms::FormSet& set, std::string name, Notes&) : Form(set, std::move(name), "Panel") {}

  forms::SSTab tabs{*this, "tabs", {.Tabs = 3}};
  forms::Frame range{*this, "range"};
  forms::Frame mode{*this, "mode", {.Container = &tabs, .Tab = 1}};
  forms::ControlArray<forms::OptionButton> OptGain{
      *this, "OptGain", {{0, {.Container = &range, .Value = 1}}, {2, {.Container = &range}}}};
  forms::OptionButton OptRange{*this, "OptRange", {.Container = &range}};
  forms::ControlArray<forms::OptionButton> OptMode{
      *this, "OptMode", {{0, {.Container = &mode, .Value = 1}}, {1, {.Container = &mode}}}};
  forms::OptionButton OptLoose{*this, "OptLoose", {.Value = 1}};
  forms::CheckBox check{*this, "check", {.Container = &mode}};
  forms::ListBox list{*this, "list", {.List = {"a", "b", "c"}}};
  forms::ComboBox combo{*this, "combo", {.Text = "choose", .List = {"a", "b"}}};
  forms::TextBox box{*this, "box", {.Text = "88"}};
  forms::TextBox lines{*this, "lines", {.MultiLine = true}};
  forms::Label label{*this, "label", {.Caption = "x", .ToolTipText = "tip"}};
  forms::HScrollBar bar{*this, "bar"};
};

struct FormsControls : ::testing::Test, FormsProgram {
  Panel* panel = nullptr;

  void SetUp() override {
    add<Panel>("panel");
    panel = &form<Panel>("panel");
    for (forms::Control* control : panel->controls()) {
      note(*control, {Event::Click, Event::Change, Event::MouseDown, Event::MouseUp, Event::DblClick,
                      Event::GotFocus, Event::LostFocus});
    }
  }
};

TEST_F(FormsControls, OptionsOfOneContainerExcludeEachOther) {
  panel->OptGain(2).Value = true;
  EXPECT_FALSE(panel->OptGain(0).Value);
  panel->OptRange.Value = true;  // another name in the same frame
  EXPECT_FALSE(panel->OptGain(2).Value);
  EXPECT_TRUE(panel->OptMode(0).Value);
  EXPECT_TRUE(panel->OptLoose.Value);
}

TEST_F(FormsControls, AnOptionRaisesClickOnlyWhenItBecomesTrue) {
  panel->OptGain(2).Value = true;
  EXPECT_EQ(take_notes(), Notes{"OptGain(2).Click"});
  panel->OptGain(2).Value = true;
  panel->OptGain(2).Value = false;
  EXPECT_EQ(take_notes(), Notes{});
}

TEST_F(FormsControls, TheOthersAreClearedBeforeTheClick) {
  panel->OptGain(2).handle(Event::Click, [&](forms::EventArgs& args) {
    notes.push_back(std::to_string(args.index) + (panel->OptGain(0).Value ? " both" : " alone"));
  });
  panel->OptGain(2).Value = true;
  EXPECT_EQ(take_notes(), Notes{"2 alone"});
}

TEST_F(FormsControls, AUsersClickOnAnOptionSelectsItAndRaisesOneClick) {
  forms::user::click(panel->OptGain(2));
  EXPECT_TRUE(panel->OptGain(2).Value);
  EXPECT_FALSE(panel->OptGain(0).Value);
  EXPECT_EQ(take_notes(), Notes{"OptGain(2).Click"});
}

TEST_F(FormsControls, ACheckBoxThatChangesRaisesClick) {
  panel->check.Value = 1;
  EXPECT_EQ(take_notes(), Notes{"check.Click"});
  panel->check.Value = 1;
  EXPECT_EQ(take_notes(), Notes{});
  forms::user::click(panel->check);
  EXPECT_EQ(panel->check.Value, 0);
  EXPECT_EQ(take_notes(), Notes{"check.Click"});
  EXPECT_EQ(error_of([&] { panel->check.Value = -1; }), 380);
  EXPECT_EQ(panel->check.Value, 0);
}

TEST_F(FormsControls, SettingListIndexRaisesClick) {
  panel->list.ListIndex = 2;
  EXPECT_EQ(take_notes(), Notes{"list.Click"});
  EXPECT_EQ(panel->list.List(panel->list.ListIndex), "c");
  panel->list.ListIndex = -1;
  EXPECT_EQ(take_notes(), Notes{"list.Click"});
}

TEST_F(FormsControls, ABadRowIsRefusedAndTheOldOneStays) {
  panel->list.ListIndex = 1;
  take_notes();
  EXPECT_EQ(error_of([&] { panel->list.ListIndex = 3; }), 380);
  EXPECT_EQ(error_of([&] { panel->list.ListIndex = -2; }), 380);
  EXPECT_EQ(error_of([&] { forms::user::click_row(panel->list, 3); }), 380);
  EXPECT_EQ(panel->list.ListIndex, 1);
  EXPECT_EQ(take_notes(), Notes{});
}

TEST_F(FormsControls, ListsGrowAndAreCleared) {
  panel->list.ListIndex = 2;
  panel->list.AddItem("d");
  EXPECT_EQ(panel->list.ListCount(), 4);
  EXPECT_EQ(panel->list.ListIndex, 2);
  take_notes();
  panel->list.Clear();
  EXPECT_EQ(panel->list.ListCount(), 0);
  EXPECT_EQ(panel->list.ListIndex, -1);
  EXPECT_EQ(take_notes(), Notes{});
  EXPECT_EQ(panel->list.List(0), "");
}

TEST_F(FormsControls, AUsersChoiceOfARowRaisesClickOnce) {
  forms::user::click_row(panel->combo, 1);
  EXPECT_EQ(take_notes(), (Notes{"combo.MouseDown", "combo.Click", "combo.MouseUp"}));
  forms::user::click_row(panel->combo, 1);  // the same row again
  EXPECT_EQ(take_notes(), (Notes{"combo.MouseDown", "combo.Click", "combo.MouseUp"}));
}

TEST_F(FormsControls, ADropDownShowsItsDesignTextUntilARowIsChosen) {
  EXPECT_EQ(panel->combo.Text, "choose");
  panel->combo.ListIndex = 0;
  EXPECT_EQ(panel->combo.Text, "a");
  forms::user::click_row(panel->combo, 1);
  EXPECT_EQ(panel->combo.Text, "b");
}

TEST_F(FormsControls, ATextThatChangesRaisesChange) {
  panel->box.Text = "89";
  EXPECT_EQ(take_notes(), Notes{"box.Change"});
  panel->box.Text = "89";
  panel->box.Text.append("");
  panel->box.SelStart = 1;
  EXPECT_EQ(take_notes(), Notes{});
  panel->box.Text.append("A");
  EXPECT_EQ(panel->box.Text, "89A");
  EXPECT_EQ(take_notes(), Notes{"box.Change"});
}

TEST_F(FormsControls, AMissingElementIsError340) {
  EXPECT_EQ(error_of([&] { panel->OptGain(1); }), 340);
  EXPECT_EQ(error_of([&] { panel->OptGain(3); }), 340);
  EXPECT_EQ(error_of([&] { panel->OptGain(-1); }), 340);
  EXPECT_FALSE(panel->OptGain.has(1));
  EXPECT_EQ(panel->OptGain(2).full_name(), "OptGain(2)");
  EXPECT_EQ(panel->find("OptGain", 2), &panel->OptGain(2));
  EXPECT_EQ(panel->find("OptGain", 1), nullptr);
  EXPECT_EQ(panel->find("OptGain"), nullptr);
}

TEST_F(FormsControls, AScrollBarKeepsWithinItsBounds) {
  panel->bar.Max = 100;
  panel->bar.Value = 80;
  EXPECT_EQ(take_notes(), Notes{"bar.Change"});
  EXPECT_EQ(error_of([&] { forms::user::scroll(panel->bar, 101); }), 380);
  EXPECT_EQ(panel->bar.Value, 80);
  panel->bar.Max = 50;
  EXPECT_EQ(panel->bar.Value, 50);
  EXPECT_EQ(take_notes(), Notes{"bar.Change"});
}

TEST_F(FormsControls, ATabChangeRaisesClickAndABadTabIsRefused) {
  panel->tabs.Tab = 2;
  EXPECT_EQ(take_notes(), Notes{"tabs.Click"});
  EXPECT_EQ(error_of([&] { panel->tabs.Tab = 3; }), 380);
  EXPECT_EQ(panel->tabs.Tab, 2);
}

TEST_F(FormsControls, ShownTellsFormFramesAndTabs) {
  EXPECT_FALSE(panel->box.shown()) << "the form is hidden";
  panel->Show();
  EXPECT_TRUE(panel->box.shown());
  EXPECT_TRUE(panel->OptGain(0).shown());
  panel->range.Visible = false;
  EXPECT_FALSE(panel->OptGain(0).shown()) << "its frame is hidden";
  EXPECT_FALSE(panel->check.shown()) << "its frame stands on tab 1, tab 0 is in front";
  panel->tabs.Tab = 1;
  EXPECT_TRUE(panel->check.shown());
  panel->tabs.Visible = false;
  EXPECT_FALSE(panel->check.shown());
}

TEST_F(FormsControls, TypingPassesTheKeyFilter) {
  panel->box.handle(Event::KeyPress, [](forms::EventArgs& args) {
    if (args.key_ascii >= 'a' && args.key_ascii <= 'f') args.key_ascii -= 32;
    if (args.key_ascii == 'x') args.key_ascii = 0;
  });
  forms::user::type(panel->box, "\b\bfx1");
  EXPECT_EQ(panel->box.Text, "F1");
  forms::user::type(panel->box, "\b\b\b");  // more than there is
  EXPECT_EQ(panel->box.Text, "");
  EXPECT_EQ(forms::user::press_key(panel->box, 'x'), 0);
}

TEST_F(FormsControls, EnterIsAKeyPressThatASingleLineDoesNotTake) {
  int key = 0;
  panel->box.handle(Event::KeyPress, [&](forms::EventArgs& args) { key = args.key_ascii; });
  forms::user::enter(panel->box);
  EXPECT_EQ(key, 13);
  EXPECT_EQ(panel->box.Text, "88");
  forms::user::enter(panel->lines);
  EXPECT_EQ(panel->lines.Text, "\r\n");
}

TEST_F(FormsControls, AnyControlTakesTheUsersOtherActions) {
  forms::user::click(panel->label);
  forms::user::double_click(panel->label);
  forms::user::focus(panel->box);
  forms::user::leave(panel->box);
  forms::user::fill(panel->box, "12");
  EXPECT_EQ(take_notes(),
            (Notes{"label.Click", "label.DblClick", "box.GotFocus", "box.LostFocus", "box.Change"}));
}

TEST_F(FormsControls, PropertiesAreReachedByName) {
  forms::PropertyBase* enabled = panel->check.find_property("Enabled");
  ASSERT_NE(enabled, nullptr);
  enabled->set_value(false);
  EXPECT_FALSE(panel->check.Enabled);
  EXPECT_EQ(error_of([&] { enabled->set_value(1); }), 13);
  forms::PropertyBase* value = panel->check.find_property("Value");
  value->set_value(1);
  EXPECT_EQ(take_notes(), Notes{"check.Click"});
  EXPECT_EQ(error_of([&] { value->set_value(2); }), 380);
  EXPECT_EQ(panel->check.find_property("Text"), nullptr);
  EXPECT_EQ(std::get<std::string>(panel->label.find_property("ToolTipText")->value()), "tip");
}

TEST_F(FormsControls, AChangedControlIsListedOnceUntilItIsTaken) {
  runtime.take_changes();
  panel->label.Caption = "y";
  panel->label.Caption = "z";
  panel->box.Text = panel->box.Text.get();
  EXPECT_EQ(runtime.take_changes().controls, std::vector<forms::Control*>{&panel->label});
  EXPECT_FALSE(runtime.has_changes());
  panel->label.Caption = "x";
  EXPECT_TRUE(runtime.has_changes());
}

TEST(FormsEvents, HaveTheirNames) {
  forms::Event event{};
  EXPECT_TRUE(forms::event_from_name("SelectionChange", event));
  EXPECT_EQ(event, Event::SelectionChange);
  EXPECT_FALSE(forms::event_from_name("click", event));
}

TEST(FormsColors, FollowThePlatformsTable) {
  EXPECT_EQ(forms::html(forms::QBColor(2)), "#008000");
  EXPECT_EQ(forms::html(forms::QBColor(8)), "#808080");
  EXPECT_EQ(forms::html(forms::QBColor(9)), "#0000FF");
  EXPECT_EQ(forms::html(forms::QBColor(10)), "#00FF00");
  EXPECT_EQ(forms::html(forms::QBColor(12)), "#FF0000");
  EXPECT_EQ(forms::html(forms::QBColor(15)), "#FFFFFF");
  EXPECT_EQ(forms::QBColor(9.5), forms::QBColor(10));
  EXPECT_EQ(forms::QBColor(10.5), forms::QBColor(10));
  EXPECT_EQ(error_of([] { forms::QBColor(15.5); }), 5);
  EXPECT_EQ(error_of([] { forms::QBColor(-1); }), 5);
  EXPECT_EQ(forms::html(forms::clr_button_text), "#000000");
  EXPECT_EQ(forms::html(forms::clr_window_background), "#FFFFFF");
  EXPECT_EQ(forms::html({0x0000FF}), "#FF0000");
}

}  // namespace
}  // namespace varzelin::testing
