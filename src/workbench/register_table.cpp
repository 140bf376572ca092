// The workbench's register rows and its single-byte panel: one register at a time.
#include "bridge/text_utilities.h"
#include "bridge/transfer.h"
#include "workbench/connection_rule.h"
#include "workbench/workbench.h"

namespace varzelin {
namespace {

// What the bridge answers when all went through: the bytes read, or the bytes put on the bus.
constexpr int good_read = 1;
constexpr int good_write = 3;    // address, register, data
constexpr int good_pointer = 2;  // address, register

bool is_byte(int value) {
  return value >= 0 && value < 256;
}

}  // namespace

// --- the bus ---

frmI2C_General::BusReply frmI2C_General::reply_of(int size, int preset_status) {
  set_reply(store, store.I2C_Pipe + in_pipe_offset, size);
  store.Xfer_Buf[0] = static_cast<std::uint8_t>(preset_status);
  ReadPipe(program);
  return {xfer_byte(store, 0), xfer_byte(store, 1)};
}

frmI2C_General::BusReply frmI2C_General::read_register(int register_number, int preset_status) {
  store.I2C_RdCnt = 1;
  set_request(store, store.I2C_Pipe, {store.I2C_RdCnt, store.I2C_RdAdr, register_number});
  WritePipe(program);
  return reply_of(store.I2C_RdCnt + 1, preset_status);
}

frmI2C_General::BusReply frmI2C_General::write_register(int register_number, int value) {
  store.I2C_WrCnt = 1;
  set_request(store, store.I2C_Pipe, {store.I2C_WrCnt, store.I2C_WrAdr, register_number, value});
  WritePipe(program);
  return reply_of(store.I2C_WrCnt + 1, 0);
}

// The count byte says 1 though no data follow.
frmI2C_General::BusReply frmI2C_General::set_register_pointer(int register_number) {
  store.I2C_WrCnt = 1;
  set_request(store, store.I2C_Pipe, {store.I2C_WrCnt, store.I2C_WrAdr, register_number});
  WritePipe(program);
  return reply_of(store.I2C_WrCnt + 1, 0);
}

// --- lamps ---

void frmI2C_General::show_row_write(int row, bool good) {
  shpBwrite(row).Visible = true;
  txtBWrite(row).Enabled = true;
  show_action(shpBwrite(row), good);
}

void frmI2C_General::show_row_read(int row, const BusReply& reply) {
  lblReadCount.Caption = forms::Str(reply.status);
  const bool good = reply.status == good_read;
  txtRdByte(row).Text = good ? forms::Hex2(reply.data) : "--";
  show_action(Shape1(row), good);
}

void frmI2C_General::show_single_byte(Shape& action_lamp, bool good) {
  Shape3.FillColor = lamp(good ? store.Clr_LtGreen : store.Clr_Red);
  if (!good) txtReadByte.Text = "--";
  show_action(action_lamp, good);
}

// --- rows ---

bool frmI2C_General::is_active(int row) {
  return Reg_Adr(row).Text.get().size() == 2;
}

bool frmI2C_General::valid_write_text(TextBox& box) {
  box.Text = forms::UCase(box.Text);
  // "--" is the mark of a value that isn't usable, though as a number it would be 0.
  if (box.Text != "--") {
    if (HexVal(box.Text) == 0) box.Text = "00";
    if (is_byte(HexVal(box.Text))) return true;
  }
  box.Text = "--";
  Log_Msg(program, "Invalid Write Value");
  return false;
}

void frmI2C_General::txtRdByte_Click(int Index) {
  if (txtRdByte(Index).Text.get().empty()) txtRdByte(Index).Text = "00";
  connect_by_rule(program);
  show_row_read(Index, read_register(HexVal(Reg_Adr(Index).Text)));
  disconnect_by_rule(program);
}

void frmI2C_General::txtBWrite_KeyPress(int Index, int& KeyAscii) {
  if (KeyAscii != forms::vbKeyReturn || !valid_write_text(txtBWrite(Index))) return;
  connect_by_rule(program, 0);
  const BusReply reply = write_register(HexVal(Reg_Adr(Index).Text), HexVal(txtBWrite(Index).Text));
  lblReadCount.Caption = forms::Str(reply.status);
  show_row_write(Index, reply.status == good_write);
  disconnect_by_rule(program);
}

// Connects before it looks at the text, and takes "--" for a pointer write.
void frmI2C_General::txtBWrite_DblClick(int Index) {
  TextBox& box = txtBWrite(Index);
  box.Text = forms::UCase(box.Text);
  connect_by_rule(program, 0);
  const auto register_number = [&] { return HexVal(Reg_Adr(Index).Text); };
  std::optional<BusReply> reply;
  int good = good_write;
  if (box.Text == "--") {
    reply = set_register_pointer(register_number());
    good = good_pointer;
  } else {
    if (HexVal(box.Text) == 0) box.Text = "00";
    const int value = HexVal(box.Text);
    if (is_byte(value)) {
      reply = write_register(register_number(), value);
    } else {
      box.Text = "!!";
      Log_Msg(program, "Invalid Write Value");
    }
  }
  if (reply) {
    lblReadCount.Caption = forms::Str(reply->status);
    show_row_write(Index, reply->status == good);
  }
  disconnect_by_rule(program);
}

// --- the single-byte panel ---

void frmI2C_General::cmdWrite1Byte_Click(int Index) {
  if (!valid_write_text(txtsbwr(Index))) return;
  connect_by_rule(program, 0);
  const BusReply reply = write_register(HexVal(txtUserRegAdr.Text), HexVal(txtsbwr(Index).Text));
  lblReadCount.Caption = forms::Str(reply.status);
  Shape3.Visible = true;
  lblNak.Visible = true;
  show_single_byte(Shape2(Index), reply.status == good_write);
  disconnect_by_rule(program);
}

void frmI2C_General::txtsbwr_KeyPress(int Index, int& KeyAscii) {
  if (KeyAscii == forms::vbKeyReturn && valid_write_text(txtsbwr(Index))) cmdWrite1Byte_Click(Index);
}

void frmI2C_General::cmdRead_Click() {
  if (txtReadByte.Text.get().empty()) txtReadByte.Text = "00";
  connect_by_rule(program);
  // The status is preset to the good value: a reply transfer that fails leaves it so, where a row would
  // see 0.
  const BusReply reply = read_register(HexVal(txtUserRegAdr.Text), good_read);
  lblReadCount.Caption = forms::Str(reply.status);
  txtReadByte.Text = forms::Hex2(reply.data);
  show_single_byte(Shape2(2), reply.status == good_read);
  disconnect_by_rule(program);
}

void frmI2C_General::txtUserRegAdr_KeyPress(int& KeyAscii) {
  if (KeyAscii != forms::vbKeyReturn) return;
  txtUserRegAdr.Text = forms::UCase(txtUserRegAdr.Text);
  if (HexVal(txtUserRegAdr.Text) == 0) txtUserRegAdr.Text = "00";
}

// --- all rows ---

// A board that doesn't answer takes two time-outs a row.
void frmI2C_General::say_row(int row) {
  Activity = "row " + std::to_string(row + 1) + " waits for the board";
}

void frmI2C_General::cmdReadRegs_Click() {
  connect_by_rule(program);
  for (int row = 0; row < rows; ++row) {
    const bool active = is_active(row);
    if (active) {
      say_row(row);
      show_row_read(row, read_register(HexVal(Reg_Adr(row).Text)));
    } else {
      Shape1(row).FillColor = lamp(store.Clr_Black);
    }
    Shape1(row).Visible = active;
    txtRdByte(row).Enabled = active;
  }
  Activity = "";
  disconnect_by_rule(program);
}

void frmI2C_General::cmdwriteAll_Click() {
  connect_by_rule(program);
  for (int row = 0; row < rows; ++row) {
    if (!is_active(row) || txtBWrite(row).Text.get().size() != 2) {
      shpBwrite(row).FillColor = lamp(store.Clr_Black);
      shpBwrite(row).Visible = false;
      continue;
    }
    say_row(row);
    // No test of the text here: what isn't hexadecimal is sent as 0.
    const BusReply reply = write_register(HexVal(Reg_Adr(row).Text), HexVal(txtBWrite(row).Text));
    show_row_write(row, reply.status == good_write);
  }
  Activity = "";
  disconnect_by_rule(program);
}

void frmI2C_General::Command7_Click() {
  for (int row = 0; row < rows; ++row) txtBWrite(row).Text = txtRdByte(row).Text;
}

}  // namespace varzelin
