// A program with windows for a test: virtual clock and simulated board. The test turns the message
// loop by hand.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>
#include <string>

#include "boards/simulated/simulated_board.h"
#include "bridge/program.h"
#include "forms/errors.h"
#include "window/form_window.h"
#include "window/window_front_end.h"
#include "window/windows.h"

namespace varzelin::testing {

struct WindowProgram : ::testing::Test {
  forms::VirtualClock clock;
  boards::SimulatedBoard board{clock};
  window::WindowFrontEnd front_end;
  Program program{clock, board, front_end};
  window::Windows windows{program, front_end, &board};

  // What waits in Qt, then what waits in the program, then the screen.
  void turn() {
    QApplication::processEvents();
    program.runtime.service();
    windows.show_changes();
    program.forms.sweep();
    QApplication::processEvents();
  }
  // True when the program ended in that turn.
  bool turn_ends() {
    try {
      turn();
      return false;
    } catch (const forms::EndProgram&) {
      return true;
    }
  }
  void show(std::string_view form) {
    const forms::Runtime::SilentDialogs no_file_chosen(program.runtime);  // some forms ask as they load
    program.runtime.dispatch([&] { program.forms.touch(form).Show(); });
    turn();
  }
  window::FormWindow& window_of(std::string_view form) {
    window::FormWindow* found = windows.window_of(form);
    if (!found) throw std::logic_error("no window of " + std::string(form));
    return *found;
  }
  template <class Widget>
  Widget& widget(std::string_view form, const char* name) {
    return widget_in<Widget>(window_of(form), name);
  }
  // Qt itself finds no widgets of a class that is none of its own.
  template <class Widget>
  static Widget& widget_in(const QWidget& window, const char* name) {
    for (QWidget* found : window.findChildren<QWidget*>(name)) {
      if (auto* widget = dynamic_cast<Widget*>(found)) return *widget;
    }
    throw std::logic_error(std::string("no widget ") + name);
  }
};

}  // namespace varzelin::testing
