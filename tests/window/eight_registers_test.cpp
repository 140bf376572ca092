// The panels over eight registers, worked through their widgets.
#include <QGroupBox>
#include <QRadioButton>
#include <algorithm>
#include <set>

#include "support/panel_window.h"

namespace varzelin::testing {
namespace {

// By the row of the start list.
struct RegisterPanelWindow : PanelWindow, ::testing::WithParamInterface<int> {
  void SetUp() override {
    PanelWindow::SetUp();
    open(GetParam());
  }
};
INSTANTIATE_TEST_SUITE_P(Models, RegisterPanelWindow, ::testing::Values(1, 3));

TEST_P(RegisterPanelWindow, AnOptionChangesItsRegister) {
  click("OptGain(2)");
  EXPECT_EQ(text("txtRegHex(1)"), "08");
  EXPECT_EQ(text("txtRegRd(1)"), "08");
  EXPECT_EQ(lamp("ShpInd(5)"), "light green");
  EXPECT_EQ(widget<window::Lamp>("ShpInd(5)").accessibleName(), "R1 read");
}

TEST_P(RegisterPanelWindow, ExternalTimingBringsItsControls) {
  click("ChkCommand(2)");
  EXPECT_TRUE(widget<QRadioButton>("OptTimeBase(1)").isChecked());
  EXPECT_TRUE(widget<QRadioButton>("OptGraph(2)").isChecked());
  EXPECT_FALSE(widget<QGroupBox>("frItime").isVisible());
  for (const char* shown : {"OptGraph(1)", "OptGraph(2)", "Label17", "txtReading2", "txtReading3"})
    EXPECT_TRUE(widget<QWidget>(shown).isVisible()) << shown;
}

// Its words are the window's own, as the panel has no label for it.
TEST_P(RegisterPanelWindow, TheRawReadingHasWordsThatComeAndGoWithIt) {
  const auto labels = content().findChildren<QLabel*>();
  const auto words = std::ranges::find(labels, QString("Raw Reading"), &QLabel::text);
  ASSERT_NE(words, labels.end());
  EXPECT_EQ(widget<QWidget>("txtReading3").accessibleName(), "Raw Reading");
  for (const bool external : {true, false}) {
    click("ChkCommand(2)");
    EXPECT_EQ(visible("txtReading3"), external);
    EXPECT_EQ((*words)->isVisible(), external);
  }
}

TEST_P(RegisterPanelWindow, ALimitIsEnteredByEnter) {
  auto& limit = widget<QLineEdit>("txtIUpperLimit");
  type("txtIUpperLimit", "1000");
  EXPECT_EQ(text("txtRegHex(2)"), "FF");
  QTest::keyClick(&limit, Qt::Key_Return);
  turn();
  EXPECT_EQ(limit.text(), "768");
  EXPECT_EQ(text("txtRegHex(2)"), "04");
  EXPECT_EQ(text("txtRegRd(2)"), "04");
}

TEST_P(RegisterPanelWindow, ACollectionUnderExternalTimingIsStartedAndStopped) {
  click("ChkCommand(2)");
  run("cmdCollectData", [this] {
    if (program.store.Sample_Count > 20) widget<QPushButton>("cmdStopData").click();
  });
  EXPECT_EQ(program.store.Sample_Run, 0);
  EXPECT_GT(program.store.Sample_Count, 20);
  EXPECT_EQ(widget<QLabel>("Label18").text(), "Data Collection Halted");
  EXPECT_NE(lamp("ShpInd(12)"), "off");
}

TEST_P(RegisterPanelWindow, NothingMovesWhenControlsComeAndGo) {
  const auto before = places();
  click("ChkCommand(2)");
  expect_all_in_place(before);
  click("ChkIpol");
  click("OptMode(2)");
  EXPECT_TRUE(widget<QLabel>("LblCommTest").isVisible());
  expect_all_in_place(before);
  std::set<std::string> stopped;
  const auto look_and_stop = [&](const char* stop) {
    if (program.store.Sample_Count < 15) return;
    refresh();
    auto& button = widget<QPushButton>(stop);
    if (!button.isVisible()) return;
    expect_all_in_place(before);
    button.click();
    stopped.insert(stop);
  };
  run("cmdCollectData", [&] { look_and_stop("cmdStopData"); });
  run("cmdSample", [&] { look_and_stop("cmdEndSampling"); });
  EXPECT_EQ(stopped.size(), 2u);
  click("cmdAbort");
  expect_all_in_place(before);
}

}  // namespace
}  // namespace varzelin::testing
