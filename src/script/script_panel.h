// The script panel: shows a script file as a grid, a row a line, and runs it against the sensor, row by
// row, in one pass or in a loop. It may be open more than once; each instance has its own script.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "bridge/program_form.h"
#include "bridge/run_state.h"
#include "forms/grid.h"
#include "workbench/workbench.h"

namespace varzelin {

struct ScriptRow;

class frmScriptOps final : public ProgramForm, public RunsScript {
 public:
  static constexpr const char* form_name = "frmScriptOps";
  // Lines of a file beyond these are counted and left out.
  static constexpr int most_lines = 1000;
  // Columns of the grid.
  enum Column {
    line_column = 1,
    address_column,
    reg_column,
    wr_column,
    rd_column,
    act_column,
    operation_column,
    comment_column
  };

  // `instance` is "frmScriptOps", or "frmScriptOps#2" and so on.
  frmScriptOps(Program& owner, std::string instance);

  ScriptState script_state() const override;

  // Asks for a script file at once.
  void Form_Load() override;

  // Asks for a file and loads it. A run-time error of the load ends it without a message, and what was
  // read so far is shown.
  void ReadScriptFile();
  // Raises the errors of files, and overflow for a delay or a field too long for 16 bits. The file then
  // stays open.
  void LoadScriptFile();
  // Loads the chosen file again, without a change to the buttons. Raises as LoadScriptFile.
  void ReloadScript();

  // Executes the row, if it is the selected one. Outside of a pass it opens and closes the session by
  // itself.
  void vbalGrid1_SelectionChange(int Row, int Column);
  void cmdExecAll_Click();
  void cmdRunContinuous_Click();
  void cmdAbort_Click();
  void cmdReload2_Click();
  void mnuScript_Read_Click();
  void Dupform_Click();
  void Command1_Click();
  void txtI2CAdr_KeyPress(int& KeyAscii);

  Menu mnuScript_Read{*this, "mnuScript_Read", {.Caption = "Open Script File"}};
  Menu Dupform{*this, "Dupform", {.Caption = "Open Another Script Processing Form"}};
  CommonDialog cdldialog{*this, "cdldialog"};

  forms::Grid vbalGrid1{*this, "vbalGrid1"};

  Frame frmScriptExec{*this, "frmScriptExec", {.Caption = "Script Control", .Visible = false}};
  CommandButton cmdExecAll{*this, "cmdExecAll", {.Caption = "Run All Steps", .Container = &frmScriptExec}};
  CommandButton cmdRunContinuous{
      *this, "cmdRunContinuous", {.Caption = "Loop Cont", .Container = &frmScriptExec}};
  CommandButton cmdAbort{
      *this, "cmdAbort", {.Caption = "Abort", .Container = &frmScriptExec, .Enabled = false}};
  CheckBox chkAOF{*this, "chkAOF", {.Caption = "Abort On fail", .Container = &frmScriptExec}};
  Label lblRunning{*this, "lblRunning", {.Caption = "Line", .Container = &frmScriptExec}};
  TextBox txtRunning{*this, "txtRunning", {.Container = &frmScriptExec}};
  Label lblLoopCount{*this, "lblLoopCount", {.Caption = "Loops", .Container = &frmScriptExec}};
  TextBox txtLoopCount{*this, "txtLoopCount", {.Container = &frmScriptExec}};

  CommandButton cmdReload2{*this, "cmdReload2", {.Caption = "Reload", .Enabled = false}};
  Label lblI2CAdr{*this, "lblI2CAdr", {.Caption = "Default I2C Adr"}};
  TextBox txtI2CAdr{*this, "txtI2CAdr", {.Text = "00"}};
  Label lblScriptLine1{*this, "lblScriptLine1", {.Caption = "Last Load"}};
  TextBox txtScriptLine1{*this, "txtScriptLine1"};
  Label lblTotLines{*this, "lblTotLines", {.Caption = "Total Lines"}};
  TextBox txtTotLines{*this, "txtTotLines"};
  Label lbltotReads{*this, "lbltotReads", {.Caption = "Total Reads"}};
  TextBox txttotReads{*this, "txttotReads"};
  Label lblRdPass{*this, "lblRdPass", {.Caption = "Reads Passed"}};
  TextBox txtRdPass{*this, "txtRdPass"};
  Label lblRdFails{*this, "lblRdFails", {.Caption = "Reads Failed"}};
  TextBox txtRdFails{*this, "txtRdFails"};
  // Tells how many lines of the file were left out; empty when none were.
  Label lblLinesLeftOut{*this, "lblLinesLeftOut"};

  // Dormant: nothing hangs on these boxes and buttons.
  Frame fraSend{*this, "fraSend", {.Caption = "Serial Send"}};
  OptionButton optSend{*this, "optSend", {.Caption = "Send", .Container = &fraSend}};
  TextBox txtI2CAdrOut{*this, "txtI2CAdrOut", {.Container = &fraSend}};
  TextBox txtI2CIntAdrOut{*this, "txtI2CIntAdrOut", {.Container = &fraSend}};
  ControlArray<TextBox> txtI2CBytesOut{
      *this, "txtI2CBytesOut", forms::elements(4, [this](int) { return Design{.Container = &fraSend}; })};
  CommandButton cmdSendSerial{*this, "cmdSendSerial", {.Caption = "Send", .Container = &fraSend}};
  Frame fraReceive{*this, "fraReceive", {.Caption = "Serial Receive"}};
  OptionButton optReceive{*this, "optReceive", {.Caption = "Receive", .Container = &fraReceive}};
  TextBox txtI2CAdrIn{*this, "txtI2CAdrIn", {.Container = &fraReceive}};
  TextBox txtI2CIntAdrIn{*this, "txtI2CIntAdrIn", {.Container = &fraReceive}};
  ControlArray<TextBox> txtI2CBytesIN{
      *this, "txtI2CBytesIN", forms::elements(4, [this](int) { return Design{.Container = &fraReceive}; })};
  CommandButton cmdReceiveSerial{*this, "cmdReceiveSerial", {.Caption = "Receive", .Container = &fraReceive}};
  // A tiny button that selects row 2, of use for trying the grid only.
  CommandButton Command1{*this, "Command1", {.Caption = "Command1"}};

  Shape ShpAttach{*this, "ShpAttach"};

 private:
  // By line number; element 0 is unused. A load writes the byte counts of transaction lines only: a row
  // of another kind keeps what an earlier file had on that line.
  using Table = std::array<std::int16_t, most_lines + 1>;
  // Raises subscript_out_of_range for a row without an entry.
  static std::int16_t& at(Table& table, int row);

  frmI2C_General& workbench() { return form<frmI2C_General>(); }
  // False once the panel was closed: a run then ends at its next row.
  bool is_loaded() const;

  // --- loading ---
  void build_panel();
  void build_grid();
  bool script_is_open();
  void read_script();
  void load_line(int line, std::string text);
  void show_row(int line, const ScriptRow& row);
  void tell_left_out(std::int64_t lines);

  // --- execution ---
  void execute_row(int row);
  void leave_unselected_row();
  bool board_gone() const { return store.Dev_Ctx.device == 0; }
  void begin_row(int row);
  void end_row(int row);
  void pause(int row);
  void wait(int row, std::int16_t milliseconds);
  void transact(int row);
  void connect_single_step();
  void compare_read(int row);
  void read_failed();
  // The present row's transfers; everything comes from the fields below and Script_Line.
  void Write_I2C();
  void Read_I2C();
  // Puts the register bytes into Xfer_Buf from byte 2 on; returns the place behind them.
  std::size_t put_register_bytes(int row);
  void put_digits(std::size_t place, const std::string& digits, std::size_t position);

  Table Script_Reg_Qty{};
  Table Script_Wr_Qty{};
  Table Script_Rd_Qty{};
  Table Delay_Time{};  // milliseconds

  std::string Script_Line = "0";    // the line read last, or the row in execution
  std::int16_t Script_Lines = 0;    // of the loaded file
  std::int16_t Script_Reads = 0;    // rows with expected read data
  Flag Script_Opened = false_flag;  // a file has been chosen
  std::string Script_I2C_Adr;       // address in force while a file is read, hexadecimal

  Flag Script_Running = false_flag;  // a pass is under way and holds the session
  // Of the last load and the last run, for script_state().
  struct Course {
    std::int32_t load_line = 0;
    std::string load_error = {};
    std::int32_t loop = 0;
    std::int32_t row = 0;
    bool read_ends_run = false;  // one that differed, where that is to end it
    ScriptState::End end = ScriptState::End::none;
    bool without_board = false;  // at its end
  };
  Course course_;
  std::int16_t Script_Wr_Count = 0;  // register and data bytes of the present write; 0: no write
  std::int16_t Script_Rd_Count = 0;
  // Cells of the row in execution. A row that runs nested in a yield replaces them.
  std::string row_address;
  std::string row_reg;
  std::string row_data_wr;
  std::string row_data_rd;
  std::string row_operation;
};

}  // namespace varzelin
