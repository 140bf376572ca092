// The panel of KVT71338, worked through its widgets.
#include <QAbstractButton>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QTimer>
#include <functional>

#include "support/window_of_program.h"
#include "window/bench_window.h"
#include "window/lamp.h"

namespace varzelin::testing {
namespace {

constexpr const char* form = "frmKVT71338";

struct ExternalResistorWindow : WindowOfProgram {
  void SetUp() override {
    WindowOfProgram::SetUp();
    constexpr int row = 6;
    choose_model(row);
    window_of(form).resize(1358, 730);
    turn();
  }
  void click(const char* button) {
    widget<QAbstractButton>(form, button).click();
    turn();
  }
  void turn_layout() {
    QTest::mouseDClick(&widget<QLabel>(form, "Label13"), Qt::LeftButton);
    turn();
  }
  QString text(const char* box) { return widget<QLineEdit>(form, box).text(); }
  bool visible(const char* name) { return widget<QWidget>(form, name).isVisible(); }
  void collect(std::int32_t count) {
    program.store.Sample_Count = 0;  // of the collection before
    QTimer user;
    QObject::connect(&user, &QTimer::timeout, &user, [&] {
      if (program.store.Sample_Count >= count) widget<QAbstractButton>(form, "cmdStopData").click();
    });
    user.start(0);
    click("cmdCollectData");
    turn();
  }
};

TEST_F(ExternalResistorWindow, OpensShortAndTurnsByADoubleClick) {
  const char* const full_only[]{"FrmDevice", "frmTimeBase", "cmdSync", "frmGraphSelect", "OptITime(3)"};
  auto& pages = *window_of(form).content()->findChild<QTabWidget*>();
  const auto pages_on_screen = [&] {
    QStringList titles;
    for (int i = 0; i < pages.count(); ++i) {
      if (pages.isTabVisible(i)) titles << pages.tabText(i);
    }
    return titles;
  };
  const QStringList short_pages{"Registers", "Last Triggered Reading"};
  EXPECT_EQ(pages_on_screen(), short_pages);
  for (const char* name : full_only) EXPECT_FALSE(visible(name)) << name;
  const int frame_height = widget<QGroupBox>(form, "frItime").sizeHint().height();
  const int converter_height = widget<QGroupBox>(form, "frmadccontrol").sizeHint().height();
  turn_layout();
  for (const char* name : full_only) EXPECT_TRUE(visible(name)) << name;
  EXPECT_EQ(pages_on_screen(),
            (QStringList{"Registers", "Calculator", "Last Triggered Reading", "Measurement File"}));
  EXPECT_GT(widget<QGroupBox>(form, "frItime").sizeHint().height(), frame_height);
  EXPECT_GT(widget<QGroupBox>(form, "frmadccontrol").sizeHint().height(), converter_height);
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
    auto& pages = *window_of(form).content()->findChild<QTabWidget*>();
    for (int page = 0; page < pages.count(); ++page) {
      SCOPED_TRACE(pages.tabText(page).toStdString());
      if (!pages.isTabVisible(page)) continue;
      pages.setCurrentIndex(page);
      turn();
      const QSize least = window_of(form).content()->minimumSizeHint();
      EXPECT_LE(least.width(), 1358);
      EXPECT_LE(least.height(), 710);
    }
    turn_layout();
  }
}

TEST_F(ExternalResistorWindow, TheCalculatorFollowsTheOptions) {
  turn_layout();
  click("OptREXT(2)");
  click("OptITime(0)");
  click("OptGain(1)");
  auto& pages = *window_of(form).content()->findChild<QTabWidget*>();
  pages.setCurrentIndex(1);
  EXPECT_TRUE(visible("Frame7"));
  EXPECT_EQ(text("txtREXT"), "100000");
  EXPECT_EQ(text("txtFOSC_Freq"), "3275.000");
  EXPECT_EQ(text("txtFoscPeriod"), ".000305");
  EXPECT_EQ(text("txtClockCounts2"), "65535");
  EXPECT_EQ(text("txtCalcITIme"), "20.011");
  EXPECT_EQ(text("txtFSR"), "20000");
  EXPECT_EQ(text("txtLFactor"), "0.305180437933928");
  EXPECT_EQ(widget<QAbstractButton>(form, "OptGain(3)").text(), "320000");
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
  EXPECT_EQ(widget<QLabel>(form, "Label18").text(), "Data Collection Halted");
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
