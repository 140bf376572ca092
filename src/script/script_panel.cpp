#include "script/script_panel.h"

#include <utility>

#include "bridge/log.h"
#include "bridge/text_utilities.h"
#include "bridge/transfer.h"
#include "script/script_file.h"

namespace varzelin {
namespace {

constexpr int rows_at_start = 24;

struct GridColumn {
  const char* header;
  int width;
};
constexpr std::array grid_columns{GridColumn{"Line", 64},       GridColumn{"I2C Adr", 64},
                                  GridColumn{"Reg Adr", 64},    GridColumn{"Data_Wr", 64},
                                  GridColumn{"Data_Rd", 64},    GridColumn{"Act_Rd", 64},
                                  GridColumn{"Operation", 124}, GridColumn{"Comment", 298}};

// The number of a line, at least three digits wide.
std::string line_text(const std::string& line) {
  constexpr std::size_t width = 3;
  return line.size() < width ? std::string(width - line.size(), '0') + line : line;
}

}  // namespace

frmScriptOps::frmScriptOps(Program& owner, std::string instance)
    : ProgramForm(owner, std::move(instance), "Setup - Script IC Send/Receive") {
  on(mnuScript_Read, Event::Click, &frmScriptOps::mnuScript_Read_Click);
  on(Dupform, Event::Click, &frmScriptOps::Dupform_Click);
  on(vbalGrid1, Event::SelectionChange, &frmScriptOps::vbalGrid1_SelectionChange);
  on(cmdExecAll, Event::Click, &frmScriptOps::cmdExecAll_Click);
  on(cmdRunContinuous, Event::Click, &frmScriptOps::cmdRunContinuous_Click);
  on(cmdAbort, Event::Click, &frmScriptOps::cmdAbort_Click);
  on(cmdReload2, Event::Click, &frmScriptOps::cmdReload2_Click);
  on(Command1, Event::Click, &frmScriptOps::Command1_Click);
  on(txtI2CAdr, Event::KeyPress, &frmScriptOps::txtI2CAdr_KeyPress);
}

void frmScriptOps::Form_Load() {
  try {
    build_panel();
    ReadScriptFile();
  } catch (const forms::RunTimeError& error) {
    MsgBox("Script Load Error " + error.text);
  }
}

void frmScriptOps::build_panel() {
  Script_Lines = 0;
  frmScriptExec.Visible = false;
  Caption = "No Script File Selected";
  store.Active_Form = this;
  Script_Running = false_flag;
  txtI2CAdr.Text = workbench().txtI2CAdr.Text;
  set_bus_address(store, HexVal(txtI2CAdr.Text));
  txtRunning.Text = "1";
  for (TextBox* box : {&txtI2CAdrOut, &txtI2CIntAdrOut, &txtI2CAdrIn, &txtI2CIntAdrIn}) box->Text = "00";
  for (auto* boxes : {&txtI2CBytesOut, &txtI2CBytesIN}) {
    boxes->each([](TextBox& box) { box.Text = "00"; });
  }
  build_grid();
}

void frmScriptOps::build_grid() {
  for (const GridColumn& column : grid_columns) vbalGrid1.AddColumn(column.header, column.width);
  vbalGrid1.set_rows(rows_at_start);
}

void frmScriptOps::ReadScriptFile() {
  txtRunning.Text = "";
  Script_Opened = false_flag;
  cdldialog.DialogTitle = "Select Script File to Open";
  cdldialog.FileName = "";
  cdldialog.Filter = "Varzelin Script Files |*.txt|All Files|*.*";
  cdldialog.DefaultExt = "*.txt";
  cdldialog.ShowOpen();
  if (cdldialog.FileName == "") return;
  Script_Opened = true_flag;
  try {
    LoadScriptFile();
  } catch (const forms::RunTimeError& error) {
    // Any error ends the load without a message; of this one nothing in the file tells.
    if (error.number == forms::input_too_large) {
      Log_Msg(program, "Script File " + cdldialog.FileTitle + ": " + error.text);
    }
  }
  cmdReload2.Enabled = true;
}

void frmScriptOps::LoadScriptFile() {
  course_ = {.loop = course_.loop};
  try {
    read_script();
  } catch (const forms::RunTimeError& error) {
    course_.load_error = error.text;
    throw;
  }
}

void frmScriptOps::read_script() {
  for (TextBox* box : {&txttotReads, &txtRdPass, &txtRdFails}) box->Text = "0";
  Script_Reads = 0;

  forms::Files& files = runtime().files;
  const int number = files.FreeFile();
  files.Open(cdldialog.FileName, forms::Files::Mode::Input, number);
  Caption = "Processing " + cdldialog.FileName;
  Caption = "Processing " + cdldialog.FileTitle;

  Script_Line = "0";
  txtScriptLine1.Text = Time();
  lblLinesLeftOut.Caption = "";
  vbalGrid1.set_rows(0);  // every row of the new script is a fresh one
  vbalGrid1.set_rows(1);
  Script_I2C_Adr = forms::Hex(store.I2C_WrAdr);
  int lines = 0;
  while (lines < most_lines && !files.Eof(number)) load_line(++lines, files.LineInput(number));
  std::int64_t left_out = 0;
  for (; !files.Eof(number); ++left_out) files.LineInput(number);
  files.Close(number);

  Script_Lines = static_cast<std::int16_t>(lines);
  vbalGrid1.set_rows(lines);
  frmScriptExec.Visible = true;
  txtTotLines.Text = std::to_string(lines);
  Caption = "[ " + cdldialog.FileTitle + " ]    Script IC Send / Receive";
  if (left_out > 0) tell_left_out(left_out);
}

// While a file is read the grid has one row more than the line in hand.
void frmScriptOps::load_line(int line, std::string text) {
  course_.load_line = line;
  Script_Line = std::to_string(line);
  vbalGrid1.set_rows(line + 1);
  const ScriptRow row = parse_script_line(std::move(text), Script_I2C_Adr);
  show_row(line, row);
  at(Delay_Time, line) = row.delay;
  if (row.reg_qty) at(Script_Reg_Qty, line) = *row.reg_qty;
  if (row.wr_qty) at(Script_Wr_Qty, line) = *row.wr_qty;
  if (row.rd_qty) at(Script_Rd_Qty, line) = *row.rd_qty;
  if (row.is_read) txttotReads.Text = std::to_string(++Script_Reads);
  if (row.error != 0) forms::raise_error(row.error);
  vbalGrid1.set_text(line, line_column, line_text(Script_Line));
}

void frmScriptOps::show_row(int line, const ScriptRow& row) {
  for (int column = line_column; column <= comment_column; ++column) {
    vbalGrid1.set_align(line, column, forms::Align::Center);
  }
  vbalGrid1.set_back(line, line_column, forms::clr_button_face);
  vbalGrid1.set_text(line, address_column, row.address);
  vbalGrid1.set_text(line, reg_column, row.reg);
  vbalGrid1.set_text(line, wr_column, row.data_wr);
  vbalGrid1.set_text(line, rd_column, row.data_rd);
  vbalGrid1.set_text(line, act_column, row.act_rd);
  vbalGrid1.set_text(line, operation_column, row.operation);
  vbalGrid1.set_text(line, comment_column, row.comment);
  if (row.bad_delay) {
    vbalGrid1.set_back(line, operation_column, forms::clr_red);
    vbalGrid1.set_back(line, comment_column, forms::clr_red);
  }
}

void frmScriptOps::tell_left_out(std::int64_t lines) {
  const std::string text =
      std::to_string(lines) + " lines beyond line " + std::to_string(most_lines) + " left out";
  lblLinesLeftOut.Caption = text;
  Log_Msg(program, "Script File " + cdldialog.FileTitle + ": " + text);
}

std::int16_t& frmScriptOps::at(Table& table, int row) {
  if (row < 0 || row > most_lines) forms::raise_error(forms::subscript_out_of_range);
  return table[static_cast<std::size_t>(row)];
}

bool frmScriptOps::is_loaded() const {
  return set().loaded(name()) == this;
}

bool frmScriptOps::script_is_open() {
  if (Script_Opened != 0) return true;
  Log_Msg(program, "No Script File Opened yet, use File Menu");
  return false;
}

void frmScriptOps::ReloadScript() {
  if (!script_is_open()) return;
  txtRdFails.Text = "";
  txtRdPass.Text = "";
  LoadScriptFile();
}

void frmScriptOps::cmdReload2_Click() {
  store.AbortRequested = false_flag;
  if (!script_is_open()) return;
  for (CommandButton* button : {&cmdExecAll, &cmdRunContinuous, &cmdAbort}) button->Enabled = false;
  DoEvents();
  txtRdFails.Text = "";
  txtRdPass.Text = "";
  LoadScriptFile();
  cmdExecAll.Enabled = true;
  cmdRunContinuous.Enabled = true;
  DoEvents();
}

void frmScriptOps::txtI2CAdr_KeyPress(int& KeyAscii) {
  if (KeyAscii == forms::vbKeyReturn) {
    txtI2CAdr.Text = forms::UCase(txtI2CAdr.Text);
    const std::int16_t address = HexVal(txtI2CAdr.Text);
    if (address < 255) {
      set_bus_address(store, address);
      cmdReload2_Click();
    } else {
      Log_Msg(program, "Address value too large script default I2C address Invalid");
      txtI2CAdr.Text = "60";
    }
  }
  KeyAscii = Hex_Key(KeyAscii);
}

void frmScriptOps::mnuScript_Read_Click() {
  ReadScriptFile();
}
void frmScriptOps::Dupform_Click() {
  set().touch_another(form_name).Show();
}
void frmScriptOps::Command1_Click() {
  vbalGrid1.set_selected_row(2);
}

}  // namespace varzelin
