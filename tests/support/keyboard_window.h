// Forms in their windows, worked by the keyboard alone.
#pragma once

#include <QApplication>
#include <QTest>
#include <vector>

#include "support/window_of_program.h"

namespace varzelin::testing {

struct KeyboardWindow : WindowOfProgram {
  // Brings the window of a form to the front.
  window::FormWindow& front(const std::string& form) {
    show(form);
    window::FormWindow& shown = window_of(form);
    shown.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&shown));
    turn();
    return shown;
  }
  // A layout passes a change on by a posted event, level by level.
  static void settle() {
    constexpr int levels = 12;
    for (int i = 0; i < levels; ++i) QApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
  }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QWidget* focus = QApplication::focusWidget();
    QTest::keyClick(focus ? focus : QApplication::activeWindow(), key, modifiers);
    turn();
  }
  // The widgets that the Tab key goes through, from the one that has the focus until the first comes again.
  std::vector<QWidget*> tab_stops() {
    constexpr std::size_t most = 500;
    std::vector<QWidget*> stops{QApplication::focusWidget()};
    while (stops.size() < most) {
      press(Qt::Key_Tab);
      if (QApplication::focusWidget() == stops.front()) return stops;
      stops.push_back(QApplication::focusWidget());
    }
    ADD_FAILURE() << "the Tab key never comes round";
    return stops;
  }
};

}  // namespace varzelin::testing
