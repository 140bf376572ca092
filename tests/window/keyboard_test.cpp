// Every form worked by the keyboard: what Tab and the arrows go through.
#include <QLabel>
#include <QListWidget>
#include <QTableWidget>
#include <QTimer>
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

}  // namespace
}  // namespace varzelin::testing
