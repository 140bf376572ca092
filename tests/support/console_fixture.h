// A console on a virtual clock with a small program of its own: a form with a control of every kind.
#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "boards/simulated/simulated_board.h"
#include "console/console.h"
#include "forms/controls.h"
#include "forms/form.h"
#include "forms/grid.h"
#include "forms/picture.h"

namespace console_test {

using namespace forms;

class frmBench : public Form {
 public:
  frmBench(FormSet& set, std::string name) : Form(set, std::move(name), "Bench") {
    on(cmdCount, Event::Click, &frmBench::cmdCount_Click);
    on(cmdCount, Event::DblClick, &frmBench::cmdCount_DblClick);
    on(cmdCount, Event::GotFocus, &frmBench::cmdCount_GotFocus);
    on(cmdCount, Event::LostFocus, &frmBench::cmdCount_LostFocus);
    on(cmdLoop, Event::Click, &frmBench::cmdLoop_Click);
    on(cmdOther, Event::Click, &frmBench::cmdOther_Click);
    on(cmdStop, Event::Click, &frmBench::cmdStop_Click);
    on(cmdSleep, Event::Click, &frmBench::cmdSleep_Click);
    on(cmdDeepSleep, Event::Click, &frmBench::cmdDeepSleep_Click);
    on(cmdLong, Event::Click, &frmBench::cmdLong_Click);
    on(cmdError, Event::Click, &frmBench::cmdError_Click);
    on(cmdEnd, Event::Click, &frmBench::cmdEnd_Click);
    on(cmdBoxes, Event::Click, &frmBench::cmdBoxes_Click);
    on(cmdAsk, Event::Click, &frmBench::cmdAsk_Click);
    on(cmdFile, Event::Click, &frmBench::cmdFile_Click);
    on(cmdTransfer, Event::Click, &frmBench::cmdTransfer_Click);
    on(txtEntry, Event::KeyPress, &frmBench::txtEntry_KeyPress);
    on(txtEntry, Event::Change, &frmBench::txtEntry_Change);
    on(OptGain, Event::Click, &frmBench::OptGain_Click);
    on(chkCover, Event::Click, &frmBench::chkCover_Click);
    on(lstRows, Event::MouseDown, &frmBench::lstRows_MouseDown);
    on(lstRows, Event::Click, &frmBench::lstRows_Click);
    on(lstRows, Event::MouseUp, &frmBench::lstRows_MouseUp);
    on(grdScript, Event::SelectionChange, &frmBench::grdScript_SelectionChange);
    on(vsbRows, Event::Change, &frmBench::vsbRows_Change);
    on(mnuOpen, Event::Click, &frmBench::mnuOpen_Click);
    on(tmrTick, Event::Timer, &frmBench::tmrTick_Timer);
    on(tmrEnd, Event::Timer, &frmBench::cmdEnd_Click);
    on(tmrLoop, Event::Timer, &frmBench::cmdLoop_Click);
  }

  void Form_Load() override {
    grdScript.AddColumn("Command", 80);
    grdScript.AddColumn("Reply", 40);
    grdScript.set_rows(2);
    grdScript.set_row_height(2, 30);
    grdScript.set_text(2, 1, "W 00");
    grdScript.set_back(2, 1, clr_white);
    grdScript.set_align(2, 2, Align::Center);
    log("Load");
  }
  void Form_Activate() override { log("Activate"); }
  void Form_QueryUnload(bool& Cancel, int UnloadMode) override {
    log("QueryUnload" + std::to_string(UnloadMode));
    Cancel = chkCover.Value == 1;
  }
  void Form_Unload(bool&) override { log("Unload"); }
  void Form_Resize() override { log("Resize"); }

  void cmdCount_Click() { log("Count"); }
  void cmdCount_DblClick() { log("DblClick"); }
  void cmdCount_GotFocus() { log("GotFocus"); }
  void cmdCount_LostFocus() { log("LostFocus"); }
  // Stays until cmdStop is clicked.
  void cmdLoop_Click() {
    log("Loop");
    running_ = true;
    while (running_) {
      passes_ += 1;
      lblPasses.Caption = std::to_string(passes_);
      runtime().DoEvents();
    }
    log("LoopEnd");
  }
  // The same, slower, and stopped first.
  void cmdOther_Click() {
    log("Other");
    other_running_ = true;
    while (other_running_) {
      runtime().Sleep(10);
      runtime().DoEvents();
    }
    log("OtherEnd");
  }
  void cmdStop_Click() { (other_running_ ? other_running_ : running_) = false; }
  void cmdSleep_Click() {
    runtime().Sleep(1000);
    log("Slept");
  }
  void cmdDeepSleep_Click() {
    runtime().Sleep(700'000);
    log("Awake");
  }
  // Yields for 700 s.
  void cmdLong_Click() {
    for (int second = 0; second < 700; ++second) {
      runtime().Sleep(1000);
      runtime().DoEvents();
    }
    log("LongEnd");
  }
  void cmdError_Click() { raise_error(overflow); }
  void cmdEnd_Click() { runtime().end(); }
  void cmdBoxes_Click() {
    for (const int buttons : {vbOKOnly, vbOKCancel + vbExclamation, vbYesNoCancel, vbYesNo, vbRetryCancel}) {
      log(std::to_string(runtime().MsgBox("Text", buttons, "Title")));
    }
  }
  void cmdAsk_Click() { log(runtime().InputBox("Prompt", "Title", "7").value_or("none")); }
  void cmdFile_Click() {
    dlgFile.DialogTitle = "Open";
    dlgFile.Filter = "Text|*.txt";
    dlgFile.FileName = "old.txt";
    dlgFile.ShowOpen();
    log(dlgFile.FileName);
    dlgFile.ShowSave();
    log(dlgFile.FileName);
  }
  // Opens a session, writes a packet, reads a reply of three bytes, closes.
  void cmdTransfer_Click();
  void txtEntry_KeyPress(int& KeyAscii) {
    log("Key" + std::to_string(KeyAscii));
    if (KeyAscii == 'x') KeyAscii = 0;
  }
  void txtEntry_Change() { log("Change"); }
  void OptGain_Click(int Index) { log("Gain" + std::to_string(Index)); }
  void chkCover_Click() { log("Cover"); }
  void lstRows_MouseDown() { log("Down"); }
  void lstRows_Click() { log("Row" + std::to_string(lstRows.ListIndex)); }
  void lstRows_MouseUp() { log("Up"); }
  void grdScript_SelectionChange(int row, int column) {
    log("Cell" + std::to_string(row) + "/" + std::to_string(column));
  }
  void vsbRows_Change() { log("Scroll" + std::to_string(vsbRows.Value)); }
  void mnuOpen_Click() { log("Open"); }
  void tmrTick_Timer() {
    ticks_ += 1;
    lblTicks.Caption = std::to_string(ticks_);
  }

  void log(const std::string& entry) { lblLog.Caption.append(lblLog.Caption == "" ? entry : " " + entry); }

  boards::Driver* driver = nullptr;

  Label lblLog{*this, "lblLog"};
  Label lblPasses{*this, "lblPasses", {.Caption = "0", .ToolTipText = "Passes \"so far\""}};
  Label lblTicks{*this, "lblTicks", {.Caption = "0"}};
  CommandButton cmdCount{*this, "cmdCount", {.Caption = "Count"}};
  CommandButton cmdLoop{*this, "cmdLoop"};
  CommandButton cmdOther{*this, "cmdOther"};
  CommandButton cmdStop{*this, "cmdStop"};
  CommandButton cmdSleep{*this, "cmdSleep"};
  CommandButton cmdDeepSleep{*this, "cmdDeepSleep"};
  CommandButton cmdLong{*this, "cmdLong"};
  CommandButton cmdError{*this, "cmdError"};
  CommandButton cmdEnd{*this, "cmdEnd"};
  CommandButton cmdBoxes{*this, "cmdBoxes"};
  CommandButton cmdAsk{*this, "cmdAsk"};
  CommandButton cmdFile{*this, "cmdFile"};
  CommandButton cmdTransfer{*this, "cmdTransfer"};
  CommandButton cmdHidden{*this, "cmdHidden", {.Visible = false}};
  CommandButton cmdDisabled{*this, "cmdDisabled", {.Enabled = false}};
  TextBox txtEntry{*this, "txtEntry"};
  Frame fraGain{*this, "fraGain"};
  ControlArray<OptionButton> OptGain{
      *this,
      "OptGain",
      {{0, {.Container = &fraGain, .Value = 1}}, {2, {.Caption = "Gain 2", .Container = &fraGain}}}};
  CheckBox chkCover{*this, "chkCover"};
  ListBox lstRows{*this, "lstRows", {.List = {"first", "second"}}};
  ComboBox cboModel{*this, "cboModel", {.Text = "Choose", .List = {"A", "B"}}};
  PictureBox picChart{*this, "picChart", {.Width = 3, .Height = 2}};
  Shape ShpAttach{*this, "ShpAttach"};
  VScrollBar vsbRows{*this, "vsbRows"};
  SSTab tabPages{*this, "tabPages", {.Tabs = 2}};
  Label lblBehind{*this, "lblBehind", {.Container = &tabPages, .Tab = 1}};
  Grid grdScript{*this, "grdScript"};
  Menu mnuFile{*this, "mnuFile", {.Caption = "File"}};
  Menu mnuOpen{*this, "mnuOpen", {.Caption = "Open", .Container = &mnuFile}};
  CommonDialog dlgFile{*this, "dlgFile"};
  Timer tmrTick{*this, "tmrTick", {.Interval = 100}};
  Timer tmrEnd{*this, "tmrEnd", {.Enabled = false, .Interval = 50}};
  Timer tmrLoop{*this, "tmrLoop", {.Enabled = false, .Interval = 50}};

 private:
  bool running_ = false;
  bool other_running_ = false;
  int passes_ = 0;
  int ticks_ = 0;
};

inline void frmBench::cmdTransfer_Click() {
  boards::Handle session = 0;
  boards::Handle device = 0;
  const auto accept = [&](boards::Handle found, const boards::DeviceInfo&) {
    device = found;
    return true;
  };
  driver->WDU_VB_Init(session, {0x7A53, 0x2005}, {accept, [](boards::Handle) {}});
  runtime().DoEvents();
  std::size_t count = 0;
  std::vector<std::uint8_t> packet{0x02, 0x89, 0x0A};
  driver->WDU_Transfer(device, boards::pipe_i2c_out, false, packet, count);
  std::vector<std::uint8_t> reply(3, 0xEE);
  log(std::to_string(driver->WDU_Transfer(device, boards::pipe_i2c_in, true, reply, count)));
  driver->CloseHandle(session);
  driver->WDU_VB_Uninit(session);
}

using Lines = std::vector<std::string>;

// What the console writes on these lines, from the program's start on.
inline Lines run_console(Clock& clock, boards::Driver& driver, const std::string& input) {
  std::istringstream in(input);
  std::ostringstream out;
  console::StreamLines lines(in);
  console::Console console(clock, driver, lines, out);
  FormSet& forms = console.program().forms;
  const auto make = [&](std::string name) {
    auto form = std::make_unique<frmBench>(forms, std::move(name));
    form->driver = &driver;
    return form;
  };
  forms.add("frmBench", make);
  forms.add("frmSpare", make);
  console.run([](varzelin::Program& program) { program.forms.touch("frmBench").Show(); });

  Lines written;
  std::istringstream text(out.str());
  for (std::string line; std::getline(text, line);) written.push_back(line);
  return written;
}

class ConsoleTest : public testing::Test {
 protected:
  Lines run(const Lines& lines) {
    std::string input;
    for (const std::string& line : lines) input += line + "\n";
    return run_console(clock, board, input);
  }
  // The answer to the last of these lines, none of which writes a note.
  std::string last(const Lines& lines) {
    const Lines written = run(lines);
    EXPECT_EQ(written.size(), lines.size());
    return written.empty() ? "" : written.back();
  }
  // What the handlers told of themselves after these lines, the form's own start left out.
  std::string log_after(Lines lines) {
    lines.insert(lines.begin(), "set frmBench.lblLog.Caption \"\"");
    lines.push_back("get frmBench.lblLog.Caption");
    const Lines written = run(lines);
    return written.empty() ? "" : written.back();
  }

  VirtualClock clock;
  boards::SimulatedBoard board{clock};
};

}  // namespace console_test
