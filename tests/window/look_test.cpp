// What a window tells the desktop of its program.
#include <gtest/gtest.h>

#include <QFile>
#include <QGuiApplication>

namespace {

TEST(WindowLook, TheMenuEntryIsThatOfTheProgramsName) {
  EXPECT_EQ(QGuiApplication::desktopFileName(), "window_test");
}

TEST(WindowLook, AProgramsMenuEntryHasItsName) {
  for (const QString program : {"varzelin-als-demonstration", "varzelin-als-simulated"}) {
    QFile entry(QString(PROJECT_FOLDER) + "/data/" + program + ".desktop");
    ASSERT_TRUE(entry.open(QIODevice::ReadOnly));
    EXPECT_TRUE(entry.readAll().contains(("\nExec=" + program + "\n").toUtf8())) << program.toStdString();
  }
}

}  // namespace
