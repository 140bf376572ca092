// What the accessibility tree tells of the windows.
#include <QAccessible>
#include <QGroupBox>
#include <QListWidget>
#include <QMetaEnum>
#include <QRadioButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTableWidget>
#include <map>
#include <set>

#include "script/script_panel.h"
#include "support/panel_window.h"
#include "window/bench_window.h"
#include "window/bus_trace_window.h"
#include "workbench/workbench.h"

namespace varzelin::testing {
namespace {

QAccessibleInterface& tree_of(QWidget& widget) {
  return *QAccessible::queryAccessibleInterface(&widget);
}
std::string name_of(const QAccessibleInterface& part) {
  return part.text(QAccessible::Name).toStdString();
}
std::string role_of(const QAccessibleInterface& part) {
  return QMetaEnum::fromType<QAccessible::Role>().valueToKey(part.role());
}
// Calls visit(part) for every part of a tree but the rows and cells of lists.
template <class Visit>
void each_part(QAccessibleInterface& part, Visit&& visit) {
  visit(part);
  static const std::set<QAccessible::Role> of_rows{QAccessible::ComboBox, QAccessible::List,
                                                   QAccessible::Table};
  if (of_rows.contains(part.role())) return;
  for (int i = 0; i < part.childCount(); ++i) {
    if (QAccessibleInterface* child = part.child(i)) each_part(*child, visit);
  }
}

bool acts(const QAccessibleInterface& part) {
  static const std::set<QAccessible::Role> acting{
      QAccessible::Button,   QAccessible::CheckBox, QAccessible::RadioButton, QAccessible::EditableText,
      QAccessible::ComboBox, QAccessible::List,     QAccessible::Table,       QAccessible::Slider,
      QAccessible::SpinBox,  QAccessible::PageTab};
  return acting.contains(part.role());
}
// Qt's own: the button that clears a line edit, the buttons that scroll tabs.
bool inside_a_widget(const QAccessibleInterface& part) {
  const QAccessibleInterface* parent = part.parent();
  return parent &&
         (parent->role() == QAccessible::EditableText || parent->role() == QAccessible::PageTabList) &&
         part.role() == QAccessible::Button;
}

struct WindowAccessibility : PanelWindow {
  // Every window of the program, those of all forms among them.
  std::vector<QWidget*> all_windows() {
    std::vector<QWidget*> all;
    for (const std::string& name : program.forms.names()) {
      show(name);
      all.push_back(&window_of(name));
    }
    entry("frmStartup", "Bus Trace")->trigger();
    turn();
    all.push_back(windows.bus_trace());
    all.push_back(windows.bench());
    return all;
  }
  std::string accessible_name(const char* name) { return name_of(tree_of(widget<QWidget>(name))); }
};

TEST_F(WindowAccessibility, EverythingThatCanBeWorkedHasANameOfItsOwn) {
  for (QWidget* window : all_windows()) {
    std::map<std::string, std::string> names;
    each_part(tree_of(*window), [&](QAccessibleInterface& part) {
      if (!acts(part) || inside_a_widget(part)) return;
      const std::string name = name_of(part);
      const std::string object = part.object() ? part.object()->objectName().toStdString() : "a tab";
      const std::string where = window->objectName().toStdString() + " " + object;
      EXPECT_FALSE(name.empty()) << where << ", " << role_of(part);
      const auto [first, is_new] = names.emplace(name, where);
      EXPECT_TRUE(is_new) << where << " and " << first->second << " are both \"" << name << "\"";
    });
  }
}

// Control names are for programs.
TEST_F(WindowAccessibility, NothingIsToldByItsControlsName) {
  for (QWidget* window : all_windows()) {
    each_part(tree_of(*window), [&](QAccessibleInterface& part) {
      const QString control = part.object() ? part.object()->objectName() : QString();
      const bool word = control == part.text(QAccessible::Name) &&
                        control.contains(QRegularExpression("[a-z][A-Z]|\\(|\\d"));
      EXPECT_FALSE(word) << window->objectName().toStdString() << " " << control.toStdString();
    });
  }
}

TEST_F(WindowAccessibility, EveryWindowIsAWindowWithATitle) {
  for (QWidget* window : all_windows()) {
    QAccessibleInterface& part = tree_of(*window);
    EXPECT_EQ(role_of(part), "Window") << window->objectName().toStdString();
    EXPECT_EQ(name_of(part), window->windowTitle().toStdString());
  }
}

// Nothing that takes the focus or tells something is a mere container.
TEST_F(WindowAccessibility, WhatTakesTheFocusHasARole) {
  for (QWidget* window : all_windows()) {
    each_part(tree_of(*window), [&](QAccessibleInterface& part) {
      auto* widget = qobject_cast<QWidget*>(part.object());
      if (!widget || widget->focusProxy() || widget->focusPolicy() == Qt::NoFocus) return;
      EXPECT_NE(role_of(part), "Client")
          << window->objectName().toStdString() << " " << widget->objectName().toStdString();
    });
  }
}

TEST_F(WindowAccessibility, AChartAndThePagesHaveTheirRoles) {
  open(1);
  EXPECT_EQ(role_of(tree_of(widget<QWidget>("Picture1"))), "Chart");
  EXPECT_EQ(role_of(tree_of(pages())), "Grouping");
}

TEST_F(WindowAccessibility, EveryLampSaysWhatItsColourMeansThere) {
  int lamps = 0;
  for (QWidget* window : all_windows()) {
    std::set<std::string> names;
    for (QWidget* widget : window->findChildren<QWidget*>()) {
      auto* lamp = dynamic_cast<window::Lamp*>(widget);
      if (!lamp) continue;
      ++lamps;
      QAccessibleInterface& part = tree_of(*lamp);
      EXPECT_EQ(role_of(part), "StaticText");
      const std::string where = window->objectName().toStdString() + " " + lamp->objectName().toStdString();
      std::set<std::string> meanings;
      for (const double color : {0, 10, 12}) {
        lamp->set_color(forms::QBColor(color));
        const std::string name = name_of(part);
        EXPECT_FALSE(name.starts_with(": ")) << where;
        EXPECT_EQ(name.find(lamp->objectName().toStdString()), std::string::npos) << name;
        EXPECT_NE(name,
                  lamp->accessibleName().toStdString() + ": " + lamp->accessibleDescription().toStdString());
        meanings.insert(name);
      }
      EXPECT_GE(meanings.size(), 2u) << where;
      const bool dormant = lamp->accessibleName() == "Lamp without a signal";
      EXPECT_TRUE(dormant || names.insert(lamp->accessibleName().toStdString()).second)
          << where << " is one of two lamps \"" << lamp->accessibleName().toStdString() << "\"";
    }
  }
  EXPECT_GT(lamps, 200);
}

TEST_F(WindowAccessibility, ARegisterIsHeardToBeWrittenReadAndDifferent) {
  open(1);
  click("cmdSetControl");
  EXPECT_EQ(accessible_name("ShpInd(1)"), "R1 written: done");
  EXPECT_EQ(accessible_name("ShpInd(5)"), "R1 read: done");
  EXPECT_EQ(accessible_name("ShpAttach"), "USB Comm: works");
  board.set_register(1, 0x55);
  click("cmdRead_All");
  EXPECT_EQ(accessible_name("ShpInd(5)"), "R1 read: mismatch");
  board.unplug();
  turn();
  click("cmdRead_All");
  EXPECT_EQ(accessible_name("ShpAttach"), "USB Comm: failed");
}

TEST_F(WindowAccessibility, TheLogTellsTheLinesThatAreInSight) {
  show("frmI2C_General");
  program.forms.touch<frmI2C_General>().Txtlog.Text = "first\r\n\r\nlast";
  turn();
  const auto& log = tree_of(WindowProgram::widget<QWidget>("frmI2C_General", "Txtlog"));
  EXPECT_EQ(role_of(log), "Document");
  EXPECT_EQ(name_of(log), "Log");
  EXPECT_EQ(log.text(QAccessible::Value), "first\n\nlast");
}

TEST_F(WindowAccessibility, ALabelWithAValueTellsTheValue) {
  open(0);
  collect(25);
  const std::string count = widget<QLabel>("lblLoop_Count").text().toStdString();
  EXPECT_EQ(accessible_name("lblLoop_Count"), "Captured Readings: " + count);
  EXPECT_EQ(accessible_name("Label18"), "Status: " + widget<QLabel>("Label18").text().toStdString());
}

TEST_F(WindowAccessibility, OptionsAreRadioButtonsThatCanBeChosen) {
  open(1);
  QAccessibleInterface& option = tree_of(widget<QRadioButton>("OptGain(1)"));
  EXPECT_EQ(role_of(option), "RadioButton");
  EXPECT_EQ(name_of(option), widget<QRadioButton>("OptGain(1)").text().toStdString());
  EXPECT_FALSE(option.state().checked);
  option.actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
  turn();
  EXPECT_TRUE(option.state().checked);
  EXPECT_FALSE(tree_of(widget<QRadioButton>("OptGain(0)")).state().checked);
}

TEST_F(WindowAccessibility, OptionsOfTheSameWordsTellTheirGroup) {
  open(5);
  EXPECT_EQ(accessible_name("OptGainMode(1)"),
            "Auto, " + widget<QGroupBox>("frmGainMode").title().toStdString());
  EXPECT_EQ(accessible_name("OptGain(1)"), widget<QRadioButton>("OptGain(1)").text().toStdString());
}

TEST_F(WindowAccessibility, ABoxIsCalledWhatTheLabelBesideItSaysNow) {
  open(1);
  auto& label = dynamic_cast<forms::Label&>(*program.forms.loaded(form)->find("Label16"));
  EXPECT_EQ(accessible_name("txtReading"), "Lux Reading");
  label.Caption = "Calc. Reading";
  turn();
  EXPECT_EQ(accessible_name("txtReading"), "Calc. Reading");
  widget<QLineEdit>("txtReading").setAccessibleName("A name of its own");
  label.Caption = "Lux Reading";
  turn();
  EXPECT_EQ(accessible_name("txtReading"), "A name of its own");
}

TEST_F(WindowAccessibility, BarsThatScrollSayWhat) {
  show("frmI2C_General");
  for (const char* bar : {"Scroll the log down", "Scroll the log sideways", "Scroll the window down"}) {
    bool found = false;
    for (const QScrollBar* each : window_of("frmI2C_General").findChildren<QScrollBar*>())
      found = found || each->accessibleName() == bar;
    EXPECT_TRUE(found) << bar;
  }
}

TEST_F(WindowAccessibility, ADropDownHasItsNameItsChoiceAndRowsThatCanBePressed) {
  form = "frmStartup";
  QAccessibleInterface& devices = tree_of(widget<QComboBox>("cboDeviceSelect"));
  EXPECT_EQ(name_of(devices), "Which sensor is on the board?");
  QAccessibleInterface* rows = devices.child(0);
  ASSERT_EQ(role_of(*rows), "List");
  EXPECT_EQ(name_of(*rows), "Which sensor is on the board?: rows");
  ASSERT_EQ(rows->childCount(), 10);
  EXPECT_EQ(name_of(*rows->child(1)), "KVT71344/5");
  rows->child(1)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  turn();
  EXPECT_EQ(board.mounted_model(), "KVT71344/5");
}

TEST_F(WindowAccessibility, ARowOfAListIsChosenByMarkingIt) {
  open(0);
  QAccessibleInterface& modes = tree_of(widget<QListWidget>("Lst71346_Mode"));
  QAccessibleInterface* row = modes.child(1);
  EXPECT_FALSE(row->state().selected);
  row->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
  turn();
  EXPECT_TRUE(row->state().selected);
  EXPECT_EQ(widget<QLineEdit>("txtModeByte").text(), "0C");
}

TEST_F(WindowAccessibility, AScriptsRowTellsHowItWent) {
  form = "frmScriptOps";
  show(form);
  auto& grid = static_cast<frmScriptOps*>(program.forms.loaded(form))->vbalGrid1;
  const auto cell = [&](int row, int column) {
    return name_of(*tree_of(widget<QTableWidget>("vbalGrid1")).tableInterface()->cellAt(row - 1, column - 1));
  };
  grid.set_rows(3);
  for (const int row : {1, 2, 3}) {
    grid.set_text(row, 1, std::to_string(row));
    grid.set_text(row, 2, "88");
    grid.set_text(row, 6, "3F");
  }
  for (const int row : {2, 3}) grid.set_back(row, 2, forms::clr_green);
  grid.set_back(3, 6, forms::clr_red);
  turn();
  EXPECT_EQ(cell(1, 1), "1");
  EXPECT_EQ(cell(1, 6), "3F");
  EXPECT_EQ(cell(2, 1), "2, pass");
  EXPECT_EQ(cell(2, 6), "3F");
  EXPECT_EQ(cell(3, 1), "3, fail");
  EXPECT_EQ(cell(3, 2), "88, pass");
  EXPECT_EQ(cell(3, 6), "3F, fail");
  grid.set_back(3, 6, std::nullopt);
  turn();
  EXPECT_EQ(cell(3, 1), "3, pass");
}

}  // namespace
}  // namespace varzelin::testing
