#include "workbench/gpio_panel.h"

#include "bridge/log.h"
#include "bridge/transfer.h"
#include "workbench/connection_rule.h"

namespace varzelin {
namespace {

constexpr auto port_b_pins = {"PB0 P1.02", "PB1 P1.03", "PB2 P1.04", "PB3 P1.05",
                              "PB4 P1.06", "PB5 P1.07", "PB6 P1.08", "PB7 P1.09"};
constexpr auto port_c_pins = {"PC4 P2.05", "PC5 P2.04", "PC6 P2.03", "PC7 P2.02"};
constexpr auto leds = {"Red Led", "Green Led"};
constexpr auto board_signals = {"BSTATUS", "BI2CMSTR",   "HVSYNC_POL", "HHSYNC_POL",
                                "ASTATUS", "AI2CMSTR",   "AVSYNC_POL", "AHSYNC_POL",
                                "DE_FLIP", "VSYNC_FLIP", "HSYNC_FLIP", "USB_SPLIT"};

// Bytes of the reply on the GPIO pipe; the first four are used.
constexpr int gpio_reply_size = 25;

}  // namespace

frmGPIO::frmGPIO(Program& owner)
    : ProgramForm(owner, form_name, "GPIO Control"),
      chkOutEn(*this, "chkOutEn", forms::captioned(port_b_pins, {.Container = &Frame1})),
      chkOutEnc(*this, "chkOutEnc", forms::captioned(port_c_pins, {.Container = &Frame1})),
      ChLed1(*this, "ChLed1", forms::captioned(leds, {.Container = &Frame1, .Enabled = false, .Value = 1})),
      ChkBData(*this, "ChkBData", forms::captioned(port_b_pins, {.Container = &Frame2, .Value = 1})),
      ChkCData(*this, "ChkCData", forms::captioned(port_c_pins, {.Container = &Frame2, .Value = 1})),
      ChKLedData(*this, "ChKLedData", forms::captioned(leds, {.Container = &Frame2, .Value = 1})),
      txtPCHex(*this, "txtPCHex", forms::elements(4, [this](int) { return Design{.Container = &Frame1}; })),
      txtPCHexData(*this, "txtPCHexData",
                   forms::elements(4, [this](int) { return Design{.Container = &Frame2}; })),
      shpGpioWr(*this, "shpGpioWr", forms::elements(6, [](int) { return Design{}; })),
      txtGPIOUserName(*this, "txtGPIOUserName", forms::captioned(board_signals, {.Container = &Frame3})) {
  on(chkOutEn, Event::Click, &frmGPIO::chkOutEn_Click);
  on(chkOutEnc, Event::Click, &frmGPIO::chkOutEnc_Click);
  on(ChLed1, Event::Click, &frmGPIO::ChLed1_Click);
  on(ChkBData, Event::Click, &frmGPIO::ChkBData_Click);
  on(ChkCData, Event::Click, &frmGPIO::ChkCData_Click);
  on(ChKLedData, Event::Click, &frmGPIO::ChKLedData_Click);
  on(cmdGPIO_Write, Event::Click, &frmGPIO::cmdGPIO_Write_Click);
}

void frmGPIO::Form_Load() {
  Init_Colors(store);
  for (const int byte : {enable_b, enable_c, data_b, data_c}) show_written(byte);
}

void frmGPIO::show_written(int byte) {
  auto& boxes = byte < data_b ? txtPCHex : txtPCHexData;
  const bool port_c = byte == enable_c || byte == data_c;
  boxes(port_c ? 2 : 0).Text = forms::Hex2(image(byte));
}

void frmGPIO::set_bit(const Bits& bits, bool on, int Index) {
  const auto bit = static_cast<std::uint8_t>(1 << (bits.first_bit + Index));
  std::uint8_t& byte = image(bits.byte);
  byte = static_cast<std::uint8_t>(on ? byte | bit : byte & ~bit);
  show_written(bits.byte);
}

void frmGPIO::data_clicked(const Bits& bits, ControlArray<CheckBox>& boxes, int Index) {
  set_bit(bits, boxes(Index).Value == 1, Index);
}

void frmGPIO::enable_clicked(const Bits& bits, ControlArray<CheckBox>& boxes, ControlArray<CheckBox>& data,
                             int Index) {
  const bool ticked = boxes(Index).Value == 1;
  set_bit(bits, ticked, Index);
  data(Index).Enabled = ticked;
}

void frmGPIO::chkOutEn_Click(int Index) {
  enable_clicked({enable_b, 0}, chkOutEn, ChkBData, Index);
}
void frmGPIO::chkOutEnc_Click(int Index) {
  enable_clicked({enable_c, 4}, chkOutEnc, ChkCData, Index);
}
void frmGPIO::ChLed1_Click(int Index) {
  enable_clicked({enable_c, 0}, ChLed1, ChKLedData, Index);
}
void frmGPIO::ChkBData_Click(int Index) {
  data_clicked({data_b, 0}, ChkBData, Index);
}
void frmGPIO::ChkCData_Click(int Index) {
  data_clicked({data_c, 4}, ChkCData, Index);
}
void frmGPIO::ChKLedData_Click(int Index) {
  data_clicked({data_c, 0}, ChKLedData, Index);
}

void frmGPIO::cmdGPIO_Write_Click() {
  connect_unseen_by_rule(program);
  store.I2C_WrCnt = 4;
  set_request(store, boards::pipe_gpio_out, {image(data_b), image(data_c), image(enable_b), image(enable_c)});
  if (WritePipe(program) == Outcome::given_up) {
    disconnect_unseen_by_rule(program);
    return;
  }
  set_reply(store, boards::pipe_gpio_in, gpio_reply_size);
  ReadPipe(program);

  // The pins of an input say what the outside world does, so a difference in the data is milder than
  // one in the enables.
  struct ReadBack {
    std::size_t reply_byte;
    TextBox& box;
    Shape& lamp;
    int byte;
    double differs;
  };
  for (const ReadBack& row : {ReadBack{0, txtPCHexData(1), shpGpioWr(4), data_b, store.Clr_DkGreen},
                              ReadBack{1, txtPCHexData(3), shpGpioWr(5), data_c, store.Clr_DkGreen},
                              ReadBack{2, txtPCHex(1), shpGpioWr(2), enable_b, store.Clr_Red},
                              ReadBack{3, txtPCHex(3), shpGpioWr(3), enable_c, store.Clr_Red}}) {
    const std::uint8_t value = xfer_byte(store, row.reply_byte);
    row.box.Text = forms::Hex2(value);
    row.lamp.FillColor = lamp(value == image(row.byte) ? store.Clr_LtGreen : row.differs);
  }

  disconnect_unseen_by_rule(program);
}

}  // namespace varzelin
