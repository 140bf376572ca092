// The modes of the panels over eight registers, what follows the command bits, and the reset.
#include "support/eight_register_fixture.h"
#include "workbench/gpio_panel.h"

namespace varzelin::testing {
namespace {

using Kvt71344Modes = Kvt71344;
using Kvt71356Modes = Kvt71356;

// --- modes ---

TEST_F(Kvt71344Modes, EachModeTogglesTheLeds) {
  auto& gpio = form<frmGPIO>();
  for (const int mode : {0, 1, 2, 0}) {
    const int led = gpio.ChKLedData(0).Value;
    forget_traffic();
    click(panel->OptMode(mode));
    EXPECT_EQ(gpio.ChKLedData(0).Value, 1 - led);
    EXPECT_EQ(gpio.ChKLedData(1).Value, 1 - led);
    ASSERT_GE(recorder.packets.size(), 2u);
    EXPECT_EQ(recorder.packets[0].pipe, 1);
    EXPECT_EQ(recorder.packets[1].pipe, 0x81);
  }
}

TEST_F(Kvt71344Modes, MeasureShowsTheDiodesAndPowerDownTicksItsBox) {
  panel->LstMode2.Visible = false;
  click(panel->OptMode(0));
  EXPECT_TRUE(panel->LstMode2.Visible);
  EXPECT_TRUE(sent().empty());
  click(panel->OptMode(1));
  EXPECT_EQ(panel->ChkCommand(1).Value, 1);
  EXPECT_EQ(sent(), written(0, 0xC0));
}

TEST_F(Kvt71344Modes, TheDiodeListSelectsTheMeasurement) {
  for (const auto& [row, value] : {std::pair{2, 0x88}, {1, 0x84}, {0, 0x80}}) {
    forget_traffic();
    choose(panel->LstMode2, row);
    EXPECT_TRUE(panel->OptMeasure(row).Value);
    EXPECT_EQ(sent(), written(0, value));
  }
}

// A loop may be on the stack, and other events may wait.
TEST_F(Kvt71344Modes, TheDiodeListYieldsBeforeItSelects) {
  std::optional<bool> selected;
  user.at_yield = [&] {
    if (!selected) selected = panel->OptMeasure(1).Value;
  };
  choose(panel->LstMode2, 1);
  EXPECT_EQ(selected, false);
  EXPECT_TRUE(panel->OptMeasure(1).Value);
}

TEST_F(Kvt71344Modes, MeasureYieldsBehindShowingTheDiodes) {
  panel->LstMode2.Visible = false;
  int yields = 0;
  user.at_yield = [&] { yields += panel->LstMode2.Visible.get(); };
  click(panel->OptMode(0));
  EXPECT_EQ(yields, 1);
}

TEST_F(Kvt71344Modes, TheDiodeListStopsARunningCollection) {
  at_yield(count_reaches(12), [&] {
    forms::user::click_row(panel->LstMode2, 1);
    EXPECT_EQ(store.Sample_Run, 0);
  });
  click(panel->cmdCollectData);
  EXPECT_EQ(box(0), "84");
  EXPECT_EQ(board.register_value(0), 0x84);
  EXPECT_TRUE(std::ranges::all_of(recorder.packets, [](const Packet& packet) { return packet.status == 0; }));
  EXPECT_EQ(store.Usb_Open, 0);
}

TEST_F(Kvt71344Modes, TheCommunicationsTestComparesRegisterZero) {
  panel->LstMode2.Visible = true;
  click(panel->OptMode(2));
  EXPECT_FALSE(panel->LstMode2.Visible);
  EXPECT_EQ(sent(), joined({written(0, 0x80), {{2, 0x89, 2}, {2, 0x89, 0}}}));
  EXPECT_EQ(panel->LblCommTest.Caption, "Good");
  EXPECT_EQ(panel->LblCommTest.BackColor.get().value, 32768u);
  EXPECT_EQ(panel->LblCommTest.ForeColor.get().value, 0x80000012u);
  EXPECT_TRUE(panel->LblCommTest.Visible);
  EXPECT_TRUE(panel->OptMode(2).Value);
  board.unmount();
  click(panel->OptMode(2));
  EXPECT_EQ(panel->LblCommTest.Caption, "Fail");
  EXPECT_EQ(panel->LblCommTest.BackColor.get().value, 255u);
  EXPECT_EQ(panel->LblCommTest.ForeColor.get().value, 0xFFFFFFu);
}

// In a loop it compares what is known before the loop has done the work.
TEST_F(Kvt71344Modes, InALoopTheCommunicationsTestComparesTheLastKnownTexts) {
  panel->txtRegRd(0).Text = "80";
  collect(12, [&] {
    forget_traffic();
    forms::user::click(panel->OptMode(2));
    EXPECT_TRUE(sent().empty());
    EXPECT_EQ(panel->LblCommTest.Caption, "Good");
    EXPECT_EQ(store.PendingWriteR0, -1);
    panel->txtRegRd(0).Text = "";
    forms::user::click(panel->OptMode(2));
    EXPECT_EQ(panel->LblCommTest.Caption, "Fail");
  });
}

TEST_F(Kvt71356Modes, ResetUnselectsTheMeasurement) {
  panel->OptMode(0).select_quietly();
  click(panel->ChkCommand(0));
  EXPECT_FALSE(panel->OptMeasure(2).Value);
  EXPECT_FALSE(panel->OptMode(0).Value);
  EXPECT_EQ(sent(), written(0, 0x08));
  panel->OptMode(0).select_quietly();
  panel->OptMeasure(2).select_quietly();
  forget_traffic();
  click(panel->ChkCommand(0));
  EXPECT_TRUE(panel->OptMode(0).Value);
  EXPECT_TRUE(panel->OptMeasure(2).Value);
  EXPECT_EQ(sent(), written(0, 0x88));
}

TEST_F(Kvt71356Modes, PowerDownSelectsItsMode) {
  click(panel->ChkCommand(1));
  EXPECT_TRUE(panel->OptMode(1).Value);
  EXPECT_FALSE(panel->OptMeasure(2).Value);
  EXPECT_EQ(sent(), written(0, 0xC8));
  panel->OptMeasure(2).select_quietly();
  forget_traffic();
  click(panel->ChkCommand(1));
  EXPECT_FALSE(panel->OptMode(1).Value);
  EXPECT_FALSE(panel->OptMeasure(2).Value);
  EXPECT_EQ(sent(), written(0, 0x88));
}

TEST_F(Kvt71356Modes, ThePowerDownModeTicksItsBox) {
  click(panel->OptMode(1));
  EXPECT_EQ(panel->ChkCommand(1).Value, 1);
  EXPECT_TRUE(panel->OptMode(1).Value);
  EXPECT_FALSE(panel->OptMeasure(2).Value);
  EXPECT_EQ(sent(), written(0, 0xC8));
}

TEST_F(Kvt71356Modes, TheMeasureModeUndoesResetAndPowerDown) {
  click(panel->ChkCommand(0));
  click(panel->ChkCommand(1));
  store.RegImage[0] = 0x40;
  forget_traffic();
  click(panel->OptMode(0));
  EXPECT_EQ(panel->ChkCommand(0).Value, 0);
  EXPECT_EQ(panel->ChkCommand(1).Value, 0);
  EXPECT_TRUE(panel->OptMeasure(2).Value);
  EXPECT_EQ(sent(), joined({written(0, 0xC8), written(0, 0x88), written(0, 0x88)}));
}

// The light count's bit comes to those that a register's box has set.
TEST_F(Kvt71356Modes, TheMeasureModeSetsOneBitOfTheMeasurement) {
  enter_text(panel->txtRegHex(0), "84");
  click(panel->OptMode(0));
  EXPECT_EQ(store.RegImage[0], 0x8C);
}

TEST_F(Kvt71356Modes, TheListSelectsTheFirstMeasurementHiddenOrNot) {
  choose(panel->LstMode2, 0);
  EXPECT_TRUE(panel->OptMeasure(0).Value);
  EXPECT_EQ(sent(), written(0, 0x80));
}

// --- reset ---

TEST_F(Kvt71344Modes, ResetGoesByThePowerDownBox) {
  click(panel->ChkCommand(0));
  forget_traffic();
  const double start = clock.milliseconds();
  store.IntegrationMs = 77;
  std::string caption;
  recorder.before_call = [&] { caption = panel->cbReset.Caption; };
  click(panel->cbReset);
  EXPECT_EQ(sent(), joined({written(0, 0x40), written(0, 0x80)}));
  EXPECT_EQ(caption, "Resetting ADC");
  EXPECT_EQ(panel->cbReset.Caption, "Reset");
  EXPECT_EQ(panel->ChkCommand(3).Value, 0);
  EXPECT_EQ(store.IntegrationMs, 0);
  EXPECT_GT(clock.milliseconds() - start, 300);
  EXPECT_LT(clock.milliseconds() - start, 400);
}

// The sensor is down for a quarter of a second, and has a twentieth to start again.
TEST_F(Kvt71344Modes, ResetWaitsBehindEachOfItsWrites) {
  std::vector<double> calls_at;
  recorder.before_call = [&] { calls_at.push_back(clock.milliseconds()); };
  click(panel->cbReset);
  const double end = clock.milliseconds();
  std::vector<double> waits;
  for (std::size_t i = 1; i < calls_at.size(); ++i) waits.push_back(calls_at[i] - calls_at[i - 1]);
  std::ranges::sort(waits, std::greater());
  EXPECT_NEAR(waits[0], 250, 1);
  EXPECT_LT(waits[1], 11);
  EXPECT_NEAR(end - calls_at.back(), 50, 1);
}

TEST_F(Kvt71344Modes, ResetYieldsTwiceBetweenItsWrites) {
  int yields = 0;
  int of_write = 0;
  user.at_yield = [&] { ++yields; };
  for (const int ticked : {1, 0}) {
    yields = 0;
    panel->ChkCommand(3).Value = ticked;
    of_write += yields;
  }
  yields = 0;
  click(panel->cbReset);
  EXPECT_EQ(yields, of_write + 2);
}

TEST_F(Kvt71356Modes, ResetGoesByTheResetBoxAndWaitsASecondTwice) {
  const double start = clock.milliseconds();
  click(panel->cbReset);
  EXPECT_EQ(sent(), joined({written(0, 0x08), written(0, 0x88)}));
  EXPECT_EQ(panel->ChkCommand(0).Value, 0);
  EXPECT_EQ(panel->cbReset.Caption, "Reset");
  EXPECT_GT(clock.milliseconds() - start, 2050);
  EXPECT_FALSE(panel->Tmr_Integration.Enabled);
}

}  // namespace
}  // namespace varzelin::testing
