// The register workbench: direct access to the registers of any I2C device on the board. It stays loaded,
// mostly hidden, from the first model choice to the end of the program, and owns the USB session and the
// log.
#pragma once

#include <optional>

#include "bridge/log.h"
#include "bridge/program_form.h"
#include "bridge/session.h"

namespace varzelin {

class frmI2C_General final : public ProgramForm, private SessionDisplay {
 public:
  static constexpr const char* form_name = log_form_name;

  explicit frmI2C_General(Program& owner);

  void Form_Load() override;
  void Form_QueryUnload(bool& Cancel, int UnloadMode) override;
  // The end of the program, and the only one.
  void Form_Unload(bool& Cancel) override;
  void Form_Resize() override;

  void Connect_Usb() { connect_session(program, *this); }
  void Disconnect_USB() { disconnect_session(program, *this); }

  // The panels call these two for every action.
  void cmdUSBConnect_Click();
  void cmdUSBDisconnect_Click();
  void ChKManUsbConn_Click();
  void cmdClearLog_Click();
  void cmdexit_Click();
  void cbReset_Click();

  // Menus.
  void mnuSetup_Open_Click();
  void mnuSetup_Save_Click();
  void mnu_ScriptShow_Click();
  void mnuGPIO_Click();
  void frmAbout_Click();
  void mnuUsbDiag_Click(int Index);

  // One register at a time.
  void txtRdByte_Click(int Index);
  void txtBWrite_KeyPress(int Index, int& KeyAscii);
  void txtBWrite_DblClick(int Index);
  void cmdWrite1Byte_Click(int Index);
  void txtsbwr_KeyPress(int Index, int& KeyAscii);
  void cmdRead_Click();
  void txtUserRegAdr_KeyPress(int& KeyAscii);

  // All rows, and the communications test.
  void cmdTestComm_Click();
  void txtI2CAdr_KeyPress(int& KeyAscii);
  void cmdReadRegs_Click();
  void cmdwriteAll_Click();
  void Command7_Click();

  // Scrolling of the table.
  void VScroll1_Change();
  void HScroll1_Change();
  void SSTab1_Click();

  static constexpr int rows = 32;
  Flag Comm_Good = 0;  // result of the last communications test

  Menu mnuFileProcess{*this, "mnuFileProcess", {.Caption = "File"}};
  Menu mnuOPen{*this, "mnuOPen", {.Caption = "Open", .Container = &mnuFileProcess}};
  Menu mnuSetup_Open{*this, "mnuSetup_Open", {.Caption = "Comm Register Definitions", .Container = &mnuOPen}};
  Menu mnuSetup_Save{*this, "mnuSetup_Save", {.Caption = "Save", .Container = &mnuFileProcess}};
  Menu mnu_ScriptShow{*this, "mnu_ScriptShow", {.Caption = "Script Execution"}};
  Menu mnuGPIO{*this, "mnuGPIO", {.Caption = "GPIO Screen"}};
  Menu mnuUsbDiagnostics{*this, "mnuUsbDiagnostics", {.Caption = "USB Diagnostics"}};
  ControlArray<Menu> mnuUsbDiag{*this, "mnuUsbDiag",
                                forms::captioned({"Show Device Configurations", "Change Alternate Setting",
                                                  "Reset Pipe", "Read / Write Pipes", "Exit"},
                                                 {.Container = &mnuUsbDiagnostics})};
  Menu frmAbout{*this, "frmAbout", {.Caption = "About"}};

  Frame fraUsb{*this, "fraUsb", {.Caption = "USB Connection"}};
  ControlArray<Shape> shpUSBCon{*this, "shpUSBCon",
                                forms::elements(2, [this](int) { return Design{.Container = &fraUsb}; })};
  Shape ShpHandleStatus{*this, "ShpHandleStatus", {.Container = &fraUsb}};
  Shape ShpAttach{*this, "ShpAttach", {.Container = &fraUsb}};
  TextBox txthDriver{*this, "txthDriver", {.Text = "Not Initialized", .Container = &fraUsb}};
  CommandButton cbNoc{*this, "cbNoc", {.Caption = "USB Initialized", .Container = &fraUsb}};
  CommandButton cmdUSBConnect{*this,
                              "cmdUSBConnect",
                              {.Caption = "USB Connect",
                               .ToolTipText = "Connect and leave USB connection open.",
                               .Container = &fraUsb}};
  CommandButton cmdUSBDisconnect{
      *this,
      "cmdUSBDisconnect",
      {.Caption = "USB Disconnect", .ToolTipText = "Close USB Connection.", .Container = &fraUsb}};
  CheckBox ChKManUsbConn{*this,
                         "ChKManUsbConn",
                         {.Caption = "Manual USB Connect / Disconnect",
                          .ToolTipText = "Check to disable automatic open / closing of USB connection.",
                          .Container = &fraUsb}};

  Frame fraAddress{*this, "fraAddress", {.Caption = "I2C Address"}};
  TextBox txtI2CAdr{
      *this, "txtI2CAdr", {.Text = "88", .ToolTipText = "Enter I2C Address", .Container = &fraAddress}};
  Label lblActualWrtAddress{
      *this, "lblActualWrtAddress", {.Caption = "Actual I2C Write Address", .Container = &fraAddress}};
  TextBox txtActualWrtAddress{*this, "txtActualWrtAddress", {.Container = &fraAddress}};
  Label lblActualReadAddress{
      *this, "lblActualReadAddress", {.Caption = "Actual I2C Read Address", .Container = &fraAddress}};
  TextBox txtActualReadAddress{*this, "txtActualReadAddress", {.Container = &fraAddress}};

  PictureBox PbForm{*this, "PbForm"};
  PictureBox pbouter{*this, "pbouter", {.Container = &PbForm}};
  PictureBox pbinner{*this, "pbinner", {.Container = &pbouter}};
  forms::VScrollBar VScroll1{*this, "VScroll1", {.Container = &PbForm, .Visible = false}};
  forms::HScrollBar HScroll1{*this, "HScroll1", {.Container = &PbForm, .Visible = false}};

  forms::SSTab SSTab1{*this, "SSTab1", {.Container = &pbinner, .Tabs = 2}};
  ControlArray<Label> Label2{
      *this, "Label2", forms::captioned({"Write", "Read", "Adr", "Description"}, {.Container = &pbinner})};
  ControlArray<Frame> Frame1{*this, "Frame1", forms::elements(2, [this](int tab) {
                               return Design{
                                   .Caption = "Active Device Registers", .Container = &SSTab1, .Tab = tab};
                             })};
  ControlArray<TextBox> Reg_Adr{*this, "Reg_Adr", row_boxes("Register Address 0x00 to 0xFF")};
  ControlArray<TextBox> Reg_Desc{*this, "Reg_Desc", row_boxes("")};
  ControlArray<TextBox> txtBWrite{*this, "txtBWrite",
                                  row_boxes("Double click, or press ENTER key to write to single register")};
  ControlArray<TextBox> txtRdByte{*this, "txtRdByte", row_boxes("Single click to read register")};
  ControlArray<Shape> shpBwrite{*this, "shpBwrite", row_boxes("")};
  ControlArray<Shape> Shape1{*this, "Shape1", row_boxes("")};

  CommandButton cmdReadRegs{*this,
                            "cmdReadRegs",
                            {.Caption = "Read All Active   Registers",
                             .ToolTipText = "Performs Single Byte Reads on all Registers"}};
  CommandButton cmdwriteAll{*this,
                            "cmdwriteAll",
                            {.Caption = "Write All Active  Registers",
                             .ToolTipText = "Performs Single Byte Writes  on all Registers"}};
  CommandButton Command7{
      *this,
      "Command7",
      {.Caption = "Set Write Data = Read Data ",
       .ToolTipText = "Moves Active Device Registers  Read Data Into Associated Write Boxes"}};

  Frame FRGEN{*this, "FRGEN", {.Caption = "Single Byte Transfer User Panel"}};
  Label lblUserRegAdr{*this, "lblUserRegAdr", {.Caption = "Device Register Address", .Container = &FRGEN}};
  TextBox txtUserRegAdr{*this,
                        "txtUserRegAdr",
                        {.Text = "00",
                         .ToolTipText = "Sets Device Register Accessed for Writes and Reads in Single Byte "
                                        "Transfer User Panel",
                         .Container = &FRGEN}};
  ControlArray<TextBox> txtsbwr{
      *this, "txtsbwr", {{0, {.Text = "AA", .Container = &FRGEN}}, {1, {.Text = "55", .Container = &FRGEN}}}};
  ControlArray<CommandButton> cmdWrite1Byte{
      *this, "cmdWrite1Byte",
      forms::captioned(
          {"WRITE", "WRITE"},
          {.ToolTipText = "Writes Data entered below to  Address in Device Register Address Text Box",
           .Container = &FRGEN})};
  TextBox txtReadByte{*this, "txtReadByte", {.Container = &FRGEN}};
  CommandButton cmdRead{*this,
                        "cmdRead",
                        {.Caption = "READ",
                         .ToolTipText = "Reads Address in Device Register Address Text Box",
                         .Container = &FRGEN}};
  // Lamps of the two writes and of the read.
  ControlArray<Shape> Shape2{*this, "Shape2",
                             forms::elements(3, [this](int) { return Design{.Container = &FRGEN}; })};
  Shape Shape3{*this, "Shape3", {.Container = &FRGEN}};
  Label lblNak{*this, "lblNak", {.Caption = "NAK", .Container = &FRGEN}};
  Label lblTransferCount{*this, "lblTransferCount", {.Caption = "Transfer Count", .Container = &FRGEN}};
  Label lblReadCount{*this, "lblReadCount", {.Container = &FRGEN}};

  CommandButton cmdTestComm{
      *this,
      "cmdTestComm",
      {.Caption = "Test", .ToolTipText = "Click to test Communications", .Container = &fraAddress}};
  Label lblCommTest{*this, "lblCommTest", {.Container = &fraAddress}};
  ControlArray<TextBox> txtTstReg{*this, "txtTstReg", forms::elements(2, [this](int) {
                                    return Design{.ToolTipText = "If good Com, will be equal to 1.",
                                                  .Container = &fraAddress};
                                  })};

  CommonDialog cdldialog{*this, "cdldialog"};
  CommonDialog CommonDialog1{*this, "CommonDialog1"};

  TextBox Txtlog{*this, "Txtlog", {.MultiLine = true}};
  Shape shpLogStatus{*this, "shpLogStatus"};
  CommandButton cmdClearLog{*this, "cmdClearLog", {.Caption = "Clear Log"}};
  CommandButton cbSend{*this,
                       "cbSend",
                       {.Caption = "Send All",
                        .ToolTipText = "Updates all writable registers and samples internal registers."}};
  CommandButton cbReset{*this, "cbReset", {.Caption = "Reset", .ToolTipText = "Reset Procedure"}};
  CommandButton cmdexit{*this, "cmdexit", {.Caption = "Exit"}};

 private:
  // What a bus access brought back: the first reply byte, and the data byte of a read.
  struct BusReply {
    int status;
    std::uint8_t data;
  };

  // Rows 0 to 15 stand on the first tab, 16 to 31 on the second.
  forms::Elements row_boxes(const char* tool_tip);
  void Read_Param_File();

  void show_addresses();
  void take_addresses();
  bool is_active(int row);
  // Upper-cases the text and makes "00" of what has no value. True for a value of 0 to 255; otherwise
  // the box says "--" and the log why.
  bool valid_write_text(TextBox& box);
  BusReply read_register(int register_number, int preset_status = 0);
  BusReply write_register(int register_number, int value);
  BusReply set_register_pointer(int register_number);
  BusReply reply_of(int size, int preset_status);
  void show_row_write(int row, bool good);
  void say_row(int row);
  void show_row_read(int row, const BusReply& reply);
  void show_single_byte(Shape& action_lamp, bool good);
  void show_comm_result(bool good);
  void show_on_leds(bool good);

  void driver_handle_changed() override;
  void driver_failed() override;
  void driver_opened() override;
  void connecting() override;
  void connected() override;
  void disconnected() override;
};

}  // namespace varzelin
