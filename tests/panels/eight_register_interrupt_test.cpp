// The interrupt of the panels over eight registers: clearing it, its pin, and polling before, in and behind a
// loop.
#include "support/eight_register_fixture.h"
#include "workbench/gpio_panel.h"

namespace varzelin::testing {
namespace {

template <class Fixture>
struct Interrupt : Fixture {
  using Fixture::panel;
  using Fixture::store;

  void expect_left_to_the_loop() {
    this->board.set_port('B', 0x7F);
    this->collect(12, [&] {
      this->forget_traffic();
      forms::user::click(panel->watch.cmdClrInt);
      EXPECT_TRUE(this->recorder.packets.empty());
      EXPECT_EQ(store.PendingClearInt, -1);
      EXPECT_EQ(store.PendingReadRegs, -1);
      EXPECT_EQ(store.PendingUpdate, -1);
      EXPECT_EQ(panel->watch.txtPbInt.Text, "");
    });
    EXPECT_EQ(std::ranges::count(this->sent(), std::vector{0, 0x88, 0x40}), 1);
    EXPECT_EQ(panel->watch.txtPbInt.Text, "7F");
    EXPECT_EQ(panel->watch.ShpINTexternal.FillColor.get(), this->lamp(12));
  }
  // Samples the pin at each level: what is sent on the port's pipe, and what is shown of the reply.
  void expect_pin(const std::vector<int>& request) {
    for (const auto& [level, text, color] :
         {std::tuple{0x00, "00", 12}, {0x7F, "7F", 12}, {0x80, "80", 0}, {0xFF, "FF", 0}}) {
      this->board.set_port('B', static_cast<std::uint8_t>(level));
      this->forget_traffic();
      this->click(panel->watch.cmdSample_Portb);
      EXPECT_EQ(panel->watch.txtPbInt.Text, text);
      EXPECT_EQ(panel->watch.ShpINTexternal.FillColor.get(), this->lamp(color));
      ASSERT_EQ(this->recorder.packets.size(), 2u);
      EXPECT_EQ(this->recorder.packets[0], (Packet{boards::pipe_gpio_out, request, 0, request.size()}));
      EXPECT_EQ(this->recorder.packets[1].pipe, boards::pipe_gpio_in);
      EXPECT_EQ(this->recorder.packets[1].size, 25u);
      EXPECT_EQ(this->calls("WDU_VB_Init"), 1u);
      EXPECT_EQ(store.Usb_Open, 0);
    }
  }
  // Polling, the lamp of it goes over with each pass.
  void expect_lamp_to_alternate() {
    std::vector<forms::Color> lamps;
    this->recorder.before_call = [&] {
      const auto& packets = this->recorder.packets;
      if (packets.empty() || packets.back().pipe != boards::pipe_i2c_out) return;
      lamps.push_back(panel->watch.ShpISample.FillColor.get());
    };
    this->click(panel->watch.ChkIpol);
    this->forget_traffic();
    this->collect(4);
    std::erase_if(lamps, [previous = std::optional<forms::Color>()](const forms::Color& color) mutable {
      return std::exchange(previous, color) == color;
    });
    ASSERT_GE(lamps.size(), 4u);
    for (std::size_t i = 0; i < lamps.size(); ++i) {
      EXPECT_EQ(lamps[i], this->lamp(i % 2 == 0 ? 10 : 2)) << i;
    }
  }
};

using Kvt71344Interrupt = Interrupt<Kvt71344>;
using Kvt71356Interrupt = Interrupt<Kvt71356>;

TEST_F(Kvt71344Interrupt, ClearingSendsTheCommandInASessionOfItsOwnAndReadsBack) {
  store.PendingClearInt = -1;
  click(panel->watch.cmdClearInt);
  EXPECT_EQ(sent(), (ByteLists{{0, 0x88, 0x40}, {2, 0x89, 2}, {2, 0x89, 0}}));
  EXPECT_EQ(panel->ShpInd(13).FillColor.get(), lamp(10));
  EXPECT_EQ(store.PendingClearInt, 0);
  EXPECT_EQ(calls("WDU_VB_Init"), 2u);
  EXPECT_EQ(store.Usb_Open, 0);
}

TEST_F(Kvt71356Interrupt, ClearingReadsBackInTheSameSession) {
  click(panel->watch.cmdClearInt);
  EXPECT_EQ(sent(), (ByteLists{{0, 0x88, 0x40}, {2, 0x89, 2}, {2, 0x89, 0}}));
  EXPECT_EQ(calls("WDU_VB_Init"), 1u);
  EXPECT_EQ(store.Usb_Open, 0);
}

TEST_F(Kvt71344Interrupt, TheBigButtonClearsAndSamplesThePin) {
  click(panel->watch.cmdClrInt);
  EXPECT_EQ(sent(), (ByteLists{{0, 0x88, 0x40}, {2, 0x89, 2}, {2, 0x89, 0}}));
  EXPECT_EQ(recorder.packets.back().pipe, 129);
  EXPECT_EQ(panel->watch.txtPbInt.Text, "FF");
}

TEST_F(Kvt71356Interrupt, TheBigButtonClearsAndSamplesThePinInTwoSessions) {
  click(panel->watch.cmdClrInt);
  EXPECT_EQ(sent(), (ByteLists{{0, 0x88, 0x40}, {2, 0x89, 2}, {2, 0x89, 0}}));
  EXPECT_EQ(sent_on(boards::pipe_gpio_out), (ByteLists{{0xFF, 0xFF, 0, 0}}));
  EXPECT_EQ(recorder.packets.back().pipe, boards::pipe_gpio_in);
  EXPECT_EQ(panel->watch.txtPbInt.Text, "FF");
  EXPECT_EQ(store.PendingUpdate, 0);
  EXPECT_EQ(calls("WDU_VB_Init"), 2u);
  EXPECT_EQ(store.Usb_Open, 0);
}

TEST_F(Kvt71344Interrupt, InALoopTheBigButtonLeavesItToTheLoopAndThePinShowsBehindIt) {
  expect_left_to_the_loop();
}
TEST_F(Kvt71356Interrupt, InALoopTheBigButtonLeavesItToTheLoopAndThePinShowsBehindIt) {
  expect_left_to_the_loop();
}

// With a stop asked for it is left as well, though no loop is there to do it.
TEST_F(Kvt71356Interrupt, BehindAStopTheBigButtonIsLeft) {
  store.AbortRequested = -1;
  int yields = 0;
  user.at_yield = [&] { ++yields; };
  click(panel->watch.cmdClrInt);
  EXPECT_EQ(yields, 1);
  EXPECT_TRUE(recorder.packets.empty());
  EXPECT_EQ(store.PendingClearInt, -1);
  EXPECT_EQ(store.PendingReadRegs, -1);
  EXPECT_EQ(store.PendingUpdate, -1);
}

TEST_F(Kvt71344Interrupt, ThePinIsBitSevenOfPortB) {
  expect_pin({0, 0, 0, 0, 2});
}
TEST_F(Kvt71356Interrupt, ThePinIsBitSevenOfPortBByAWriteOfTheGpioPanel) {
  expect_pin({0xFF, 0xFF, 0, 0});
  EXPECT_EQ(form<frmGPIO>().txtPCHexData(1).Text, "FF");
}

TEST_F(Kvt71344Interrupt, TheFirstBoardIsAskedOnTheSensorsPipe) {
  store.Board_Rev = 1;
  click(panel->watch.cmdSample_Portb);
  ASSERT_EQ(recorder.packets.size(), 2u);
  EXPECT_EQ(recorder.packets[0], (Packet{2, {2, 0, 0}, 0, 3}));
  EXPECT_EQ(recorder.packets[1].pipe, 130);
  EXPECT_EQ(recorder.packets[1].size, 3u);
}

// It has no way of its own on the first board.
TEST_F(Kvt71356Interrupt, TheFirstBoardIsAskedByTheGpioPanelToo) {
  store.Board_Rev = 1;
  expect_pin({0xFF, 0xFF, 0, 0});
}

TEST_F(Kvt71344Interrupt, TheReadBackShowsTheFlag) {
  board.queue_reply({2, 0xFF, 0x00});
  board.queue_reply({2, 0x80, 0x20});
  click(panel->cmdRead_All);
  EXPECT_EQ(panel->watch.ShpINt.FillColor.get(), lamp(12));
  board.queue_reply({2, 0xFF, 0x00});
  board.queue_reply({2, 0x80, 0xDF});
  click(panel->cmdRead_All);
  EXPECT_EQ(panel->watch.ShpINt.FillColor.get(), lamp(0));
}

// --- polling ---

TEST_F(Kvt71344Interrupt, PollingOnlyChangesTheCaption) {
  EXPECT_EQ(panel->watch.ChkIpol.Caption, "Poll Interrupt");
  click(panel->watch.ChkIpol);
  EXPECT_TRUE(panel->watch.TimerIPol.Enabled);
  EXPECT_EQ(panel->watch.ChkIpol.Caption, "Polling INT Via Register");
  EXPECT_FALSE(panel->watch.TimerIPol.handles(forms::Event::Timer));
  panel->watch.ShpISample.FillColor = lamp(10);
  int yields_lit = 0;
  user.at_yield = [&] { yields_lit += panel->watch.ShpISample.FillColor.get() == lamp(10); };
  click(panel->watch.ChkIpol);
  EXPECT_EQ(yields_lit, 1);
  EXPECT_FALSE(panel->watch.TimerIPol.Enabled);
  EXPECT_EQ(panel->watch.ChkIpol.Caption, "Check to enable Interrupt Polling");
  EXPECT_EQ(panel->watch.ShpISample.FillColor.get(), lamp(0));
}

TEST_F(Kvt71356Interrupt, ATickReadsTheFlagAndLeavesTheSessionOpen) {
  click(panel->watch.ChkIpol);
  forget_traffic();
  for (const auto& [byte, flag, blink] : {std::tuple{0x20, 12, 10}, {0x00, 0, 2}, {0xFF, 12, 10}}) {
    board.queue_reply({2, 0x88, static_cast<std::uint8_t>(byte)});
    program.runtime.dispatch([&] { panel->watch.TimerIPol.raise(forms::Event::Timer); });
    EXPECT_EQ(panel->watch.ShpINt.FillColor.get(), lamp(flag));
    EXPECT_EQ(panel->watch.ShpISample.FillColor.get(), lamp(blink));
    EXPECT_EQ(store.Usb_Open, -1);
    EXPECT_EQ(store.I2C_RdCnt, 2);
  }
  EXPECT_EQ(sent(), (ByteLists{{2, 0x89, 0}, {2, 0x89, 0}, {2, 0x89, 0}}));
  EXPECT_EQ(calls("WDU_VB_Init"), 1u);
  EXPECT_EQ(recorder.packets[1].size, 3u);
}

TEST_F(Kvt71356Interrupt, ATickInAHeldSessionDoesNotOpenItAgain) {
  click(workbench().cmdUSBConnect);
  store.Man_Usb_Conn = -1;
  int yields_behind = 0;
  user.at_yield = [&] { yields_behind += panel->watch.ShpISample.FillColor.get() == lamp(10); };
  const std::size_t before = log().size();
  program.runtime.dispatch([&] { panel->watch.TimerIPol_Timer(); });
  EXPECT_EQ(sent(), (ByteLists{{2, 0x89, 0}}));
  EXPECT_EQ(log().find("Already Opened", before), std::string::npos);
  EXPECT_EQ(yields_behind, 1);
  store.Man_Usb_Conn = 0;
  program.runtime.dispatch([&] { panel->watch.TimerIPol_Timer(); });
  EXPECT_NE(log().find("Already Opened", before), std::string::npos);
}

TEST_F(Kvt71356Interrupt, TheTimerTicksFourTimesASecond) {
  click(panel->watch.ChkIpol);
  forget_traffic();
  for (int i = 0; i < 1000; ++i) {
    clock.pass(std::chrono::milliseconds(1));
    program.runtime.service();
  }
  EXPECT_GE(sent().size(), 3u);
  EXPECT_LE(sent().size(), 4u);
}

TEST_F(Kvt71344Interrupt, ACollectionWatchesThePinInPlaceOfTheFlagAndGivesTheTimerBack) {
  click(panel->watch.ChkIpol);
  board.set_port('B', 0x00);
  collect(5, [&] {
    EXPECT_FALSE(panel->watch.TimerIPol.Enabled);
    EXPECT_EQ(panel->watch.ChkIpol.Caption, "Polling via External INT Pin");
    EXPECT_EQ(panel->watch.ShpINTexternal.FillColor.get(), lamp(12));
    EXPECT_NE(panel->watch.ShpISample.FillColor.get(), lamp(0));
    board.set_port('B', 0xFF);
    forget_traffic();
  });
  EXPECT_EQ(panel->watch.ShpINTexternal.FillColor.get(), lamp(0));
  // The pin is sampled once a pass, before its wait.
  const auto ports = std::ranges::count(recorder.packets, 1, &Packet::pipe);
  const auto readings = std::ranges::count(recorder.packets, 130, &Packet::pipe);
  EXPECT_LE(std::abs(ports - readings), 1);
  EXPECT_TRUE(panel->watch.TimerIPol.Enabled);
  EXPECT_EQ(panel->watch.ChkIpol.Caption, "Polling INT Via Reg b001 Bit h20");
}

TEST_F(Kvt71344Interrupt, TheLampOfThePollingTurnsOverInEachPass) {
  expect_lamp_to_alternate();
}
TEST_F(Kvt71356Interrupt, TheLampOfThePollingTurnsOverInEachPass) {
  expect_lamp_to_alternate();
}

TEST_F(Kvt71344Interrupt, ACollectionWithoutPollingLeavesThePinAlone) {
  panel->watch.TimerIPol.Enabled = true;
  collect(5, [&] {
    EXPECT_FALSE(panel->watch.TimerIPol.Enabled);
    EXPECT_EQ(panel->watch.ChkIpol.Caption, "Poll Interrupt");
  });
  EXPECT_EQ(std::ranges::count(recorder.packets, 1, &Packet::pipe), 0);
  EXPECT_FALSE(panel->watch.TimerIPol.Enabled);
}

TEST_F(Kvt71344Interrupt, TickingTheBoxInACollectionStartsNoTimer) {
  collect(5, [&] {
    forms::user::click(panel->watch.ChkIpol);
    EXPECT_FALSE(panel->watch.TimerIPol.Enabled);
    EXPECT_EQ(panel->watch.ChkIpol.Caption, "Poll Interrupt");
  });
  EXPECT_TRUE(panel->watch.TimerIPol.Enabled);
}

TEST_F(Kvt71356Interrupt, PollingGoesOnBehindACollection) {
  click(panel->watch.ChkIpol);
  collect(5);
  EXPECT_TRUE(panel->watch.TimerIPol.Enabled);
  forget_traffic();
  program.runtime.dispatch([&] { panel->watch.TimerIPol.raise(forms::Event::Timer); });
  EXPECT_EQ(sent(), (ByteLists{{2, 0x89, 0}}));
}

TEST_F(Kvt71344Interrupt, ExitStopsTheTimer) {
  click(panel->watch.ChkIpol);
  ends([&] { forms::user::click(panel->Command4); });
  EXPECT_FALSE(panel->watch.TimerIPol.Enabled);
}

}  // namespace
}  // namespace varzelin::testing
