#include "support/console_fixture.h"

namespace console_test {
namespace {

using ConsoleActing = ConsoleTest;

TEST_F(ConsoleActing, ClickRunsTheHandler) {
  EXPECT_EQ(log_after({"click frmBench.cmdCount", "dblclick frmBench.cmdCount", "focus frmBench.cmdCount",
                       "leave frmBench.cmdCount", "click frmBench.mnuOpen"}),
            "ok \"Count DblClick GotFocus LostFocus Open\"");
}

TEST_F(ConsoleActing, ClickOnOptionsAndChecks) {
  EXPECT_EQ(log_after({"click frmBench.OptGain(2)", "click frmBench.chkCover", "click frmBench.chkCover"}),
            "ok \"Gain2 Cover Cover\"");
  EXPECT_EQ(run({"click frmBench.OptGain(2)", "get frmBench.OptGain(0).Value",
                 "get frmBench.OptGain(2).Value", "click frmBench.chkCover", "get frmBench.chkCover.Value"}),
            (Lines{"ok", "ok false", "ok true", "ok", "ok 1"}));
}

TEST_F(ConsoleActing, ClickOnControlsWithoutHandlerIsDone) {
  EXPECT_EQ(run({"click frmBench.lblLog", "click frmBench.txtEntry", "click frmBench.ShpAttach"}),
            (Lines{"ok", "ok", "ok"}));
}

TEST_F(ConsoleActing, ClickOnRows) {
  EXPECT_EQ(log_after({"click frmBench.lstRows 1"}), "ok \"Down Row1 Up\"");
  EXPECT_EQ(log_after({"click frmBench.grdScript 2"}), "ok \"Cell2/1\"");
  EXPECT_EQ(
      run({"click frmBench.grdScript 2", "get frmBench.grdScript.SelectedRow", "click frmBench.cboModel 1",
           "get frmBench.cboModel.Text", "get frmBench.cboModel.ListIndex"}),
      (Lines{"ok", "ok 2", "ok", "ok \"B\"", "ok 1"}));
  EXPECT_EQ(run({"click frmBench.lstRows 2", "click frmBench.lstRows -1", "click frmBench.grdScript 0",
                 "click frmBench.grdScript 3", "click frmBench.cmdCount 1", "click frmBench.lstRows x",
                 "click frmBench.lstRows 1 1", "get frmBench.lstRows.ListIndex"}),
            (Lines{"error no such row: 2", "error no such row: -1", "error no such row: 0",
                   "error no such row: 3", "error not a list: frmBench.cmdCount",
                   "error not a whole number: x", "error too many arguments: 1", "ok -1"}));
}

TEST_F(ConsoleActing, TypeEnterAndFill) {
  EXPECT_EQ(log_after({"type frmBench.txtEntry axb", "enter frmBench.txtEntry"}),
            "ok \"Key97 Change Key120 Key98 Change Key13\"");
  EXPECT_EQ(run({"type frmBench.txtEntry axb", "get frmBench.txtEntry.Text", "fill frmBench.txtEntry \"0 5\"",
                 "get frmBench.txtEntry.Text", "fill frmBench.txtEntry \"\"", "get frmBench.txtEntry.Text"}),
            (Lines{"ok", "ok \"ab\"", "ok", "ok \"0 5\"", "ok", "ok \"\""}));
  EXPECT_EQ(run({"type frmBench.cmdCount a", "enter frmBench.lblLog", "fill frmBench.cboModel A",
                 "type frmBench.txtEntry", "fill frmBench.txtEntry a b", "enter frmBench.txtEntry 13"}),
            (Lines{"error not a text box: frmBench.cmdCount", "error not a text box: frmBench.lblLog",
                   "error not a text box: frmBench.cboModel", "error missing argument: TEXT",
                   "error too many arguments: b", "error too many arguments: 13"}));
}

TEST_F(ConsoleActing, Scroll) {
  EXPECT_EQ(log_after({"scroll frmBench.vsbRows 12"}), "ok \"Scroll12\"");
  EXPECT_EQ(
      run({"scroll frmBench.vsbRows 40000", "scroll frmBench.cmdCount 1", "scroll frmBench.vsbRows 1.5"}),
      (Lines{"error out of range: 40000", "error not a scroll bar: frmBench.cmdCount",
             "error not a whole number: 1.5"}));
}

TEST_F(ConsoleActing, TheUserReachesNothingHiddenOrDisabled) {
  const Lines commands{"click", "dblclick",    "focus",         "leave",       "type NAME a",
                       "enter", "fill NAME a", "scroll NAME 1", "click NAME 1"};
  const auto names = [](const std::string& command) {
    if (command.find("scroll") == 0) return "vsbRows";
    if (command == "click NAME 1") return "lstRows";
    return "txtEntry";
  };
  for (const std::string& command : commands) {
    const std::string name = std::string("frmBench.") + names(command);
    const std::size_t place = command.find("NAME");
    const std::string line =
        place == std::string::npos ? command + " " + name : std::string(command).replace(place, 4, name);
    EXPECT_EQ(last({"set " + name + ".Visible false", line}), "error not shown: " + name);
    EXPECT_EQ(last({"set " + name + ".Enabled false", line}), "error not enabled: " + name);
    EXPECT_EQ(last({"set frmBench.Visible false", line}), "error not shown: " + name);
  }
}

TEST_F(ConsoleActing, AFrameHidesAndDisablesWhatStandsInIt) {
  EXPECT_EQ(last({"set frmBench.fraGain.Enabled false", "click frmBench.OptGain(2)"}),
            "error not enabled: frmBench.OptGain(2)");
  EXPECT_EQ(last({"set frmBench.fraGain.Visible false", "click frmBench.OptGain(2)"}),
            "error not shown: frmBench.OptGain(2)");
  EXPECT_EQ(last({"set frmBench.mnuFile.Enabled false", "click frmBench.mnuOpen"}),
            "error not enabled: frmBench.mnuOpen");
  EXPECT_EQ(last({"click frmBench.lblBehind"}), "error not shown: frmBench.lblBehind");
}

TEST_F(ConsoleActing, NamesOfActions) {
  EXPECT_EQ(
      run({"click frmBench", "click frmBench.cmdNone", "click frmBench.OptGain(1)", "click frmSpare.cmdCount",
           "click frmNone.cmdCount", "click frmBench.cmdCount.Caption", "click"}),
      (Lines{"error no such control: frmBench", "error no such control: frmBench.cmdNone",
             "error no such element: frmBench.OptGain(1)", "error not loaded: frmSpare",
             "error no such control: frmNone", "error no such control: frmBench.cmdCount.Caption",
             "error missing argument: NAME"}));
}

TEST_F(ConsoleActing, EventsReachHiddenAndDisabledControls) {
  EXPECT_EQ(log_after({"set frmBench.cmdCount.Visible false", "set frmBench.cmdCount.Enabled false",
                       "event frmBench.cmdCount Click", "event frmBench.lstRows MouseUp",
                       "event frmBench.txtEntry KeyPress 13", "event frmBench.grdScript SelectionChange 3 1",
                       "event frmBench.OptGain(2) Click", "event frmBench.cmdCount MouseDown"}),
            "ok \"Count Up Key13 Cell3/1 Gain2\"");
  EXPECT_EQ(last({"event frmBench.tmrTick Timer", "get frmBench.lblTicks.Caption"}), "ok \"1\"");
}

TEST_F(ConsoleActing, EventsOfForms) {
  EXPECT_EQ(log_after({"event frmBench Load", "event frmBench Activate", "event frmBench QueryUnload",
                       "event frmBench Unload", "event frmBench Resize"}),
            "ok \"Load Activate QueryUnload0 Unload Resize\"");
}

TEST_F(ConsoleActing, EventsThatAreRefused) {
  EXPECT_EQ(
      run({"event frmBench.cmdCount Explode", "event frmBench Click", "event frmBench.txtEntry KeyPress",
           "event frmBench.txtEntry KeyPress a", "event frmBench.grdScript SelectionChange 1",
           "event frmBench.lstRows MouseUp 1", "event frmBench Load 1", "event frmSpare Load",
           "event frmBench.cmdNone Click", "event frmBench.cmdCount"}),
      (Lines{"error no such event: Explode", "error no such event: Click", "error missing argument: KEY",
             "error not a whole number: a", "error missing argument: COLUMN", "error too many arguments: 1",
             "error too many arguments: 1", "error not loaded: frmSpare",
             "error no such control: frmBench.cmdNone", "error missing argument: EVENT"}));
}

TEST_F(ConsoleActing, SetRaisesWhatProgramCodeRaises) {
  EXPECT_EQ(log_after({"set frmBench.OptGain(2).Value true", "set frmBench.chkCover.Value 1",
                       "set frmBench.txtEntry.Text abc", "set frmBench.lstRows.ListIndex 0",
                       "set frmBench.vsbRows.Value 3"}),
            "ok \"Gain2 Cover Change Row0 Scroll3\"");
}

TEST_F(ConsoleActing, SetParsesByType) {
  const std::string lamp = "frmBench.ShpAttach.FillColor";
  EXPECT_EQ(run({"set " + lamp + " #102030", "get " + lamp, "set " + lamp + " 255", "get " + lamp,
                 "set " + lamp + " 0xFF0000", "get " + lamp, "set " + lamp + " &H80000005", "get " + lamp,
                 "set frmBench.picChart.CurrentX 1.5", "get frmBench.picChart.CurrentX",
                 "set frmBench.Caption \"New one\"", "get frmBench.Caption"}),
            (Lines{"ok", "ok \"#102030\"", "ok", "ok \"#FF0000\"", "ok", "ok \"#0000FF\"", "ok",
                   "ok \"#FFFFFF\"", "ok", "ok 1.5", "ok", "ok \"New one\""}));
  EXPECT_EQ(
      run({"set " + lamp + " #12345", "set " + lamp + " #+12345", "set " + lamp + " red",
           "set " + lamp + " -1", "set frmBench.cmdCount.Enabled 1", "set frmBench.OptGain(0).Value yes",
           "set frmBench.chkCover.Value true", "set frmBench.chkCover.Value 9999999999",
           "set frmBench.picChart.CurrentX nan", "set frmBench.tmrTick.Interval 1.5", "get " + lamp}),
      (Lines{"error not a colour: #12345", "error not a colour: #+12345", "error not a colour: red",
             "error not a colour: -1", "error not true or false: 1", "error not true or false: yes",
             "error not a whole number: true", "error out of range: 9999999999", "error not a number: nan",
             "error not a whole number: 1.5", "ok \"#000000\""}));
}

TEST_F(ConsoleActing, WhatTheControlRefusesIsARunTimeError) {
  EXPECT_EQ(run({"set frmBench.lstRows.ListIndex 2", "get frmBench.lstRows.ListIndex"}),
            (Lines{"* runtime-error {\"number\":380,\"text\":\"Invalid property value\"}", "ok", "ok -1"}));
}

TEST_F(ConsoleActing, SetThatIsRefused) {
  EXPECT_EQ(
      run({"set frmBench.cmdCount.Nothing 1", "set frmBench.lstRows.List 1", "set frmBench.Loaded false",
           "set frmBench 1", "set frmBench.cmdCount.Caption", "set frmBench.cmdCount.Caption a b",
           "set frmSpare.Caption x", "set frmBench.grdScript.Cell(1,1) x"}),
      (Lines{"error no such property to set: frmBench.cmdCount.Nothing",
             "error no such property to set: frmBench.lstRows.List",
             "error no such property to set: frmBench.Loaded", "error no such property to set: frmBench",
             "error missing argument: VALUE", "error too many arguments: b", "error not loaded: frmSpare",
             "error no such property to set: frmBench.grdScript.Cell(1,1)"}));
}

TEST_F(ConsoleActing, SetStore) {
  EXPECT_EQ(run({"set store.Sample_Value(11) 77", "get store.Sample_Value(11)",
                 "set store.GraphUnit1 \"a b\"", "get store.GraphUnit1", "set store.PeakReading 1.5",
                 "get store.PeakReading", "set store.Screen_Pixels(2,3) -1", "get store.Screen_Pixels(2,3)"}),
            (Lines{"ok", "ok 77", "ok", "ok \"a b\"", "ok", "ok 1.5", "ok", "ok -1"}));
  EXPECT_EQ(
      run({"set store.Sample_Value 1", "set store.Sample_Value(1011) 1", "set store.Board_Rev x",
           "set store.Board_Rev 40000", "set store.Board_Rev 1.5", "set store.PeakReading x",
           "set store.Nothing 1", "set store.Board_Rev", "set store.Active_Form x", "get store.Board_Rev"}),
      (Lines{"error no such element: store.Sample_Value", "error no such element: store.Sample_Value(1011)",
             "error not a whole number: x", "error out of range: 40000", "error not a whole number: 1.5",
             "error not a number: x", "error no such variable: store.Nothing",
             "error missing argument: VALUE", "error read only: store.Active_Form", "ok 2"}));
}

TEST_F(ConsoleActing, RunTimeErrorsAreNotesAndTheCommandIsDone) {
  EXPECT_EQ(run({"click frmBench.cmdError", "get frmBench.Visible"}),
            (Lines{"* runtime-error {\"number\":6,\"text\":\"Overflow\"}", "ok", "ok true"}));
}

TEST_F(ConsoleActing, FrontActivates) {
  EXPECT_EQ(run({"front frmSpare", "front frmNone", "set frmBench.Visible false", "front frmBench"}),
            (Lines{"error not loaded: frmSpare", "error no such control: frmNone", "ok",
                   "error not shown: frmBench"}));
  EXPECT_EQ(log_after({"front frmBench"}), "ok \"\"");  // it was in front already
}

TEST_F(ConsoleActing, CloseIsTheCloseBox) {
  EXPECT_EQ(log_after({"set frmBench.chkCover.Value 1", "close frmBench"}), "ok \"Cover QueryUnload0\"");
  EXPECT_EQ(run({"close frmBench", "get frmBench.Loaded"}), (Lines{"ok", "* ended"}));
  EXPECT_EQ(run({"set frmBench.Visible false", "close frmBench", "get frmBench.Loaded"}),
            (Lines{"ok", "error not shown: frmBench", "ok true"}));
}

}  // namespace
}  // namespace console_test
