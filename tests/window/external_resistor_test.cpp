// The panel of KVT71338, worked through its widgets.
#include <QComboBox>
#include <QGroupBox>

#include "support/panel_window.h"
#include "window/bench_window.h"

namespace varzelin::testing {
namespace {

struct ExternalResistorWindow : PanelWindow {
  void SetUp() override {
    PanelWindow::SetUp();
    constexpr int row = 6;
    open(row);
  }
};

TEST_F(ExternalResistorWindow, OpensShortAndTurnsByADoubleClick) {
  const char* const full_only[]{"FrmDevice", "frmTimeBase", "cmdSync", "frmGraphSelect", "OptITime(3)"};
  const auto pages_on_screen = [&] {
    QStringList titles;
    for (int i = 0; i < pages().count(); ++i) {
      if (pages().isTabVisible(i)) titles << pages().tabText(i);
    }
    return titles;
  };
  const QStringList short_pages{"Registers", "Last Triggered Reading"};
  EXPECT_EQ(pages_on_screen(), short_pages);
  for (const char* name : full_only) EXPECT_FALSE(visible(name)) << name;
  const int frame_height = widget<QGroupBox>("frItime").sizeHint().height();
  const int converter_height = widget<QGroupBox>("frmadccontrol").sizeHint().height();
  turn_layout();
  for (const char* name : full_only) EXPECT_TRUE(visible(name)) << name;
  EXPECT_EQ(pages_on_screen(),
            (QStringList{"Registers", "Calculator", "Last Triggered Reading", "Measurement File"}));
  EXPECT_GT(widget<QGroupBox>("frItime").sizeHint().height(), frame_height);
  EXPECT_GT(widget<QGroupBox>("frmadccontrol").sizeHint().height(), converter_height);
  turn_layout();
  for (const char* name : full_only) EXPECT_FALSE(visible(name)) << name;
  EXPECT_EQ(pages_on_screen(), short_pages);
}

TEST_F(ExternalResistorWindow, TheWindowsMenuTurnsTheLayoutToo) {
  ASSERT_TRUE(entry(form, "Full or Short Layout"));
  for (const bool full : {true, false}) {
    entry(form, "Full or Short Layout")->trigger();
    turn();
    EXPECT_EQ(visible("FrmDevice"), full);
  }
  show("frmGPIO");
  EXPECT_FALSE(entry("frmGPIO", "Full or Short Layout"));
}

TEST_F(ExternalResistorWindow, FitsASmallScreenInBothLayouts) {
  for (int layout = 0; layout < 2; ++layout) {
    click("OptITime(5)");
    click("OptMeasQty(1)");
    expect_fits_small_screen();
    turn_layout();
  }
}

TEST_F(ExternalResistorWindow, TheCalculatorFollowsTheOptions) {
  turn_layout();
  click("OptREXT(2)");
  click("OptITime(0)");
  click("OptGain(1)");
  pages().setCurrentIndex(1);
  EXPECT_TRUE(visible("Frame7"));
  EXPECT_EQ(text("txtREXT"), "100000");
  EXPECT_EQ(text("txtFOSC_Freq"), "3275.000");
  EXPECT_EQ(text("txtFoscPeriod"), ".000305");
  EXPECT_EQ(text("txtClockCounts2"), "65535");
  EXPECT_EQ(text("txtCalcITIme"), "20.011");
  EXPECT_EQ(text("txtFSR"), "20000");
  EXPECT_EQ(text("txtLFactor"), "0.305180437933928");
  EXPECT_EQ(widget<QAbstractButton>("OptGain(3)").text(), "320000");
  EXPECT_EQ(text("txtRegHex(0)"), "01");
}

// From the opened panel to lux that agree with the bench, and another resistor on it.
TEST_F(ExternalResistorWindow, AJourney) {
  board.scene() = {.light_lux = 1500, .ir_counts = 0};
  turn_layout();
  click("OptGain(1)");
  click("OptITime(0)");
  click("OptMeasQty(0)");
  collect(20);
  EXPECT_EQ(widget<QLabel>("Label18").text(), "Data Collection Halted");
  EXPECT_EQ(text("txtRegHex(0)"), "C1");
  EXPECT_NEAR(text("txtCaclulated_Lux").toDouble(), 1500, 0.1);
  EXPECT_NEAR(text("txtADC_Reading").toInt(), 24576, 1);
  auto& resistor = *windows.bench()->findChild<QComboBox*>("resistor");
  EXPECT_EQ(resistor.currentText(), "500 kOhm");
  resistor.setCurrentIndex(1);
  emit resistor.activated(1);
  EXPECT_EQ(board.scene().external_resistor_ohms, 250000);
  collect(20);
  EXPECT_NEAR(text("txtCaclulated_Lux").toDouble(), 750, 0.1);
  click("OptREXT(1)");
  collect(20);
  EXPECT_NEAR(text("txtCaclulated_Lux").toDouble(), 1500, 0.1);
}

}  // namespace
}  // namespace varzelin::testing
