// The workbench as a window: texts, menus, closing, scrolling.
#include "support/workbench_fixture.h"

namespace varzelin::testing {
namespace {

using Window = WorkbenchTest;

constexpr auto close_refused = "Form will not close until USB Connection is closed. Click USB Disconnect";

TEST_F(Window, ButtonsHaveTheirTexts) {
  struct Texts {
    const CommandButton& button;
    const char* caption;
    const char* tool_tip;
  };
  for (const auto& [button, caption, tool_tip] :
       {Texts{bench.cmdTestComm, "Test", "Click to test Communications"},
        Texts{bench.cmdReadRegs, "Read All Active   Registers",
              "Performs Single Byte Reads on all Registers"},
        Texts{bench.cmdwriteAll, "Write All Active  Registers",
              "Performs Single Byte Writes  on all Registers"},
        Texts{bench.Command7, "Set Write Data = Read Data ",
              "Moves Active Device Registers  Read Data Into Associated Write Boxes"},
        Texts{bench.cmdClearLog, "Clear Log", ""}, Texts{bench.cmdexit, "Exit", ""},
        Texts{bench.cmdUSBConnect, "USB Connect", "Connect and leave USB connection open."},
        Texts{bench.cmdUSBDisconnect, "USB Disconnect", "Close USB Connection."},
        Texts{bench.cbReset, "Reset", "Reset Procedure"},
        Texts{bench.cbSend, "Send All", "Updates all writable registers and samples internal registers."}}) {
    EXPECT_EQ(button.Caption, caption);
    EXPECT_EQ(button.ToolTipText, tool_tip) << caption;
  }
  EXPECT_EQ(bench.ChKManUsbConn.Caption, "Manual USB Connect / Disconnect");
  EXPECT_EQ(bench.ChKManUsbConn.ToolTipText, "Check to disable automatic open / closing of USB connection.");
}

TEST_F(Window, BoxesHaveTheirTexts) {
  EXPECT_EQ(bench.Reg_Adr(31).ToolTipText, "Register Address 0x00 to 0xFF");
  EXPECT_EQ(bench.Reg_Desc(31).ToolTipText, "");
  EXPECT_EQ(bench.txtBWrite(31).ToolTipText, "Double click, or press ENTER key to write to single register");
  EXPECT_EQ(bench.txtRdByte(31).ToolTipText, "Single click to read register");
  EXPECT_EQ(bench.txtI2CAdr.ToolTipText, "Enter I2C Address");
  EXPECT_EQ(bench.txtTstReg(0).ToolTipText, "If good Com, will be equal to 1.");
  EXPECT_EQ(bench.txtTstReg(1).ToolTipText, "If good Com, will be equal to 1.");
  EXPECT_EQ(bench.Frame1(0).Caption, "Active Device Registers");
  EXPECT_EQ(bench.Frame1(1).Caption, "Active Device Registers");
  EXPECT_EQ(bench.Label2(0).Caption, "Write");
  EXPECT_EQ(bench.Label2(1).Caption, "Read");
  EXPECT_EQ(bench.Label2(2).Caption, "Adr");
  EXPECT_EQ(bench.Label2(3).Caption, "Description");
}

TEST_F(Window, MenusStandWhereTheyBelong) {
  EXPECT_EQ(bench.mnuFileProcess.Caption, "File");
  EXPECT_EQ(bench.mnuOPen.Caption, "Open");
  EXPECT_EQ(bench.mnuOPen.container(), &bench.mnuFileProcess);
  EXPECT_EQ(bench.mnuSetup_Open.Caption, "Comm Register Definitions");
  EXPECT_EQ(bench.mnuSetup_Open.container(), &bench.mnuOPen);
  EXPECT_EQ(bench.mnuSetup_Save.Caption, "Save");
  EXPECT_EQ(bench.mnu_ScriptShow.Caption, "Script Execution");
  EXPECT_EQ(bench.mnuGPIO.Caption, "GPIO Screen");
  EXPECT_EQ(bench.frmAbout.Caption, "About");
  EXPECT_EQ(bench.mnuUsbDiagnostics.Caption, "USB Diagnostics");
  for (int i = 0; i < 5; ++i) EXPECT_EQ(bench.mnuUsbDiag(i).container(), &bench.mnuUsbDiagnostics);
  EXPECT_FALSE(bench.mnuUsbDiag.has(5));
}

TEST_F(Window, GpioAndAboutAreShownByTheirMenuEntries) {
  click(bench.mnuGPIO);
  EXPECT_TRUE(program.forms.loaded("frmGPIO")->visible());
  click(bench.frmAbout);
  EXPECT_TRUE(program.forms.loaded("frmAbout2")->visible());
}

// Stands in for the script panel and keeps how it found the session when it came forward.
class ScriptStandIn final : public ProgramForm {
 public:
  ScriptStandIn(Program& owner, std::string name) : ProgramForm(owner, std::move(name), "") {}
  void Form_Load() override {
    loaded_open = store.Usb_Open;
    loaded_manual = store.Man_Usb_Conn;
  }
  Flag loaded_open = 1;
  Flag loaded_manual = 1;
};

TEST_F(Window, TheScriptEntryClosesTheSessionAndForcesAutomaticModeFirst) {
  if (!program.forms.knows("frmScriptOps")) {
    program.forms.add("frmScriptOps", [this](const std::string& name) {
      return std::make_unique<ScriptStandIn>(program, name);
    });
  }
  hold_session();
  click(bench.mnu_ScriptShow);
  EXPECT_EQ(recorder.calls, (std::vector<std::string>{"WDU_ResetDevice", "CloseHandle", "WDU_VB_Uninit"}));
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_EQ(store.Man_Usb_Conn, 0);
  EXPECT_EQ(bench.ChKManUsbConn.Value, 0);
  // Not the button's disconnect: its fields stay.
  EXPECT_EQ(bench.ShpHandleStatus.FillColor.get(), light_green);
  EXPECT_FALSE(bench.cmdexit.Enabled);
  const forms::Form* script = program.forms.loaded("frmScriptOps");
  ASSERT_NE(script, nullptr);
  EXPECT_TRUE(script->visible());
  if (const auto* stand_in = dynamic_cast<const ScriptStandIn*>(script)) {
    EXPECT_EQ(stand_in->loaded_open, 0);
    EXPECT_EQ(stand_in->loaded_manual, 0);
  }
}

TEST_F(Window, TheLogIsClearedByItsButton) {
  click(bench.cbReset);
  EXPECT_EQ(
      logged("Press Reset Button On Evaluation Board, Software Reseting Control Registers to Reset Status"),
      1);
  EXPECT_EQ(recorder.calls, std::vector<std::string>{});
  click(bench.cmdClearLog);
  EXPECT_EQ(bench.Txtlog.Text, "");
}

TEST_F(Window, ResetAndSendStayDisabled) {
  click(bench.cmdUSBConnect);
  EXPECT_FALSE(bench.cbSend.Enabled || bench.cbReset.Enabled);
  click(bench.cmdUSBDisconnect);
  EXPECT_FALSE(bench.cbSend.Enabled || bench.cbReset.Enabled);
}

// --- closing ---

TEST_F(Window, AnOpenSessionKeepsTheWorkbench) {
  click(bench.cmdUSBConnect);
  EXPECT_FALSE(bench.cmdexit.Enabled);
  EXPECT_FALSE(ends([&] { bench.cmdexit_Click(); }));
  EXPECT_FALSE(ends([&] { program.forms.unload(bench, 0); }));
  EXPECT_EQ(logged(close_refused), 2);
  EXPECT_EQ(program.forms.loaded("frmI2C_General"), &bench);
  EXPECT_FALSE(program.runtime.ended());

  click(bench.cmdUSBDisconnect);
  EXPECT_TRUE(bench.cmdexit.Enabled);
  EXPECT_TRUE(ends([&] { bench.cmdexit_Click(); }));
  EXPECT_EQ(logged(close_refused), 2);
  EXPECT_TRUE(program.runtime.ended());
}

TEST_F(Window, UnloadingYieldsOnceBeforeTheEnd) {
  EXPECT_EQ(yields_of([&] { EXPECT_TRUE(ends([&] { program.forms.unload(bench, 0); })); }), 1);
}

// --- scrolling ---

struct Scrolling : WorkbenchTest {
  void resize(double width, double height) {
    bench.ScaleWidth = width;
    bench.ScaleHeight = height;
    program.runtime.dispatch([&] { bench.Form_Resize(); });
  }
  void table_size(double width, double height) {
    bench.pbinner.Width = width;
    bench.pbinner.Height = height;
  }
};

TEST_F(Scrolling, ATableThatFitsHasNoBars) {
  table_size(4000, 3000);
  resize(4255, 3655);
  EXPECT_EQ(bench.pbouter.Width, 4000);
  EXPECT_EQ(bench.pbouter.Height, 3000);
  EXPECT_FALSE(bench.VScroll1.Visible);
  EXPECT_FALSE(bench.HScroll1.Visible);
  EXPECT_EQ(bench.pbinner.Left, 0);
  EXPECT_EQ(bench.pbinner.Top, 0);
}

TEST_F(Scrolling, EachDirectionHasABarByTheOverhang) {
  table_size(4000, 3000);
  resize(4254, 3655);
  EXPECT_TRUE(bench.HScroll1.Visible);
  EXPECT_EQ(bench.HScroll1.Max, 1);
  EXPECT_FALSE(bench.VScroll1.Visible);
  resize(4255, 2655);
  EXPECT_FALSE(bench.HScroll1.Visible);
  EXPECT_TRUE(bench.VScroll1.Visible);
  EXPECT_EQ(bench.VScroll1.Max, 1000);
  for (const forms::ScrollBar* bar :
       {static_cast<forms::ScrollBar*>(&bench.VScroll1), static_cast<forms::ScrollBar*>(&bench.HScroll1)}) {
    EXPECT_EQ(bar->LargeChange, 2500);
    EXPECT_EQ(bar->SmallChange, 250);
  }
}

TEST_F(Scrolling, TheBarsMoveTheTableAndFittingBringsItBack) {
  table_size(4000, 3000);
  resize(2255, 1655);
  forms::user::scroll(bench.VScroll1, 700);
  forms::user::scroll(bench.HScroll1, 900);
  EXPECT_EQ(bench.pbinner.Top, -700);
  EXPECT_EQ(bench.pbinner.Left, -900);

  resize(4255, 1655);
  EXPECT_FALSE(bench.HScroll1.Visible);
  EXPECT_EQ(bench.pbinner.Left, 0);
  EXPECT_EQ(bench.pbinner.Top, -700);
  resize(4255, 3655);
  EXPECT_FALSE(bench.VScroll1.Visible);
  EXPECT_EQ(bench.pbinner.Top, 0);
}

TEST_F(Scrolling, ASmallerOverhangTakesTheTableAlong) {
  table_size(4000, 3000);
  resize(4255, 1655);
  forms::user::scroll(bench.VScroll1, 2000);
  resize(4255, 3155);
  EXPECT_EQ(bench.VScroll1.Max, 500);
  EXPECT_EQ(bench.pbinner.Top, -500);
}

TEST_F(Scrolling, BelowFiveHundredNothingHappens) {
  table_size(4000, 3000);
  resize(4255, 3655);
  for (const auto& [width, height] : {std::pair{499.0, 900.0}, {900.0, 499.0}, {0.0, 0.0}}) {
    resize(width, height);
    EXPECT_EQ(bench.pbouter.Width, 4000);
    EXPECT_EQ(bench.pbouter.Height, 3000);
    EXPECT_FALSE(bench.VScroll1.Visible || bench.HScroll1.Visible);
  }
  resize(500, 1000);
  EXPECT_EQ(bench.pbouter.Width, 245);
  EXPECT_EQ(bench.pbouter.Height, 345);
}

TEST_F(Scrolling, OnlyTheHorizontalBarYieldsAndATabYieldsTwice) {
  table_size(4000, 3000);
  resize(2255, 1655);
  EXPECT_EQ(yields_of([&] { forms::user::scroll(bench.VScroll1, 10); }), 0);
  EXPECT_EQ(yields_of([&] { forms::user::scroll(bench.HScroll1, 10); }), 1);
  EXPECT_EQ(yields_of([&] { bench.SSTab1.Tab = 1; }), 2);
  EXPECT_EQ(recorder.calls, std::vector<std::string>{});
}

}  // namespace
}  // namespace varzelin::testing
