// What of the focus and of result boxes is seen, in a light and in a dark palette.
#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QTableWidget>
#include <algorithm>
#include <cmath>

#include "support/keyboard_window.h"

namespace varzelin::testing {
namespace {

QPalette dark() {
  QPalette palette(QColor(40, 40, 40));
  palette.setColor(QPalette::Base, QColor(24, 24, 24));
  palette.setColor(QPalette::Highlight, QColor(48, 140, 198));
  return palette;
}

struct WindowFocusLook : KeyboardWindow, ::testing::WithParamInterface<bool> {
  const QPalette before = QApplication::palette();
  WindowFocusLook() {
    if (GetParam()) QApplication::setPalette(dark());
  }
  ~WindowFocusLook() override { QApplication::setPalette(before); }
};
INSTANTIATE_TEST_SUITE_P(Palettes, WindowFocusLook, ::testing::Bool());

// Relative luminance and contrast as accessibility guidelines have them.
double luminance(const QColor& color) {
  const auto part = [](double value) {
    return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * part(color.redF()) + 0.7152 * part(color.greenF()) + 0.0722 * part(color.blueF());
}
double contrast(const QColor& one, const QColor& other) {
  const auto [less, more] = std::minmax({luminance(one), luminance(other)});
  return (more + 0.05) / (less + 0.05);
}

TEST_P(WindowFocusLook, ListsAndTablesShowThatTheyHaveTheFocus) {
  const auto edge = [](QWidget& view) { return view.grab().toImage().pixelColor(view.width() / 2, 0); };
  const auto expect_seen = [&](QWidget& view, QWidget& other) {
    other.setFocus(Qt::TabFocusReason);
    const QColor without = edge(view);
    view.setFocus(Qt::TabFocusReason);
    EXPECT_NE(edge(view), without);
    EXPECT_GE(contrast(edge(view), view.palette().color(QPalette::Base)), 3.0);
  };
  front("frmKVT71346");
  expect_seen(widget<QListWidget>("frmKVT71346", "lst_MainOptions"),
              widget<QListWidget>("frmKVT71346", "Lst71346_Mode"));
  front("frmScriptOps");
  expect_seen(widget<QTableWidget>("frmScriptOps", "vbalGrid1"),
              widget<QLineEdit>("frmScriptOps", "txtI2CAdr"));
}

TEST_P(WindowFocusLook, AResultHasTheGroundOfTheWindow) {
  front("frmKVT71346");
  const auto ground = [&](const char* name) {
    auto& box = widget<QLineEdit>("frmKVT71346", name);
    return box.grab().toImage().pixelColor(box.width() - 4, box.height() / 2);
  };
  const QPalette palette = QApplication::palette();
  EXPECT_EQ(ground("txtReading"), palette.color(QPalette::Window));
  EXPECT_EQ(ground("txtADDec"), palette.color(QPalette::Base));
  EXPECT_EQ(ground("txtScale"), palette.color(QPalette::Base));
}

TEST_P(WindowFocusLook, BoxesHaveAnOutline) {
  front("frmKVT71346");
  const QColor window = QApplication::palette().color(QPalette::Window);
  for (const char* result_and_entry : {"txtReading", "txtScale"}) {
    auto& box = widget<QLineEdit>("frmKVT71346", result_and_entry);
    const auto outline = [&] { return box.grab().toImage().pixelColor(box.width() / 2, 0); };
    const QColor without_focus = outline();
    EXPECT_GE(contrast(without_focus, window), 3.0) << result_and_entry;
    box.setFocus(Qt::MouseFocusReason);
    EXPECT_NE(outline(), without_focus) << result_and_entry;
  }
}

}  // namespace
}  // namespace varzelin::testing
