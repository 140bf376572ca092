// The interrupt limits of the multi-function panels: written, read, their bounds and messages; and the
// interrupt pin.
#include "support/multi_function_fixture.h"

namespace varzelin::testing {
namespace {

struct MultiFunctionLimits : Kvt71385Panel {
  LimitRegisters& limits() { return panel->limits; }
  // The width first: a choice of it takes the bounds of the scheme.
  void format(int bits, int scheme) {
    choose_option("OptIRMode", scheme);
    choose_option("OptITime", bits == 16 ? 0 : 1);
    forget_traffic();
    user.boxes.clear();
  }
  void write(const std::string& low, const std::string& high) {
    limits().txtILow.Text = low;
    limits().txtIHigh.Text = high;
    forget_traffic();
    click(limits().cmdWrtILimits);
  }
  // Four bytes as the sensor has them.
  void read(const std::vector<int>& bytes) {
    for (int i = 0; i < 4; ++i) {
      ASSERT_TRUE(board.set_register(static_cast<std::uint8_t>(4 + i),
                                     static_cast<std::uint8_t>(bytes[static_cast<std::size_t>(i)])));
    }
    forget_traffic();
    user.boxes.clear();
    click(limits().cmdReadILimits);
  }
  std::vector<std::string> messages() const {
    std::vector<std::string> result;
    for (const auto& message : user.boxes) {
      EXPECT_EQ(message.title, "");
      EXPECT_EQ(message.buttons, forms::vbOKOnly);
      result.push_back(message.text);
    }
    return result;
  }
  std::string boxes() { return box(4) + " " + box(5) + " " + box(6) + " " + box(7); }
};

using Messages = std::vector<std::string>;

TEST_F(MultiFunctionLimits, HaveTheirTexts) {
  EXPECT_EQ(limits().txtILow.ToolTipText,
            "Enter Decimal value 1-65535 for Interrupt Low Threshold, click write to update device.");
  EXPECT_EQ(limits().txtIHigh.ToolTipText,
            "Enter Decimal value 1-65535 for Interrupt High Threshold, click write to update device.");
  EXPECT_EQ(limits().cmdWrtILimits.Caption, "Write");
  EXPECT_EQ(limits().cmdReadILimits.Caption, "Read");
  EXPECT_EQ(limits().cmdWrtILimits.ToolTipText,
            "Click here to update Interrupt Threshold Registers in the device.");
  EXPECT_EQ(limits().cmdReadILimits.ToolTipText,
            "Click here to read Interrupt Threshold Registers in the device");
  EXPECT_EQ(limits().lblLimits.Caption, "Interrupt Limits");
  EXPECT_EQ(limits().lblILow.Caption, "Lower ");
  EXPECT_EQ(limits().lblIHigh.Caption, "Upper ");
}

// --- written ---

struct Accepted {
  int bits;
  int scheme;
  const char* low;
  const char* high;
  std::vector<int> bytes;
  const char* boxes;
};
const std::vector<Accepted> accepted{
    {12, 0, "0", "4096", {0x00, 0x00, 0x00, 0x10}, "00 00 00 10"},
    {12, 0, "4096", "0", {0x00, 0x10, 0x00, 0x00}, "00 10 00 00"},
    {12, 0, "255", "256", {0xFF, 0x00, 0x00, 0x01}, "FF 00 00 01"},
    {12, 0, "word", "", {0x00, 0x00, 0x00, 0x00}, "00 00 00 00"},
    {12, 0, "4096.5", "12 lux", {0x00, 0x10, 0x0C, 0x00}, "00 10 0C 00"},
    {12, 0, "255.6", "255.4", {0x00, 0x01, 0xFF, 0x00}, "00 01 FF 00"},
    {12, 0, "-0.5", "0.5", {0x00, 0xFF, 0x00, 0x00}, "00 FF 00 00"},
    {16, 0, "0", "65535", {0x00, 0x00, 0xFF, 0xFF}, "00 00 FF FF"},
    {16, 0, "65536", "65536", {0x00, 0x00, 0x00, 0x00}, "00 100 00 100"},
    {12, 1, "-100", "2048", {0x9C, 0xFF, 0x00, 0x08}, "9C FF 00 08"},
    {12, 1, "-1", "-99", {0xFF, 0xFF, 0x9D, 0xFF}, "FF FF 9D FF"},
    {12, 1, "0", "-100", {0x00, 0x00, 0x9C, 0xFF}, "00 00 9C FF"},
    {12, 1, "-0.5", "-100.5", {0x00, 0xFF, 0x9C, 0xFF}, "00 FF 9C FF"},
    {16, 1, "-0.5", "255.6", {0x00, 0xFF, 0x00, 0x01}, "00 FF 00 01"},
    {16, 1, "-100", "32768", {0x9C, 0xFF, 0x00, 0x80}, "9C FF 00 80"},
    {16, 1, "-1", "-100", {0xFF, 0xFF, 0x9C, 0xFF}, "FF FF 9C FF"},
};

TEST_F(MultiFunctionLimits, GoOutInOnePacket) {
  for (const Accepted& c : accepted) {
    SCOPED_TRACE(std::to_string(c.bits) + " " + c.low + " " + c.high);
    format(c.bits, c.scheme);
    write(c.low, c.high);
    std::vector<int> packet{0, 0x89, 4};
    packet.insert(packet.end(), c.bytes.begin(), c.bytes.end());
    EXPECT_EQ(sent(), ByteLists{packet});
    EXPECT_TRUE(reply_sizes().empty());
    EXPECT_EQ(boxes(), c.boxes);
    EXPECT_EQ(store.Usb_Open, 0);
    EXPECT_EQ(store.SignMask, c.bits == 16 ? 65535 : 4095);
    EXPECT_EQ(store.SignBit, c.bits == 16 ? 128 : 8);
    EXPECT_TRUE(user.boxes.empty());
    EXPECT_EQ(limits().txtILow.Text, c.low);
  }
  EXPECT_TRUE(user.errors.empty());
}

// At 8 and 4 bits sign and mask are those of whatever came before: here of a read.
TEST_F(MultiFunctionLimits, TheShortWidthsKeepTheFormat) {
  for (const int width : {2, 3}) {
    format(12, 1);
    read({0, 0, 0, 0});
    choose_option("OptITime", width);
    write("-100", "-100");
    EXPECT_EQ(boxes(), "9C F7 9C F7");
    EXPECT_EQ(store.SignMask, 2047);
    format(16, 1);
    write("0", "0");
    choose_option("OptITime", width);
    read({0x9C, 0xFF, 0xFF, 0x7F});
    EXPECT_EQ(store.SignMask, 65535);
    EXPECT_EQ(store.SignBit, 128);
    EXPECT_EQ(limits().txtIHigh.Text, "32767");
  }
}

struct Refused {
  int bits;
  int scheme;
  const char* low;
  const char* high;
  const char* message;
};
constexpr Refused refused[]{
    {12, 0, "-1", "0", "Low Limit must be within  0 Min and  4096 Max. Re-enter Low Limit"},
    {12, 0, "4097", "0", "Low Limit must be within  0 Min and  4096 Max. Re-enter Low Limit"},
    {12, 0, "4096.6", "0", "Low Limit must be within  0 Min and  4096 Max. Re-enter Low Limit"},
    {12, 0, "0", "-1", "High Limit must be within  0 Min and  4096 Max. Re-enter High Limt"},
    {12, 0, "0", "4097", "High Limit must be within  0 Min and  4096 Max. Re-enter High Limt"},
    {12, 0, "4097", "4097", "Low Limit must be within  0 Min and  4096 Max. Re-enter Low Limit"},
    {16, 0, "65537", "0", "Low Limit must be within  0 Min and  65536 Max. Re-enter Low Limit"},
    {16, 0, "0", "65537", "High Limit must be within  0 Min and  65536 Max. Re-enter High Limt"},
    {12, 1, "-100.6", "0", "Low Limit must be within -100 Min and  2048 Max. Re-enter Low Limit"},
    {12, 1, "-101", "0", "Low Limit must be within -100 Min and  2048 Max. Re-enter Low Limit"},
    {12, 1, "0", "2049", "High Limit must be within -100 Min and  2048 Max. Re-enter High Limt"},
    {16, 1, "32769", "0", "Low Limit must be within -100 Min and  32768 Max. Re-enter Low Limit"},
    {16, 1, "0", "-101", "High Limit must be within -100 Min and  32768 Max. Re-enter High Limt"},
};

TEST_F(MultiFunctionLimits, OutOfBoundsNothingGoesOutAndTheSessionStaysOpen) {
  for (const Refused& c : refused) {
    SCOPED_TRACE(std::to_string(c.bits) + " " + c.low + " " + c.high);
    format(c.bits, c.scheme);
    const std::string before = boxes();
    write(c.low, c.high);
    EXPECT_EQ(messages(), Messages{c.message});
    EXPECT_TRUE(sent().empty());
    EXPECT_EQ(boxes(), before);
    EXPECT_EQ(store.Usb_Open, -1);
    click(workbench().cmdUSBDisconnect);
  }
}

// --- read ---

struct Read {
  int bits;
  int scheme;
  std::vector<int> bytes;
  const char* low;
  const char* high;
};
const std::vector<Read> reads{
    {12, 0, {0x00, 0x00, 0x00, 0x10}, "0", "4096"},      {12, 0, {0xFF, 0x0F, 0x01, 0x00}, "4095", "1"},
    {16, 0, {0xFF, 0xFF, 0x00, 0x80}, "65535", "32768"}, {12, 1, {0x9C, 0xFF, 0x00, 0x00}, "-100", "0"},
    {12, 1, {0x9C, 0x0F, 0xFF, 0x07}, "-100", "2047"},   {12, 1, {0xFF, 0xFF, 0x12, 0xF1}, "-1", "274"},
    {16, 1, {0x9C, 0xFF, 0xFF, 0x7F}, "-100", "32767"},  {16, 1, {0xFF, 0xFF, 0x9D, 0xFF}, "-1", "-99"},
};

TEST_F(MultiFunctionLimits, AreReadOneRegisterAfterTheOther) {
  for (const Read& c : reads) {
    SCOPED_TRACE(std::to_string(c.bits) + " " + c.low + " " + c.high);
    format(c.bits, c.scheme);
    read(c.bytes);
    EXPECT_EQ(limits().txtILow.Text, c.low);
    EXPECT_EQ(limits().txtIHigh.Text, c.high);
    EXPECT_EQ(sent(), (ByteLists{{1, 0x89, 4}, {1, 0x89, 5}, {1, 0x89, 6}, {1, 0x89, 7}}));
    EXPECT_EQ(reply_sizes(), (std::vector<std::size_t>{6, 6, 6, 6}));
    EXPECT_EQ(store.SignMask, c.bits == 16 ? 32767 : 2047);
    EXPECT_EQ(store.SignBit, c.bits == 16 ? 128 : 8);
    EXPECT_TRUE(user.boxes.empty());
    EXPECT_EQ(store.Usb_Open, 0);
    for (int i = 4; i < 8; ++i) EXPECT_EQ(read_box(i), forms::Hex2(c.bytes[static_cast<std::size_t>(i - 4)]));
  }
}

struct Outside {
  int bits;
  int scheme;
  std::vector<int> bytes;
  const char* low;
  Messages messages;
};
const std::vector<Outside> outside{
    {12,
     0,
     {0x01, 0x10, 0x01, 0x10},
     "4097",
     {"Low Limit Should be Within  0 Min and  4096 Max. Update Low Limit",
      "High Limit Should be Within  0 Min and  4096 Max. Update High Limit"}},
    {12,
     0,
     {0x00, 0x10, 0x01, 0x10},
     "4096",
     {"High Limit Should be Within  0 Min and  4096 Max. Update High Limit"}},
    {12,
     1,
     {0x9B, 0xFF, 0xFF, 0x07},
     "-101",
     {"Low Limit Should be Within -100 Min and  2048 Max. Update Low Limit"}},
    {12,
     1,
     {0x00, 0x08, 0x00, 0x00},
     "-2048",
     {"Low Limit Should be Within -100 Min and  2048 Max. Update Low Limit"}},
    {16,
     1,
     {0x00, 0x00, 0x00, 0x80},
     "0",
     {"High Limit Should be Within -100 Min and  32768 Max. Update High Limit"}},
};

TEST_F(MultiFunctionLimits, OutsideTheBoundsTheyAreShownWithAWarning) {
  for (const Outside& c : outside) {
    SCOPED_TRACE(c.low);
    format(c.bits, c.scheme);
    read(c.bytes);
    EXPECT_EQ(messages(), c.messages);
    EXPECT_EQ(limits().txtILow.Text, c.low);
    EXPECT_EQ(store.Usb_Open, 0);
  }
}

TEST_F(MultiFunctionLimits, WhatWasWrittenIsReadBack) {
  for (const int bits : {12, 16}) {
    format(bits, 1);
    write("-100", "1500");
    click(limits().cmdReadILimits);
    EXPECT_EQ(limits().txtILow.Text, "-100");
    EXPECT_EQ(limits().txtIHigh.Text, "1500");
  }
  format(16, 0);
  write("65536", "4096");
  click(limits().cmdReadILimits);
  EXPECT_EQ(limits().txtILow.Text, "0");
}

// Width and scheme leave the boxes alone, though they may be out of the bounds then.
TEST_F(MultiFunctionLimits, TheOptionsLeaveTheBoxes) {
  format(16, 0);
  write("100", "50000");
  choose_option("OptITime", 1);
  choose_option("OptIRMode", 1);
  EXPECT_EQ(limits().txtILow.Text, "100");
  EXPECT_EQ(limits().txtIHigh.Text, "50000");
  EXPECT_TRUE(user.boxes.empty());
}

// --- the pin ---

TEST_F(MultiFunctionLimits, ThePinIsLowWhenItInterrupts) {
  panel->ShpIndrd(9).FillColor = black();
  const auto sample = [this](int port) {
    board.queue_port_reply({static_cast<std::uint8_t>(port)});
    forget_traffic();
    click(panel->pin.cmdSampleInterrupt);
  };
  sample(0x7F);
  EXPECT_EQ(panel->pin.ShpINTexternal.FillColor, red());
  EXPECT_EQ(store.IntPinAsserted, -1);
  EXPECT_EQ(panel->ShpIndrd(9).FillColor, lamp(10));
  EXPECT_EQ(sent_on(boards::pipe_gpio_out).size(), 1u);
  EXPECT_TRUE(sent().empty());
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_EQ(recorder.packets.back().size, 25u);
  sample(0x80);
  EXPECT_EQ(panel->pin.ShpINTexternal.FillColor, black());
  EXPECT_EQ(store.IntPinAsserted, 0);
  EXPECT_EQ(panel->ShpIndrd(9).FillColor, lamp(2));
  EXPECT_EQ(panel->ShpINt.FillColor, black());
}

TEST_F(MultiFunctionLimits, ThePinHasItsTexts) {
  EXPECT_EQ(panel->pin.cmdSampleInterrupt.Caption, "Sample  Ext. Interrupt Pin");
  EXPECT_EQ(panel->pin.cmdSampleInterrupt.ToolTipText,
            "Samples the external interrupt pin (7) on the KVT71385");
  EXPECT_EQ(panel->pin.ChkSampleInt.Caption, "Poll External Intr.");
  EXPECT_EQ(panel->pin.ChkSampleInt.ToolTipText,
            "Check to Poll External Interrupt Status during data collection.");
  EXPECT_EQ(panel->pin.lblINTexternal.Caption, "Pin 7");
  EXPECT_EQ(panel->pin.lblStatus.Caption, "Status");
}

// The check box does nothing by itself: the loops look at it, once a pass.
TEST_F(MultiFunctionLimits, ThePinIsPolledInTheLoopsWhenTicked) {
  make_measure();
  const auto samples = [this](bool timed) {
    forget_traffic();
    if (timed) {
      sample(12);
    } else {
      collect(12);
    }
    return sent_on(boards::pipe_gpio_out).size();
  };
  EXPECT_EQ(samples(false), 0u);
  EXPECT_EQ(samples(true), 0u);
  forget_traffic();
  click(panel->pin.ChkSampleInt);
  EXPECT_TRUE(recorder.packets.empty());
  make_measure();
  EXPECT_GE(samples(false), 12u);
  make_measure();
  EXPECT_GE(samples(true), 12u);
}

}  // namespace
}  // namespace varzelin::testing
