// The README's first steps by accessible actions alone, as the user of a screen reader takes them.
#include <QFile>

#include "accessible_program.h"
#include "told_apart.h"

namespace varzelin::testing {
namespace {

struct FirstSteps : AccessibleProgram {
  // Waits until the panel has captured so many.
  static bool captured(const Part& panel, int readings) {
    const auto count = wait_for([&] { return panel.find_showing("label", "Captured Readings: *"); });
    return count && wait_for([&] { return count->name().section(' ', -1).toInt() >= readings; });
  }
};

TEST_F(FirstSteps, AreTakenByAccessibleActionsAlone) {
  const Part panel = panel_of("KVT71346/7");
  act(panel, "list item", "Diode1 - 100mS  -00", "Toggle");
  ASSERT_TRUE(says(panel, "USB Comm: works"));
  press(panel, "Collect / Graph Real Time Data");
  ASSERT_TRUE(captured(panel, 5));
  EXPECT_TRUE(says(panel, "State: collecting, *"));

  const auto reading = panel.find_showing("text", "Lux Reading");
  ASSERT_TRUE(reading);
  const double before = reading->text().toDouble();
  choose(panel, "Simulated Bench");
  const Part bench = window("Simulated Bench");
  const auto light = wait_for([&] { return bench.find_showing("spin button", "Light"); });
  ASSERT_TRUE(light);
  light->set_value(1000);
  EXPECT_TRUE(wait_for([&] { return reading->text().toDouble() > 1.5 * before; }))
      << before << ", then " << reading->text().toStdString();
  ASSERT_TRUE(captured(panel, 15));
  press(panel, "Stop Data Acquisition");
  ASSERT_TRUE(says(panel, "State: stopped by the user"));

  choose(panel, "Quit");
  const Part question = window("Varzelin ALS Demonstration");
  EXPECT_TRUE(says(question, "* readings were never written to disk."));
  expect_told_apart(question);
  press(question, "Cancel");

  const QString path = folder.filePath("written.txt");
  const auto file = panel.find_showing("text", "Measurement file");
  ASSERT_TRUE(file);
  EXPECT_TRUE(file->set_text(path));
  press(panel, "Write to Disk");
  EXPECT_TRUE(wait_for([&] {
    QFile written(path);
    return written.open(QIODevice::ReadOnly) && written.readAll().endsWith("END\r\n");
  }));
  press(panel, "Exit");
  EXPECT_TRUE(program.waitForFinished(5000));
}

}  // namespace
}  // namespace varzelin::testing

int main(int count, char** arguments) {
  testing::InitGoogleTest(&count, arguments);
  QCoreApplication application(count, arguments);
  return RUN_ALL_TESTS();
}
