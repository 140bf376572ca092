// Forms: loading on touch, showing, unloading, and how long their objects live.
#include <gtest/gtest.h>

#include <chrono>

#include "forms/user.h"
#include "support/forms_program.h"

namespace varzelin::testing {
namespace {

using forms::Event;

class Window final : public forms::Form {
 public:
  Window(forms::FormSet& set, std::string form_name, Notes& form_notes)
      : Form(set, std::move(form_name), "Window"), notes(form_notes) {}
  ~Window() override { note("gone"); }

  void Form_Load() override {
    note("Load");
    if (at_load) at_load(*this);
  }
  void Form_Activate() override { note("Activate"); }
  void Form_QueryUnload(bool& Cancel, int UnloadMode) override {
    note("QueryUnload " + std::to_string(UnloadMode));
    Cancel = refuses;
  }
  void Form_Unload(bool&) override {
    note("Unload");
    if (const auto act = std::exchange(at_unload, nullptr)) act(*this);
  }

  void note(const std::string& text) { notes.push_back(name() + " " + text); }

  Notes& notes;
  bool refuses = false;
  static inline std::function<void(Window&)> at_load;
  std::function<void(Window&)> at_unload;  // the next one
  forms::CommandButton button{*this, "button"};
  forms::ControlArray<forms::Label> labels{*this, "labels", forms::captioned({"a", "b"})};
  forms::Timer timer{*this, "timer", {.Enabled = false, .Interval = 10}};
};

struct FormsFormSet : ::testing::Test, FormsProgram {
  void SetUp() override {
    add<Window>("a");
    add<Window>("b");
  }
  void TearDown() override { Window::at_load = nullptr; }
  Window& a() { return form<Window>("a"); }
  Window& b() { return form<Window>("b"); }
  // What the main loop does between two turns.
  void turn() {
    runtime.service();
    forms.sweep();
  }
};

TEST_F(FormsFormSet, TouchLoadsOnceAndHidden) {
  EXPECT_EQ(forms.loaded("a"), nullptr);
  EXPECT_EQ(&a(), &a());
  EXPECT_EQ(take_notes(), Notes{"a Load"});
  EXPECT_FALSE(a().visible());
  EXPECT_EQ(forms.front(), nullptr);
}

TEST_F(FormsFormSet, HideLoadsAFormWithoutShowingIt) {
  forms.touch("a").Hide();
  EXPECT_EQ(take_notes(), Notes{"a Load"});
  ASSERT_NE(forms.loaded("a"), nullptr);
  EXPECT_FALSE(forms.loaded("a")->visible());
}

TEST_F(FormsFormSet, AFormThatTouchesItselfWhileLoadingLoadsOnce) {
  Window::at_load = [this](Window& window) { EXPECT_EQ(&forms.touch(window.name()), &window); };
  a();
  EXPECT_EQ(take_notes(), Notes{"a Load"});
}

TEST_F(FormsFormSet, ComingToTheFrontActivates) {
  a().Show();
  b().Show();
  take_notes();
  b().Show();
  EXPECT_EQ(take_notes(), Notes{}) << "in front already";
  a().Show();
  EXPECT_EQ(take_notes(), Notes{"a Activate"});
  EXPECT_EQ(forms.front(), &a());
}

TEST_F(FormsFormSet, WhenTheFrontFormGoesTheNextOneIsActivated) {
  a().Show();
  b().Show();
  take_notes();
  b().Hide();
  EXPECT_EQ(take_notes(), Notes{"a Activate"});
  b().Show();
  take_notes();
  forms.unload(b());
  EXPECT_EQ(take_notes(), (Notes{"b QueryUnload 1", "b Unload", "a Activate"}));
  b().Hide();
  EXPECT_EQ(take_notes(), Notes{"b Load"});
  a().Hide();
  EXPECT_EQ(forms.front(), nullptr);
}

TEST_F(FormsFormSet, HidingABackFormActivatesNothing) {
  a().Show();
  b().Show();
  take_notes();
  a().Hide();
  a().Hide();
  EXPECT_EQ(take_notes(), Notes{});
}

TEST_F(FormsFormSet, ARefusedUnloadKeepsTheForm) {
  a().Show();
  a().refuses = true;
  a().timer.Enabled = true;
  take_notes();
  EXPECT_FALSE(forms.unload(a(), 0));
  EXPECT_EQ(take_notes(), Notes{"a QueryUnload 0"});
  EXPECT_TRUE(a().visible());
  EXPECT_TRUE(a().timer.Enabled);
}

TEST_F(FormsFormSet, AnUnloadedFormIsFreshWhenItIsTouchedAgain) {
  a().button.Caption = "changed";
  EXPECT_TRUE(forms.unload(a()));
  EXPECT_EQ(forms.loaded("a"), nullptr);
  EXPECT_EQ(a().button.Caption, "");
  turn();
  EXPECT_EQ(take_notes(), (Notes{"a Load", "a QueryUnload 1", "a Unload", "a Load", "a gone"}));
}

TEST_F(FormsFormSet, UnloadingAnUnloadedFormLoadsItFirstAndCancelsItsDialogsUnseen) {
  user.file_answers = {"/tmp/x"};
  user.input_answers = {"1"};
  Window::at_load = [this](Window& window) {
    window.note(runtime.file_dialog({}) ? "file" : "no file");
    window.note(runtime.InputBox("", "", "") ? "input" : "no input");
    window.note(runtime.MsgBox("", forms::vbOKCancel) == forms::vbCancel ? "cancel" : "ok");
  };
  forms.unload("a");
  EXPECT_EQ(take_notes(),
            (Notes{"a Load", "a no file", "a no input", "a cancel", "a QueryUnload 1", "a Unload"}));
  EXPECT_TRUE(user.file_dialogs.empty() && user.inputs.empty() && user.boxes.empty());
  a();
  EXPECT_EQ(user.boxes.size(), 1u) << "an ordinary load shows its dialogs";
}

TEST_F(FormsFormSet, UnloadingALoadedFormDoesNotLoadItAgain) {
  a();
  forms.unload("a");
  EXPECT_EQ(take_notes(), (Notes{"a Load", "a QueryUnload 1", "a Unload"}));
  forms.unload("unknown");
  EXPECT_EQ(take_notes(), Notes{});
}

TEST_F(FormsFormSet, AHandlerGoesOnAfterItUnloadedItsForm) {
  Window& window = a();
  window.Show();
  window.button.handle(Event::Click, [&](forms::EventArgs&) {
    forms.unload(window);
    runtime.DoEvents();
    window.labels(1).Caption = "still there";
    window.note(window.labels(1).Caption);
  });
  take_notes();
  runtime.post([&] { forms::user::click(window.button); });
  runtime.service();
  EXPECT_EQ(take_notes(), (Notes{"a QueryUnload 1", "a Unload", "a still there"}));
  forms.sweep();
  EXPECT_EQ(take_notes(), Notes{"a gone"});
  EXPECT_FALSE(runtime.has_changes()) << "nothing points to the object that is gone";
}

// A loop that runs for hours doesn't keep what is opened and closed meanwhile.
TEST_F(FormsFormSet, AFormGoesThoughAHandlerOfAnotherOneIsOnTheStack) {
  runtime.post([&] { forms::user::click(b().button); });
  b().button.handle(Event::Click, [&](forms::EventArgs&) {
    runtime.post([&] { a(); });
    runtime.post([&] { forms.unload("a"); });
    take_notes();
    runtime.DoEvents();
    EXPECT_EQ(take_notes(), (Notes{"a Load", "a QueryUnload 1", "a Unload", "a gone"}));
    runtime.DoEvents();
  });
  runtime.service();
}

TEST_F(FormsFormSet, AFormThatAHandlerOnTheStackReachedForStaysUntilItReturned) {
  runtime.post([&] { a(); });
  runtime.service();
  runtime.post([&] {
    Window& window = a();
    runtime.post([&] { forms.unload("a"); });
    take_notes();
    runtime.DoEvents(3);
    EXPECT_EQ(take_notes(), (Notes{"a QueryUnload 1", "a Unload"}));
    window.note("used");
  });
  runtime.service();
  EXPECT_EQ(take_notes(), (Notes{"a used", "a gone"}));
}

TEST_F(FormsFormSet, AFormThatIsUnloadedInItsOwnUnloadStaysUntilTheOuterOneIsDone) {
  runtime.post([&] { a(); });
  runtime.service();
  dynamic_cast<Window&>(*forms.loaded("a")).at_unload = [&](Window& window) {
    runtime.post([&] { forms.unload("a"); });
    runtime.DoEvents(3);
    window.note("still there");
  };
  runtime.post([&] { forms.unload(*forms.loaded("a")); });
  take_notes();
  runtime.service();
  EXPECT_EQ(take_notes(),
            (Notes{"a QueryUnload 1", "a Unload", "a QueryUnload 1", "a Unload", "a still there", "a gone"}));
}

TEST_F(FormsFormSet, AFormWhoseHandlerIsFurtherDownTheStackStays) {
  Window* window = nullptr;
  runtime.post([&] { window = &a(); });
  runtime.service();
  window->button.handle(Event::Click, [&](forms::EventArgs&) {
    runtime.post([&] {
      runtime.post([&] { forms.unload("a"); });
      runtime.DoEvents(2);
    });
    runtime.DoEvents(2);
    window->note("goes on");
  });
  runtime.post([&] { forms::user::click(window->button); });
  take_notes();
  runtime.service();
  EXPECT_EQ(take_notes(), (Notes{"a QueryUnload 1", "a Unload", "a goes on", "a gone"}));
}

// It comes forward in a handler of another form: its Form_Activate is on the stack then.
TEST_F(FormsFormSet, AFormThatIsActivatedStaysUntilTheHandlerReturned) {
  Window* window = nullptr;
  runtime.post([&] {
    window = &a();
    window->Show();
    b().Show();
  });
  runtime.service();
  runtime.post([&] {
    forms.hide(b());
    EXPECT_TRUE(runtime.is_kept(*window));
  });
  runtime.service();
  EXPECT_FALSE(runtime.is_kept(*window));
}

TEST_F(FormsFormSet, AHandlerThatShowsItsUnloadedFormLeavesNothingInFront) {
  Window& window = a();
  window.button.handle(Event::Click, [&](forms::EventArgs&) {
    forms.unload(window);
    window.Show();
  });
  runtime.post([&] { forms::user::click(window.button); });
  turn();
  EXPECT_EQ(forms.front(), nullptr);
}

TEST_F(FormsFormSet, AnUnloadSwitchesTheTimersOff) {
  Window& window = a();
  window.timer.handle(Event::Timer, [&](forms::EventArgs&) { window.note("tick"); });
  window.timer.Enabled = true;
  forms.unload(window);
  EXPECT_FALSE(window.timer.Enabled);
  pass(50);
  take_notes();
  runtime.service();
  EXPECT_EQ(take_notes(), Notes{});
  forms.sweep();
  EXPECT_FALSE(runtime.until_next_timer());
}

TEST_F(FormsFormSet, AFormCanBeOpenedTwice) {
  a();
  forms::Form& second = forms.touch_another("a");
  EXPECT_EQ(second.name(), "a#2");
  EXPECT_NE(&second, &a());
  EXPECT_EQ(forms.touch_another("a").name(), "a#3");
  forms.unload(second);
  EXPECT_EQ(forms.touch_another("a").name(), "a#2");
  EXPECT_EQ(forms.all_loaded().size(), 3u);
}

TEST_F(FormsFormSet, FrontEndsAreToldOfComingAndGoing) {
  forms.on_loaded = [this](forms::Form& one) { notes.push_back("loaded " + one.name()); };
  forms.on_unloaded = [this](forms::Form& one) { notes.push_back("unloaded " + one.name()); };
  a();
  forms.unload(a());
  EXPECT_EQ(take_notes(), (Notes{"loaded a", "a Load", "a QueryUnload 1", "a Unload", "unloaded a"}));
}

TEST_F(FormsFormSet, AnErrorInFormLoadLeavesTheFormLoaded) {
  Window::at_load = [](Window&) { forms::raise_error(forms::overflow); };
  runtime.dispatch([this] { a().Show(); });
  EXPECT_EQ(user.errors, std::vector<int>{6});
  ASSERT_NE(forms.loaded("a"), nullptr);
  EXPECT_FALSE(a().visible());
}

// --- controls of a form ---

class Twins final : public forms::Form {
 public:
  Twins(forms::FormSet& set, std::string form_name, int second_index)
      : Form(set, std::move(form_name), "Twins"), second(*this, "twin", {}, second_index) {}

  forms::Label first{*this, "twin", {}, 0};
  forms::Label second;
};

TEST_F(FormsFormSet, ControlsOfOneNameDifferByTheirIndex) {
  const Twins twins(forms, "twins", 1);
  EXPECT_EQ(twins.find("twin", 0), &twins.first);
  EXPECT_EQ(twins.find("twin", 1), &twins.second);
  EXPECT_EQ(twins.find("twin"), nullptr);
}

using FormsFormSetDeathTest = FormsFormSet;

TEST_F(FormsFormSetDeathTest, TwoControlsOfOneNameAndIndexAreRefused) {
  EXPECT_DEBUG_DEATH(Twins(forms, "twins", 0), "find\\(control.name");
}

}  // namespace
}  // namespace varzelin::testing
