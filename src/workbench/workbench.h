// The register workbench, as far as the rest of the program stands on it: it stays loaded, mostly
// hidden, from the first model choice to the end of the program, and owns the USB session and the log.
#pragma once

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

  void Connect_Usb() { connect_session(program, *this); }
  void Disconnect_USB() { disconnect_session(program, *this); }

  // The panels call these two for every action.
  void cmdUSBConnect_Click();
  void cmdUSBDisconnect_Click();
  void ChKManUsbConn_Click();
  void cmdClearLog_Click();
  void cmdexit_Click();
  void mnuGPIO_Click();
  void frmAbout_Click();

  static constexpr int rows = 32;

  Menu mnuGPIO{*this, "mnuGPIO", {.Caption = "GPIO Screen"}};
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

  forms::SSTab SSTab1{*this, "SSTab1", {.Tabs = 2}};
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
  // Rows 0 to 15 stand on the first tab, 16 to 31 on the second.
  forms::Elements row_boxes(const char* tool_tip);

  void driver_handle_changed() override;
  void driver_failed() override;
  void driver_opened() override;
  void connecting() override;
  void connected() override;
  void disconnected() override;
};

}  // namespace varzelin
