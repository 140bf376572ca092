#include "workbench/workbench.h"

#include "bridge/text_utilities.h"
#include "bridge/transfer.h"
#include "workbench/connection_rule.h"
#include "workbench/gpio_panel.h"
#include "workbench/usb_diagnostics.h"

namespace varzelin {

frmI2C_General::frmI2C_General(Program& owner)
    : ProgramForm(owner, form_name, "Varzelin I2C Communications Software") {
  on(mnuGPIO, Event::Click, &frmI2C_General::mnuGPIO_Click);
  on(frmAbout, Event::Click, &frmI2C_General::frmAbout_Click);
  on(cmdUSBConnect, Event::Click, &frmI2C_General::cmdUSBConnect_Click);
  on(cmdUSBDisconnect, Event::Click, &frmI2C_General::cmdUSBDisconnect_Click);
  on(ChKManUsbConn, Event::Click, &frmI2C_General::ChKManUsbConn_Click);
  on(cmdClearLog, Event::Click, &frmI2C_General::cmdClearLog_Click);
  on(cmdexit, Event::Click, &frmI2C_General::cmdexit_Click);
  on(cbReset, Event::Click, &frmI2C_General::cbReset_Click);
  on(mnuSetup_Open, Event::Click, &frmI2C_General::mnuSetup_Open_Click);
  on(mnuSetup_Save, Event::Click, &frmI2C_General::mnuSetup_Save_Click);
  on(mnu_ScriptShow, Event::Click, &frmI2C_General::mnu_ScriptShow_Click);
  on(mnuUsbDiag, Event::Click, &frmI2C_General::mnuUsbDiag_Click);
  on(txtRdByte, Event::Click, &frmI2C_General::txtRdByte_Click);
  on(txtBWrite, Event::KeyPress, &frmI2C_General::txtBWrite_KeyPress);
  on(txtBWrite, Event::DblClick, &frmI2C_General::txtBWrite_DblClick);
  on(cmdWrite1Byte, Event::Click, &frmI2C_General::cmdWrite1Byte_Click);
  on(txtsbwr, Event::KeyPress, &frmI2C_General::txtsbwr_KeyPress);
  on(cmdRead, Event::Click, &frmI2C_General::cmdRead_Click);
  on(txtUserRegAdr, Event::KeyPress, &frmI2C_General::txtUserRegAdr_KeyPress);
  on(cmdTestComm, Event::Click, &frmI2C_General::cmdTestComm_Click);
  on(txtI2CAdr, Event::KeyPress, &frmI2C_General::txtI2CAdr_KeyPress);
  on(cmdReadRegs, Event::Click, &frmI2C_General::cmdReadRegs_Click);
  on(cmdwriteAll, Event::Click, &frmI2C_General::cmdwriteAll_Click);
  on(Command7, Event::Click, &frmI2C_General::Command7_Click);
  on(VScroll1, Event::Change, &frmI2C_General::VScroll1_Change);
  on(HScroll1, Event::Change, &frmI2C_General::HScroll1_Change);
  on(SSTab1, Event::Click, &frmI2C_General::SSTab1_Click);
}

forms::Elements frmI2C_General::row_boxes(const char* tool_tip) {
  return forms::elements(
      rows, [&](int row) { return Design{.ToolTipText = tool_tip, .Container = &Frame1(row / 16)}; });
}

void frmI2C_General::Form_Load() {
  Init_Colors(store);
  store.Active_Form = this;
  store.Gpio_Image = {0x00, 0x00, 0xFF, 0xFF};
  store.Man_Usb_Conn = false_flag;
  store.Usb_Open = false_flag;
  take_addresses();
  show_addresses();
  store.Log_Error = false_flag;

  // A probe of the board; what comes of it stands in the log.
  Connect_Usb();
  DoEvents();
  Disconnect_USB();
  DoEvents();
  cmdexit.Enabled = true;
  SSTab1.Tab = 0;

  ShpAttach.FillColor = lamp(store.Clr_Black);
  for (int i = 0; i < rows; ++i) {
    Reg_Adr(i).Text = forms::Hex2(i);
    for (TextBox* box : {&Reg_Desc(i), &txtBWrite(i), &txtRdByte(i)}) box->Text = "";
    for (Shape* row_lamp : {&shpBwrite(i), &Shape1(i)}) row_lamp->FillColor = lamp(store.Clr_Black);
  }
  cbSend.Enabled = false;
  cbReset.Enabled = false;
  DoEvents();
  form<frmGPIO>().cmdGPIO_Write_Click();
  DoEvents();
}

void frmI2C_General::Form_QueryUnload(bool& Cancel, int /*UnloadMode*/) {
  if (store.Usb_Open == 0) return;
  Cancel = true;
  Log_Msg(program, "Form will not close until USB Connection is closed. Click USB Disconnect");
}

void frmI2C_General::Form_Unload(bool& /*Cancel*/) {
  DoEvents();
  runtime().end();
}

void frmI2C_General::cmdUSBConnect_Click() {
  Connect_Usb();
  cmdexit.Enabled = false;
}

void frmI2C_General::cmdUSBDisconnect_Click() {
  Disconnect_USB();
  ShpHandleStatus.FillColor = lamp(store.Clr_Black);
  txthDriver.Text = "Closed";
  cbSend.Enabled = false;
  cbReset.Enabled = false;
  cmdexit.Enabled = true;
}

void frmI2C_General::ChKManUsbConn_Click() {
  store.Man_Usb_Conn = flag(ChKManUsbConn.Value == 1);
}
void frmI2C_General::cmdClearLog_Click() {
  Txtlog.Text = "";
}
void frmI2C_General::cmdexit_Click() {
  set().unload(*this);
}

void frmI2C_General::cbReset_Click() {
  Log_Msg(program,
          "Press Reset Button On Evaluation Board, Software Reseting Control Registers to Reset Status");
}

void frmI2C_General::take_addresses() {
  set_bus_address(store, HexVal(txtI2CAdr.Text));
}

void frmI2C_General::show_addresses() {
  txtActualWrtAddress.Text = forms::Hex(store.I2C_WrAdr);
  txtActualReadAddress.Text = forms::Hex(store.I2C_RdAdr);
}

// --- menus ---

void frmI2C_General::mnu_ScriptShow_Click() {
  Disconnect_USB();
  DoEvents();
  ChKManUsbConn.Value = 0;
  DoEvents();
  program.forms.touch("frmScriptOps").Show();
}

void frmI2C_General::mnuUsbDiag_Click(int Index) {
  const auto choice = static_cast<Diagnostic>(Index);
  if (choice == Diagnostic::Exit) {
    Diag_Menu(program, *this, choice);
    return;
  }
  connect_by_rule(program);
  Diag_Menu(program, *this, choice);
  disconnect_by_rule(program);
}

void frmI2C_General::mnuGPIO_Click() {
  form<frmGPIO>().Show();
}
void frmI2C_General::frmAbout_Click() {
  program.forms.touch("frmAbout2").Show();
}

// --- the session on the lamps ---

void frmI2C_General::driver_handle_changed() {
  txthDriver.Text = forms::CStr(store.Drv_Handle);
}
void frmI2C_General::driver_failed() {
  cbNoc.Caption = "USB Board won't intialize";
}
void frmI2C_General::driver_opened() {
  colour_attach_lamp(store, lamp(store.Clr_LtGreen));
}

void frmI2C_General::connecting() {
  shpUSBCon(0).FillColor = lamp(store.Clr_LtGreen);
  shpUSBCon(1).FillColor = lamp(store.Clr_Black);
}

void frmI2C_General::connected() {
  cbNoc.Enabled = false;
  ShpHandleStatus.FillColor = lamp(store.Clr_LtGreen);
}

void frmI2C_General::disconnected() {
  shpUSBCon(1).FillColor = lamp(store.Clr_LtGreen);
  shpUSBCon(0).FillColor = lamp(store.Clr_Black);
}

}  // namespace varzelin
