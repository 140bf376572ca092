// The README's first steps from the start list to the exit, by keys alone.
#include <QDoubleSpinBox>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <functional>
#include <vector>

#include "support/keyboard_window.h"
#include "window/bench_window.h"

namespace varzelin::testing {
namespace {

// A step is tried at each turn of Qt, in whatever loop that is, until it is done.
struct Step {
  const char* what;
  std::function<bool()> done;
};

struct FirstSteps : KeyboardWindow {
  static constexpr const char* panel = "frmKVT71346";
  std::vector<Step> steps;
  bool ended = false;  // the program

  // --- what the steps are made of ---

  static void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QWidget* popup = QApplication::activePopupWidget();
    QWidget* receiver = popup ? popup->focusWidget() : QApplication::focusWidget();
    if (!receiver) receiver = popup ? popup : QApplication::activeWindow();
    if (receiver) QTest::keyClick(receiver, key, modifiers);
  }
  void wait(const char* what, std::function<bool()> condition) { steps.push_back({what, condition}); }
  void press(const char* what, Qt::Key pressed, Qt::KeyboardModifiers modifiers = {}) {
    steps.push_back({what, [=] {
                       key(pressed, modifiers);
                       return true;
                     }});
  }
  void type(const char* what, const QString& text) {
    steps.push_back({what, [text] {
                       QTest::keyClicks(QApplication::focusWidget(), text);
                       return true;
                     }});
  }
  // Presses the key once at each turn until the condition holds.
  void press_until(const char* what, Qt::Key pressed, const std::function<bool()>& condition) {
    steps.push_back({what, [=] {
                       if (condition()) return true;
                       key(pressed);
                       return false;
                     }});
  }
  void go_to(const char* name) {
    press_until(name, Qt::Key_Tab, [name] {
      return QApplication::focusWidget() && QApplication::focusWidget()->objectName() == name;
    });
  }

  // --- what the user sees ---

  double reading() { return widget<QLineEdit>(panel, "txtReading").text().toDouble(); }
  int captured() { return widget<QLabel>(panel, "lblLoop_Count").text().toInt(); }
  bool status_has(const char* words) { return widget<QLabel>(panel, "Label18").text().contains(words); }
  static bool in_front(const QWidget* window) { return QApplication::activeWindow() == window; }

  // Takes the steps, and says which one was not done.
  void take_steps() {
    constexpr int patience = 200'000;
    std::size_t next = 0;
    int tries = 0;
    QTimer user;
    QObject::connect(&user, &QTimer::timeout, &user, [&] {
      if (next >= steps.size()) return;
      if (steps[next].done()) {
        ++next;
        tries = 0;
      } else if (++tries == patience) {
        ADD_FAILURE() << "not done: " << steps[next].what;
        next = steps.size();
        program.store.Sample_Run = 0;
        if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) dialog->reject();
      }
    });
    user.start(0);
    while (next < steps.size() && !ended) {
      windows.act_when_idle();
      ended = turn_ends();
    }
    if (!ended) {
      windows.act_when_idle();
      ended = turn_ends();
    }
  }
};

TEST_F(FirstSteps, AreTakenByTheKeyboardAlone) {
  const QTemporaryDir folder;
  const QString path = folder.filePath("written.txt");
  double before = 0;

  wait("the start list", [this] { return in_front(&window_of("frmStartup")); });
  press("opens the list of sensors", Qt::Key_Space);
  press("chooses the first", Qt::Key_Return);
  wait("its panel", [this] {
    return program.forms.loaded(panel) && windows.window_of(panel) && in_front(&window_of(panel));
  });
  go_to("Lst71346_Mode");
  press_until("finds the mode", Qt::Key_Down, [this] {
    const auto* row = widget<QListWidget>(panel, "Lst71346_Mode").currentItem();
    return row && row->text() == "Diode1 - 100mS  -00";
  });
  press("chooses it", Qt::Key_Return);

  go_to("cmdBrowse");
  press("asks for a file", Qt::Key_Return);
  wait("the file dialog", [] { return qobject_cast<QFileDialog*>(QApplication::activeWindow()) != nullptr; });
  type("names the file", path);
  press("takes it", Qt::Key_Return);
  wait("the file beside the button",
       [&] { return widget<QLineEdit>(panel, "txtFilePath").text() == path && in_front(&window_of(panel)); });

  press("starts", Qt::Key_F5);
  wait("readings", [&] {
    before = reading();
    return captured() > 10 && before > 0;
  });
  press("opens the menu of windows", Qt::Key_W, Qt::AltModifier);
  wait("the menu", [] { return QApplication::activePopupWidget() != nullptr; });
  press("opens the bench", Qt::Key_B);
  wait("the bench", [this] { return in_front(windows.bench()); });
  go_to("light");
  press("selects the light", Qt::Key_A, Qt::ControlModifier);
  type("moves it", "1000");
  press("takes it", Qt::Key_Return);
  press("goes back", Qt::Key_Escape);
  wait("the panel again", [this] { return in_front(&window_of(panel)); });
  wait("more light", [&] { return reading() > 1.5 * before && captured() > 30; });
  press("stops", Qt::Key_F5, Qt::ShiftModifier);
  wait("the end", [this] { return status_has("Data Collection Halted"); });

  go_to("cmdStartRec(0)");
  press("writes", Qt::Key_Return);
  wait("the file", [this] { return status_has("written"); });
  press("leaves", Qt::Key_Q, Qt::ControlModifier);
  take_steps();

  EXPECT_EQ(board.scene().light_lux, 1000);
  QFile written(path);
  ASSERT_TRUE(written.open(QIODevice::ReadOnly));
  EXPECT_TRUE(written.readAll().endsWith("END\r\n"));
  EXPECT_TRUE(ended);
}

}  // namespace
}  // namespace varzelin::testing
