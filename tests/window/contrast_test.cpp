// Every text can be read on its ground, and every outline is seen, in a light and in a dark palette.
#include <QCheckBox>
#include <QGroupBox>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QStyleOptionButton>
#include <QTableView>
#include <QTableWidget>
#include <QTest>
#include <algorithm>

#include "script/script_panel.h"
#include "support/panel_window.h"
#include "support/sample_form.h"
#include "window/bus_trace_window.h"
#include "window/house_style.h"
#include "window/look.h"

namespace varzelin::testing {
namespace {

QPalette dark_palette() {
  QPalette dark(QColor(0x35, 0x35, 0x35));
  dark.setColor(QPalette::Base, QColor(0x23, 0x23, 0x23));
  dark.setColor(QPalette::Highlight, QColor(0x2A, 0x82, 0xDA));
  return dark;
}

// The platform's palette in each test, and the own one back behind it.
struct WindowContrast : PanelWindow, ::testing::WithParamInterface<bool> {
  const QPalette before = QApplication::palette();
  void SetUp() override {
    QApplication::setPalette(GetParam() ? dark_palette() : QApplication::style()->standardPalette());
    PanelWindow::SetUp();
  }
  void TearDown() override { QApplication::setPalette(before); }

  SampleForm* open_sample() {
    SampleForm* sample = nullptr;
    program.forms.add(SampleForm::form_name, [&](const std::string&) {
      auto made = std::make_unique<SampleForm>(program.forms);
      sample = made.get();
      return made;
    });
    show(SampleForm::form_name);
    form = SampleForm::form_name;
    return sample;
  }
  // A text of the widget on its ground, in a state.
  static void expect_readable(const QWidget& widget, const std::string& where, QPalette::ColorRole text,
                              QPalette::ColorRole ground) {
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
      const QPalette& colors = widget.palette();
      EXPECT_GE(window::contrast(colors.color(group, text), colors.color(group, ground)),
                window::least_contrast)
          << where << " " << colors.color(group, text).name().toStdString() << " on "
          << colors.color(group, ground).name().toStdString() << " in state " << group;
    }
  }
  static void expect_readable(const QWidget& widget, const std::string& where) {
    const bool on_base = qobject_cast<const QLineEdit*>(&widget) ||
                         qobject_cast<const QPlainTextEdit*>(&widget) ||
                         qobject_cast<const QAbstractItemView*>(&widget);
    const bool on_button =
        qobject_cast<const QPushButton*>(&widget) || qobject_cast<const QComboBox*>(&widget);
    if (on_base) {
      expect_readable(widget, where, QPalette::Text, QPalette::Base);
      expect_readable(widget, where, QPalette::PlaceholderText, QPalette::Base);
      expect_readable(widget, where, QPalette::HighlightedText, QPalette::Highlight);
    } else if (on_button) {
      expect_readable(widget, where, QPalette::ButtonText, QPalette::Button);
      expect_readable(widget, where, QPalette::PlaceholderText, QPalette::Button);
    } else {
      expect_readable(widget, where, QPalette::WindowText, QPalette::Window);
    }
  }
};

TEST_P(WindowContrast, OfEveryWidgetOfEveryForm) {
  for (const std::string& name : program.forms.names()) {
    show(name);
    for (const QWidget* each : window_of(name).findChildren<QWidget*>())
      expect_readable(*each, name + " " + each->objectName().toStdString());
  }
}

TEST_P(WindowContrast, OfALabelAndABoxInEveryColourOnEveryGround) {
  SampleForm* sample = open_sample();
  for (int ground = -1; ground < 16; ++ground) {
    for (int text = -1; text < 16; ++text) {
      sample->lbl.BackColor = ground < 0 ? forms::clr_button_face : forms::QBColor(ground);
      sample->lbl.ForeColor = text < 0 ? forms::clr_button_text : forms::QBColor(text);
      sample->txt.BackColor = ground < 0 ? forms::clr_window_background : forms::QBColor(ground);
      sample->txt.ForeColor = text < 0 ? forms::clr_window_text : forms::QBColor(text);
      turn();
      const std::string where = std::to_string(text) + " on " + std::to_string(ground);
      const auto& label = widget<QLabel>("lbl");
      expect_readable(label, "label " + where);
      expect_readable(widget<QLineEdit>("txt"), "box " + where, QPalette::Text, QPalette::Base);
      if (ground >= 0) {
        EXPECT_EQ(label.palette().color(QPalette::Window), window::to_qt(forms::QBColor(ground)));
      }
    }
  }
}

TEST_P(WindowContrast, OfACellOnTheColourOfItsVerdict) {
  form = "frmScriptOps";
  show(form);
  auto& grid = static_cast<frmScriptOps*>(program.forms.loaded(form))->vbalGrid1;
  grid.set_rows(16);
  for (int color = 0; color < 16; ++color) grid.set_back(color + 1, 2, forms::QBColor(color));
  turn();
  const auto& table = widget<QTableWidget>("vbalGrid1");
  for (int row = 0; row < 16; ++row) {
    const QTableWidgetItem& cell = *table.item(row, 1);
    EXPECT_GE(window::contrast(cell.foreground().color(), cell.background().color()), window::least_contrast)
        << row;
  }
}

TEST_P(WindowContrast, OfATransferThatFailed) {
  open(0);
  entry(form, "Bus Trace")->trigger();
  run("cmdCollectData", [this] {
    if (board.plugged()) board.unplug();
  });
  windows.bus_trace()->refresh();
  const auto& list = widget_in<QTableView>(*windows.bus_trace(), "transfers");
  const QVariant ink = list.model()->index(list.model()->rowCount() - 1, 0).data(Qt::ForegroundRole);
  ASSERT_TRUE(ink.isValid());
  for (const auto ground : {QPalette::Base, QPalette::AlternateBase}) {
    EXPECT_GE(window::contrast(ink.value<QBrush>().color(), list.palette().color(ground)),
              window::least_contrast);
  }
}

// The colour that differs most from the window's among the pixels at the indicator's left edge.
QColor outline_of(QAbstractButton& button) {
  QStyleOptionButton option;
  option.initFrom(&button);
  const bool is_box = qobject_cast<QCheckBox*>(&button);
  const QRect indicator = button.style()->subElementRect(
      is_box ? QStyle::SE_CheckBoxIndicator : QStyle::SE_RadioButtonIndicator, &option, &button);
  const QImage picture = button.grab().toImage();
  const QColor ground = button.palette().color(QPalette::Window);
  QColor best = ground;
  for (int x = indicator.left(); x < indicator.left() + 3; ++x) {
    const QColor color = picture.pixelColor(x, indicator.center().y() + 1);
    if (window::contrast(color, ground) > window::contrast(best, ground)) best = color;
  }
  return best;
}

TEST_P(WindowContrast, OfTheOutlineOfWhatIsToBeMarked) {
  QWidget place;
  QCheckBox box("box", &place);
  QRadioButton circle("circle", &place);
  circle.move(0, 40);
  place.show();
  place.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&place));
  QTest::keyClick(&place, Qt::Key_Backtab);  // the focus goes by the keyboard
  const auto expect_seen = [](QAbstractButton& button, const char* state) {
    EXPECT_GE(window::contrast(outline_of(button), button.palette().color(QPalette::Window)),
              window::least_outline_contrast)
        << button.text().toStdString() << state;
  };
  for (QAbstractButton* button : std::initializer_list<QAbstractButton*>{&box, &circle}) {
    button->clearFocus();
    expect_seen(*button, "");
    const QColor without_focus = outline_of(*button);
    button->setFocus(Qt::TabFocusReason);
    expect_seen(*button, " with the focus");
    EXPECT_NE(outline_of(*button), without_focus);
    button->setEnabled(false);
    expect_seen(*button, " greyed out");
  }
}

// As dark as the window it would look as an option to be marked.
TEST_P(WindowContrast, OfALampThatIsOff) {
  open(0);
  auto& lamp = widget<window::Lamp>("ShpAttach");
  lamp.set_color(forms::clr_black);
  const QColor middle = lamp.grab().toImage().pixelColor(lamp.rect().center());
  EXPECT_GE(window::contrast(middle, lamp.palette().color(QPalette::Window)), window::least_outline_contrast);
}

// A desktop whose palette the test chooses.
struct Desktop final : window::HouseStyle {
  QPalette chosen;
  using window::HouseStyle::polish;
  void polish(QPalette& platform) override {
    platform = chosen;
    window::HouseStyle::polish(platform);
  }
};

// The desktop turns to another palette while the program runs, and back.
struct WindowContrastOnADesktop : WindowContrast {
  Desktop* desktop = new Desktop;
  void SetUp() override {
    QApplication::setStyle(desktop);
    turn_to(GetParam());
    PanelWindow::SetUp();
  }
  void TearDown() override { QApplication::setStyle(new window::HouseStyle); }
  void turn_to(bool dark) {
    desktop->chosen = dark ? dark_palette() : desktop->standardPalette();
    QApplication::setPalette(QPalette());
  }
  void expect_all_readable() {
    turn();
    for (const QWidget* each : window_of(form).findChildren<QWidget*>())
      expect_readable(*each, each->objectName().toStdString());
  }
};
TEST_P(WindowContrastOnADesktop, FollowsIt) {
  open(0);
  const QPalette first = QApplication::palette();
  for (const bool dark : {!GetParam(), GetParam()}) {
    turn_to(dark);
    EXPECT_EQ(QApplication::palette().resolveMask(), 0U) << "what is pinned doesn't follow";
    EXPECT_EQ(QApplication::palette().color(QPalette::Window).lightness() < 128, dark);
    expect_all_readable();
  }
  EXPECT_EQ(QApplication::palette(), first);
}

TEST_P(WindowContrastOnADesktop, FollowsAPaletteThatIsSetOverIt) {
  open(0);
  const QPalette over = GetParam() ? desktop->standardPalette() : dark_palette();
  QApplication::setPalette(over);
  EXPECT_EQ(QApplication::palette().color(QPalette::Window), over.color(QPalette::Window));
  expect_all_readable();
  QApplication::setPalette(QPalette());
  expect_all_readable();
}

TEST_P(WindowContrastOnADesktop, ALabelInAColourKeepsItsContrast) {
  SampleForm* sample = open_sample();
  sample->lbl.ForeColor = forms::QBColor(8);
  turn();
  for (const bool dark : {!GetParam(), GetParam()}) {
    turn_to(dark);
    turn();
    const auto& label = widget<QLabel>("lbl");
    const QColor grey = window::to_qt(forms::QBColor(8));
    EXPECT_EQ(label.palette().color(QPalette::WindowText),
              window::readable(grey, QApplication::palette().color(QPalette::Window)));
  }
}

TEST_P(WindowContrastOnADesktop, ALineNumberStandsOnTheDesktopsGround) {
  form = "frmScriptOps";
  show(form);
  static_cast<frmScriptOps*>(program.forms.loaded(form))->vbalGrid1.set_back(1, 1, forms::clr_button_face);
  turn();
  for (const bool dark : {!GetParam(), GetParam()}) {
    turn_to(dark);
    turn();
    const QTableWidgetItem& cell = *widget<QTableWidget>("vbalGrid1").item(0, 0);
    EXPECT_EQ(cell.background().color(), QApplication::palette().color(QPalette::Button));
    EXPECT_EQ(cell.foreground().color(), dark ? Qt::white : Qt::black);
  }
}

const auto palette_name = [](const auto& param) { return param.param ? "Dark" : "Light"; };
INSTANTIATE_TEST_SUITE_P(Palettes, WindowContrast, ::testing::Bool(), palette_name);
INSTANTIATE_TEST_SUITE_P(Palettes, WindowContrastOnADesktop, ::testing::Bool(), palette_name);

TEST(Contrast, IsThatOfTheAccessibilityGuidelines) {
  EXPECT_NEAR(window::contrast(Qt::black, Qt::white), 21, 0.01);
  EXPECT_NEAR(window::contrast(Qt::white, Qt::white), 1, 0.01);
  EXPECT_NEAR(window::contrast(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.01);
}

TEST(Contrast, AReadableColourStaysAndAnotherChangesLittle) {
  EXPECT_EQ(window::readable(QColor(0, 0, 0x80), Qt::white), QColor(0, 0, 0x80));
  const QColor red = window::readable(Qt::red, Qt::white);
  EXPECT_GE(window::contrast(red, Qt::white), 4.5);
  EXPECT_GT(red.red(), 200);
  EXPECT_EQ(red.green(), 0);
}

}  // namespace
}  // namespace varzelin::testing
