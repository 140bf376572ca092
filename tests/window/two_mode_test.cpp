// The panels over two registers, worked through their widgets.
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <set>

#include "boards/simulated/light_sources.h"
#include "support/panel_window.h"

namespace varzelin::testing {
namespace {

constexpr int kvt71374 = 4;  // rows of the start list
constexpr int kvt71376 = 8;
constexpr const char* ir_once = "OptMeasure(2)";
constexpr const char* als_continuous = "OptMeasure(5)";
constexpr const char* filtered = "OptMeasure(9)";

struct TwoModePanelWindow : PanelWindow {
  QRect place(const std::string& name) { return places().at(QString::fromStdString(name)); }
  // With each of the pages in front that can be.
  void on_each_page(const std::function<void()>& look) {
    for (int i = 0; i < pages().count(); ++i) {
      if (!pages().isTabVisible(i) || !pages().isTabEnabled(i)) continue;
      SCOPED_TRACE(pages().tabText(i).toStdString());
      pages().setCurrentIndex(i);
      turn();
      look();
    }
  }
  void expect_apart() {
    const auto now = places();
    for (auto one = now.begin(); one != now.end(); ++one) {
      const auto* widget = content().findChild<QWidget*>(one->first);
      const QRect outer(widget->parentWidget()->mapTo(&content(), QPoint()), widget->parentWidget()->size());
      EXPECT_TRUE(outer.contains(one->second) || one->second.isEmpty())
          << one->first.toStdString() << " isn't whole";
      for (auto other = std::next(one); other != now.end(); ++other) {
        const auto* beside = content().findChild<QWidget*>(other->first);
        if (widget->isAncestorOf(beside) || beside->isAncestorOf(widget)) continue;
        EXPECT_FALSE(one->second.intersects(other->second))
            << one->first.toStdString() << " and " << other->first.toStdString();
      }
    }
  }
};

struct TwoModeWindow : TwoModePanelWindow, ::testing::WithParamInterface<int> {
  void SetUp() override {
    PanelWindow::SetUp();
    open(GetParam());
  }
};
INSTANTIATE_TEST_SUITE_P(Models, TwoModeWindow, ::testing::Values(kvt71374, kvt71376));

struct LightWindow : TwoModePanelWindow {
  void SetUp() override {
    PanelWindow::SetUp();
    open(kvt71374);
  }
};

TEST_P(TwoModeWindow, FitsASmallScreenInBothLayouts) {
  for (const bool full : {false, true}) {
    EXPECT_EQ(visible("Frame8"), full);
    for (const char* operation : {filtered, ir_once}) {
      if (!full && operation == ir_once) continue;
      click(operation);
      expect_fits_small_screen();
    }
    turn_layout();
  }
}

TEST_P(TwoModeWindow, NothingIsCutOffOrCoversAnother) {
  for (const bool full : {false, true}) {
    SCOPED_TRACE(full ? "full" : "short");
    click(filtered);
    click("OptExtTime(1)");
    click("OptGainMode(1)");
    click("ChStab");
    on_each_page([this] { expect_apart(); });
    turn_layout();
  }
}

TEST_P(TwoModeWindow, TurningTheLayoutTwiceBringsEverythingBack) {
  expect_turns_back_and_forth();
}

TEST_P(TwoModeWindow, NothingMovesWhenControlsComeAndGo) {
  turn_layout();
  on_each_page([this] {
    const auto before = places();
    for (int operation = 0; operation < 10; ++operation) {
      const std::string name = "OptMeasure(" + std::to_string(operation) + ")";
      if (!content().findChild<QWidget*>(QString::fromStdString(name))) continue;
      click(name.c_str());
      expect_all_in_place(before);
    }
    for (const char* option : {"OptExtTime(1)", "OptGainMode(1)", "ChStab", "OptExtTime(0)", "ChStab"}) {
      click(option);
      expect_all_in_place(before);
    }
  });
}

// The filter's page is there for the operation that it filters.
TEST_P(TwoModeWindow, TheFiltersPageIsGreyUnlessItFilters) {
  const int filter = page("Proximity Filter");
  EXPECT_FALSE(pages().isTabEnabled(filter));
  click(filtered);
  EXPECT_TRUE(pages().isTabEnabled(filter));
  click("OptMeasure(8)");
  EXPECT_FALSE(pages().isTabEnabled(filter));
}

TEST_P(TwoModeWindow, TheFilterShowsSettingValueAndLampBesideEachOther) {
  struct Line {
    int caption;
    const char* box;
    const char* lamp;
  };
  constexpr Line lines[]{{1, "txtProxHighLimit", "ShpInd(6)"}, {0, "txtProxLowLimit", "ShpInd(7)"},
                         {3, "txtProxConstant", "ShpInd(13)"}, {5, "txtCorrectionConstant", "ShpInd(19)"},
                         {2, "txtProxDelta", "ShpInd(14)"},    {8, "txtHighThreshold", "ShpInd(18)"},
                         {9, "txtLowThreshold", "ShpInd(16)"}};
  click(filtered);
  pages().setCurrentIndex(page("Proximity Filter"));
  turn();
  for (const Line& line : lines) {
    const std::string caption = "lblFilter(" + std::to_string(line.caption) + ")";
    const QRect words = place(caption);
    const QRect box = place(line.box);
    const QRect lamp_at = place(line.lamp);
    EXPECT_LT(words.right(), box.left()) << line.box;
    EXPECT_LT(box.right(), lamp_at.left()) << line.box;
    EXPECT_NEAR(words.center().y(), box.center().y(), 1) << line.box;
    EXPECT_NEAR(lamp_at.center().y(), box.center().y(), 1) << line.box;
    const QString said = widget<QLabel>(caption.c_str()).text();
    EXPECT_EQ(widget<QWidget>(line.box).accessibleName(), said);
    EXPECT_EQ(widget<QWidget>(line.lamp).accessibleName(), said);
  }
}

TEST_P(TwoModeWindow, TheFilterShowsWhatItMakesOfTheReadings) {
  board.scene() = {.light_lux = 0, .ir_counts = 0, .distance_mm = 40};
  click("OptITime(1)");
  click(filtered);
  pages().setCurrentIndex(page("Proximity Filter"));
  type("txtLowThreshold", "1");
  collect(15, [this] {
    refresh();
    EXPECT_EQ(lamp("ShpInd(6)"), "light green");
    EXPECT_EQ(lamp("ShpInd(7)"), "light green");
    EXPECT_EQ(lamp("ShpInd(13)"), "light green");
    EXPECT_EQ(lamp("ShpInd(19)"), "off");
    EXPECT_EQ(text("txtProxADJ").toDouble(), text("txtProx_IR(6)").toDouble());
    EXPECT_NEAR(text("txtPROXGross(0)").toInt(), text("txtReading").toInt(), 1);
    EXPECT_GT(text("txtReading").toInt(), 100);
  });
  type("txtProxHighLimit", "10");
  collect(15, [this] {
    refresh();
    EXPECT_EQ(lamp("ShpInd(6)"), "red");
  });
}

TEST_P(TwoModeWindow, TheScriptTellsTheLightSource) {
  click("cmdBatchShow");
  constexpr const char* script = "ALS_Batch";
  EXPECT_TRUE(window_of(script).isVisible());
  for (std::size_t i = 0; i < boards::light_sources.size(); ++i) {
    const boards::LightSource& source = boards::light_sources[i];
    board.scene().light_lux = source.light_lux;
    board.scene().ir_counts = source.ir_counts;
    WindowOfProgram::click(script, "cmdScript1");
    turn();
    for (std::size_t named = 0; named < boards::light_sources.size(); ++named) {
      const std::string option = "OptSource(" + std::to_string(named) + ")";
      EXPECT_EQ(WindowOfProgram::widget<QRadioButton>(script, option.c_str()).isChecked(), named == i)
          << source.name << " " << option;
    }
  }
}

// From the opened panel to lux that agree with the bench.
TEST_F(LightWindow, AJourney) {
  board.scene() = {.light_lux = 700, .ir_counts = 0};
  EXPECT_FALSE(widget<QPushButton>("cmdStopData").isEnabled());
  click(als_continuous);
  collect(20, [this] {
    refresh();
    EXPECT_TRUE(widget<QPushButton>("cmdStopData").isEnabled());
    EXPECT_FALSE(widget<QPushButton>("cmdCollectData").isEnabled());
  });
  EXPECT_EQ(widget<QLabel>("Label18").text(), "Data Collection Halted");
  EXPECT_EQ(widget<QLabel>("Label16").text(), "Lux Reading");
  EXPECT_NEAR(text("txtReading").toDouble(), 700, 1);
  EXPECT_NEAR(text("txtADCRaw").toInt(), 45875, 40);
  EXPECT_TRUE(widget<QPushButton>("cmdCollectData").isEnabled());
}

}  // namespace
}  // namespace varzelin::testing
