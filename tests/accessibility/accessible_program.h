// The desktop program on the simulated board, as it is on the accessibility bus. In real time.
#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include "tree.h"

namespace varzelin::testing {

// Waits until there is a value, 20 s at most.
template <class Look>
auto wait_for(Look look) -> decltype(look()) {
  QElapsedTimer time;
  time.start();
  while (true) {
    if (auto found = look()) return found;
    constexpr int patience_ms = 20'000;
    if (time.elapsed() > patience_ms) return {};
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
  }
}

struct AccessibleProgram : ::testing::Test {
  static constexpr const char* start_title = "Varzelin Light Sensor Demo";

  const QTemporaryDir folder;
  QProcess program;
  std::optional<Part> root = desktop();

  void SetUp() override {
    ASSERT_TRUE(root) << "no accessibility bus";
    program.setWorkingDirectory(folder.path());
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
    program.setProcessEnvironment(environment);
    program.start(qEnvironmentVariable("PROGRAM"), QStringList());
    ASSERT_TRUE(program.waitForStarted());
    ASSERT_TRUE(find_window(start_title));
  }
  void TearDown() override {
    program.terminate();
    if (!program.waitForFinished(2000)) program.kill();
    program.waitForFinished();
  }

  // One on screen with these words in its title, once it is there.
  std::optional<Part> find_window(const QString& words) {
    return wait_for([&]() -> std::optional<Part> {
      for (const Part& application : root->children()) {
        for (const Part& each : application.children()) {
          if (each.name().contains(words) && each.showing()) return each;
        }
      }
      return std::nullopt;
    });
  }
  // The bus's root in its place if it never comes.
  Part window(const QString& words) {
    const auto found = find_window(words);
    EXPECT_TRUE(found) << "no window " << words.toStdString();
    return found.value_or(*root);
  }
  static void act(const Part& in, const QString& role, const QString& name, const QString& action) {
    const auto part =
        wait_for([&] { return role == "menu item" ? in.find(role, name) : in.find_showing(role, name); });
    ASSERT_TRUE(part) << role.toStdString() << " " << name.toStdString();
    EXPECT_TRUE(part->act(action)) << name.toStdString() << " has "
                                   << part->actions().join(", ").toStdString();
  }
  static void press(const Part& in, const QString& button) { act(in, "push button", button, "Press"); }
  static void choose(const Part& in, const QString& entry) { act(in, "menu item", entry, "Press"); }
  static bool says(const Part& in, const QString& words) {
    return wait_for([&] { return in.find_showing("label", words); }).has_value();
  }

  Part panel_of(const QString& model) {
    const Part start = window(start_title);
    act(start, "combo box", "Which sensor is on the board?", "ShowMenu");
    act(start, "list item", model, "Press");
    return window("Evaluation Software");
  }
};

}  // namespace varzelin::testing
