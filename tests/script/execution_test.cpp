// The run of a script: what its rows put on the bus, how reads are compared, and the ways to run it.
#include "support/script_fixture.h"

namespace varzelin::testing {
namespace {

using std::chrono::milliseconds;
constexpr int act = frmScriptOps::act_column;
constexpr int adr = frmScriptOps::address_column;

struct ScriptExecution : ScriptFixture {
  frmScriptOps* panel = nullptr;

  void load(std::string_view script, const std::string& name = "script.txt") { panel = &open(script, name); }
  // One pass over a script.
  void run(std::string_view script) {
    load(script);
    recorder.packets.clear();
    click(panel->cmdExecAll);
  }
  std::string cell(int row, int column) const { return text(*panel, row, column); }
  std::optional<forms::Color> color(int row, int column) const { return back(*panel, row, column); }
  // Runs `action` at every yield.
  void at_each_yield(std::function<void()> action) { user.at_yield = std::move(action); }
};

// --- packets ---

TEST_F(ScriptExecution, WritePackets) {
  const std::vector<std::pair<std::string, Bytes>> cases{
      {",8C", {1, 0x88, 0x8C}},
      {"04,8C", {2, 0x88, 0x04, 0x8C}},
      {"04,8C8D8E", {4, 0x88, 0x04, 0x8C, 0x8D, 0x8E}},
      {"0405,8C", {3, 0x88, 0x04, 0x8C, 0}},
      {"040506,8C", {4, 0x88, 0x04, 0x05, 0x8C, 0}},
      {"04050607,8C8D", {6, 0x88, 0x04, 0x05, 0x8C, 0x8D, 0, 0}},
      {"04,12345", {3, 0x88, 0x04, 0x12, 0x34}},
      {"04,1234567", {5, 0x88, 0x04, 0x12, 0x34, 0x56, 0x07}},
      {"zz,5Z", {2, 0x88, 0x00, 0x05}}};
  for (const auto& [line, packet] : cases) {
    run(line);
    EXPECT_EQ(i2c(false), ByteLists{packet}) << line;
  }
}

TEST_F(ScriptExecution, ReadPackets) {
  const std::vector<std::pair<std::string, Bytes>> cases{{",,1234", {2, 0x89}},
                                                         {"04,,1F", {1, 0x89, 0x04}},
                                                         {"0405,,1F", {1, 0x89, 0x04, 0}},
                                                         {"040506,,1F", {1, 0x89, 0x04, 0x05, 0}},
                                                         {"04050607,,1F", {1, 0x89, 0x04, 0x05, 0, 0}},
                                                         {"04,,1F1F1F1F", {4, 0x89, 0x04}}};
  for (const auto& [line, packet] : cases) {
    run(line);
    EXPECT_EQ(i2c(false), ByteLists{packet}) << line;
  }
}

TEST_F(ScriptExecution, ReplyOfAWriteIsAskedForByTheSharedCount) {
  load("04,8C8D8E,");
  store.I2C_WrCnt = 7;
  recorder.packets.clear();
  click(panel->cmdExecAll);
  ASSERT_EQ(recorder.packets.size(), 2u);
  EXPECT_EQ(recorder.packets[1].pipe, boards::pipe_i2c_in);
  EXPECT_EQ(recorder.packets[1].size, 8u);
}

TEST_F(ScriptExecution, ReplyOfAReadIsAskedForByTheRow) {
  board.set_register(6, 0xA5);
  run("06,,A5FF");
  ASSERT_EQ(recorder.packets.size(), 2u);
  EXPECT_EQ(recorder.packets[1].size, 3u);
  EXPECT_EQ(recorder.packets[1].bytes, (Bytes{2, 0xA5, 0xFF}));
  EXPECT_EQ(cell(1, act), "A5FF");
}

TEST_F(ScriptExecution, WritesBeforeItReads) {
  run("05,5A,5A");
  EXPECT_EQ(i2c(false), (ByteLists{{2, 0x88, 0x05, 0x5A}, {1, 0x89, 0x05}}));
  EXPECT_EQ(board.register_value(5), 0x5A);
  EXPECT_EQ(panel->txtRdPass.Text, "1");
}

TEST_F(ScriptExecution, RegisterBytesAloneCauseNoTransfer) {
  run("04\n `w100\n ,,,\n   ");
  EXPECT_TRUE(recorder.packets.empty());
  for (int row = 1; row <= 4; ++row) EXPECT_EQ(color(row, adr), light_green);
}

TEST_F(ScriptExecution, EachRowSetsTheSharedAddress) {
  run("00,,00\n`A5C\n`A7");
  EXPECT_EQ(store.I2C_WrAdr, 0x5C) << "the last row keeps the former address";
  EXPECT_EQ(store.I2C_RdAdr, 0x5D);
}

TEST_F(ScriptExecution, AddressFeHasTheReadAddressFf) {
  run("`AFE\n00,,00");
  EXPECT_EQ(i2c(false), (ByteLists{{1, 0xFF, 0x00}}));
}

// --- comparison and colours ---

TEST_F(ScriptExecution, EqualAndDifferentReads) {
  board.set_register(2, 0x1F);
  run("02,,1f # same\n02,,2F # differs\n02,,1F");
  EXPECT_EQ(cell(1, act), "1F");
  EXPECT_EQ(color(1, act), light_green);
  EXPECT_EQ(cell(2, act), "1F");
  EXPECT_EQ(color(2, act), red);
  EXPECT_EQ(color(3, act), light_green);
  EXPECT_EQ(panel->txtRdPass.Text, "2");
  EXPECT_EQ(panel->txtRdFails.Text, "1");
  EXPECT_EQ(store.Fails_Before, 1);
  EXPECT_EQ(store.Fails_Now, 1);
  EXPECT_TRUE(log().find("Qty Error") == std::string::npos);
}

TEST_F(ScriptExecution, OddExpectedDataFailsOnAGoodRead) {
  board.set_register(2, 0x12);
  board.set_register(3, 0x34);
  run("02,,12345");
  EXPECT_EQ(cell(1, act), "1234");
  EXPECT_EQ(color(1, act), red);
  EXPECT_EQ(panel->txtRdFails.Text, "1");
}

TEST_F(ScriptExecution, WriteThatIsNotAcknowledged) {
  board.set_sensor_answers(false);
  run("04,8C,\n# next");
  EXPECT_EQ(color(1, frmScriptOps::wr_column), red);
  EXPECT_EQ(color(1, adr), light_green);
  EXPECT_EQ(color(2, adr), light_green) << "the pass goes on";
  EXPECT_EQ(mentioned("Write Qty Error Script Line 1 Actual= 0" + std::string(stamp)), 1u);
  EXPECT_EQ(panel->txtRdFails.Text, "0");
}

TEST_F(ScriptExecution, ReadThatIsNotAcknowledged) {
  board.set_sensor_answers(false);
  run("# first\n04,,00");
  EXPECT_EQ(color(2, frmScriptOps::rd_column), red);
  EXPECT_EQ(mentioned("Read Qty Error Script Line 2 Actual :0" + std::string(stamp)), 1u);
  EXPECT_EQ(color(2, act), light_green) << "the data are compared all the same";
  EXPECT_EQ(panel->txtRdPass.Text, "1");
}

TEST_F(ScriptExecution, StatusBytesInTheLogAreDecimal) {
  load("04,8C,8C");
  board.queue_reply({18});
  board.queue_reply({255, 0x8C});
  click(panel->cmdExecAll);
  EXPECT_EQ(mentioned("Write Qty Error Script Line 1 Actual= 18 :"), 1u);
  EXPECT_EQ(mentioned("Read Qty Error Script Line 1 Actual :255 :"), 1u);
  EXPECT_EQ(panel->txtRdPass.Text, "1");
}

TEST_F(ScriptExecution, GoodStatusOfAWriteCountsRegisterAndDataBytes) {
  run("04,8C8D,\n,8C");
  EXPECT_EQ(color(1, frmScriptOps::wr_column), std::nullopt);
  EXPECT_EQ(color(2, frmScriptOps::wr_column), std::nullopt);
}

TEST_F(ScriptExecution, IllegalAddressIsAMessage) {
  run("`AFF\n00,8C,8C\n# next");
  ASSERT_EQ(user.boxes.size(), 2u);
  EXPECT_EQ(user.boxes[0].text, "Illegal I2C address Script Row 1 Value = FF");
  EXPECT_EQ(user.boxes[1].text, "Illegal I2C address Script Row 2 Value = FF");
  EXPECT_TRUE(recorder.packets.empty());
  EXPECT_EQ(color(2, adr), light_green);
  EXPECT_EQ(color(3, adr), light_green);
  EXPECT_EQ(store.I2C_WrAdr, 0x88);
}

TEST_F(ScriptExecution, CommandRowInheritsTheByteCountsOfTheFileBefore) {
  load("03,5566,77\n03,,77");
  open("`A88\n# comment", "other.txt");
  recorder.packets.clear();
  click(panel->cmdExecAll);
  EXPECT_EQ(i2c(false), (ByteLists{{3, 0x88, 0, 0, 0}, {1, 0x89, 0}}));
  EXPECT_EQ(panel->txtRdFails.Text, "1");
  EXPECT_EQ(color(2, adr), light_green) << "a row without operation is skipped";
}

TEST_F(ScriptExecution, CommandRowOfAFirstLoadSendsNothing) {
  run("`A88\n`x");
  EXPECT_TRUE(recorder.packets.empty());
}

TEST_F(ScriptExecution, AnotherPanelHasItsOwnTables) {
  load("03,5566,77");
  user.file_answers.push_back(write_file("other.txt", "`A88"));
  click(panel->Dupform);
  auto& second = dynamic_cast<frmScriptOps&>(*program.forms.loaded("frmScriptOps#2"));
  recorder.packets.clear();
  click(second.cmdExecAll);
  EXPECT_TRUE(recorder.packets.empty());
  EXPECT_EQ(back(second, 1, adr), light_green);
  EXPECT_EQ(color(1, adr), std::nullopt);
  EXPECT_EQ(second.txtRunning.Text, "Done");
  EXPECT_EQ(panel->txtRunning.Text, "");
}

// --- delays and pauses ---

TEST_F(ScriptExecution, DelaySleepsInOneBlock) {
  load("`w2500");
  const auto before = clock.now();
  std::string shown;
  at_each_yield([&] { shown = cell(1, act); });
  click(panel->cmdExecAll);
  user.at_yield = nullptr;
  EXPECT_EQ(shown, "Delay 2500");
  EXPECT_GE(clock.now() - before, milliseconds(2500));
  EXPECT_LT(clock.now() - before, milliseconds(2520));
}

TEST_F(ScriptExecution, NoDelayForNoneAndForOtherNegatives) {
  load("`w0\n`w-5\n`wABC");
  const auto before = clock.now();
  click(panel->cmdExecAll);
  EXPECT_LT(clock.now() - before, milliseconds(20));
  EXPECT_TRUE(user.boxes.empty());
  EXPECT_TRUE(i2c(false).empty());
}

TEST_F(ScriptExecution, PauseGoesOnAfterOk) {
  load("# one\n`w\n00,,00");
  const auto before = clock.now();
  click(panel->cmdExecAll);
  ASSERT_EQ(user.boxes.size(), 1u);
  EXPECT_EQ(user.boxes[0].text, "Script Pause Line :2 Click OK to Continue, Cancel to Abort");
  EXPECT_EQ(user.boxes[0].buttons, forms::vbOKCancel);
  EXPECT_EQ(cell(2, act), "Delay Keypress");
  EXPECT_EQ(panel->txtRdPass.Text, "1");
  EXPECT_GE(clock.now() - before, milliseconds(200));
  EXPECT_EQ(store.AbortRequested, 0);
}

TEST_F(ScriptExecution, PauseAbortsAfterCancel) {
  load("`w-1\n00,,00");
  user.box_answers = {forms::vbCancel};
  const auto before = clock.now();
  click(panel->cmdExecAll);
  EXPECT_EQ(store.AbortRequested, true_flag);
  EXPECT_EQ(color(1, adr), light_green);
  EXPECT_EQ(color(2, adr), std::nullopt);
  EXPECT_GE(clock.now() - before, milliseconds(200)) << "the pause itself completes";
  EXPECT_EQ(panel->txtRunning.Text, "Done");
}

// --- one pass ---

TEST_F(ScriptExecution, PassConnectsOnceAndRunsEachRowOnce) {
  run("00,,00\n# c\n01,,00\n02,,00");
  EXPECT_EQ(count_calls("WDU_VB_Init"), 1u);
  EXPECT_EQ(count_calls("WDU_VB_Uninit"), 1u);
  EXPECT_EQ(i2c(false), (ByteLists{{1, 0x89, 0}, {1, 0x89, 1}, {1, 0x89, 2}}));
  EXPECT_EQ(panel->txtRunning.Text, "Done");
  EXPECT_EQ(panel->vbalGrid1.SelectedRow(), 4);
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_TRUE(panel->cmdExecAll.Enabled);
  EXPECT_TRUE(panel->cmdRunContinuous.Enabled);
  EXPECT_FALSE(panel->cmdAbort.Enabled);
}

TEST_F(ScriptExecution, ButtonsAndProgressWhileAPassRuns) {
  load("# 1\n# 2\n# 3");
  std::vector<std::string> seen;
  bool buttons_right = true;
  at_each_yield([&] {
    if (store.Usb_Open == 0) return;
    if (seen.empty() || seen.back() != panel->txtRunning.Text.get()) seen.push_back(panel->txtRunning.Text);
    if (panel->txtRunning.Text == "Done") return;
    buttons_right = buttons_right && !panel->cmdExecAll.Enabled && !panel->cmdRunContinuous.Enabled &&
                    panel->cmdAbort.Enabled;
  });
  click(panel->cmdExecAll);
  user.at_yield = nullptr;
  EXPECT_EQ(seen, (std::vector<std::string>{"", "1", "2", "3", "Done"}));
  EXPECT_TRUE(buttons_right);
}

TEST_F(ScriptExecution, EmptyScriptConnectsAndDisconnects) {
  run("");
  EXPECT_EQ(count_calls("WDU_VB_Init"), 1u);
  EXPECT_EQ(panel->txtRunning.Text, "Done");
  EXPECT_EQ(store.Usb_Open, 0);
}

TEST_F(ScriptExecution, PassDisconnectsAlsoWhatTheUserConnected) {
  load("00,,00");
  click(workbench().cmdUSBConnect);
  click(panel->cmdExecAll);
  EXPECT_EQ(mentioned("Already Opened"), 1u);
  EXPECT_EQ(store.Usb_Open, 0);
}

TEST_F(ScriptExecution, PassCountsFromZero) {
  run("00,,00\n00,,11");
  click(panel->cmdExecAll);
  EXPECT_EQ(panel->txtRdPass.Text, "1");
  EXPECT_EQ(panel->txtRdFails.Text, "1");
}

TEST_F(ScriptExecution, RowIsRedWhileItRuns) {
  load("# c");
  bool was_red = false;
  at_each_yield([&] { was_red = was_red || color(1, adr) == red; });
  load("`w5", "other.txt");
  click(panel->cmdExecAll);
  EXPECT_TRUE(was_red);
  EXPECT_EQ(color(1, adr), light_green);
}

TEST_F(ScriptExecution, PanelThatRunsIsTheCurrentForm) {
  load("00,,00");
  store.Active_Form = &workbench();
  click(panel->cmdExecAll);
  EXPECT_EQ(store.Active_Form, panel);
}

TEST_F(ScriptExecution, AbortEndsAPassAfterItsRow) {
  load("00,,00\n01,,00\n02,,00\n03,,00");
  at_yield([&] { return panel->txtRunning.Text == "1" && color(2, adr) == red; },
           [&] { forms::user::click(panel->cmdAbort); });
  click(panel->cmdExecAll);
  EXPECT_EQ(panel->txtRdPass.Text, "2");
  EXPECT_EQ(color(3, adr), std::nullopt);
  EXPECT_EQ(panel->txtRunning.Text, "Done");
  EXPECT_EQ(store.Usb_Open, 0);
}

TEST_F(ScriptExecution, AbortOnFailEndsThePassAtTheFirstDifference) {
  load("00,,00\n00,,11\n00,,00");
  panel->chkAOF.Value = 1;
  click(panel->cmdExecAll);
  EXPECT_EQ(store.AbortRequested, true_flag);
  EXPECT_EQ(color(2, adr), light_green);
  EXPECT_EQ(color(2, act), red);
  EXPECT_EQ(color(3, adr), std::nullopt);
  EXPECT_EQ(panel->txtRdFails.Text, "1");
  panel->chkAOF.Value = 0;
  click(panel->cmdExecAll);
  EXPECT_EQ(color(3, adr), light_green);
}

TEST_F(ScriptExecution, WrongStatusByteIsNoFail) {
  board.set_sensor_answers(false);
  load("00,11,00\n00,,00");
  panel->chkAOF.Value = 1;
  click(panel->cmdExecAll);
  EXPECT_EQ(panel->txtRdPass.Text, "2");
  EXPECT_EQ(store.AbortRequested, 0);
}

TEST_F(ScriptExecution, SelectionDuringAPassRunsNestedInTheHeldSession) {
  load("00,,00\n01,,00\n02,,00");
  at_yield([&] { return panel->txtRunning.Text == "1" && color(2, adr) == std::nullopt; },
           [&] { panel->vbalGrid1.select_by_user(3, 1); });
  click(panel->cmdExecAll);
  EXPECT_EQ(i2c(false), (ByteLists{{1, 0x89, 0}, {1, 0x89, 2}, {1, 0x89, 1}, {1, 0x89, 2}}));
  EXPECT_EQ(panel->txtRdPass.Text, "4");
  EXPECT_EQ(count_calls("WDU_VB_Init"), 1u);
  EXPECT_EQ(count_calls("WDU_VB_Uninit"), 1u);
}

TEST_F(ScriptExecution, SelectionAtTheStartOfARowTakesItsPlace) {
  load("00,,00\n01,,00\n02,,00");
  at_yield([&] { return panel->vbalGrid1.SelectedRow() == 2; },
           [&] { panel->vbalGrid1.select_by_user(3, 1); });
  click(panel->cmdExecAll);
  EXPECT_EQ(i2c(false), (ByteLists{{1, 0x89, 0}, {1, 0x89, 2}, {1, 0x89, 2}}));
  EXPECT_EQ(color(2, adr), std::nullopt);
  EXPECT_TRUE(user.boxes.empty());
}

TEST_F(ScriptExecution, ShorterReloadDuringAPassEndsItThere) {
  load("00,,00\n01,,00\n02,,00");
  write_file("script.txt", "00,,00");
  at_yield([&] { return panel->txtRunning.Text == "1"; }, [&] { forms::user::click(panel->cmdReload2); });
  click(panel->cmdExecAll);
  EXPECT_TRUE(user.boxes.empty());
  EXPECT_TRUE(user.errors.empty());
  EXPECT_EQ(panel->txtRunning.Text, "Done");
}

TEST_F(ScriptExecution, RowsMissingAfterAFailedLoadAreToldOneByOne) {
  load("# 1\n# 2\n# 3\n# 4");
  open("# 1\n`w40000", "failing.txt");
  ASSERT_EQ(panel->vbalGrid1.Rows(), 3);
  click(panel->cmdExecAll);
  ASSERT_EQ(user.boxes.size(), 1u);
  EXPECT_EQ(user.boxes[0].text, "Subscript out of range");
  EXPECT_EQ(panel->txtRunning.Text, "Done");
  EXPECT_TRUE(panel->cmdExecAll.Enabled);
}

TEST_F(ScriptExecution, ClosingThePanelEndsItsPassAtTheNextRow) {
  load("00,,00\n01,,00\n02,,00");
  at_yield([&] { return panel->txtRunning.Text == "2"; }, [&] { program.forms.unload(*panel); });
  click(panel->cmdExecAll);
  EXPECT_EQ(i2c(false).size(), 2u);
  EXPECT_EQ(store.Usb_Open, 0);
}

// --- loop ---

TEST_F(ScriptExecution, LoopRunsUntilAnAbortInAPass) {
  load("00,,00\n01,,00");
  at_yield([&] { return panel->txtLoopCount.Text == "3" && panel->txtRunning.Text == "1"; },
           [&] { forms::user::click(panel->cmdAbort); });
  click(panel->cmdRunContinuous);
  EXPECT_EQ(panel->txtLoopCount.Text, "4");
  EXPECT_EQ(panel->txtRdPass.Text, "1") << "the last pass was cut after its first row";
  EXPECT_EQ(count_calls("WDU_VB_Init"), 4u);
  EXPECT_TRUE(panel->cmdRunContinuous.Enabled);
  EXPECT_TRUE(panel->cmdExecAll.Enabled);
  EXPECT_FALSE(panel->cmdAbort.Enabled);
  EXPECT_EQ(store.Usb_Open, 0);
}

TEST_F(ScriptExecution, AbortBetweenTwoPassesIsLost) {
  load("00,,00");
  int gaps = 0;
  at_each_yield([&] {
    if (panel->txtLoopCount.Text == "1" && panel->cmdExecAll.Enabled) {
      ++gaps;
      store.AbortRequested = true_flag;
    }
    if (panel->txtLoopCount.Text == "3" && store.Usb_Open != 0) store.AbortRequested = true_flag;
  });
  click(panel->cmdRunContinuous);
  user.at_yield = nullptr;
  EXPECT_EQ(gaps, 2);
  EXPECT_EQ(panel->txtLoopCount.Text, "4");
}

TEST_F(ScriptExecution, AbortOnFailEndsTheLoop) {
  load("00,,11");
  panel->chkAOF.Value = 1;
  click(panel->cmdRunContinuous);
  EXPECT_EQ(panel->txtLoopCount.Text, "1");
}

TEST_F(ScriptExecution, ClosingThePanelEndsItsLoop) {
  load("00,,00\n01,,00");
  at_yield([&] { return panel->txtLoopCount.Text == "2"; }, [&] { program.forms.unload(*panel); });
  click(panel->cmdRunContinuous);
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_EQ(count_calls("WDU_VB_Init"), count_calls("WDU_VB_Uninit"));
  program.forms.sweep();
  EXPECT_EQ(program.forms.loaded(frmScriptOps::form_name), nullptr);
}

// --- single step ---

TEST_F(ScriptExecution, SingleStepConnectsAndDisconnects) {
  load("00,,00\n01,,00");
  const auto before = clock.now();
  select(*panel, 2);
  EXPECT_EQ(i2c(false), (ByteLists{{1, 0x89, 1}}));
  EXPECT_EQ(count_calls("WDU_VB_Init"), 1u);
  EXPECT_EQ(count_calls("WDU_VB_Uninit"), 1u);
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_EQ(panel->txtRdPass.Text, "1");
  EXPECT_GE(clock.now() - before, milliseconds(300));
  select(*panel, 1);
  EXPECT_EQ(panel->txtRdPass.Text, "2") << "single steps count on";
}

TEST_F(ScriptExecution, SingleStepUsesAnOpenSessionAndClosesIt) {
  load("00,,00");
  click(workbench().cmdUSBConnect);
  recorder.calls.clear();
  select(*panel, 1);
  EXPECT_EQ(count_calls("WDU_VB_Init"), 0u);
  EXPECT_EQ(store.Usb_Open, 0);
}

TEST_F(ScriptExecution, SingleStepOnARowWithoutOperationOpensNothing) {
  load("# c");
  select(*panel, 1);
  EXPECT_TRUE(recorder.calls.empty());
  EXPECT_EQ(color(1, adr), light_green);
}

TEST_F(ScriptExecution, SingleStepOnAPauseDoesNotConnect) {
  load("`w");
  user.box_answers = {forms::vbCancel};
  select(*panel, 1);
  EXPECT_TRUE(recorder.calls.empty());
  EXPECT_EQ(store.AbortRequested, true_flag);
  EXPECT_EQ(color(1, adr), light_green);
}

TEST_F(ScriptExecution, AbortDoesNotCutASingleStep) {
  load("00,,00");
  at_yield([&] { return store.Usb_Open != 0; }, [&] { panel->cmdAbort_Click(); });
  select(*panel, 1);
  EXPECT_EQ(panel->txtRdPass.Text, "1");
  EXPECT_EQ(store.AbortRequested, true_flag);
}

TEST_F(ScriptExecution, SelectionEventOfAnUnselectedRowOnlyDisconnects) {
  load("00,,00\n01,,00");
  click(workbench().cmdUSBConnect);
  recorder.packets.clear();
  const auto before = clock.now();
  program.runtime.dispatch([&] { panel->vbalGrid1_SelectionChange(1, 1); });
  EXPECT_TRUE(recorder.packets.empty());
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_GE(clock.now() - before, milliseconds(400));
  EXPECT_EQ(color(1, adr), std::nullopt);
}

TEST_F(ScriptExecution, EmptyRowsOfAFreshGridDoNothingOnTheBus) {
  frmScriptOps& fresh = form<frmScriptOps>();
  recorder.packets.clear();
  select(fresh, 24);
  EXPECT_TRUE(i2c(false).empty());
  EXPECT_TRUE(user.errors.empty());
  EXPECT_EQ(store.Usb_Open, 0);
}

// --- failures ---

TEST_F(ScriptExecution, WithoutASessionWhateverTheBufferHoldsIsCompared) {
  load("00,11,\n00,,A5B6");
  board.set_driver_present(false);
  store.Xfer_Buf = {9, 0xA5, 0xB6};
  recorder.packets.clear();
  click(panel->cmdExecAll);
  EXPECT_TRUE(recorder.packets.empty());
  EXPECT_EQ(cell(2, act), "A5B6");
  EXPECT_EQ(panel->txtRdPass.Text, "1");
  EXPECT_EQ(panel->txtRunning.Text, "Done");
}

TEST_F(ScriptExecution, BufferTooShortForTheComparisonIsShownByTheTrap) {
  load("00,,A5B6\n# next");
  board.set_driver_present(false);
  store.Xfer_Buf = {9, 0xA5};
  click(panel->cmdExecAll);
  ASSERT_EQ(user.boxes.size(), 1u);
  EXPECT_EQ(user.boxes[0].text, "Subscript out of range");
  EXPECT_EQ(cell(1, act), "A5");
  EXPECT_EQ(color(1, adr), red) << "without further clean-up";
  EXPECT_EQ(color(2, adr), light_green) << "the pass goes on";
  EXPECT_TRUE(user.errors.empty());
}

TEST_F(ScriptExecution, TrappedErrorOfASingleStepLeavesTheSessionOpen) {
  load("00,11,");
  store.I2C_WrCnt = -1;
  select(*panel, 1);
  ASSERT_EQ(user.boxes.size(), 1u);
  EXPECT_EQ(user.boxes[0].text, "Subscript out of range");
  EXPECT_NE(store.Usb_Open, 0);
  EXPECT_EQ(color(1, adr), red);
}

TEST_F(ScriptExecution, FailedTransferIsLoggedAndTheRowFails) {
  load("00,,00\n00,,11\n00,,00");
  board.fail_transfers(1, 0x20000001, 1);
  click(panel->cmdExecAll);
  EXPECT_EQ(mentioned("ReadPipe: WDU_Transfer() failed: error &H20000001"), 1u);
  EXPECT_EQ(color(1, frmScriptOps::rd_column), red);
  EXPECT_EQ(panel->txtRunning.Text, "Done");
}

// Every way to run a script survives the plug pulled behind any of its transfers, and works again
// when the board is back.
struct Pulled {
  ScriptProgram bench;
  frmScriptOps& panel;
  explicit Pulled(std::size_t after) : panel(bench.open("04,55,\n04,,55\n`w5\n05,22,22\n0506,33,")) {
    bench.board.unplug_after(after);
  }
  void expect_usable() {
    EXPECT_FALSE(bench.board.plugged());
    EXPECT_TRUE(bench.user.errors.empty());
    EXPECT_TRUE(bench.user.boxes.empty());
    EXPECT_TRUE(panel.cmdExecAll.Enabled);
    EXPECT_TRUE(panel.cmdRunContinuous.Enabled);
    EXPECT_EQ(bench.store.Usb_Open, 0);
    bench.board.plug();
    bench.click(panel.cmdExecAll);
    EXPECT_EQ(panel.txtRdPass.Text, "2");
    EXPECT_EQ(panel.txtRdFails.Text, "0");
  }
};
constexpr std::size_t transfers_of_a_pass = 10;

TEST(ScriptUnplugged, InAPass) {
  for (std::size_t after = 0; after < transfers_of_a_pass; ++after) {
    SCOPED_TRACE(after);
    Pulled pulled(after);
    pulled.bench.click(pulled.panel.cmdExecAll);
    EXPECT_EQ(pulled.panel.txtRunning.Text, "Done");
    pulled.expect_usable();
  }
}

TEST(ScriptUnplugged, InALoop) {
  for (std::size_t after = 0; after < 2 * transfers_of_a_pass; ++after) {
    SCOPED_TRACE(after);
    Pulled pulled(after);
    auto& bench = pulled.bench;
    bench.at_yield([&] { return pulled.panel.txtLoopCount.Text == "2" && bench.store.Usb_Open != 0; },
                   [&] { forms::user::click(pulled.panel.cmdAbort); });
    bench.click(pulled.panel.cmdRunContinuous);
    pulled.expect_usable();
  }
}

TEST(ScriptUnplugged, InASingleStep) {
  for (std::size_t after = 0; after < 4; ++after) {
    SCOPED_TRACE(after);
    Pulled pulled(after);
    pulled.bench.select(pulled.panel, 4);
    pulled.expect_usable();
  }
}

}  // namespace
}  // namespace varzelin::testing
