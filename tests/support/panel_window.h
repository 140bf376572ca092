// A panel in its window, worked through its widgets.
#pragma once

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabWidget>
#include <QTimer>
#include <functional>
#include <map>
#include <string>

#include "support/window_of_program.h"
#include "window/lamp.h"

namespace varzelin::testing {

struct PanelWindow : WindowOfProgram {
  std::string form;

  // By the row of the start list.
  void open(int row) {
    choose_model(row);
    form = program.forms.front()->name();
    window_of(form).resize(1358, 730);
    turn();
  }
  template <class Widget>
  Widget& widget(const char* name) {
    return WindowOfProgram::widget<Widget>(form, name);
  }
  QWidget& content() { return *window_of(form).content(); }
  void click(const char* button) {
    widget<QAbstractButton>(button).click();
    turn();
  }
  void turn_layout() {
    QTest::mouseDClick(&widget<QLabel>("Label13"), Qt::LeftButton);
    turn();
  }
  void type(const char* box, const QString& text) {
    auto& widget_of_box = widget<QLineEdit>(box);
    widget_of_box.selectAll();
    QTest::keyClicks(&widget_of_box, text);
    turn();
  }
  QString text(const char* box) { return widget<QLineEdit>(box).text(); }
  QString lamp(const char* shape) { return widget<window::Lamp>(shape).accessibleDescription(); }
  bool visible(const char* name) { return widget<QWidget>(name).isVisible(); }
  QTabWidget& pages() { return *content().findChild<QTabWidget*>(); }
  int page(const QString& title) {
    for (int i = 0; i < pages().count(); ++i) {
      if (pages().tabText(i) == title) return i;
    }
    throw std::logic_error("no page " + title.toStdString());
  }
  // What the user does in a loop, before each of its turns.
  void run(const char* button, const std::function<void()>& user) {
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, user);
    timer.start(0);
    click(button);
    turn();
  }
  // Collects so many samples; `in_the_end` comes before the stop.
  void collect(
      std::int32_t samples, const std::function<void()>& in_the_end = [] {}) {
    program.store.Sample_Count = 0;  // of the collection before
    bool ended = false;
    run("cmdCollectData", [&] {
      if (ended || program.store.Sample_Count < samples) return;
      ended = true;
      in_the_end();
      widget<QAbstractButton>("cmdStopData").click();
    });
  }
  // Brings the screen up to date from inside a loop.
  void refresh() {
    windows.show_changes();
    settle();
  }
  // A layout passes a change on by a posted event, level by level.
  static void settle() {
    constexpr int levels = 12;
    for (int i = 0; i < levels; ++i) QApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
  }
  // Nothing scrolls in the window that open() makes: one on a screen of 1366 by 768. With each of its pages
  // in front.
  void expect_fits_small_screen() {
    const auto& scroll = *window_of(form).findChild<QScrollArea*>();
    for (int i = 0; i < pages().count(); ++i) {
      if (!pages().isTabVisible(i)) continue;
      SCOPED_TRACE(pages().tabText(i).toStdString());
      pages().setCurrentIndex(i);
      turn();
      settle();
      EXPECT_EQ(scroll.horizontalScrollBar()->maximum(), 0);
      EXPECT_EQ(scroll.verticalScrollBar()->maximum(), 0);
    }
  }
  // Where the widgets stand that are on screen.
  std::map<QString, QRect> places() {
    settle();
    std::map<QString, QRect> found;
    for (const forms::Control* control : program.forms.loaded(form)->controls()) {
      const auto* each = content().findChild<QWidget*>(QString::fromStdString(control->full_name()));
      if (each && each->isVisible())
        found[each->objectName()] = QRect(each->mapTo(&content(), QPoint()), each->size());
    }
    return found;
  }
  void expect_all_in_place(const std::map<QString, QRect>& before) {
    for (const auto& [name, place] : places()) {
      const auto was = before.find(name);
      EXPECT_TRUE(was == before.end() || was->second.topLeft() == place.topLeft())
          << name.toStdString() << " moved";
    }
  }
  // The same widgets on screen, where they were and as large.
  void expect_same(const std::map<QString, QRect>& before) {
    const auto now = places();
    EXPECT_EQ(now.size(), before.size());
    for (const auto& [name, place] : before) {
      const auto is = now.find(name);
      EXPECT_TRUE(is != now.end() && is->second == place) << name.toStdString();
    }
  }
  // From short to full, back, and to full again.
  void expect_turns_back_and_forth() {
    const auto compact = places();
    turn_layout();
    const auto full = places();
    EXPECT_GT(full.size(), compact.size());
    EXPECT_EQ(full.at("Picture1"), compact.at("Picture1"));
    turn_layout();
    expect_same(compact);
    turn_layout();
    expect_same(full);
  }
};

}  // namespace varzelin::testing
