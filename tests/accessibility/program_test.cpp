// The program on the simulated board, seen and worked through the accessibility tree alone, as a screen
// reader and its user do. In real time.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <map>
#include <set>

#include "tree.h"

namespace varzelin::testing {
namespace {

// Waits until there is a value, 20 s at most.
template <class Look>
auto wait_for(Look look) -> decltype(look()) {
  QElapsedTimer time;
  time.start();
  while (true) {
    if (auto found = look()) return found;
    constexpr int patience_ms = 20'000;
    if (time.elapsed() > patience_ms) return {};
    QProcess().waitForStarted(0);
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
  }
}

struct AccessibleProgram : ::testing::Test {
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
    ASSERT_TRUE(window("Varzelin Light Sensor Demo*"));
  }
  void TearDown() override {
    program.terminate();
    if (!program.waitForFinished(2000)) program.kill();
    program.waitForFinished();
  }

  std::vector<Part> windows() {
    std::vector<Part> all;
    for (const Part& application : root->children()) {
      for (const Part& each : application.children()) all.push_back(each);
    }
    return all;
  }
  // Once it is there.
  std::optional<Part> window(const QString& title) {
    return wait_for([&]() -> std::optional<Part> {
      for (const Part& each : windows()) {
        const QString name = each.name();
        if (title.endsWith('*') ? name.startsWith(title.chopped(1)) : name == title) return each;
      }
      return std::nullopt;
    });
  }
  void act(const Part& in, const QString& role, const QString& name, const QString& action) {
    const auto part = wait_for([&] { return in.find(role, name); });
    ASSERT_TRUE(part) << role.toStdString() << " " << name.toStdString();
    EXPECT_TRUE(part->act(action)) << name.toStdString() << " has "
                                   << part->actions().join(", ").toStdString();
  }
  Part panel_of(const QString& model) {
    const auto start = window("Varzelin Light Sensor Demo*");
    act(*start, "list item", model, "Press");
    const auto panel = wait_for([&]() -> std::optional<Part> {
      for (const Part& each : windows()) {
        if (each.find("label", "State: idle")) return each;
      }
      return std::nullopt;
    });
    return panel.value_or(*root);
  }

  static void expect_told_apart(const Part& window) {
    static const std::set<QString> acting{"push button", "check box",  "radio button", "text",
                                          "combo box",   "list",       "table",        "page tab",
                                          "slider",      "spin button"};
    const std::string title = window.name().toStdString();
    std::map<QString, QString> names;
    window.walk([&](const Part& part) {
      const QString role = part.role();
      const QString name = part.name();
      EXPECT_TRUE(role != "filler" || name.isEmpty())
          << title << ": a filler is called " << name.toStdString();
      if (!acting.contains(role) || part.actions().isEmpty()) return true;
      EXPECT_FALSE(name.isEmpty()) << title << ": a nameless " << role.toStdString();
      EXPECT_TRUE(names.emplace(name, role).second)
          << title << ": two are " << name.toStdString() << ", a " << role.toStdString();
      return true;
    });
    EXPECT_GT(names.size(), 0u) << title;
  }
};

TEST_F(AccessibleProgram, IsWorkedByAccessibleActionsAlone) {
  const Part panel = panel_of("KVT71346/7");
  ASSERT_TRUE(panel.find("label", "USB Comm: *"));
  act(panel, "list item", "Diode1 - 100mS  -00", "Toggle");
  ASSERT_TRUE(wait_for([&] { return panel.find("label", "USB Comm: works"); }));
  act(panel, "push button", "Collect / Graph Real Time Data", "Press");
  const auto count = wait_for([&] { return panel.find("label", "Captured Readings: *"); });
  ASSERT_TRUE(count);
  ASSERT_TRUE(wait_for([&] { return count->name().section(' ', -1).toInt() >= 15; }));
  EXPECT_TRUE(panel.find("label", "State: collecting, *"));
  act(panel, "push button", "Stop Data Acquisition", "Press");
  ASSERT_TRUE(wait_for([&] { return panel.find("label", "State: stopped by the user"); }));

  const QString path = folder.filePath("written.txt");
  const auto file = panel.find("text", "Measurement file");
  ASSERT_TRUE(file);
  EXPECT_TRUE(file->set_text(path));
  act(panel, "push button", "Write to Disk", "Press");
  EXPECT_TRUE(wait_for([&] {
    QFile written(path);
    return written.open(QIODevice::ReadOnly) && written.readAll().endsWith("END\r\n");
  }));

  act(panel, "push button", "Exit", "Press");
  EXPECT_TRUE(program.waitForFinished(5000));
}

struct AccessiblePanel : AccessibleProgram, ::testing::WithParamInterface<const char*> {};

TEST_P(AccessiblePanel, HasItsPartsToldApart) {
  expect_told_apart(panel_of(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Models, AccessiblePanel,
                         ::testing::Values("KVT71346/7", "KVT71344/5", "KVT71388", "KVT71356", "KVT71374",
                                           "KVT71385", "KVT71338", "KVT71390", "KVT71376", "KVT71392"),
                         [](const auto& param) {
                           return QString(param.param).section('/', 0, 0).toStdString();
                         });

TEST_F(AccessibleProgram, HasThePartsOfItsOtherWindowsToldApart) {
  const Part panel = panel_of("KVT71385");
  for (const char* entry :
       {"Register Workbench*", "GPIO Panel*", "Bus Trace*", "Simulated Bench*", "Interrupt Test*"}) {
    const std::size_t count = windows().size();
    act(panel, "menu item", entry, "Press");
    ASSERT_TRUE(wait_for([&] { return windows().size() > count; })) << entry;
  }
  for (const Part& each : windows()) {
    EXPECT_EQ(each.role(), "frame") << each.name().toStdString();
    expect_told_apart(each);
  }
}

}  // namespace
}  // namespace varzelin::testing

int main(int count, char** arguments) {
  testing::InitGoogleTest(&count, arguments);
  QCoreApplication application(count, arguments);
  return RUN_ALL_TESTS();
}
