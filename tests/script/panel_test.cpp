// The script panel: loading files, its grid and the controls around it.
#include "support/script_fixture.h"

#include <sys/stat.h>

#include <filesystem>

namespace varzelin::testing {
namespace {

struct ScriptPanel : ScriptFixture {};

TEST_F(ScriptPanel, AsksForAFileWhenItLoads) {
  form<frmScriptOps>();
  ASSERT_EQ(user.file_dialogs.size(), 1u);
  const forms::FileDialog& dialog = user.file_dialogs[0];
  EXPECT_FALSE(dialog.save);
  EXPECT_EQ(dialog.title, "Select Script File to Open");
  EXPECT_EQ(dialog.filter, "Varzelin Script Files |*.txt|All Files|*.*");
  EXPECT_EQ(dialog.default_extension, "*.txt");
  EXPECT_EQ(dialog.filename, "");
}

TEST_F(ScriptPanel, FirstLookAfterACancelledDialog) {
  frmScriptOps& panel = form<frmScriptOps>();
  EXPECT_EQ(panel.Caption, "No Script File Selected");
  EXPECT_FALSE(panel.frmScriptExec.Visible);
  EXPECT_TRUE(panel.cmdExecAll.Enabled);
  EXPECT_TRUE(panel.cmdRunContinuous.Enabled);
  EXPECT_FALSE(panel.cmdAbort.Enabled);
  EXPECT_FALSE(panel.cmdReload2.Enabled);
  EXPECT_EQ(panel.chkAOF.Value, 0);
  EXPECT_EQ(panel.txtRunning.Text, "");
  EXPECT_EQ(panel.txtI2CAdrOut.Text, "00");
  EXPECT_EQ(panel.txtI2CIntAdrIn.Text, "00");
  EXPECT_EQ(panel.txtI2CBytesOut(3).Text, "00");
  EXPECT_EQ(panel.txtI2CBytesIN(0).Text, "00");
  EXPECT_EQ(store.Active_Form, &panel);

  const forms::Grid& grid = panel.vbalGrid1;
  ASSERT_EQ(grid.Columns(), 8);
  const char* headers[] = {"Line",    "I2C Adr", "Reg Adr",   "Data_Wr",
                           "Data_Rd", "Act_Rd",  "Operation", "Comment"};
  const int widths[] = {64, 64, 64, 64, 64, 64, 124, 298};
  for (int column = 1; column <= 8; ++column) {
    EXPECT_EQ(grid.Header(column), headers[column - 1]);
    EXPECT_EQ(grid.ColumnWidth(column), widths[column - 1]);
  }
  EXPECT_EQ(grid.Rows(), 24);
  EXPECT_EQ(grid.RowHeight(24), 15);
}

TEST_F(ScriptPanel, TakesTheWorkbenchsAddress) {
  workbench().txtI2CAdr.Text = "5A";
  frmScriptOps& panel = open("40,8C,");
  EXPECT_EQ(panel.txtI2CAdr.Text, "5A");
  EXPECT_EQ(store.I2C_WrAdr, 0x5A);
  EXPECT_EQ(store.I2C_RdAdr, 0x5B);
  EXPECT_EQ(text(panel, 1, frmScriptOps::address_column), "5A");
}

TEST_F(ScriptPanel, AnErrorWhileLoadingIsAMessage) {
  workbench().txtI2CAdr.Text = "123456";
  form<frmScriptOps>();
  ASSERT_EQ(user.boxes.size(), 1u);
  EXPECT_EQ(user.boxes[0].text, "Script Load Error Overflow");
  EXPECT_TRUE(user.file_dialogs.empty());
  EXPECT_TRUE(user.errors.empty());
}

TEST_F(ScriptPanel, AnAddressBeyond16BitsIsAnErrorOfTheLoad) {
  workbench().txtI2CAdr.Text = "12345";
  form<frmScriptOps>();
  ASSERT_EQ(user.boxes.size(), 1u);
  EXPECT_EQ(user.boxes[0].text, "Script Load Error Overflow");
}

TEST_F(ScriptPanel, ALineThatIsTooLongEndsTheLoadAndIsTold) {
  frmScriptOps& panel = open("40,8C,\n" + std::string(forms::longest_line + 1, ' ') + "\n40,8C,");
  EXPECT_EQ(mentioned("Script File script.txt: A line of the file is longer than 1 MiB :"), 1u);
  EXPECT_TRUE(user.errors.empty());
  EXPECT_TRUE(user.boxes.empty());
  EXPECT_EQ(text(panel, 1, frmScriptOps::wr_column), "8C");
}

TEST_F(ScriptPanel, AFileThatIsTooLargeIsTold) {
  const std::string path = write_file("script.txt", "40,8C,");
  std::filesystem::resize_file(path, forms::largest_input + 1);
  frmScriptOps& panel = open_path(path);
  EXPECT_EQ(mentioned("Script File script.txt: The file is larger than 64 MiB :"), 1u);
  EXPECT_TRUE(user.errors.empty());
  click(panel.cmdReload2);
  EXPECT_EQ(user.errors, std::vector<int>{forms::input_too_large});
  user.file_answers.push_back(path + ".missing");
  click(panel.mnuScript_Read);
  EXPECT_EQ(mentioned("Script File"), 1u);
}

TEST_F(ScriptPanel, ShowsAScript) {
  frmScriptOps& panel = open("# head\r\n`A5C\r\n40,8C,\r\n02,,1F # id\r\n\r\n`wABC");
  EXPECT_EQ(panel.Caption, "[ script.txt ]    Script IC Send / Receive");
  EXPECT_TRUE(panel.frmScriptExec.Visible);
  EXPECT_TRUE(panel.cmdReload2.Enabled);
  EXPECT_EQ(panel.txtTotLines.Text, "6");
  EXPECT_EQ(panel.txttotReads.Text, "1");
  EXPECT_EQ(panel.txtRdPass.Text, "0");
  EXPECT_EQ(panel.txtRdFails.Text, "0");
  EXPECT_EQ(panel.txtScriptLine1.Text, "2:03:07 PM");
  EXPECT_EQ(panel.lblLinesLeftOut.Caption, "");

  ASSERT_EQ(panel.vbalGrid1.Rows(), 6);
  const std::vector<std::vector<std::string>> rows{
      {"001", "88", "", "", "", "", "NOP", "# head"},
      {"002", "5C", "", "", "", "", "Cmd:Set I2C Adr", ""},
      {"003", "5C", "40", "8C", "", "", " Reg:1 W:1", ""},
      {"004", "5C", "02", "", "1F", "--", " Reg:1 R:1", "# id"},
      {"005", "5C", "", "", "", "", "NOP", "Script File has a blank line"},
      {"006", "5C", "", "", "", "", "Error Delay_Time", "Delay Error: Time not numeric"}};
  for (int row = 1; row <= 6; ++row) {
    for (int column = 1; column <= 8; ++column) {
      const auto& cell = panel.vbalGrid1.cell(row, column);
      EXPECT_EQ(cell.text, rows[static_cast<std::size_t>(row - 1)][static_cast<std::size_t>(column - 1)]);
      EXPECT_EQ(cell.align, forms::Align::Center);
    }
    EXPECT_EQ(back(panel, row, frmScriptOps::line_column), forms::clr_button_face);
    EXPECT_EQ(back(panel, row, frmScriptOps::operation_column), row == 6 ? std::optional(red) : std::nullopt);
    EXPECT_EQ(back(panel, row, frmScriptOps::comment_column), row == 6 ? std::optional(red) : std::nullopt);
  }
  EXPECT_TRUE(recorder.packets.empty()) << "loading doesn't touch the bus";
}

TEST_F(ScriptPanel, LineEnds) {
  EXPECT_EQ(open("1\n2\n3").vbalGrid1.Rows(), 3);
  EXPECT_EQ(open("1\r\n2\r\n3\r\n").vbalGrid1.Rows(), 3);
  EXPECT_EQ(open("1\n\n3\n").vbalGrid1.Rows(), 3);
}

TEST_F(ScriptPanel, EmptyFile) {
  frmScriptOps& panel = open("");
  EXPECT_EQ(panel.vbalGrid1.Rows(), 0);
  EXPECT_EQ(panel.txtTotLines.Text, "0");
  EXPECT_TRUE(panel.frmScriptExec.Visible);
  EXPECT_EQ(panel.Caption, "[ script.txt ]    Script IC Send / Receive");
}

TEST_F(ScriptPanel, ShorterFileShrinksTheGridAndItsRowsAreFresh) {
  frmScriptOps& panel = open("00,,00\n`wABC\n1\n2\n3");
  click(panel.cmdExecAll);
  EXPECT_EQ(back(panel, 1, frmScriptOps::address_column), light_green);
  EXPECT_EQ(back(panel, 1, frmScriptOps::act_column), light_green);
  open("00,,00\n1", "other.txt");
  EXPECT_EQ(panel.vbalGrid1.Rows(), 2);
  EXPECT_EQ(back(panel, 1, frmScriptOps::address_column), std::nullopt);
  EXPECT_EQ(back(panel, 1, frmScriptOps::act_column), std::nullopt);
  EXPECT_EQ(back(panel, 2, frmScriptOps::operation_column), std::nullopt);
  EXPECT_EQ(panel.txttotReads.Text, "1");
}

TEST_F(ScriptPanel, CancelledDialogLeavesTheScriptButClosesTheFile) {
  frmScriptOps& panel = open("1\n2");
  click(panel.mnuScript_Read);
  EXPECT_EQ(panel.vbalGrid1.Rows(), 2);
  EXPECT_TRUE(panel.cmdReload2.Enabled);
  click(panel.cmdReload2);
  EXPECT_EQ(mentioned("No Script File Opened yet, use File Menu" + std::string(stamp)), 1u);
  EXPECT_EQ(panel.vbalGrid1.Rows(), 2);
}

TEST_F(ScriptPanel, ReloadReadsTheFileAnew) {
  frmScriptOps& panel = open("1\n2");
  write_file("script.txt", "1\n2\n3");
  store.AbortRequested = true_flag;
  panel.cmdAbort.Enabled = true;
  panel.txtRdFails.Text = "7";
  click(panel.cmdReload2);
  EXPECT_EQ(panel.txtTotLines.Text, "3");
  EXPECT_EQ(panel.txtRdFails.Text, "0");
  EXPECT_EQ(store.AbortRequested, 0);
  EXPECT_TRUE(panel.cmdExecAll.Enabled);
  EXPECT_TRUE(panel.cmdRunContinuous.Enabled);
  EXPECT_FALSE(panel.cmdAbort.Enabled);
}

TEST_F(ScriptPanel, ReloadHasItsButtonsDisabledWhileItYields) {
  frmScriptOps& panel = open("1");
  bool disabled = false;
  at_yield([] { return true; },
           [&] {
             disabled =
                 !panel.cmdExecAll.Enabled && !panel.cmdRunContinuous.Enabled && !panel.cmdAbort.Enabled;
           });
  click(panel.cmdReload2);
  EXPECT_TRUE(disabled);
}

TEST_F(ScriptPanel, ShortReloadLeavesTheButtonsAlone) {
  frmScriptOps& panel = open("1\n2");
  write_file("script.txt", "1");
  panel.cmdAbort.Enabled = true;
  panel.cmdExecAll.Enabled = false;
  store.AbortRequested = true_flag;
  panel.ReloadScript();
  EXPECT_EQ(panel.txtTotLines.Text, "1");
  EXPECT_TRUE(panel.cmdAbort.Enabled);
  EXPECT_FALSE(panel.cmdExecAll.Enabled);
  EXPECT_EQ(store.AbortRequested, true_flag);
  click(panel.mnuScript_Read);
  panel.ReloadScript();
  EXPECT_EQ(mentioned("No Script File Opened yet, use File Menu"), 1u);
}

TEST_F(ScriptPanel, ReloadTakesTheAddressAsItStands) {
  frmScriptOps& panel = open("1\n`A5C\n2");
  click(panel.cmdExecAll);
  EXPECT_EQ(store.I2C_WrAdr, 0x5C);
  click(panel.cmdReload2);
  EXPECT_EQ(text(panel, 1, frmScriptOps::address_column), "5C");
}

TEST_F(ScriptPanel, DefaultAddressBox) {
  frmScriptOps& panel = open("1\n`A5C\n2");
  forms::user::fill(panel.txtI2CAdr, "");
  forms::user::type(panel.txtI2CAdr, "g6-a\r");
  EXPECT_EQ(panel.txtI2CAdr.Text, "6A");
  EXPECT_EQ(store.I2C_WrAdr, 0x6A);
  EXPECT_EQ(store.I2C_RdAdr, 0x6B);
  EXPECT_EQ(text(panel, 1, frmScriptOps::address_column), "6A");
  EXPECT_EQ(text(panel, 3, frmScriptOps::address_column), "5C");

  forms::user::fill(panel.txtI2CAdr, "fe");
  forms::user::enter(panel.txtI2CAdr);
  EXPECT_EQ(panel.txtI2CAdr.Text, "FE");
  EXPECT_EQ(store.I2C_WrAdr, 0xFE);
  EXPECT_EQ(store.I2C_RdAdr, 0xFF);

  forms::user::fill(panel.txtI2CAdr, "5Z");
  forms::user::enter(panel.txtI2CAdr);
  EXPECT_EQ(store.I2C_WrAdr, 0x05);
  EXPECT_EQ(text(panel, 1, frmScriptOps::address_column), "5") << "without padding";
}

TEST_F(ScriptPanel, DefaultAddressFfIsTooLarge) {
  frmScriptOps& panel = open("1");
  const std::string loaded_at = panel.txtScriptLine1.Text;
  for (const char* address : {"FF", "100"}) {
    forms::user::fill(panel.txtI2CAdr, address);
    forms::user::enter(panel.txtI2CAdr);
    EXPECT_EQ(panel.txtI2CAdr.Text, "60");
  }
  EXPECT_EQ(store.I2C_WrAdr, 0x88);
  EXPECT_EQ(mentioned("Address value too large script default I2C address Invalid" + std::string(stamp)), 2u);
  EXPECT_TRUE(user.errors.empty());
}

TEST_F(ScriptPanel, ANegativeDefaultAddressTakesItsLowByte) {
  frmScriptOps& panel = open("1");
  forms::user::fill(panel.txtI2CAdr, "FFFF");
  program.runtime.dispatch([&] { forms::user::enter(panel.txtI2CAdr); });
  EXPECT_TRUE(user.errors.empty());
  EXPECT_EQ(store.I2C_WrAdr, 0xFF);
  EXPECT_EQ(store.I2C_RdAdr, 0x00);
}

TEST_F(ScriptPanel, ADefaultAddressBeyond16BitsIsAnError) {
  frmScriptOps& panel = open("1");
  forms::user::fill(panel.txtI2CAdr, "12345");
  program.runtime.dispatch([&] { forms::user::enter(panel.txtI2CAdr); });
  EXPECT_EQ(user.errors, std::vector<int>{forms::overflow});
  EXPECT_EQ(store.I2C_WrAdr, 0x88);
}

TEST_F(ScriptPanel, DefaultAddressWithoutAScriptIsTakenAllTheSame) {
  frmScriptOps& panel = form<frmScriptOps>();
  forms::user::fill(panel.txtI2CAdr, "44");
  forms::user::enter(panel.txtI2CAdr);
  EXPECT_EQ(store.I2C_WrAdr, 0x44);
  EXPECT_EQ(mentioned("No Script File Opened yet, use File Menu"), 1u);
}

TEST_F(ScriptPanel, DelayTooLongEndsTheLoadWithoutAMessage) {
  frmScriptOps& panel = open("1\n`w40000 # c\n2");
  EXPECT_TRUE(user.boxes.empty());
  EXPECT_TRUE(user.errors.empty());
  EXPECT_TRUE(panel.cmdReload2.Enabled);
  EXPECT_FALSE(panel.frmScriptExec.Visible);
  EXPECT_EQ(panel.Caption, "Processing script.txt");
  EXPECT_EQ(text(panel, 1, frmScriptOps::line_column), "001");
  EXPECT_EQ(text(panel, 2, frmScriptOps::operation_column), "Cmd:");
  EXPECT_EQ(text(panel, 2, frmScriptOps::comment_column), "# c");
  EXPECT_EQ(text(panel, 2, frmScriptOps::line_column), "");
  EXPECT_EQ(panel.txtTotLines.Text, "");

  // The file is still open: it can't be loaded again, another one can.
  write_file("script.txt", "1");
  click(panel.cmdReload2);
  EXPECT_EQ(user.errors, std::vector<int>{forms::file_already_open});
  EXPECT_FALSE(panel.cmdExecAll.Enabled) << "the panel is left as it stands";
  open("1\n2\n3", "other.txt");
  EXPECT_EQ(panel.txtTotLines.Text, "3");
  click(panel.cmdReload2);
  EXPECT_TRUE(panel.cmdExecAll.Enabled);
  EXPECT_EQ(user.errors.size(), 1u);
}

TEST_F(ScriptPanel, OverflowInAReloadIsReported) {
  frmScriptOps& panel = open("1");
  write_file("script.txt", "1\n`w40000");
  click(panel.cmdReload2);
  EXPECT_EQ(user.errors, std::vector<int>{forms::overflow});
}

TEST_F(ScriptPanel, FilesThatCannotBeOpened) {
  frmScriptOps& panel = open("1\n2");
  const std::string fifo = (folder / "fifo").string();
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  const std::vector<std::pair<std::string, int>> paths{
      {(folder / "missing.txt").string(), forms::file_not_found},
      {(folder / "missing" / "a.txt").string(), forms::path_not_found},
      {folder.string(), forms::path_file_access_error},
      {fifo, forms::path_file_access_error}};
  for (const auto& [path, error] : paths) {
    user.errors.clear();
    open_path(path);
    EXPECT_TRUE(user.errors.empty()) << path;
    EXPECT_EQ(panel.vbalGrid1.Rows(), 2) << path;
    click(panel.cmdReload2);
    EXPECT_EQ(user.errors, std::vector<int>{error}) << path;
  }
}

std::string numbered_lines(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += "# line\r\n";
  return text;
}

TEST_F(ScriptPanel, AThousandLinesFit) {
  frmScriptOps& panel = open(numbered_lines(999) + "00,,00");
  EXPECT_EQ(panel.vbalGrid1.Rows(), 1000);
  EXPECT_EQ(panel.txtTotLines.Text, "1000");
  EXPECT_EQ(text(panel, 1000, frmScriptOps::line_column), "1000");
  EXPECT_EQ(panel.lblLinesLeftOut.Caption, "");
  click(panel.cmdExecAll);
  EXPECT_EQ(panel.txtRdPass.Text, "1");
}

TEST_F(ScriptPanel, LinesBeyondAThousandAreLeftOutAndTold) {
  frmScriptOps& panel = open(numbered_lines(999) + "00,,00\n" + numbered_lines(25));
  EXPECT_EQ(panel.vbalGrid1.Rows(), 1000);
  EXPECT_EQ(panel.txtTotLines.Text, "1000");
  EXPECT_EQ(panel.lblLinesLeftOut.Caption, "25 lines beyond line 1000 left out");
  EXPECT_EQ(mentioned("Script File script.txt: 25 lines beyond line 1000 left out"), 1u);
  click(panel.cmdExecAll);
  EXPECT_EQ(panel.txtRdPass.Text, "1");
  open("1", "short.txt");
  EXPECT_EQ(panel.lblLinesLeftOut.Caption, "");
}

TEST_F(ScriptPanel, OverflowInTheLastLineLeavesAPanelThatCanBeUsed) {
  frmScriptOps& panel = open(numbered_lines(999) + "`w99999");
  EXPECT_EQ(panel.vbalGrid1.Rows(), 1001);
  select(panel, 1001);
  ASSERT_EQ(user.boxes.size(), 1u) << "a row without an entry in the tables";
  EXPECT_EQ(user.boxes[0].text, "Subscript out of range");
}

TEST_F(ScriptPanel, OneEndlessLine) {
  frmScriptOps& panel = open(std::string(5'000'000, 'A'));
  EXPECT_TRUE(user.errors.empty());
  EXPECT_FALSE(panel.frmScriptExec.Visible);
  click(panel.cmdReload2);
  EXPECT_EQ(user.errors, std::vector<int>{forms::file_already_open});
  open("#" + std::string(5'000'000, '\0'), "zeros.txt");
  EXPECT_EQ(panel.vbalGrid1.Rows(), 1);
}

TEST_F(ScriptPanel, AnotherPanelHasItsOwnGridAndFile) {
  frmScriptOps& first = open("1\n2");
  user.file_answers.push_back(write_file("other.txt", "1\n2\n3"));
  click(first.Dupform);
  auto* second = dynamic_cast<frmScriptOps*>(program.forms.loaded("frmScriptOps#2"));
  ASSERT_NE(second, nullptr);
  EXPECT_TRUE(second->visible());
  EXPECT_EQ(second->vbalGrid1.Rows(), 3);
  EXPECT_EQ(first.vbalGrid1.Rows(), 2);
  EXPECT_EQ(second->Caption, "[ other.txt ]    Script IC Send / Receive");
  EXPECT_EQ(store.Active_Form, second);
}

TEST_F(ScriptPanel, Command1SelectsRowTwoWithoutRunningIt) {
  frmScriptOps& panel = open("00,,00\n00,,00");
  click(panel.Command1);
  EXPECT_EQ(panel.vbalGrid1.SelectedRow(), 2);
  EXPECT_EQ(text(panel, 2, frmScriptOps::act_column), "--");
  EXPECT_TRUE(recorder.calls.empty());
}

TEST_F(ScriptPanel, UnloadingAPanelThatIsNotLoadedAsksNothing) {
  program.forms.unload(frmScriptOps::form_name);
  EXPECT_TRUE(user.file_dialogs.empty());
  EXPECT_EQ(program.forms.loaded(frmScriptOps::form_name), nullptr);
}

TEST_F(ScriptPanel, DormantButtonsDoNothing) {
  frmScriptOps& panel = open("00,,00");
  click(panel.cmdSendSerial);
  click(panel.cmdReceiveSerial);
  EXPECT_TRUE(recorder.calls.empty());
}

}  // namespace
}  // namespace varzelin::testing
