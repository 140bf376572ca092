// The script panel's run of a script: the row executor and the three ways that lead to it.
#include <algorithm>
#include <string_view>

#include "bridge/log.h"
#include "bridge/text_utilities.h"
#include "bridge/transfer.h"
#include "script/script_file.h"
#include "script/script_panel.h"

namespace varzelin {
namespace {

constexpr int settling_yields = 1000;
// Bus addresses from here on are no device's.
constexpr int first_illegal_address = 255;
// Xfer_Buf: the byte count, the bus address, then the register bytes.
constexpr std::size_t first_register_place = 2;

// A counter that is kept as the text of its box.
void count_up(TextBox& box) {
  box.Text = forms::CStr(forms::Val(box.Text) + 1);
}

}  // namespace

void frmScriptOps::vbalGrid1_SelectionChange(int Row, int /*Column*/) {
  try {
    execute_row(Row);
  } catch (const forms::RunTimeError& error) {
    MsgBox(error.text);
  }
}

void frmScriptOps::execute_row(int row) {
  store.Fails_Before = forms::Val(txtRdFails.Text);
  DoEvents();
  row_operation = vbalGrid1.cell(row, operation_column).text;
  if (vbalGrid1.SelectedRow() != row) {
    leave_unselected_row();
    return;
  }
  begin_row(row);
  if (row_operation != no_operation) {
    const std::int16_t delay = at(Delay_Time, row);
    if (delay == wait_for_user) {
      pause(row);
    } else if (delay >= 1) {
      wait(row, delay);
    } else {
      transact(row);
    }
  }
  end_row(row);
}

void frmScriptOps::leave_unselected_row() {
  if (Script_Running != 0) return;
  if (store.Usb_Open != 0) {
    Sleep(200);
    workbench().cmdUSBDisconnect_Click();
  }
  Sleep(200);
  DoEvents(settling_yields);
}

void frmScriptOps::begin_row(int row) {
  vbalGrid1.set_back(row, address_column, forms::clr_red);
  Script_Line = std::to_string(row);
  row_address = vbalGrid1.cell(row, address_column).text;
  row_reg = vbalGrid1.cell(row, reg_column).text;
  row_data_wr = vbalGrid1.cell(row, wr_column).text;
  row_data_rd = vbalGrid1.cell(row, rd_column).text;
}

void frmScriptOps::end_row(int row) {
  vbalGrid1.set_back(row, address_column, forms::clr_green);
  DoEvents();
  if (store.Usb_Open == 0) return;
  if (Script_Running == 0) {
    workbench().cmdUSBDisconnect_Click();
    Sleep(100);
  }
  DoEvents();
}

void frmScriptOps::pause(int row) {
  vbalGrid1.set_text(row, act_column, "Delay Keypress");
  DoEvents();
  const int answer =
      MsgBox("Script Pause Line :" + std::to_string(row) + " Click OK to Continue, Cancel to Abort",
             forms::vbOKCancel);
  if (answer == forms::vbCancel) store.AbortRequested = true_flag;
  for (int i = 0; i < 2; ++i) {
    DoEvents();
    Sleep(100);
  }
  DoEvents();
}

void frmScriptOps::wait(int row, std::int16_t milliseconds) {
  vbalGrid1.set_text(row, act_column, "Delay " + std::to_string(milliseconds));
  DoEvents();
  Sleep(milliseconds);
}

void frmScriptOps::transact(int row) {
  const std::int16_t address = HexVal(row_address);
  if (address >= first_illegal_address) {
    MsgBox("Illegal I2C address Script Row " + std::to_string(row) + " Value = " + row_address);
    return;
  }
  set_bus_address(store, address);
  const auto with_register = [&](std::int16_t bytes) {
    return bytes == 0 ? std::int16_t{0} : forms::to_int16(at(Script_Reg_Qty, row) + bytes);
  };
  Script_Wr_Count = with_register(at(Script_Wr_Qty, row));
  Script_Rd_Count = with_register(at(Script_Rd_Qty, row));

  if (Script_Running == 0) connect_single_step();
  if (Script_Wr_Count == 0 && Script_Rd_Count == 0) return;
  if (Script_Wr_Count >= 1 && store.Usb_Open != 0) Write_I2C();
  vbalGrid1.set_text(row, act_column, "");
  if (Script_Rd_Count > 0) {
    if (store.Usb_Open != 0) Read_I2C();
    compare_read(row);
  }
}

void frmScriptOps::connect_single_step() {
  Sleep(100);
  if (store.Usb_Open == 0) workbench().cmdUSBConnect_Click();
  Sleep(100);
  DoEvents(settling_yields);
}

// Compares whatever the transfer buffer holds, also when no read took place.
void frmScriptOps::compare_read(int row) {
  std::string actual;
  const auto bytes = static_cast<std::size_t>(at(Script_Rd_Qty, row));
  for (std::size_t i = 1; i <= bytes; ++i) {
    actual += forms::Hex2(xfer_byte(store, i));
    vbalGrid1.set_text(row, act_column, actual);
  }
  const bool equal = actual == row_data_rd;
  vbalGrid1.set_back(row, act_column, equal ? forms::clr_green : forms::clr_red);
  if (equal) {
    count_up(txtRdPass);
  } else {
    read_failed();
  }
  DoEvents(2);
}

void frmScriptOps::read_failed() {
  count_up(txtRdFails);
  store.Fails_Now = forms::Val(txtRdFails.Text);
  if (chkAOF.Value == 1 && store.Fails_Now > store.Fails_Before) {
    store.AbortRequested = true_flag;
    course_.read_ends_run = true;
  }
}

void frmScriptOps::put_digits(std::size_t place, const std::string& digits, std::size_t position) {
  if (place >= store.Xfer_Buf.size()) forms::raise_error(forms::subscript_out_of_range);
  const std::string pair = position < digits.size() ? digits.substr(position, 2) : std::string();
  store.Xfer_Buf[place] = static_cast<std::uint8_t>(HexVal(pair));
}

// The position steps by two digits and is held against the count of bytes. So of two register bytes the
// first is sent, of three or four the first two; scripts count on what follows moving up.
std::size_t frmScriptOps::put_register_bytes(int row) {
  std::size_t place = first_register_place;
  for (int i = 1; i <= at(Script_Reg_Qty, row); i += 2) {
    put_digits(place++, row_reg, static_cast<std::size_t>(i - 1));
  }
  return place;
}

void frmScriptOps::Write_I2C() {
  const int row = forms::CInt(forms::Val(Script_Line));
  set_blank_request(store, store.I2C_Pipe, Script_Wr_Count + 2);
  store.Xfer_Buf[0] = static_cast<std::uint8_t>(Script_Wr_Count);
  store.Xfer_Buf[1] = store.I2C_WrAdr;
  std::size_t place = put_register_bytes(row);
  for (int i = 1; i <= 2 * at(Script_Wr_Qty, row); i += 2) {
    put_digits(place++, row_data_wr, static_cast<std::size_t>(i - 1));
  }
  WritePipe(program);
  set_reply(store, store.I2C_Pipe + in_pipe_offset, store.I2C_WrCnt + 1);
  ReadPipe(program);

  const int acknowledged = xfer_byte(store, 0);
  if (acknowledged != at(Script_Wr_Qty, row) + at(Script_Reg_Qty, row) + 1) {
    vbalGrid1.set_back(row, wr_column, forms::clr_red);
    Log_Msg(program,
            "Write Qty Error Script Line " + Script_Line + " Actual= " + std::to_string(acknowledged));
  }
}

void frmScriptOps::Read_I2C() {
  const int row = forms::CInt(forms::Val(Script_Line));
  set_blank_request(store, store.I2C_Pipe, at(Script_Reg_Qty, row) + 2);
  store.Xfer_Buf[0] = static_cast<std::uint8_t>(at(Script_Rd_Qty, row));
  store.Xfer_Buf[1] = store.I2C_RdAdr;
  put_register_bytes(row);
  WritePipe(program);
  set_reply(store, store.I2C_Pipe + in_pipe_offset, at(Script_Rd_Qty, row) + 1);
  ReadPipe(program);

  const int brought = xfer_byte(store, 0);
  if (brought != at(Script_Rd_Qty, row)) {
    vbalGrid1.set_back(row, rd_column, forms::clr_red);
    Log_Msg(program, "Read Qty Error Script Line " + Script_Line + " Actual :" + std::to_string(brought));
  }
}

void frmScriptOps::cmdExecAll_Click() {
  store.AbortRequested = false_flag;
  cmdRunContinuous.Enabled = false;
  cmdExecAll.Enabled = false;
  cmdAbort.Enabled = true;
  workbench().cmdUSBConnect_Click();
  course_.read_ends_run = false;
  course_.row = 0;
  Script_Running = true_flag;
  DoEvents();
  store.Active_Form = this;
  txtRdFails.Text = "0";
  txtRdPass.Text = "0";
  for (int row = 1; row <= Script_Lines && is_loaded(); ++row) {
    course_.row = row;
    // A load that failed can leave fewer rows than lines; the executor tells of those that miss.
    if (row <= vbalGrid1.Rows()) vbalGrid1.set_selected_row(row);
    vbalGrid1_SelectionChange(row, 1);
    DoEvents();
    txtRunning.Text = std::to_string(row);
    DoEvents();
    if (store.AbortRequested != 0) break;
  }
  using End = ScriptState::End;
  const End aborted = course_.read_ends_run ? End::by_failed_read : End::by_user;
  course_.end = store.AbortRequested == 0 ? End::completed : aborted;
  course_.without_board = board_gone();
  cmdAbort.Enabled = false;
  txtRunning.Text = "Done";
  workbench().cmdUSBDisconnect_Click();
  DoEvents();
  cmdExecAll.Enabled = true;
  cmdRunContinuous.Enabled = true;
  Script_Running = false_flag;
}

void frmScriptOps::cmdRunContinuous_Click() {
  txtLoopCount.Text = "0";
  double passes = 0;
  store.AbortRequested = false_flag;
  // An abort in the two yields between passes is lost: it is tested before them, and the next pass
  // clears it.
  for (bool again = true; again;) {
    cmdRunContinuous.Enabled = false;
    ++course_.loop;
    cmdExecAll_Click();
    txtLoopCount.Text = forms::CStr(++passes);
    again = store.AbortRequested == 0 && is_loaded();
    DoEvents(2);
  }
  course_.loop = 0;
  cmdAbort.Enabled = false;
  cmdRunContinuous.Enabled = true;
}

void frmScriptOps::cmdAbort_Click() {
  store.AbortRequested = true_flag;
  DoEvents();
}

}  // namespace varzelin
