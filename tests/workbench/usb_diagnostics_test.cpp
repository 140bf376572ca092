// The USB diagnostics: their words in the log, what they ask, what they do to the device.
#include "workbench/usb_diagnostics.h"

#include "support/fake_driver.h"
#include "support/workbench_fixture.h"

namespace varzelin::testing {
namespace {

using Texts = std::vector<std::string>;

struct Diagnostics : ::testing::Test {
  forms::VirtualClock clock;
  FakeDriver driver;
  TestFrontEnd user;
  Program program{clock, driver, user};
  frmI2C_General* bench = nullptr;

  // Two configurations; the first with two interfaces, one of them with two settings.
  Diagnostics() {
    const boards::AlternateSetting bulk{0, 0xFF, 0x1A, 0x2B, {{0x82, 2, 0x40, 0}, {0x03, 3, 0x200, 0x0A}}};
    const boards::AlternateSetting none{1, 8, 6, 0x50, {}};
    driver.info.configurations = {{1, {{0, {bulk, none}}, {3, {none}}}}, {7, {{2, {bulk}}}}};
    add_forms(program);
    bench = &program.forms.touch<frmI2C_General>();
    program.store.Dev_Handle = 77;
    forget();
  }
  void forget() {
    bench->Txtlog.Text = "";
    driver.set_interface.clear();
    driver.reset_pipes.clear();
    driver.devices.clear();
  }
  void choose(Diagnostic choice, const Texts& replies = {}) {
    for (const std::string& reply : replies) user.input_answers.emplace_back(reply);
    program.runtime.dispatch([&] { Diag_Menu(program, *bench, choice); });
  }
  // The log's entries without their time.
  Texts log() const {
    Texts entries;
    const std::string& all = bench->Txtlog.Text.get();
    for (std::size_t at = 0; at < all.size();) {
      const std::size_t end = all.find("\r\n\r\n", at);
      const std::string entry = all.substr(at, end - at);
      entries.push_back(entry.substr(0, entry.rfind(" :")));
      at = end + 4;
    }
    return entries;
  }
  forms::Color log_lamp() const { return bench->shpLogStatus.FillColor; }
};

const std::string no_pipes =
    "PrintEndpoints: No pipes were detected for the device other than the default pipe (number 0).\r\n";

// --- configurations ---

TEST_F(Diagnostics, OneConfigurationIsPrintedUnasked) {
  driver.info.configurations.pop_back();
  choose(Diagnostic::PrintConfigurations);
  EXPECT_EQ(log(),
            (Texts{"This device has 1 configuration(s):", "0. configuration value 1 (has 2 interface(s))",
                   "The configuration indexed 0 has 2 interface(s):", "interface no. 0:",
                   "    alternate: 0,  endpoints: 2,  class: &HFF,  subclass: &H1A,\r\n"
                   "    protocol: &H2B",
                   "    end-point address: &H82,  attributes: &H2,  max packet: &H40,\r\n"
                   "    Interval: &H0",
                   "    end-point address: &H3,  attributes: &H3,  max packet: &H200,\r\n"
                   "    Interval: &HA",
                   "    alternate: 1,  endpoints: 0,  class: &H8,  subclass: &H6,\r\n"
                   "    protocol: &H50",
                   no_pipes, "interface no. 3:",
                   "    alternate: 1,  endpoints: 0,  class: &H8,  subclass: &H6,\r\n"
                   "    protocol: &H50",
                   no_pipes}));
  EXPECT_TRUE(user.inputs.empty());
  EXPECT_EQ(driver.devices, std::vector<boards::Handle>{77});
  EXPECT_EQ(log_lamp(), red);
}

TEST_F(Diagnostics, OfSeveralConfigurationsTheIndexIsAsked) {
  choose(Diagnostic::PrintConfigurations, {"1"});
  ASSERT_EQ(user.inputs.size(), 1u);
  EXPECT_EQ(user.inputs[0].title, "Enter configuration index");
  EXPECT_EQ(user.inputs[0].prompt,
            "Please enter the configuration \r\nindex to display (dec - zero based): ");
  EXPECT_EQ(log()[0], "This device has 2 configuration(s):");
  EXPECT_EQ(log()[1], "0. configuration value 1 (has 2 interface(s))");
  EXPECT_EQ(log()[2], "1. configuration value 7 (has 1 interface(s))");
  EXPECT_EQ(log()[3], "The configuration indexed 1 has 1 interface(s):");
  EXPECT_EQ(log()[4], "interface no. 2:");
  EXPECT_EQ(log().size(), 8u);
}

TEST_F(Diagnostics, AnIndexOutOfRangeIsRefusedAndAskedAgain) {
  choose(Diagnostic::PrintConfigurations, {"2", "-1", "65536"});
  ASSERT_EQ(user.boxes.size(), 2u);
  for (const forms::MessageBox& box : user.boxes) {
    EXPECT_EQ(
        box.text,
        "You have not entered a valid configuration index.\r\nValid values are 0 to 1 (dec). Please try "
        "again");
  }
  EXPECT_EQ(log()[3], "The configuration indexed 0 has 2 interface(s):");  // 65536 is 0 in 16 bits
}

TEST_F(Diagnostics, CancelPrintsNoConfiguration) {
  choose(Diagnostic::PrintConfigurations);
  EXPECT_EQ(log(),
            (Texts{"This device has 2 configuration(s):", "0. configuration value 1 (has 2 interface(s))",
                   "1. configuration value 7 (has 1 interface(s))",
                   "PrintDeviceConfigurations: Invalid configuration number selected."}));
}

TEST_F(Diagnostics, ADeviceWithoutConfigurationsIsToldAndNotLookedInto) {
  driver.info.configurations.clear();
  choose(Diagnostic::PrintConfigurations);
  EXPECT_EQ(log(), (Texts{"This device has 0 configuration(s):",
                          "PrintDeviceConfigurations: Invalid configuration number selected."}));
}

TEST_F(Diagnostics, ADeviceThatGivesNoInformationIsLogged) {
  driver.fails["WDU_GetDeviceInfo"] = 0x1F;
  choose(Diagnostic::PrintConfigurations);
  choose(Diagnostic::ReadWritePipe);
  EXPECT_EQ(log(), (Texts{"PrintDeviceConfigurations: WDU_GetDeviceInfo failed: error &H1F (words for 31)",
                          "PrintDeviceConfigurations() failed",
                          "ReadWritePipesMenu: WDU_GetDeviceInfo() failed:\r\nerror &H1F (words for 31)"}));
  EXPECT_TRUE(user.inputs.empty());
  EXPECT_EQ(log_lamp(), red);
}

// --- alternate setting ---

TEST_F(Diagnostics, TheAlternateSettingIsChanged) {
  choose(Diagnostic::ChangeAlternateSetting, {"3", "1"});
  ASSERT_EQ(user.inputs.size(), 2u);
  EXPECT_EQ(user.inputs[0].title, "Select Interface");
  EXPECT_EQ(user.inputs[0].prompt, "Please enter the interface number (dec): ");
  EXPECT_EQ(user.inputs[1].title, "Select Alternate Setting");
  EXPECT_EQ(user.inputs[1].prompt, "Please enter the alternate setting index (dec): ");
  EXPECT_EQ(driver.set_interface, (std::vector<std::pair<std::int32_t, std::int32_t>>{{3, 1}}));
  EXPECT_EQ(driver.devices, std::vector<boards::Handle>{77});
  EXPECT_EQ(log(), (Texts{"DiagMenu - Change interface alternate setting:",
                          "WDU_SetInterface() for interface 3 alternate setting 1 completed successfully."}));
}

TEST_F(Diagnostics, AnAlternateSettingThatFailsIsLogged) {
  driver.fails["WDU_SetInterface"] = 0x20000007;
  choose(Diagnostic::ChangeAlternateSetting, {"0", "5"});
  EXPECT_EQ(log()[1],
            "WDU_SetInterface() for interface 0 alternate setting 5 failed:\r\nerror &H20000007 (words for "
            "536870919)");
  EXPECT_EQ(log_lamp(), red);
}

TEST_F(Diagnostics, GivingUpEitherNumberChangesNothing) {
  choose(Diagnostic::ChangeAlternateSetting);
  choose(Diagnostic::ChangeAlternateSetting, {"0"});
  EXPECT_TRUE(driver.set_interface.empty());
  EXPECT_EQ(log(), (Texts{"DiagMenu - Change interface alternate setting:",
                          "No valid interface number entered - menu option abandoned.",
                          "DiagMenu - Change interface alternate setting:",
                          "No valid alternate setting entered - menu option abandoned."}));
}

TEST_F(Diagnostics, WhatIsNoNumberCanBeRetried) {
  user.box_answers = {forms::vbRetry, forms::vbCancel};
  choose(Diagnostic::ChangeAlternateSetting, {"x", "0", "1F"});
  ASSERT_EQ(user.boxes.size(), 2u);
  for (const forms::MessageBox& box : user.boxes) {
    EXPECT_EQ(box.text, "You entered an invalid value.\r\nPlease try again.");
    EXPECT_EQ(box.buttons, 53);
    EXPECT_EQ(box.title, "Invalid Value");
  }
  EXPECT_EQ(user.inputs.size(), 3u);
  EXPECT_EQ(log()[1], "No valid alternate setting entered - menu option abandoned.");
}

// --- pipes ---

TEST_F(Diagnostics, APipeIsResetByItsHexadecimalNumber) {
  choose(Diagnostic::ResetPipe, {"82"});
  choose(Diagnostic::ResetPipe, {"&h10"});
  ASSERT_EQ(user.inputs.size(), 2u);
  EXPECT_EQ(user.inputs[0].title, "Select Pipe to Reset");
  EXPECT_EQ(user.inputs[0].prompt, "Please enter the pipe number (hex): ");
  EXPECT_EQ(driver.reset_pipes, (std::vector<std::int32_t>{0x82, 0x10}));
  EXPECT_EQ(driver.devices, (std::vector<boards::Handle>{77, 77}));
  EXPECT_EQ(log(), (Texts{"DiagMenu - Reset Pipe: WDU_ResetPipe() for pipe &H82 completed successfully.",
                          "DiagMenu - Reset Pipe: WDU_ResetPipe() for pipe &H10 completed successfully."}));
}

TEST_F(Diagnostics, AResetThatFailsIsLogged) {
  driver.fails["WDU_ResetPipe"] = 0xB;
  choose(Diagnostic::ResetPipe, {"f"});
  EXPECT_EQ(log(), Texts{"DiagMenu: WDU_ResetPipe() for pipe &HF failed:error &HB (words for 11)"});
  EXPECT_EQ(log_lamp(), red);
}

TEST_F(Diagnostics, GivingUpAPipeToResetIsLogged) {
  choose(Diagnostic::ResetPipe, {""});
  EXPECT_TRUE(driver.reset_pipes.empty());
  EXPECT_EQ(log(),
            (Texts{"DiagMenu - Reset Pipe: No valid pipe number entered.", "Read/Write Pipes failed"}));
}

TEST_F(Diagnostics, APipeOutsideTheActiveSettingIsRefused) {
  choose(Diagnostic::ReadWritePipe, {"81"});
  ASSERT_EQ(user.inputs.size(), 1u);
  EXPECT_EQ(user.inputs[0].title, "Enter Pipe Number");
  EXPECT_EQ(user.inputs[0].prompt, "Please enter the pipe number (hex): ");
  ASSERT_EQ(user.boxes.size(), 1u);
  EXPECT_EQ(user.boxes[0].text,
            "There is no pipe &H81 for the active alternate setting.\r\nPlease try again.");
  EXPECT_EQ(user.boxes[0].title, "generic_usb");
  EXPECT_EQ(log(), Texts{"Read/Write Pipes: Selected pipe does not exist."});
}

TEST_F(Diagnostics, APipeOfTheActiveSettingIsThere) {
  choose(Diagnostic::ReadWritePipe, {"82"});
  EXPECT_TRUE(user.boxes.empty());
  EXPECT_EQ(log(), Texts{"Read/Write Pipes: pipe &H82 is there."});
  forget();
  driver.info.active_alternate = 1;
  choose(Diagnostic::ReadWritePipe, {"82"});
  EXPECT_EQ(log(), Texts{"Read/Write Pipes: Selected pipe does not exist."});
}

TEST_F(Diagnostics, GivingUpAPipeToReadIsLogged) {
  user.box_answers = {forms::vbCancel};
  choose(Diagnostic::ReadWritePipe, {"pipe"});
  ASSERT_EQ(user.boxes.size(), 1u);
  EXPECT_EQ(user.boxes[0].text, "You did not enter a valid pipe number. Pleasy try again.");
  EXPECT_EQ(log(), (Texts{"Read/Write Pipes: No valid pipe number entered.", "Read/Write Pipes failed"}));
}

// --- the error that stands in the log ---

TEST_F(Diagnostics, ACallThatSucceedsLeavesNoErrorStanding) {
  struct Step {
    Diagnostic choice;
    Texts replies;
  };
  for (const Step& step :
       {Step{Diagnostic::PrintConfigurations, {"1"}}, Step{Diagnostic::ChangeAlternateSetting, {"0", "0"}},
        Step{Diagnostic::ResetPipe, {"82"}}, Step{Diagnostic::ReadWritePipe, {"82"}}}) {
    driver.fails["WDU_ResetPipe"] = 0xB;
    choose(Diagnostic::ResetPipe, {"f"});
    driver.fails.clear();
    EXPECT_EQ(program.store.Log_Error, true_flag);
    choose(step.choice, step.replies);
    EXPECT_EQ(program.store.Log_Error, false_flag) << static_cast<int>(step.choice);
    Log_Msg(program, "");
    EXPECT_EQ(log_lamp(), light_green);
  }
}

// --- the menu ---

using DiagnosticsMenu = WorkbenchTest;

TEST_F(DiagnosticsMenu, HasFiveChoices) {
  const Texts captions{"Show Device Configurations", "Change Alternate Setting", "Reset Pipe",
                       "Read / Write Pipes", "Exit"};
  for (int i = 0; i < 5; ++i) EXPECT_EQ(bench.mnuUsbDiag(i).Caption, captions[static_cast<std::size_t>(i)]);
}

TEST_F(DiagnosticsMenu, EachChoiceButExitHasASessionAroundIt) {
  const Texts inner[] = {
      {"WDU_GetDeviceInfo"}, {"WDU_SetInterface"}, {"WDU_ResetPipe"}, {"WDU_GetDeviceInfo"}};
  for (int i = 0; i < 4; ++i) {
    forget();
    user.input_answers = {"0", "0"};
    click(bench.mnuUsbDiag(i));
    Texts wanted{"WDU_VB_Init", "WDU_SetInterface", "WDU_GetDeviceInfo"};
    wanted.push_back(inner[i].front());
    wanted.insert(wanted.end(), {"WDU_ResetDevice", "CloseHandle", "WDU_VB_Uninit"});
    EXPECT_EQ(recorder.calls, wanted) << i;
    EXPECT_EQ(store.Usb_Open, 0);
  }
}

TEST_F(DiagnosticsMenu, InManualModeTheOpenSessionIsUsed) {
  hold_session();
  click(bench.mnuUsbDiag(0));
  EXPECT_EQ(recorder.calls, Texts{"WDU_GetDeviceInfo"});
  EXPECT_EQ(logged("This device has 1 configuration(s):"), 1);
  EXPECT_NE(store.Usb_Open, 0);
}

TEST_F(DiagnosticsMenu, ExitUnloadsTheWorkbenchByItsCloseRule) {
  hold_session();
  EXPECT_FALSE(ends([&] { bench.mnuUsbDiag_Click(4); }));
  EXPECT_EQ(logged("Form will not close until USB Connection is closed. Click USB Disconnect"), 1);
  click(bench.cmdUSBDisconnect);
  EXPECT_TRUE(ends([&] { bench.mnuUsbDiag_Click(4); }));
}

}  // namespace
}  // namespace varzelin::testing
