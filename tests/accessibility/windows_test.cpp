// Every window and dialog of the program, heard part by part.
#include <QFile>

#include "accessible_program.h"
#include "told_apart.h"

namespace varzelin::testing {
namespace {

struct AccessiblePanel : AccessibleProgram, ::testing::WithParamInterface<const char*> {};

TEST_P(AccessiblePanel, HasItsPartsToldApart) {
  const Part panel = panel_of(GetParam());
  expect_told_apart(panel);
  EXPECT_GE(lamps_of(panel), 3);
}

INSTANTIATE_TEST_SUITE_P(Models, AccessiblePanel,
                         ::testing::Values("KVT71346/7", "KVT71344/5", "KVT71388", "KVT71356", "KVT71374",
                                           "KVT71385", "KVT71338", "KVT71390", "KVT71376", "KVT71392"),
                         [](const auto& param) {
                           return QString(param.param).section('/', 0, 0).toStdString();
                         });

using AccessibleWindow = AccessibleProgram;

TEST_F(AccessibleWindow, OfTheStartHasItsPartsToldApart) {
  const Part start = window(start_title);
  expect_told_apart(start);
  press(start, "About");
  const Part about = window("About");
  expect_told_apart(about);
  press(about, "OK");
  EXPECT_TRUE(wait_for([&] { return !about.showing(); }));
  choose(start, "First Steps and Keys");
  expect_told_apart(window("First Steps and Keys"));
}

TEST_F(AccessibleWindow, BesideAPanelHasItsPartsToldApart) {
  const Part panel = panel_of("KVT71385");
  for (const char* entry : {"Register Workbench", "GPIO Panel", "Bus Trace", "Simulated Bench",
                            "Interrupt Test", "Proximity Offset Constants"}) {
    choose(panel, entry);
    const QString title = QString(entry).section(' ', 0, 1);
    expect_told_apart(window(title));
  }
  EXPECT_GE(lamps_of(window("Register Workbench")), 10);
  EXPECT_GE(lamps_of(window("GPIO Panel")), 5);
}

TEST_F(AccessibleWindow, OfAScriptIsReachedAndHasItsPartsToldApart) {
  QFile script(folder.filePath("script.txt"));
  ASSERT_TRUE(script.open(QIODevice::WriteOnly));
  script.write("00,8C,8C # power up\n\n`w100\n");
  script.close();
  const Part panel = panel_of("KVT71374");
  choose(panel, "Script Panel");
  const Part dialog = window("Select Script File to Open");
  expect_told_apart(dialog);
  const auto name = dialog.find_showing("text", "File name:");
  ASSERT_TRUE(name);
  EXPECT_TRUE(name->set_text(script.fileName()));
  press(dialog, "Open");
  const Part scripts = window("script.txt");
  expect_told_apart(scripts);
  EXPECT_EQ(lamps_of(scripts), 1);

  choose(scripts, "Open Another Script Processing Form");
  press(window("Select Script File to Open"), "Cancel");
  expect_told_apart(window("No Script File Selected"));
}

TEST_F(AccessibleWindow, OfTheFixedSequenceHasItsPartsToldApart) {
  const Part panel = panel_of("KVT71374");
  choose(panel, "Full or Short Layout");
  act(panel, "page tab", "Last Triggered Reading", "Press");
  press(panel, "Run Script");
  expect_told_apart(window("ALS, IR, Prox Sequence"));
}

}  // namespace
}  // namespace varzelin::testing
