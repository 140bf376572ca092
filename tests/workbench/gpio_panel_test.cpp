// The GPIO panel: boxes and bits, the write and its read-back.
#include <gtest/gtest.h>

#include "support/colors.h"
#include "support/test_program.h"
#include "workbench/gpio_panel.h"

namespace varzelin::testing {
namespace {

using Image = std::array<std::uint8_t, 4>;

struct GpioPanel : ::testing::Test, TestProgram {
  frmGPIO* gpio = nullptr;

  void SetUp() override {
    board.set_timing(false);
    workbench();
    gpio = &form<frmGPIO>();
  }
  void write() {
    recorder = {};
    click(gpio->cmdGPIO_Write);
  }
};

TEST_F(GpioPanel, IsLoadedHiddenWithTheWorkbenchWhichSendsTheStartValues) {
  EXPECT_FALSE(gpio->visible());
  ASSERT_EQ(recorder.packets.size(), 2u);
  EXPECT_EQ(recorder.packets[0], (Packet{1, {0xFF, 0xFF, 0x00, 0x00}, 0, 4}));
  EXPECT_EQ(recorder.packets[1].pipe, 0x81);
  EXPECT_EQ(recorder.packets[1].size, 25u);
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_EQ(store.I2C_WrCnt, 4);
  EXPECT_EQ(gpio->txtPCHex(0).Text, "00");
  EXPECT_EQ(gpio->txtPCHex(2).Text, "00");
  EXPECT_EQ(gpio->txtPCHexData(0).Text, "FF");
  EXPECT_EQ(gpio->txtPCHexData(2).Text, "FF");
}

TEST_F(GpioPanel, StartsWithItsDesignTicks) {
  for (const auto* array : {&gpio->ChkBData, &gpio->ChkCData, &gpio->ChKLedData, &gpio->ChLed1}) {
    array->each([](forms::CheckBox& box) { EXPECT_EQ(box.Value, 1) << box.full_name(); });
  }
  for (const auto* array : {&gpio->chkOutEn, &gpio->chkOutEnc}) {
    array->each([](forms::CheckBox& box) { EXPECT_EQ(box.Value, 0) << box.full_name(); });
  }
  gpio->ChLed1.each([](forms::CheckBox& box) { EXPECT_FALSE(box.Enabled); });
  EXPECT_EQ(gpio->chkOutEn(7).Caption, "PB7 P1.09");
  EXPECT_EQ(gpio->ChkCData(0).Caption, "PC4 P2.05");
  EXPECT_EQ(gpio->ChKLedData(1).Caption, "Green Led");
  EXPECT_EQ(gpio->txtGPIOUserName(11).Caption, "USB_SPLIT");
  EXPECT_EQ(gpio->txtGPIOUserName(0).Caption, "BSTATUS");
}

struct BoxRow {
  const char* name;
  ControlArray<CheckBox> frmGPIO::*boxes;
  std::size_t byte;
  int first_bit;
  int count;
  ControlArray<CheckBox> frmGPIO::*enables;  // the data boxes that an enable box enables
};

TEST_F(GpioPanel, EachBoxIsItsBit) {
  const std::vector<BoxRow> table{{"chkOutEn", &frmGPIO::chkOutEn, 0, 0, 8, &frmGPIO::ChkBData},
                                  {"chkOutEnc", &frmGPIO::chkOutEnc, 1, 4, 4, &frmGPIO::ChkCData},
                                  {"ChLed1", &frmGPIO::ChLed1, 1, 0, 2, &frmGPIO::ChKLedData},
                                  {"ChkBData", &frmGPIO::ChkBData, 2, 0, 8, nullptr},
                                  {"ChkCData", &frmGPIO::ChkCData, 3, 4, 4, nullptr},
                                  {"ChKLedData", &frmGPIO::ChKLedData, 3, 0, 2, nullptr}};
  for (const BoxRow& row : table) {
    for (int i = 0; i < row.count; ++i) {
      const std::string where = std::string(row.name) + "(" + std::to_string(i) + ")";
      forms::CheckBox& box = (gpio->*row.boxes)(i);
      const auto bit = static_cast<std::uint8_t>(1 << (row.first_bit + i));
      box.Value = 0;
      store.Gpio_Image = {0, 0, 0, 0};
      Image expected{};

      box.Value = 1;
      expected[row.byte] = bit;
      EXPECT_EQ(store.Gpio_Image, expected) << where;
      forms::TextBox& written = (row.byte < 2 ? gpio->txtPCHex : gpio->txtPCHexData)(row.byte % 2 ? 2 : 0);
      EXPECT_EQ(written.Text, forms::Hex2(bit)) << where;
      if (row.enables) {
        EXPECT_TRUE((gpio->*row.enables)(i).Enabled) << where;
      }

      store.Gpio_Image[row.byte] = 0xFF;
      box.Value = 0;
      EXPECT_EQ(store.Gpio_Image[row.byte], static_cast<std::uint8_t>(~bit)) << where;
      if (row.enables) {
        EXPECT_FALSE((gpio->*row.enables)(i).Enabled) << where;
      }
    }
  }
}

TEST_F(GpioPanel, TickingAndClearingAnEnableBoxLeavesTheBytes) {
  click(gpio->chkOutEn(3));
  EXPECT_EQ(store.Gpio_Image, (Image{0x08, 0x00, 0xFF, 0xFF}));
  EXPECT_EQ(gpio->txtPCHex(0).Text, "08");
  EXPECT_TRUE(gpio->ChkBData(3).Enabled);
  click(gpio->chkOutEn(3));
  EXPECT_EQ(store.Gpio_Image, (Image{0x00, 0x00, 0xFF, 0xFF}));
  EXPECT_FALSE(gpio->ChkBData(3).Enabled);
}

TEST_F(GpioPanel, ClearingABitThatIsNotSetLeavesTheByte) {
  store.Gpio_Image = {0x10, 0x20, 0x40, 0x02};
  gpio->ChKLedData(0).Value = 0;
  gpio->ChkBData(0).Value = 0;
  EXPECT_EQ(store.Gpio_Image, (Image{0x10, 0x20, 0x40, 0x02}));
  EXPECT_EQ(gpio->txtPCHexData(2).Text, "02");
}

TEST_F(GpioPanel, TheDesignTicksReachNothingUntilABoxIsClicked) {
  gpio->ChLed1_Click(0);
  EXPECT_EQ(store.Gpio_Image[1], 0x01);
  EXPECT_EQ(store.Gpio_Image[3], 0xFF) << "the data bit itself is left alone";
}

TEST_F(GpioPanel, AWriteSendsDataBeforeEnablesInOneSession) {
  store.Gpio_Image = {0x12, 0x34, 0x56, 0x78};
  write();
  EXPECT_EQ(recorder.packets.front(), (Packet{1, {0x56, 0x78, 0x12, 0x34}, 0, 4}));
  EXPECT_EQ(recorder.calls,
            (std::vector<std::string>{"WDU_VB_Init", "WDU_SetInterface", "WDU_GetDeviceInfo",
                                      "WDU_GetDeviceInfo", "WDU_Transfer", "WDU_GetDeviceInfo",
                                      "WDU_Transfer", "WDU_ResetDevice", "CloseHandle", "WDU_VB_Uninit"}));
  EXPECT_EQ(store.Usb_Open, 0);
}

TEST_F(GpioPanel, TheReadBackIsComparedByteByByte) {
  board.queue_port_reply({0xFF, 0xFE, 0x00, 0x01});
  write();
  EXPECT_EQ(gpio->txtPCHexData(1).Text, "FF");
  EXPECT_EQ(gpio->txtPCHexData(3).Text, "FE");
  EXPECT_EQ(gpio->txtPCHex(1).Text, "00");
  EXPECT_EQ(gpio->txtPCHex(3).Text, "01");
  EXPECT_EQ(gpio->shpGpioWr(2).FillColor, light_green);
  EXPECT_EQ(gpio->shpGpioWr(3).FillColor, red);
  EXPECT_EQ(gpio->shpGpioWr(4).FillColor, light_green);
  EXPECT_EQ(gpio->shpGpioWr(5).FillColor, dark_green) << "data differ more mildly than enables";
  board.queue_port_reply({0x00, 0xFF, 0x0A, 0x00});
  write();
  EXPECT_EQ(gpio->shpGpioWr(2).FillColor, red);
  EXPECT_EQ(gpio->shpGpioWr(3).FillColor, light_green);
  EXPECT_EQ(gpio->shpGpioWr(4).FillColor, dark_green);
  EXPECT_EQ(gpio->shpGpioWr(5).FillColor, light_green);
  EXPECT_EQ(gpio->txtPCHex(1).Text, "0A");
}

TEST_F(GpioPanel, InputPinsReadWhatTheOutsideSays) {
  board.set_port('B', 0x7F);
  store.Gpio_Image = {0x00, 0x03, 0xFF, 0xFC};
  write();
  EXPECT_EQ(gpio->txtPCHexData(1).Text, "7F");
  EXPECT_EQ(gpio->shpGpioWr(4).FillColor, dark_green);
  EXPECT_EQ(gpio->txtPCHexData(3).Text, "FC") << "the LED pins are outputs";
  EXPECT_EQ(gpio->shpGpioWr(5).FillColor, light_green);
}

TEST_F(GpioPanel, AFailedTransferShowsAMismatchOfZeros) {
  store.Gpio_Image = {0x01, 0x00, 0xFF, 0xFF};
  board.fail_transfers(2);
  write();
  EXPECT_EQ(gpio->txtPCHexData(1).Text, "00");
  EXPECT_EQ(gpio->shpGpioWr(2).FillColor, red);
  EXPECT_EQ(gpio->shpGpioWr(3).FillColor, light_green);
  EXPECT_EQ(gpio->shpGpioWr(4).FillColor, dark_green);
}

TEST_F(GpioPanel, InManualModeTheSessionIsLeftAlone) {
  store.Man_Usb_Conn = true_flag;
  write();
  EXPECT_TRUE(recorder.calls.empty());
  workbench().Connect_Usb();
  write();
  EXPECT_EQ(recorder.packets.size(), 2u);
  EXPECT_EQ(store.Usb_Open, -1);
}

TEST_F(GpioPanel, OpensFromTheWorkbenchAndTheReadButtonDoesNothing) {
  click(workbench().mnuGPIO);
  EXPECT_TRUE(gpio->visible());
  EXPECT_EQ(store.Active_Form, gpio);
  EXPECT_EQ(gpio->Caption, "GPIO Control");
  recorder = {};
  click(gpio->cmdReadGPIO);
  EXPECT_TRUE(recorder.calls.empty());
}

}  // namespace
}  // namespace varzelin::testing
