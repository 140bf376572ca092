// Start of the program, choice of the model, the about box, and the end.
#include <gtest/gtest.h>

#include <set>

#include "panels/multi_function/proximity_offset.h"
#include "panels/single_channel/kvt71346.h"
#include "shell/about_box.h"
#include "shell/start_panel.h"
#include "support/test_program.h"
#include "workbench/gpio_panel.h"

namespace varzelin::testing {
namespace {

struct Shell : ::testing::Test, TestProgram {
  frmStartup& startup() { return form<frmStartup>(); }
  bool loaded(const char* name) { return program.forms.loaded(name) != nullptr; }
  void choose_first() { choose(startup().cboDeviceSelect, 0); }
};

TEST_F(Shell, StartsOnTheModelListAlone) {
  EXPECT_EQ(program.forms.all_loaded().size(), 1u);
  EXPECT_TRUE(startup().visible());
  EXPECT_EQ(startup().Caption, "Varzelin Light Sensor Demo with Script Execution");
  EXPECT_EQ(startup().cboDeviceSelect.Text, "Device Select");
  EXPECT_EQ(startup().cboDeviceSelect.List(),
            (std::vector<std::string>{"KVT71346/7", "KVT71344/5", "KVT71388", "KVT71356", "KVT71374",
                                      "KVT71385", "KVT71338", "KVT71390", "KVT71376", "KVT71392"}));
  EXPECT_EQ(startup().frmRevision.Caption, "KVT713XX Temporary Revision Selection ");
  EXPECT_TRUE(recorder.calls.empty()) << "no USB activity yet";
  EXPECT_EQ(store.Active_Form, &startup());
}

TEST_F(Shell, TheRevisionIsBUnlessTheUserSaysOtherwise) {
  EXPECT_EQ(store.Rev_Sel, "B");
  EXPECT_TRUE(startup().OptRev(1).Value);
  EXPECT_FALSE(startup().OptRev(0).Value);
  click(startup().OptRev(0));
  EXPECT_EQ(store.Rev_Sel, "A");
  click(startup().OptRev(1));
  EXPECT_EQ(store.Rev_Sel, "B");
}

TEST_F(Shell, AChoiceHidesTheListLoadsTheWorkbenchHiddenAndShowsThePanel) {
  std::vector<std::string> order;
  program.forms.on_loaded = [&](forms::Form& one) { order.push_back(one.name()); };
  choose_first();
  EXPECT_EQ(order, (std::vector<std::string>{"frmI2C_General", "frmGPIO", "frmKVT71346"}));
  EXPECT_FALSE(startup().visible());
  EXPECT_FALSE(workbench().visible());
  EXPECT_FALSE(form<frmGPIO>().visible());
  EXPECT_TRUE(form<frmKVT71346>().visible());
  EXPECT_FALSE(loaded("frmProxOff"));
  EXPECT_EQ(store.Usb_Open, 0);
}

TEST_F(Shell, TheWorkbenchProbesTheBoardThenSendsTheGpioState) {
  workbench();
  const std::vector<std::string> connect{"WDU_VB_Init", "WDU_SetInterface", "WDU_GetDeviceInfo"};
  const std::vector<std::string> disconnect{"WDU_ResetDevice", "CloseHandle", "WDU_VB_Uninit"};
  const std::vector<std::string> transfers{"WDU_GetDeviceInfo", "WDU_Transfer", "WDU_GetDeviceInfo",
                                           "WDU_Transfer"};
  std::vector<std::string> expected;
  for (const auto* part : {&connect, &disconnect, &connect, &transfers, &disconnect}) {
    expected.insert(expected.end(), part->begin(), part->end());
  }
  EXPECT_EQ(recorder.calls, expected);
  EXPECT_EQ(store.I2C_WrAdr, 0x88);
  EXPECT_EQ(workbench().txtActualWrtAddress.Text, "88");
  EXPECT_EQ(workbench().txtActualReadAddress.Text, "89");
  EXPECT_TRUE(workbench().cmdexit.Enabled);
  EXPECT_FALSE(workbench().cbSend.Enabled);
  EXPECT_FALSE(workbench().cbReset.Enabled);
}

TEST_F(Shell, TheColoursAreSetBeforeTheProbeDrivesALamp) {
  store.Clr_LtGreen = 0;
  std::vector<double> colours;
  recorder.before_call = [&] { colours.push_back(store.Clr_LtGreen); };
  workbench();
  ASSERT_FALSE(colours.empty());
  EXPECT_EQ(colours[0], 10);
  EXPECT_EQ(workbench().shpUSBCon(1).FillColor, forms::QBColor(10));
  EXPECT_EQ(workbench().ShpHandleStatus.FillColor, forms::QBColor(10));
  EXPECT_EQ(workbench().ShpAttach.FillColor, forms::clr_black);
  EXPECT_EQ(workbench().shpLogStatus.FillColor, forms::QBColor(10));
}

TEST_F(Shell, TheProximityOffsetsAreLoadedAndStayHiddenForOneModelOnly) {
  choose(startup().cboDeviceSelect, 5);
  ASSERT_TRUE(loaded("frmProxOff"));
  frmProxOff& offsets = form<frmProxOff>();
  EXPECT_FALSE(offsets.visible());
  EXPECT_EQ(offsets.Caption, "Proximity Offset Subtraction Constants");
  EXPECT_EQ(offsets.FrmOffsets.Caption, "Prox. OffSet Constants (12 Bit A/D)");
  const std::vector<std::pair<const char*, const char*>> rows{
      {"100mA / DC", "700"}, {"100mA /  327kHz", "330"}, {"50mA / DC", "320"},  {"50mA /  327kHz", "150"},
      {"25mA / DC", "140"},  {"25mA /  327kHz", "60"},   {"12.5mA / DC", "60"}, {"12.5mA / 327kHz", "30"}};
  for (int i = 0; i < 8; ++i) {
    EXPECT_EQ(offsets.LblOffsetLables(i).Caption, rows[static_cast<std::size_t>(i)].first);
    EXPECT_EQ(offsets.txtProxOff(i).Text, rows[static_cast<std::size_t>(i)].second);
  }
  forms::user::fill(offsets.txtProxOff(3), "200");
  EXPECT_EQ(form<frmProxOff>().txtProxOff(3).Text, "200") << "kept while the program runs";
}

TEST_F(Shell, WithoutABoardThePanelIsShownAllTheSame) {
  board.unplug();
  choose_first();
  EXPECT_TRUE(form<frmKVT71346>().visible());
  EXPECT_NE(log().find("WriteGPIOPipe: WDU_GetDeviceInfo() failed:"), std::string::npos);
  EXPECT_TRUE(user.errors.empty());
  EXPECT_TRUE(user.boxes.empty());
}

TEST_F(Shell, WithoutADriverThePanelIsShownAllTheSame) {
  board.set_driver_present(false);
  choose_first();
  EXPECT_TRUE(form<frmKVT71346>().visible());
  EXPECT_NE(log().find("Write GPIOPipe .. USB Not opened"), std::string::npos);
  EXPECT_TRUE(user.errors.empty());
}

TEST_F(Shell, ClosingTheListBeforeAChoiceEndsTheProgram) {
  program.runtime.post([this] { program.forms.unload(startup(), 0); });
  program.runtime.run(program.forms);
  EXPECT_TRUE(program.runtime.ended());
  EXPECT_TRUE(recorder.calls.empty());
}

TEST_F(Shell, ClosingAPanelKeepsTheProgramAliveWithNothingOnScreen) {
  choose_first();
  int idle = 0;
  user.at_idle = [&](auto) {
    ++idle;
    program.runtime.post([this] { program.runtime.end(); });
  };
  program.runtime.post([this] { program.forms.unload(form<frmKVT71346>(), 0); });
  program.runtime.run(program.forms);
  EXPECT_EQ(idle, 1);
  EXPECT_EQ(program.forms.front(), nullptr);
  EXPECT_TRUE(loaded("frmI2C_General"));
}

// ---- The end

TEST_F(Shell, TheWorkbenchsExitEndsTheProgram) {
  workbench();
  int yields = 0;
  user.at_yield = [&] { ++yields; };
  EXPECT_TRUE(ends([this] { forms::user::click(workbench().cmdexit); }));
  EXPECT_TRUE(program.runtime.ended());
  EXPECT_EQ(yields, 1);
}

TEST_F(Shell, AnOpenSessionKeepsTheWorkbench) {
  frmI2C_General& bench = workbench();
  bench.Connect_Usb();
  bench.Txtlog.Text = "";
  EXPECT_FALSE(ends([&] { EXPECT_FALSE(program.forms.unload(bench, 0)); }));
  EXPECT_TRUE(log().starts_with(
      "Form will not close until USB Connection is closed. Click USB Disconnect :11-25-2008"));
  EXPECT_TRUE(loaded("frmI2C_General"));
  EXPECT_FALSE(program.runtime.ended());
  bench.Disconnect_USB();
  EXPECT_TRUE(ends([&] { program.forms.unload(bench, 0); }));
}

// ---- The about box

TEST_F(Shell, TheAboutBoxTellsTitleAndVersion) {
  click(startup().cmdAbout);
  frmAbout2& about = form<frmAbout2>();
  EXPECT_TRUE(about.visible());
  EXPECT_TRUE(startup().visible());
  EXPECT_EQ(about.Caption, std::string("About ") + application_title);
  EXPECT_EQ(about.lblVersion.Caption, "Version 5.4.1");
  EXPECT_EQ(about.lblTitle.Caption, application_title);
  EXPECT_NE(about.lblDescription.Caption, "");
  EXPECT_EQ(about.lblDisclaimer(0).Caption, "ACCURACY OF INFORMATION");
  EXPECT_TRUE(about.lblDisclaimer(1).Caption.get().starts_with("Every effort has been made to ensure"));
  EXPECT_TRUE(about.lblDisclaimer(1).Caption.get().ends_with("publications at any time without notice"));
  EXPECT_EQ(about.cmdSysInfo.Caption, "&System Info...");
  click(about.cmdOK);
  EXPECT_FALSE(loaded("frmAbout2"));
  EXPECT_EQ(store.Active_Form, &startup()) << "the form behind it comes forward";
}

TEST_F(Shell, SystemInformationGoesToTheLogWithoutALineBreak) {
  workbench().Txtlog.Text = "";
  click(form<frmAbout2>().cmdSysInfo);
  EXPECT_EQ(log(), "System Information Is Unavailable At This Time :11-25-2008 14:03:0700");
  EXPECT_TRUE(user.boxes.empty());
}

TEST_F(Shell, AnErrorOnTheWayToTheSystemInformationShowsNothing) {
  workbench();
  store.Clr_LtGreen = 99;  // no colour of the table
  click(form<frmAbout2>().cmdSysInfo);
  EXPECT_TRUE(user.errors.empty());
  EXPECT_TRUE(user.boxes.empty());
}

// Front ends, scripts and tests find a control by its name and index alone.
TEST_F(Shell, EveryControlOfEveryFormHasANameOfItsOwn) {
  workbench();
  for (const std::string& form_name : program.forms.names()) {
    std::set<std::pair<std::string, int>> names;
    const forms::Form& form = program.forms.touch(form_name);
    for (const forms::Control* control : form.controls()) {
      EXPECT_TRUE(names.emplace(control->name(), control->index()).second)
          << form_name << " " << control->full_name();
      EXPECT_EQ(form.find(control->name(), control->index()), control)
          << form_name << " " << control->full_name();
    }
    EXPECT_FALSE(names.empty()) << form_name;
  }
}

}  // namespace
}  // namespace varzelin::testing
