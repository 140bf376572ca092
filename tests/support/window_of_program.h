// The whole program in its windows, from the start panel on.
#pragma once

#include <QComboBox>
#include <QMenuBar>
#include <QPushButton>

#include "shell/application.h"
#include "support/window_program.h"

namespace varzelin::testing {

struct WindowOfProgram : WindowProgram {
  void SetUp() override {
    add_forms(program);
    program.runtime.dispatch([&] { start(program); });
    turn();
  }
  void choose_model(int row) {
    emit widget<QComboBox>("frmStartup", "cboDeviceSelect").activated(row);
    turn();
  }
  void click(std::string_view form, const char* button) { widget<QPushButton>(form, button).click(); }
  QAction* entry(std::string_view form, const QString& text) {
    for (QAction* action : window_of(form).menuBar()->findChild<QMenu*>("Windows")->actions()) {
      if (action->text().remove('&') == text) return action;
    }
    return nullptr;
  }
};

}  // namespace varzelin::testing
