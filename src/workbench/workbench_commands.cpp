// The workbench's communications test, its setup files and the scrolling of its table.
#include <algorithm>

#include "bridge/log.h"
#include "bridge/text_utilities.h"
#include "bridge/transfer.h"
#include "workbench/connection_rule.h"
#include "workbench/gpio_panel.h"
#include "workbench/setup_file.h"
#include "workbench/workbench.h"

namespace varzelin {
namespace {

constexpr int test_register = 2;
constexpr int test_reply_size = 3;
constexpr int red_led = 0;
constexpr int green_led = 1;

constexpr const char* setup_filter = "All Files (*.*)|*.*|I2C_General Setup Files(*.kvt)|*.kvt";

// The platform's units, 15 to a pixel.
constexpr double scroll_bar_room = 255;
constexpr double height_taken = 400;
constexpr double least_client = 500;

// Fits `inner` into `outer` in one direction, or gives it a scroll bar.
void fit(forms::ScrollBar& bar, forms::Property<double>& position, double inner, double outer) {
  const double overhang = inner - outer;
  bar.Visible = overhang > 0;
  if (overhang <= 0) {
    bar.Value = 0;
    position = 0.0;
    return;
  }
  bar.Max = forms::CLng(overhang);
  bar.LargeChange = 2500;
  bar.SmallChange = 250;
}

}  // namespace

// --- the communications test ---

void frmI2C_General::show_comm_result(bool good) {
  show_verdict(lblCommTest, good);
  lblCommTest.ForeColor = good ? forms::clr_button_text : forms::clr_white;
  Comm_Good = flag(good);
}

void frmI2C_General::show_on_leds(bool good) {
  auto& gpio = form<frmGPIO>();
  gpio.ChKLedData(green_led).Value = good ? 1 : 0;
  gpio.ChKLedData(red_led).Value = good ? 0 : 1;
  DoEvents();
  gpio.ChKLedData_Click(red_led);
  gpio.ChKLedData_Click(green_led);
  DoEvents();
  gpio.cmdGPIO_Write_Click();
}

void frmI2C_General::cmdTestComm_Click() {
  connect_by_rule(program);
  if (HexVal(txtI2CAdr.Text) >= 255) {
    Log_Msg(program, "Address value too large");
    txtActualWrtAddress.Text = "--";
    txtActualReadAddress.Text = "--";
    show_comm_result(false);
    set_blank_request(store, boards::pipe_gpio_out, 2);
    disconnect_by_rule(program, 0);
    return;
  }
  take_addresses();
  show_addresses();
  store.I2C_RdCnt = 1;
  set_request(store, store.I2C_Pipe, {store.I2C_RdCnt, store.I2C_RdAdr, test_register});
  WritePipe(program);
  const BusReply reply = reply_of(test_reply_size, 0);
  txtTstReg(0).Text = forms::Hex(reply.status);
  txtTstReg(1).Text = forms::Hex(reply.data);
  const bool good = reply.status == 1;
  show_comm_result(good);
  for (const int tab : {0, 1}) Frame1(tab).Visible = true;
  for (CommandButton* button : {&cmdReadRegs, &Command7, &cmdwriteAll}) {
    button->Visible = true;
    button->Enabled = true;
  }
  show_on_leds(good);
  // The GPIO panel found the session open and closed it: this acts on the lamps only.
  disconnect_by_rule(program);
}

void frmI2C_General::txtI2CAdr_KeyPress(int& KeyAscii) {
  if (KeyAscii != forms::vbKeyReturn) return;
  show_verdict(lblCommTest, false);
  cmdTestComm_Click();
}

// --- setup files ---

void frmI2C_General::mnuSetup_Open_Click() {
  cdldialog.DialogTitle = "Select Setup File to Open";
  cdldialog.FileName = "";
  cdldialog.Filter = setup_filter;
  cdldialog.FilterIndex = 2;
  cdldialog.DefaultExt = "*.KVT";
  cdldialog.ShowOpen();
  if (!cdldialog.FileName.get().empty()) Read_Param_File();
}

void frmI2C_General::Read_Param_File() {
  forms::Files& files = runtime().files;
  const int number = open_setup_file(files, cdldialog.FileName);
  Caption = cdldialog.FileTitle + " - Varzelin I2CUSB";
  // An error on the way, of the file or of an address beyond 16 bits, leaves the file open.
  txtI2CAdr.Text = read_setup_address(files, number);
  take_addresses();
  show_addresses();
  for (int i = 0; i < rows; ++i) {
    const SetupRow row = read_setup_row(files, number);
    Reg_Adr(i).Text = row.register_address;
    Reg_Desc(i).Text = row.description;
    txtBWrite(i).Text = row.write_value;
    txtRdByte(i).Text = row.read_value;
  }
  files.Close(number);
}

void frmI2C_General::mnuSetup_Save_Click() {
  CommonDialog1.CancelError = true;
  CommonDialog1.Flags = 4;
  CommonDialog1.Filter = setup_filter;
  CommonDialog1.FilterIndex = 2;
  CommonDialog1.FileName = "I2C_General.kvt";
  if (!cdldialog.FileName.get().empty()) CommonDialog1.FileName = cdldialog.FileName;
  try {
    CommonDialog1.ShowSave();
  } catch (const forms::RunTimeError& error) {
    if (error.number == CommonDialog::cancel_was_selected) return;
    throw;
  }
  try {
    Save_Table(runtime().files, CommonDialog1.FileName);
  } catch (const forms::RunTimeError&) {
    Log_Put_Aside(program);
    throw;
  }
}

// --- scrolling ---

void frmI2C_General::Form_Resize() {
  if (ScaleWidth < least_client || ScaleHeight < least_client) return;
  pbouter.Width = ScaleWidth - scroll_bar_room;
  pbouter.Height = ScaleHeight - scroll_bar_room - height_taken;
  fit(VScroll1, pbinner.Top, pbinner.Height, pbouter.Height);
  fit(HScroll1, pbinner.Left, pbinner.Width, pbouter.Width);
}

void frmI2C_General::VScroll1_Change() {
  pbinner.Top = 0.0 - VScroll1.Value;
}

void frmI2C_General::HScroll1_Change() {
  DoEvents();
  pbinner.Left = 0.0 - HScroll1.Value;
}

void frmI2C_General::SSTab1_Click() {
  DoEvents(2);
}

}  // namespace varzelin
