// Interrupt limits and register boxes of the panels over eight registers.
#include "support/eight_register_fixture.h"

namespace varzelin::testing {
namespace {

struct LimitEntered {
  const char* text;
  const char* box;  // the decimal box behind it
  const char* hex;  // the register's box
  int sent;         // -1: nothing goes out
};

template <class Fixture>
struct Limits : Fixture {
  void expect_high(std::initializer_list<LimitEntered> cases) {
    for (const LimitEntered& c : cases) expect(c, this->panel->limits.txtIUpperLimit, 2);
  }
  void expect_low(std::initializer_list<LimitEntered> cases) {
    for (const LimitEntered& c : cases) expect(c, this->panel->limits.txtILowerLimit, 3);
  }

 private:
  void expect(const LimitEntered& c, forms::TextBox& decimal, int register_number) {
    SCOPED_TRACE(c.text);
    this->panel->txtRegHex(register_number).Text = "5A";
    this->user.boxes.clear();
    this->forget_traffic();
    this->enter_text(decimal, c.text);
    EXPECT_EQ(decimal.Text, c.box);
    EXPECT_EQ(this->box(register_number), c.hex);
    EXPECT_EQ(this->sent(), c.sent < 0 ? ByteLists{} : this->written(register_number, c.sent));
    EXPECT_EQ(this->user.boxes.empty(), c.sent >= 0);
    EXPECT_EQ(this->store.PendingIntHigh, 0);
    EXPECT_EQ(this->store.PendingIntLow, 0);
    EXPECT_TRUE(this->user.errors.empty());
  }
};

using Kvt71344Limits = Limits<Kvt71344>;
using Kvt71356Limits = Limits<Kvt71356>;

TEST_F(Kvt71344Limits, TheHighLimitAroundItsBorders) {
  expect_high({{"256", "256", "01", 0x01},
               {"65280", "65280", "FF", 0xFF},
               {"65024", "65024", "FE", 0xFE},
               {"300", "256", "01", 0x01},
               {"400", "256", "02", 0x02},
               {"1000", "768", "04", 0x04},
               {"100", "0", "100", 0x00},
               {"65500", "65280", "100", 0x00},
               {"70000", "69888", "111", 0x11},
               {"0", "65280", "5A", -1},
               {"65536", "65280", "5A", -1},
               {"-256", "65280", "5A", -1},
               {"many", "many", "5A", 0x5A},
               {"", "", "5A", 0x5A}});
}

TEST_F(Kvt71344Limits, TheLowLimitAroundItsBorders) {
  expect_low({{"0", "0", "00", 0x00},
              {"256", "256", "01", 0x01},
              {"65280", "65280", "FF", 0xFF},
              {"100", "0", "00", 0x00},
              {"1000", "768", "04", 0x04},
              {"65536", "0", "5A", -1},
              {"-256", "0", "5A", -1},
              {"many", "many", "5A", 0x5A}});
}

TEST_F(Kvt71356Limits, TheMaximumIsThatOfFifteenBits) {
  expect_high({{"32512", "32512", "7F", 0x7F}, {"32768", "32512", "5A", -1}, {"0", "32512", "5A", -1}});
  expect_low({{"32512", "32512", "7F", 0x7F}, {"32768", "0", "5A", -1}, {"0", "0", "00", 0x00}});
}

TEST_F(Kvt71344Limits, TheMessages) {
  enter_text(panel->limits.txtIUpperLimit, "0");
  enter_text(panel->limits.txtILowerLimit, "65536");
  ASSERT_EQ(user.boxes.size(), 2u);
  EXPECT_EQ(user.boxes[0].text, "Hign Interrupt Limit must be  => 256 and < =65280");
  EXPECT_EQ(user.boxes[1].text, "Low Interrupt Limit must be 0, => 256 and < =65280");
}

TEST_F(Kvt71356Limits, TheMessages) {
  enter_text(panel->limits.txtIUpperLimit, "0");
  enter_text(panel->limits.txtILowerLimit, "32768");
  ASSERT_EQ(user.boxes.size(), 2u);
  EXPECT_EQ(user.boxes[0].text, "Hign Interrupt Limit must be  => 256 and < =32512");
  EXPECT_EQ(user.boxes[1].text, "Low Interrupt Limit must be 0, => 256 and < =32512");
}

TEST_F(Kvt71344Limits, AnyKeyDropsAWriteThatWaits) {
  store.PendingIntHigh = store.PendingIntLow = -1;
  program.runtime.dispatch([&] { forms::user::type(panel->limits.txtIUpperLimit, "1"); });
  EXPECT_EQ(store.PendingIntHigh, 0);
  EXPECT_EQ(store.PendingIntLow, -1);
  program.runtime.dispatch([&] { forms::user::type(panel->limits.txtILowerLimit, "1"); });
  EXPECT_EQ(store.PendingIntLow, 0);
  EXPECT_TRUE(sent().empty());
}

TEST_F(Kvt71344Limits, AnEnteredLimitWaitsUntilItIsWritten) {
  Flag waited = 0;
  recorder.before_call = [&] { waited = static_cast<Flag>(waited | store.PendingIntHigh); };
  enter_text(panel->limits.txtIUpperLimit, "512");
  EXPECT_EQ(waited, -1);
  EXPECT_EQ(store.PendingIntHigh, 0);
}

TEST_F(Kvt71344Limits, InALoopALimitIsLeftToTheLoop) {
  for (const int limit : {2, 3}) {
    forms::TextBox& box_of_it = limit == 2 ? panel->limits.txtIUpperLimit : panel->limits.txtILowerLimit;
    collect(12, [&] {
      forget_traffic();
      box_of_it.Text = "512";
      forms::user::enter(box_of_it);
      EXPECT_TRUE(sent().empty());
      EXPECT_EQ(box(limit), "02");
      EXPECT_EQ(limit == 2 ? store.PendingIntHigh : store.PendingIntLow, -1);
      EXPECT_EQ(store.PendingUpdate, -1);
    });
    ByteLists writes = sent();
    std::erase_if(writes, [](const auto& bytes) { return bytes[0] != 0; });
    EXPECT_EQ(writes, (ByteLists{{0, 0x88, limit, 2}}));
  }
}

TEST_F(Kvt71344Limits, TypingOnDropsALimitThatWaitsForTheLoop) {
  collect(12, [&] {
    forget_traffic();
    panel->limits.txtIUpperLimit.Text = "512";
    forms::user::enter(panel->limits.txtIUpperLimit);
    forms::user::type(panel->limits.txtIUpperLimit, "0");
  });
  ByteLists writes = sent();
  std::erase_if(writes, [](const auto& bytes) { return bytes[0] != 0; });
  EXPECT_TRUE(writes.empty());
  EXPECT_EQ(board.register_value(2), 0xFF);
}

// --- register boxes ---

TEST_F(Kvt71344Limits, EnterInARegisterBoxWritesItInUpperCase) {
  for (int number = 0; number < 4; ++number) {
    forget_traffic();
    enter_text(panel->txtRegHex(number), "a5");
    EXPECT_EQ(box(number), "A5");
    EXPECT_EQ(sent(), written(number, 0xA5));
  }
  EXPECT_EQ(panel->limits.txtIUpperLimit.Text, "42240");
  EXPECT_EQ(panel->limits.txtILowerLimit.Text, "42240");
}

TEST_F(Kvt71344Limits, AnotherKeyInARegisterBoxWritesNothing) {
  program.runtime.dispatch([&] { forms::user::type(panel->txtRegHex(2), "a"); });
  EXPECT_EQ(box(2), "FFa");
  EXPECT_TRUE(sent().empty());
}

TEST_F(Kvt71344Limits, EnterInARegisterBoxIsNotLeftToTheLoop) {
  collect(12, [&] {
    forget_traffic();
    panel->txtRegHex(1).Text = "0C";
    forms::user::enter(panel->txtRegHex(1));
    ASSERT_FALSE(sent().empty());
    EXPECT_EQ(sent()[0], (std::vector{0, 0x88, 1, 0x0C}));
    EXPECT_EQ(sent().size(), 1u);  // no read-back in a loop
  });
}

TEST_F(Kvt71344Limits, TooManyDigitsLoseTheUpperOnesAndTheLampTurnsRed) {
  enter_text(panel->txtRegHex(1), "10C");
  EXPECT_EQ(sent(), written(1, 0x0C));
  EXPECT_EQ(store.RegImage[1], 0x0C);
  EXPECT_EQ(box(1), "10C");
  EXPECT_EQ(panel->txtRegRd(1).Text, "0C");
  EXPECT_EQ(panel->ShpInd(5).FillColor.get(), lamp(12));
}

TEST_F(Kvt71344Limits, FiveDigitsAreThePlatformsOverflow) {
  enter_text(panel->txtRegHex(1), "12345");
  EXPECT_EQ(user.errors, std::vector<int>{forms::overflow});
  EXPECT_TRUE(sent().empty());
}

TEST_F(Kvt71344Limits, ATextThatIsNoNumberWritesZero) {
  enter_text(panel->txtRegHex(1), "xy");
  EXPECT_EQ(sent(), written(1, 0x00));
}

// --- write and read-back ---

TEST_F(Kvt71344Limits, EachButtonWritesItsRegisterFromItsBox) {
  const std::vector<forms::CommandButton*> buttons{&panel->cmdSetCommand, &panel->cmdSetControl,
                                                   &panel->cmdSetIntHigh, &panel->cmdSetIntLow};
  for (int number = 0; number < 4; ++number) {
    panel->txtRegHex(number).Text = "8" + std::to_string(number);
    for (const int color : {10, 2, 10}) {
      forget_traffic();
      click(*buttons[static_cast<std::size_t>(number)]);
      EXPECT_EQ(sent(), written(number, 0x80 + number));
      EXPECT_EQ(panel->ShpInd(number).FillColor.get(), lamp(color));
      EXPECT_EQ(store.RegImage[static_cast<std::size_t>(number)], 0x80 + number);
    }
  }
}

TEST_F(Kvt71344Limits, AWriteClearsItsOwnPendingFlagAlone) {
  const std::vector<std::pair<forms::CommandButton*, Flag Store::*>> writes{
      {&panel->cmdSetCommand, &Store::PendingWriteR0},
      {&panel->cmdSetControl, &Store::PendingWriteR1},
      {&panel->cmdSetIntHigh, &Store::PendingIntHigh},
      {&panel->cmdSetIntLow, &Store::PendingIntLow}};
  for (const auto& [button, own] : writes) {
    for (const auto& [other, flag] : writes) store.*flag = -1;
    store.PendingClearInt = -1;
    click(*button);
    for (const auto& [other, flag] : writes) EXPECT_EQ(store.*flag, flag == own ? 0 : -1);
    EXPECT_EQ(store.PendingClearInt, -1);
  }
}

TEST_F(Kvt71344Limits, TheReadBackShowsAndComparesTheFourRegisters) {
  for (const auto& [number, value] : {std::pair{0, 0x8C}, {1, 0x0A}, {2, 0x12}, {3, 0x03}}) {
    board.set_register(static_cast<std::uint8_t>(number), static_cast<std::uint8_t>(value));
    panel->txtRegHex(number).Text = forms::Hex2(value);
  }
  click(panel->cmdRead_All);
  EXPECT_EQ(sent(), (ByteLists{{2, 0x89, 2}, {2, 0x89, 0}}));
  for (const auto& [number, text] : {std::pair{0, "8C"}, {1, "0A"}, {2, "12"}, {3, "03"}}) {
    EXPECT_EQ(panel->txtRegRd(number).Text, text);
    EXPECT_EQ(panel->ShpInd(4 + number).FillColor.get(), lamp(10)) << number;
  }
  for (int number = 0; number < 4; ++number) {
    panel->txtRegHex(number).Text = "77";
    click(panel->cmdRead_All);
    EXPECT_EQ(panel->ShpInd(4 + number).FillColor.get(), lamp(12)) << number;
    panel->txtRegHex(number).Text = panel->txtRegRd(number).Text;
    click(panel->cmdRead_All);
    EXPECT_EQ(panel->ShpInd(4 + number).FillColor.get(), lamp(10)) << number;
  }
  for (const Packet& packet : recorder.packets) {
    if (packet.pipe == boards::pipe_i2c_in) {
      EXPECT_EQ(packet.size, 3u);
    }
  }
}

TEST_F(Kvt71344Limits, LowerCaseThatWasNotEnteredCountsAsDifferent) {
  board.set_register(1, 0x0A);
  panel->txtRegHex(1).Text = "0a";
  click(panel->cmdRead_All);
  EXPECT_EQ(panel->ShpInd(5).FillColor.get(), lamp(12));
}

TEST_F(Kvt71344Limits, TheReadBackRestoresTheReadCountOfTwoReadings) {
  click(panel->cmdRead_All);
  EXPECT_EQ(store.I2C_RdCnt, 2);
  store.SingleReading = 0;
  store.PendingReadRegs = -1;
  click(panel->cmdRead_All);
  EXPECT_EQ(store.I2C_RdCnt, 4);
  EXPECT_EQ(store.PendingReadRegs, 0);
}

TEST_F(Kvt71344Limits, ReadMeasurementsReadsFourRegistersAndLeavesTheCount) {
  board.queue_reply({4, 0x01, 0x02, 0x03, 0xF4});
  click(panel->cmdRead_Measurements);
  EXPECT_EQ(sent(), (ByteLists{{4, 0x89, 4}}));
  EXPECT_EQ(recorder.packets[1].size, 5u);
  for (const auto& [number, text] : {std::pair{4, "01"}, {5, "02"}, {6, "03"}, {7, "F4"}}) {
    EXPECT_EQ(panel->txtRegRd(number).Text, text);
    EXPECT_EQ(panel->ShpInd(4 + number).FillColor.get(), lamp(10));
  }
  EXPECT_EQ(panel->ShpInd(12).FillColor.get(), lamp(0));
  EXPECT_EQ(store.I2C_RdCnt, 4);
}

TEST_F(Kvt71344Limits, SendEocIsACommand) {
  click(panel->cmdSync);
  EXPECT_EQ(sent(), (ByteLists{{0, 0x88, 0x80}}));
  EXPECT_EQ(panel->ShpInd(12).FillColor.get(), lamp(10));
  EXPECT_EQ(store.Usb_Open, 0);
}

// --- sessions ---

TEST_F(Kvt71344Limits, AWriteAndItsReadBackShareASessionButTheLowLimits) {
  const std::vector<std::pair<forms::CommandButton*, std::size_t>> sessions{{&panel->cmdSetCommand, 1},
                                                                            {&panel->cmdSetControl, 1},
                                                                            {&panel->cmdSetIntHigh, 1},
                                                                            {&panel->cmdSetIntLow, 2}};
  for (const auto& [button, count] : sessions) {
    forget_traffic();
    click(*button);
    EXPECT_EQ(calls("WDU_VB_Init"), count) << button->name();
    EXPECT_EQ(calls("WDU_VB_Uninit"), count) << button->name();
    EXPECT_EQ(store.Usb_Open, 0);
  }
}

// The limits' writes leave closing to the read-back, which a loop or a stop that was asked for puts off.
TEST_F(Kvt71356Limits, TheLimitsWritesDoNotClose) {
  for (forms::CommandButton* button : {&panel->cmdSetIntHigh, &panel->cmdSetIntLow}) {
    store.AbortRequested = -1;
    click(*button);
    EXPECT_EQ(store.Usb_Open, -1) << button->name();
    EXPECT_EQ(store.PendingReadRegs, -1);
    store.AbortRequested = 0;
    click(panel->cmdRead_All);
    EXPECT_EQ(store.Usb_Open, 0);
  }
  store.AbortRequested = -1;
  click(panel->cmdSetControl);
  EXPECT_EQ(store.Usb_Open, 0);
}

TEST_F(Kvt71356Limits, ReadAllConnectsBeforeItDefers) {
  store.AbortRequested = -1;
  click(panel->cmdRead_All);
  EXPECT_EQ(store.Usb_Open, -1);
  EXPECT_TRUE(sent().empty());
  EXPECT_EQ(store.PendingReadRegs, -1);
  EXPECT_EQ(store.PendingUpdate, -1);
}
TEST_F(Kvt71344Limits, ReadAllDefersWithoutASession) {
  store.AbortRequested = -1;
  click(panel->cmdRead_All);
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_TRUE(recorder.calls.empty());
  EXPECT_EQ(store.PendingReadRegs, -1);
}

}  // namespace
}  // namespace varzelin::testing
