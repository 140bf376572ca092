// The GPIO panel: the bridge board's ports B and C, their output enables and the LEDs on port C.
#pragma once

#include "bridge/program_form.h"

namespace varzelin {

class frmGPIO final : public ProgramForm {
 public:
  static constexpr const char* form_name = "frmGPIO";

  explicit frmGPIO(Program& owner);

  void Form_Load() override;
  // Sends Gpio_Image to the board and compares what comes back.
  void cmdGPIO_Write_Click();

 private:
  // The boxes that stand for bits of one byte of Gpio_Image.
  struct Bits {
    int byte;
    int first_bit;  // of the box with index 0
  };
  static constexpr int enable_b = 0, enable_c = 1, data_b = 2, data_c = 3;

  void enable_clicked(const Bits& bits, ControlArray<CheckBox>& boxes, ControlArray<CheckBox>& data,
                      int Index);
  void data_clicked(const Bits& bits, ControlArray<CheckBox>& boxes, int Index);
  void set_bit(const Bits& bits, bool on, int Index);
  void show_written(int byte);
  std::uint8_t& image(int byte) { return store.Gpio_Image[static_cast<std::size_t>(byte)]; }

 public:
  Frame Frame1{*this, "Frame1", {.Caption = "Output Enable"}};
  Frame Frame2{*this, "Frame2", {.Caption = "Data"}};
  Frame Frame3{*this, "Frame3", {.Caption = "Board Signals"}};

  ControlArray<CheckBox> chkOutEn;
  ControlArray<CheckBox> chkOutEnc;
  ControlArray<CheckBox> ChLed1;
  ControlArray<CheckBox> ChkBData;
  ControlArray<CheckBox> ChkCData;
  ControlArray<CheckBox> ChKLedData;

  // Elements of both: port B written, port B read back, port C written, port C read back.
  ControlArray<TextBox> txtPCHex;      // enables
  ControlArray<TextBox> txtPCHexData;  // data
  ControlArray<Shape> shpGpioWr;
  ControlArray<Label> txtGPIOUserName;

  Shape ShpAttach{*this, "ShpAttach"};
  Label lblUsbComm{*this, "lblUsbComm", {.Caption = "USB COMM"}};
  CommandButton cmdReadGPIO{*this, "cmdReadGPIO", {.Caption = "Read"}};
  CommandButton cmdGPIO_Write{*this, "cmdGPIO_Write", {.Caption = "Write"}};

  void chkOutEn_Click(int Index);
  void chkOutEnc_Click(int Index);
  void ChLed1_Click(int Index);
  void ChkBData_Click(int Index);
  void ChkCData_Click(int Index);
  void ChKLedData_Click(int Index);
};

}  // namespace varzelin
