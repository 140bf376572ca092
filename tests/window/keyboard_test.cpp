// Every form worked by the keyboard: what Tab and the arrows go through.
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>
#include <algorithm>
#include <map>
#include <set>

#include "support/keyboard_window.h"

namespace varzelin::testing {
namespace {

using WindowKeyboard = KeyboardWindow;

constexpr forms::Event user_events[] = {
    forms::Event::Click,    forms::Event::DblClick,       forms::Event::Change,    forms::Event::KeyPress,
    forms::Event::GotFocus, forms::Event::LostFocus,      forms::Event::MouseDown, forms::Event::MouseUp,
    forms::Event::Scroll,   forms::Event::SelectionChange};

// Writes down the calls of a form's handlers in their place.
void record_handlers(const forms::Form& form, std::vector<std::string>& calls) {
  for (forms::Control* control : form.controls()) {
    for (const forms::Event event : user_events) {
      if (!control->handles(event)) continue;
      control->handle(event, [&calls, control, event](forms::EventArgs&) {
        calls.push_back(control->full_name() + " " + event_name(event));
      });
    }
  }
}

TEST_F(WindowKeyboard, TabAndArrowsInListsActOnNothing) {
  for (const std::string& form : program.forms.names()) {
    front(form);
    std::vector<std::string> calls;
    record_handlers(*program.forms.loaded(form), calls);
    const auto time = clock.now();
    for (QWidget* stop : tab_stops()) {
      if (!qobject_cast<QListWidget*>(stop) && !qobject_cast<QTableWidget*>(stop)) continue;
      stop->setFocus(Qt::TabFocusReason);
      press(Qt::Key_Down);
      press(Qt::Key_Down);
      press(Qt::Key_Up);
    }
    EXPECT_EQ(calls, std::vector<std::string>{}) << form;
    EXPECT_EQ(clock.now(), time) << form << " used the bus";
  }
}

TEST_F(WindowKeyboard, ACollectionGoesOnWhileTheTabKeyGoesThroughItsPanel) {
  choose_model(0);
  QTimer user;
  std::set<QString> seen;
  bool interval_left = false;
  QObject::connect(&user, &QTimer::timeout, &user, [&] {
    if (program.store.Sample_Count < 20 || program.store.Sample_Run == 0) return;
    QWidget* focus = QApplication::focusWidget();
    ASSERT_TRUE(focus);
    if (seen.insert(focus->objectName()).second) {
      QTest::keyClick(focus, Qt::Key_Tab);
      if (focus->objectName() == "txtInterval") interval_left = true;
      return;
    }
    click("frmKVT71346", "cmdStopData");
  });
  user.start(0);
  click("frmKVT71346", "cmdCollectData");
  turn();
  turn();
  EXPECT_TRUE(interval_left);
  EXPECT_EQ(program.store.Collections, 1);
  EXPECT_EQ(widget<QLabel>("frmKVT71346", "Label18").text(), "Data Collection Halted");
}

TEST_F(WindowKeyboard, ABoxLeavesTheFocusWhereItWas) {
  choose_model(0);
  auto& write = widget<QPushButton>("frmKVT71346", "cmdStartRec(0)");
  front("frmKVT71346");
  write.setFocus();
  QTimer user;
  QObject::connect(&user, &QTimer::timeout, &user, [] {
    if (QWidget* box = QApplication::activeModalWidget()) QTest::keyClick(box, Qt::Key_Return);
  });
  user.start(0);
  press(Qt::Key_Space);  // "Save More Measurements"
  EXPECT_EQ(QApplication::focusWidget(), &write);
  EXPECT_TRUE(window_of("frmKVT71346").isActiveWindow());
}

QRect place_of(const QWidget& widget, const QWidget& content) {
  return {widget.mapTo(&content, QPoint()), widget.size()};
}

// From one to the next it goes right or down: never back to the left in a line, nor up in a column.
bool reads_on(const QRect& from, const QRect& to) {
  const bool below = to.center().y() > from.bottom();
  const bool right = to.center().x() > from.right();
  return below || right;
}

// Once round, wherever it begins: only the step from the last to the first leads back.
void expect_reading_order(const std::vector<QWidget*>& stops, const QWidget& content) {
  std::set<QWidget*> seen;
  std::vector<std::string> back;
  const QWidget* before = stops.back();
  for (QWidget* stop : stops) {
    const std::string name = stop->objectName().toStdString();
    EXPECT_TRUE(content.isAncestorOf(stop)) << name;
    EXPECT_FALSE(stop->size().isEmpty()) << name;
    EXPECT_TRUE(seen.insert(stop).second) << name << " twice";
    if (!reads_on(place_of(*before, content), place_of(*stop, content)))
      back.push_back(name + " behind " + before->objectName().toStdString());
    before = stop;
  }
  EXPECT_EQ(back.size(), 1u) << ::testing::PrintToString(back);
}

TEST_F(WindowKeyboard, TheFocusBeginsOnTheFirstWidgetToWorkWith) {
  const std::map<std::string, std::string> first{
      {"frmStartup", "cboDeviceSelect"}, {"frmAbout2", "cmdOK"},        {"frmI2C_General", "ChKManUsbConn"},
      {"frmGPIO", "chkOutEn(0)"},        {"frmScriptOps", "vbalGrid1"}, {"frmKVT71346", "lst_MainOptions"},
      {"frmKVT71385", "OptMode(2)"}};
  for (const auto& [form, widget] : first) {
    front(form);
    EXPECT_EQ(QApplication::focusWidget()->objectName().toStdString(), widget);
  }
  for (const std::string& form : program.forms.names()) {
    const QWidget& content = *front(form).centralWidget();
    const std::vector<QWidget*> stops = tab_stops();
    for (std::size_t i = 1; i < stops.size() && form != "frmAbout2"; ++i) {
      EXPECT_TRUE(reads_on(place_of(*stops[i - 1], content), place_of(*stops[i], content)))
          << form << " begins at " << stops.front()->objectName().toStdString() << ", not at "
          << stops[i]->objectName().toStdString();
    }
  }
}

// Not column by column.
TEST_F(WindowKeyboard, TheTabKeyGoesThroughATableLineByLine) {
  front("frmI2C_General");
  const std::vector<QWidget*> stops = tab_stops();
  const auto place = [&](const char* name) {
    return std::ranges::find(stops, &widget<QWidget>("frmI2C_General", name)) - stops.begin();
  };
  EXPECT_LT(place("txtBWrite(0)"), place("Reg_Adr(0)"));
  EXPECT_LT(place("Reg_Adr(0)"), place("txtBWrite(1)"));
}

TEST_F(WindowKeyboard, TheTabKeyGoesInReadingOrderThroughWhatCanBeSeen) {
  for (const std::string& form : program.forms.names()) {
    SCOPED_TRACE(form);
    window::FormWindow& shown = front(form);
    if (auto* layout = shown.findChild<QLabel*>("Label13")) QTest::mouseDClick(layout, Qt::LeftButton);
    turn();
    auto* tabs = shown.content()->findChild<QTabWidget*>();
    for (int page = 0; page < (tabs ? tabs->count() : 1); ++page) {
      if (tabs && !tabs->isTabVisible(page)) continue;
      if (tabs) tabs->setCurrentIndex(page);
      turn();
      settle();
      expect_reading_order(tab_stops(), *shown.centralWidget());
    }
  }
}

TEST_F(WindowKeyboard, TheTabKeyPassesBoxesThatOnlyShowResults) {
  choose_model(0);
  front("frmKVT71346");
  auto& reading = widget<QLineEdit>("frmKVT71346", "txtReading");
  auto& count = widget<QLineEdit>("frmKVT71346", "txtADDec");
  const std::vector<QWidget*> stops = tab_stops();
  for (QLineEdit* box : {&reading, &count}) EXPECT_EQ(std::ranges::count(stops, box), 0);
  EXPECT_EQ(std::ranges::count(stops, &widget<QLineEdit>("frmKVT71346", "txtScale")), 1);
  EXPECT_TRUE(reading.isReadOnly());
  EXPECT_FALSE(count.isReadOnly());  // the interrupt test reads it
  reading.setText("123");
  QTest::mouseDClick(&reading, Qt::LeftButton);
  EXPECT_TRUE(reading.hasFocus());
  EXPECT_EQ(reading.selectedText(), "123");
}

}  // namespace
}  // namespace varzelin::testing
