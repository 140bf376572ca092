// Window tests need no display; they share one application.
#include <gtest/gtest.h>

#include <QApplication>

#include "window/look.h"

int main(int count, char** arguments) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  testing::InitGoogleTest(&count, arguments);
  QApplication application(count, arguments);
  window::set_look(application);
  return RUN_ALL_TESTS();
}
