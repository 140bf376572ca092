// How every panel leaves: by its exit button and by its close box, idle and in both of its loops.
#include "support/panel_fixture.h"

namespace varzelin::testing {
namespace {

struct PanelLeaving : PanelTest {
  std::vector<std::string> loads;
  std::vector<std::vector<int>> sent_by_exit;

  void SetUp() override {
    make_measure();
    program.forms.on_loaded = [this](forms::Form& form) { loads.push_back(form.name()); };
  }
  bool is_loaded(const std::string& form_name) { return program.forms.loaded(form_name) != nullptr; }
  // Runs a loop in which the user acts at the fifth sample. True: the program ended.
  bool in_loop(forms::CommandButton& start, std::function<void()> action) {
    store.Sample_Count = 0;
    at_yield(count_reaches(5), std::move(action));
    return ends([&] { forms::user::click(start); });
  }
  // Where the panel is gone and the program isn't: the workbench stays while the session is open.
  void expect_left(Flag usb_open) {
    EXPECT_FALSE(is_loaded(GetParam()));
    EXPECT_TRUE(is_loaded(frmI2C_General::form_name));
    EXPECT_EQ(store.Usb_Open, usb_open);
    EXPECT_EQ(store.Man_Usb_Conn, 0);
    EXPECT_EQ(store.AbortRequested, 0);
    EXPECT_EQ(store.Sample_Run, 0);
    EXPECT_TRUE(user.errors.empty());
    EXPECT_TRUE(user.boxes.empty());
    EXPECT_TRUE(user.file_dialogs.empty());
  }
  void exit() {
    forget_traffic();
    forms::user::click(panel.Command4);
    sent_by_exit = sent_on(2);
    // The loop holds the session: nothing in the exit opens or closes it.
    EXPECT_EQ(calls("WDU_VB_Init") + calls("WDU_ResetDevice"), 0u);
    EXPECT_EQ(store.Man_Usb_Conn, -1);
  }
  // What the exit in a loop loads to unload it, the shell's forms and the panels of the model's list, and
  // what a panel among them writes to this one's sensor at its load.
  void expect_others_unloaded() {
    std::vector<std::string> expected{"frmAbout2", "frmScriptOps"};
    std::vector<std::vector<int>> registers;
    for (const std::string other : panel.model.unloaded_panels) {
      if (other == GetParam() || !program.forms.knows(other)) continue;
      expected.push_back(other);
      if (other != "frmKVT71356") continue;
      for (const std::vector<int>& write :
           {std::vector{0, 0x88, 0, 0x88}, {0, 0x88, 1, 0x00}, {0, 0x88, 2, 0xFF}, {0, 0x88, 3, 0x00}}) {
        registers.insert(registers.end(), {write, {2, 0x89, 2}, {2, 0x89, 0}});
      }
    }
    EXPECT_EQ(loads, expected);
    EXPECT_EQ(sent_by_exit, registers);
    for (const std::string& form_name : expected) EXPECT_FALSE(is_loaded(form_name)) << form_name;
    EXPECT_FALSE(is_loaded("frmStartup"));
    EXPECT_NE(log().find("Form will not close until USB Connection is closed."), std::string::npos);
  }
};

// --- the exit button ---

TEST_P(PanelLeaving, ExitEndsTheProgramBeforeItTouchesOtherPanels) {
  panel.Label18.Caption = "before";
  store.PendingUpdate = store.PendingClearInt = store.PendingReadRegs = -1;
  store.Sample_Run = -1;
  EXPECT_TRUE(ends(clicking(panel.Command4)));
  EXPECT_EQ(store.Sample_Run, 0);
  EXPECT_EQ(store.AbortRequested, -1);
  EXPECT_EQ(store.PendingUpdate, 0);
  EXPECT_EQ(store.PendingClearInt, 0);
  EXPECT_EQ(store.PendingReadRegs, 0);
  EXPECT_EQ(panel.Label18.Caption, "before");
  EXPECT_FALSE(panel.cmdAbort.Visible);
  EXPECT_EQ(loads, (std::vector<std::string>{"frmAbout2", "frmScriptOps"}));
  EXPECT_TRUE(recorder.calls.empty());
  EXPECT_TRUE(user.errors.empty());
}

TEST_P(PanelLeaving, ExitStopsEveryTimerBeforeItsFirstYield) {
  std::vector<forms::Control*> timers;
  for (forms::Control* control : panel.controls()) {
    if (control->kind() == forms::Kind::Timer) timers.push_back(control);
  }
  for (forms::Control* timer : timers) timer->Enabled = true;
  int yields = 0;
  user.at_yield = [&] {
    ++yields;
    for (const forms::Control* timer : timers) EXPECT_FALSE(timer->Enabled) << timer->name();
  };
  EXPECT_TRUE(ends(clicking(panel.Command4)));
  EXPECT_GT(yields, 0);
}

TEST_P(PanelLeaving, ExitInARealTimeRun) {
  EXPECT_FALSE(in_loop(panel.cmdCollectData, [&] { exit(); }));
  expect_left(0);
  expect_others_unloaded();
}

// A run that holds no session lets the program end.
TEST_P(PanelLeaving, ExitInATimedRun) {
  if (!panel.model.sampling_holds_session) {
    // Between two transfers the session is closed, and the workbench ends the program.
    const bool ended = in_loop(panel.cmdSample, clicking(panel.Command4));
    EXPECT_TRUE(ended || !is_loaded(GetParam()));
    EXPECT_TRUE(user.errors.empty());
    return;
  }
  EXPECT_FALSE(in_loop(panel.cmdSample, [&] { exit(); }));
  expect_left(usb_open_after_sampling());
  expect_others_unloaded();
}

// --- the close box ---

TEST_P(PanelLeaving, TheCloseBoxOfAnIdlePanel) {
  program.forms.unload(panel, 0);
  EXPECT_FALSE(is_loaded(GetParam()));
  EXPECT_TRUE(loads.empty());
  EXPECT_TRUE(user.errors.empty());
}

TEST_P(PanelLeaving, TheCloseBoxEndsARealTimeRun) {
  EXPECT_FALSE(in_loop(panel.cmdCollectData, [&] { program.forms.unload(panel, 0); }));
  expect_left(0);
  EXPECT_TRUE(loads.empty());
}

TEST_P(PanelLeaving, TheCloseBoxEndsATimedRun) {
  EXPECT_FALSE(in_loop(panel.cmdSample, [&] { program.forms.unload(panel, 0); }));
  expect_left(usb_open_after_sampling());
  EXPECT_TRUE(loads.empty());
}

// --- the end of the program ---

// With no window left a front end ends the program, from the yield it is in.
TEST_P(PanelLeaving, TheEndOfTheProgramLeavesEveryLoop) {
  for (forms::CommandButton* button : {&panel.cmdSample, &panel.cmdCollectData}) {
    EXPECT_TRUE(in_loop(*button, [&] { program.runtime.end(); })) << button->name();
  }
}

INSTANTIATE_TEST_SUITE_P(Each, PanelLeaving, ::testing::ValuesIn(every_panel()), panel_name);

}  // namespace
}  // namespace varzelin::testing
