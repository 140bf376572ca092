// The interrupt of the panels over eight registers: clearing it, its pin, and polling before, in and behind a
// loop.
#include "support/eight_register_fixture.h"
#include "workbench/gpio_panel.h"

namespace varzelin::testing {
namespace {

using Kvt71344Interrupt = Kvt71344;
using Kvt71356Interrupt = Kvt71356;

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

TEST_F(Kvt71344Interrupt, InALoopTheBigButtonLeavesItToTheLoopAndThePinShowsBehindIt) {
  board.set_port('B', 0x7F);
  collect(12, [&] {
    forget_traffic();
    forms::user::click(panel->watch.cmdClrInt);
    EXPECT_TRUE(std::ranges::none_of(sent(), [](const auto& bytes) { return bytes.back() == 0x40; }));
    EXPECT_EQ(store.PendingClearInt, -1);
    EXPECT_EQ(store.PendingReadRegs, -1);
    EXPECT_EQ(store.PendingUpdate, -1);
    EXPECT_EQ(panel->watch.txtPbInt.Text, "");
  });
  EXPECT_EQ(std::ranges::count(sent(), std::vector{0, 0x88, 0x40}), 1);
  EXPECT_EQ(panel->watch.txtPbInt.Text, "7F");
  EXPECT_EQ(panel->watch.ShpINTexternal.FillColor.get(), lamp(12));
}

TEST_F(Kvt71344Interrupt, ThePinIsBitSevenOfPortB) {
  for (const auto& [level, text, color] :
       {std::tuple{0x00, "00", 12}, {0x7F, "7F", 12}, {0x80, "80", 0}, {0xFF, "FF", 0}}) {
    board.set_port('B', static_cast<std::uint8_t>(level));
    forget_traffic();
    click(panel->watch.cmdSample_Portb);
    EXPECT_EQ(panel->watch.txtPbInt.Text, text);
    EXPECT_EQ(panel->watch.ShpINTexternal.FillColor.get(), lamp(color));
    ASSERT_EQ(recorder.packets.size(), 2u);
    EXPECT_EQ(recorder.packets[0], (Packet{1, {0, 0, 0, 0, 2}, 0, 5}));
    EXPECT_EQ(recorder.packets[1].pipe, 129);
    EXPECT_EQ(recorder.packets[1].size, 25u);
    EXPECT_EQ(store.Usb_Open, 0);
  }
}

TEST_F(Kvt71344Interrupt, TheFirstBoardIsAskedOnTheSensorsPipe) {
  store.Board_Rev = 1;
  click(panel->watch.cmdSample_Portb);
  ASSERT_EQ(recorder.packets.size(), 2u);
  EXPECT_EQ(recorder.packets[0], (Packet{2, {2, 0, 0}, 0, 3}));
  EXPECT_EQ(recorder.packets[1].pipe, 130);
  EXPECT_EQ(recorder.packets[1].size, 3u);
}

TEST_F(Kvt71356Interrupt, ThePinIsSampledByAWriteOfTheGpioPanel) {
  board.set_port('B', 0x12);
  click(panel->watch.cmdSample_Portb);
  EXPECT_EQ(recorder.packets[0], (Packet{1, {0xFF, 0xFF, 0, 0}, 0, 4}));
  EXPECT_EQ(panel->watch.txtPbInt.Text, "12");
  EXPECT_EQ(form<frmGPIO>().txtPCHexData(1).Text, "12");
  EXPECT_EQ(panel->watch.ShpINTexternal.FillColor.get(), lamp(12));
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
  click(panel->watch.ChkIpol);
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
