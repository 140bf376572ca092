// The panels over nine registers, worked through their widgets.
#include <QGroupBox>
#include <set>

#include "support/panel_window.h"

namespace varzelin::testing {
namespace {

// By the row of the start list.
struct MultiFunctionWindow : PanelWindow, ::testing::WithParamInterface<int> {
  void SetUp() override {
    PanelWindow::SetUp();
    open(GetParam());
  }
  QRect place(const char* name) { return places().at(name); }
  QRect place(const char* array, int index) { return places().at(QString("%1(%2)").arg(array).arg(index)); }
  std::vector<std::string> operations() {
    std::vector<std::string> names;
    for (const forms::Control* control : program.forms.loaded(form)->controls()) {
      if (control->name() == "OptMeasure") names.push_back(control->full_name());
    }
    return names;
  }
};
constexpr int kvt71388 = 2;
constexpr int kvt71385 = 5;
constexpr int kvt71390 = 7;
constexpr int kvt71392 = 9;
INSTANTIATE_TEST_SUITE_P(Models, MultiFunctionWindow,
                         ::testing::Values(kvt71388, kvt71385, kvt71390, kvt71392));

struct CoverWindow : MultiFunctionWindow {};
INSTANTIATE_TEST_SUITE_P(Models, CoverWindow, ::testing::Values(kvt71388, kvt71385));

struct PairWindow : MultiFunctionWindow {};
INSTANTIATE_TEST_SUITE_P(Models, PairWindow, ::testing::Values(kvt71388, kvt71385, kvt71390));

TEST_P(MultiFunctionWindow, FitsASmallScreenInBothLayouts) {
  EXPECT_FALSE(visible("Frame8"));
  for (int layout = 0; layout < 2; ++layout) {
    expect_fits_small_screen();
    turn_layout();
  }
}

TEST_P(MultiFunctionWindow, TurningTheLayoutTwiceBringsEverythingBack) {
  expect_turns_back_and_forth();
}

TEST_P(MultiFunctionWindow, TheFullLayoutHasPagesOfItsOwn) {
  const auto on_screen = [this](const char* title) { return pages().isTabVisible(page(title)); };
  EXPECT_FALSE(on_screen("Timing") || on_screen("Device and File"));
  turn_layout();
  EXPECT_TRUE(on_screen("Timing") && on_screen("Device and File"));
}

TEST_P(MultiFunctionWindow, ARegisterIsAColumnOfTheTable) {
  constexpr int registers = 9;
  const char* const cells[]{"txtRegHex", "cmdWrtReg", "ShpIndwr", "txtRegRd", "cmdRDReg", "ShpIndrd"};
  const int pitch = place("txtRegHex", 1).x() - place("txtRegHex", 0).x();
  for (int i = 0; i < registers; ++i) {
    const int middle = place("txtRegHex", 0).center().x() + i * pitch;
    int above = 0;
    for (const char* cell : cells) {
      const QRect at = place(cell, i);
      EXPECT_NEAR(at.center().x(), middle, 1) << cell << i;
      EXPECT_EQ(at.y(), place(cell, 0).y()) << cell << i;
      EXPECT_GT(at.y(), above) << cell << i;
      above = at.y();
    }
  }
}

TEST_P(MultiFunctionWindow, TheHeadsOfTheTableAreTheWordsOfTheLongLabels) {
  const std::map<QString, int> heads{{"R0\nOpr", 0}, {"R2\nAD LSB", 2}, {"R3\nADMSB", 3}, {"R8\nRSVD", 8}};
  std::size_t found = 0;
  for (const QLabel* label : content().findChildren<QLabel*>()) {
    const auto head = heads.find(label->text());
    if (head == heads.end()) continue;
    ++found;
    EXPECT_TRUE(label->isVisible());
    EXPECT_NEAR(label->mapTo(&content(), label->rect().center()).x(),
                place("txtRegHex", head->second).center().x(), 1);
  }
  EXPECT_EQ(found, heads.size());
  EXPECT_TRUE(widget<QLabel>("lblRegister(0)").size().isEmpty());
  EXPECT_TRUE(widget<QLabel>("lblRegister(1)").size().isEmpty());
}

TEST_P(MultiFunctionWindow, EachCellOfTheTableSaysWhatItIs) {
  const std::map<const char*, QString> names{{"txtRegHex(0)", "R0 Opr to write"},
                                             {"cmdWrtReg(8)", "Write R8 RSVD"},
                                             {"ShpIndwr(2)", "R2 AD LSB written"},
                                             {"txtRegRd(3)", "R3 ADMSB as read"},
                                             {"cmdRDReg(4)", "Read R4 ILLSB"},
                                             {"ShpIndrd(7)", "R7 IHMSB read"},
                                             {"ShpIndrd(10)", "Registers read"},
                                             {"txtADMax(1)", "AD Maximum: Hex"},
                                             {"ShpINTexternal", "Pin 7"},
                                             {"ShpIndrd(9)", "Interrupt pin sampled"},
                                             {"ShpOVRange(1)", "Infrared over range"},
                                             {"txtSampling_Delay", "Delay Command to Sample"}};
  for (const auto& [name, words] : names) EXPECT_EQ(widget<QWidget>(name).accessibleName(), words) << name;
}

TEST_P(MultiFunctionWindow, ARegisterIsWrittenAndReadInItsColumn) {
  type("txtRegHex(5)", "3c");
  click("cmdWrtReg(5)");
  EXPECT_EQ(lamp("ShpIndwr(5)"), "light green");
  click("cmdRDReg(5)");
  EXPECT_EQ(text("txtRegRd(5)"), "3C");
}

TEST_P(MultiFunctionWindow, NothingMovesWhenControlsComeAndGo) {
  turn_layout();
  for (const char* title : {"Registers", "Timing", "Interrupt", "Last Triggered Reading"}) {
    pages().setCurrentIndex(page(title));
    turn();
    const auto before = places();
    for (const std::string& operation : operations()) {
      click(operation.c_str());
      expect_all_in_place(before);
    }
    click("OptExtTime(1)");
    EXPECT_EQ(visible("ChkEOC1(0)"), QString(title) == "Timing");
    click("OptGainMode(1)");
    EXPECT_TRUE(visible("Frame14"));
    expect_all_in_place(before);
    click("OptExtTime(0)");
    click("OptGainMode(0)");
    EXPECT_FALSE(visible("Frame14"));
    expect_all_in_place(before);
  }
}

TEST_P(MultiFunctionWindow, NothingMovesInALoop) {
  const auto before = places();
  std::set<std::string> stopped;
  const auto look_and_stop = [&](const char* stop) {
    if (program.store.Sample_Count < 15) return;
    refresh();
    if (!visible(stop)) return;
    expect_all_in_place(before);
    widget<QAbstractButton>(stop).click();
    stopped.insert(stop);
  };
  const char* const infrared = "OptMeasure(6)";  // all models have it
  click(infrared);
  run("cmdCollectData", [&] { look_and_stop("cmdStopData"); });
  program.store.Sample_Count = 0;
  click(infrared);
  run("cmdSample", [&] { look_and_stop("cmdEndSampling"); });
  EXPECT_EQ(stopped.size(), 2u);
  expect_all_in_place(before);
}

// The words come in the status line, the buttons of the other lines stay.
TEST_P(MultiFunctionWindow, TheRangeThatFollowsIsToldInTheStatusLine) {
  board.scene().light_lux = 100;
  const auto before = places();
  click("OptGainMode(1)");
  collect(40, [&] {
    refresh();
    EXPECT_TRUE(visible("lblRange"));
    EXPECT_EQ(place("Picture1"), before.at("Picture1"));
    EXPECT_LE(content().minimumSizeHint().width(), 1358);
  });
}

TEST_P(PairWindow, ThePairShowsItsCountsAndGreysTheInterruptOut) {
  pages().setCurrentIndex(page("Interrupt"));
  turn();
  EXPECT_TRUE(visible("fraINT"));
  const auto before = places();
  click("OptMeasure(4)");
  EXPECT_TRUE(visible("Frame10"));
  EXPECT_TRUE(pages().isTabVisible(page("Interrupt")));
  EXPECT_FALSE(pages().isTabEnabled(page("Interrupt")));
  EXPECT_FALSE(visible("fraINT"));
  expect_all_in_place(before);
  collect(20, [this] { refresh(); });
  EXPECT_FALSE(text("txtProx_IR(6)").isEmpty());
  EXPECT_EQ(text("txtProx_IR(6)").toInt(), text("txtProx_IR(4)").toInt() - text("txtProx_IR(5)").toInt());
  click("OptMeasure(7)");
  EXPECT_TRUE(pages().isTabEnabled(page("Interrupt")));
}

TEST_P(CoverWindow, TheCoverTakesThePlaceOfTheDetails) {
  pages().setCurrentIndex(page("Details and Cover"));
  turn();
  const auto before = places();
  ASSERT_TRUE(before.contains("FrmMeasureDetails"));
  click("ChkCover");
  EXPECT_FALSE(visible("FrmMeasureDetails"));
  EXPECT_EQ(place("Frame12"), before.at("FrmMeasureDetails"));
  EXPECT_EQ(place("Picture1"), before.at("Picture1"));
  expect_all_in_place(before);
  click("ChkCover");
  EXPECT_FALSE(visible("Frame12"));
  EXPECT_EQ(place("FrmMeasureDetails"), before.at("FrmMeasureDetails"));
}

// From the opened panel to lux that agree with the bench.
TEST_P(CoverWindow, AJourney) {
  board.scene() = {.light_lux = 700, .ir_counts = 0};
  click("OptMeasure(5)");
  collect(20);
  EXPECT_EQ(widget<QLabel>("Label18").text(), "Data Collection Halted");
  EXPECT_NEAR(text("txtReading").toDouble(), 700, 1);
  EXPECT_NEAR(text("txtADCRaw").toInt(), 2867, 2);
  EXPECT_EQ(text("txtADMax(0)"), text("txtADCRaw"));
}

}  // namespace
}  // namespace varzelin::testing
