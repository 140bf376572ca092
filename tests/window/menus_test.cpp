// The menus that every window has, their keys, and what becomes of readings when the program is left.
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QTextBrowser>
#include <QTimer>
#include <QUrl>
#include <fstream>

#include "forms/text.h"
#include "forms/user.h"
#include "panels/single_channel/kvt71346.h"
#include "script/script_panel.h"
#include "support/keyboard_window.h"
#include "support/temporary_folder.h"
#include "window/bench_window.h"
#include "window/bus_trace_window.h"
#include "window/help_window.h"
#include "workbench/workbench.h"

namespace varzelin::testing {
namespace {

struct WindowMenus : KeyboardWindow {
  static constexpr const char* panel = "frmKVT71346";

  void open_panel() {
    choose_model(0);
    front(panel);
    program.forms.touch<frmKVT71346>().ModeIndex = 2;
  }
  QAction* in_menu(const char* menu, const QString& text) {
    for (QAction* action : window_of(panel).menuBar()->findChild<QMenu*>(menu)->actions()) {
      if (action->text().remove('&') == text) return action;
    }
    return nullptr;
  }
  // What nothing has stopped would hold the test for ever.
  void end_what_goes_on() {
    ADD_FAILURE() << "goes on";
    program.store.Sample_Run = 0;
    program.store.AbortRequested = true_flag;
  }
  // What the user does once so many readings are there.
  void collect(int readings, const std::function<void()>& user) {
    program.store.Sample_Count = 0;
    QTimer timer;
    bool done = false;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
      if (program.store.Sample_Count > readings + 200) end_what_goes_on();
      if (done || program.store.Sample_Count < readings) return;
      done = true;
      user();
    });
    timer.start(0);
    press(Qt::Key_F5);
    EXPECT_TRUE(done);
    turn();
  }
  void collect_and_stop(int readings = 40) {
    collect(readings, [this] { QTest::keyClick(&window_of(panel), Qt::Key_F5, Qt::ShiftModifier); });
  }
  void press_stop() { QTest::keyClick(&window_of("frm71385INTR"), Qt::Key_F5, Qt::ShiftModifier); }
  QString status() { return widget<QLabel>(panel, "Label18").text(); }
  void answer(const QString& button) {
    QMessageBox* question = windows.leaving_question();
    ASSERT_TRUE(question);
    for (QAbstractButton* each : question->buttons()) {
      if (each->text().remove('&') == button) return each->click();
    }
    ADD_FAILURE() << "no button " << button.toStdString();
  }
  void load_script() {
    front_end.give_file(std::string(PROJECT_FOLDER) + "/examples/kvt71346-loopback.txt");
    program.runtime.dispatch([&] { program.forms.touch<frmScriptOps>().mnuScript_Read_Click(); });
    turn();
  }
  static void come_forward(QWidget& window) {
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  }
  std::vector<QWidget*> windows_without_menus() {
    entry(panel, "Bus Trace")->trigger();
    entry(panel, "Simulated Bench")->trigger();
    in_menu("Help", "First Steps and Keys")->trigger();
    turn();
    return {windows.bus_trace(), windows.bench(), windows.help()};
  }
  // A turn of the loop with nothing to do: what waits for the end of handlers goes on there.
  bool idle_turn_ends() {
    windows.act_when_idle();
    return turn_ends();
  }
};

TEST_F(WindowMenus, KeysStartStopAndWrite) {
  const TemporaryFolder folder;
  open_panel();
  program.forms.touch<frmKVT71346>().txtFilePath.Text = folder.path("Data.txt");
  collect_and_stop();
  EXPECT_EQ(status(), "Data Collection Halted");
  EXPECT_EQ(program.store.Collections, 1);
  press(Qt::Key_S, Qt::ControlModifier);
  EXPECT_TRUE(status().contains("Measurement set(s) written")) << status().toStdString();
  EXPECT_TRUE(std::ifstream(folder.path("Data.txt")).good());
}

TEST_F(WindowMenus, StopWorksAfterAClearedChartThatLeavesItsButtonDisabled) {
  open_panel();
  click(panel, "cmdRestoreScreen");
  turn();
  bool disabled = false;
  collect(30, [&] {
    disabled = !widget<QPushButton>(panel, "cmdStopData").isEnabled();
    in_menu("Program", "Stop")->trigger();
  });
  EXPECT_TRUE(disabled);
  EXPECT_EQ(program.store.Sample_Run, 0);
  EXPECT_EQ(status(), "Data Collection Halted");
}

TEST_F(WindowMenus, StopEndsTimedSamplingAndAScript) {
  open_panel();
  QTimer user;
  QObject::connect(&user, &QTimer::timeout, &user, [&] {
    if (program.store.Sample_Count > 30) in_menu("Program", "Stop")->trigger();
    if (program.store.Sample_Count > 300) end_what_goes_on();
  });
  user.start(0);
  click(panel, "cmdSample");
  turn();
  EXPECT_TRUE(widget<QPushButton>(panel, "cmdSample").isVisible());
  user.stop();

  front("frmScriptOps");
  load_script();
  auto& script = program.forms.touch<frmScriptOps>();
  user.disconnect();
  QObject::connect(&user, &QTimer::timeout, &user, [&] {
    if (forms::Val(script.txtLoopCount.Text) >= 3) in_menu("Program", "Stop")->trigger();
    if (forms::Val(script.txtLoopCount.Text) >= 300) end_what_goes_on();
  });
  user.start(0);
  click("frmScriptOps", "cmdRunContinuous");
  turn();
  EXPECT_TRUE(script.cmdExecAll.Enabled);
  EXPECT_GE(std::stoi(script.txtLoopCount.Text.get()), 3);
}

TEST_F(WindowMenus, StopEndsTheInterruptTest) {
  choose_model(5);
  front("frm71385INTR");
  QTimer user;
  int turns = 0;
  QObject::connect(&user, &QTimer::timeout, &user, [&] {
    if (++turns == 20) press_stop();
    if (turns != 200) return;
    end_what_goes_on();
    forms::user::click(*program.forms.loaded("frm71385INTR")->find("cmdAbort1"));
  });
  user.start(0);
  program.runtime.post(
      [&] { forms::user::click(*program.forms.loaded("frm71385INTR")->find("cmdRunCase1")); });
  turn();
  EXPECT_GE(turns, 20);
  EXPECT_EQ(widget<QLabel>("frm71385INTR", "lblMessage").text(), "Test Aborted");
}

TEST_F(WindowMenus, AMenuShowsWhatIsPossibleNow) {
  open_panel();
  QMenu* menu = window_of(panel).menuBar()->findChild<QMenu*>("Program");
  emit menu->aboutToShow();
  EXPECT_TRUE(in_menu("Program", "Start")->isEnabled());
  EXPECT_FALSE(in_menu("Program", "Stop")->isEnabled());
  emit menu->aboutToHide();
  EXPECT_TRUE(in_menu("Program", "Stop")->isEnabled());
  EXPECT_EQ(in_menu("Program", "Stop")->shortcut(), QKeySequence(Qt::SHIFT | Qt::Key_F5));
  bool stoppable = false;
  collect(30, [&] {
    emit menu->aboutToShow();
    stoppable = in_menu("Program", "Stop")->isEnabled() && !in_menu("Program", "Start")->isEnabled();
    emit menu->aboutToHide();
    in_menu("Program", "Stop")->trigger();
  });
  EXPECT_TRUE(stoppable);
}

TEST_F(WindowMenus, AnotherSensorIsChosenWithoutARestart) {
  open_panel();
  in_menu("Windows", "Choose a Sensor\u2026")->trigger();
  EXPECT_FALSE(windows.leaving_question());
  turn();
  EXPECT_FALSE(idle_turn_ends());
  EXPECT_FALSE(program.forms.loaded(panel));
  EXPECT_TRUE(window_of("frmStartup").isVisible());
  EXPECT_TRUE(program.forms.loaded("frmI2C_General"));
  choose_model(5);
  EXPECT_TRUE(window_of("frmKVT71385").isVisible());
  EXPECT_EQ(board.mounted_model(), "KVT71385");
  EXPECT_FALSE(window_of("frmStartup").isVisible());
}

TEST_F(WindowMenus, TheOffsetConstantsAreReachedAndKeepWhatWasTyped) {
  constexpr const char* constants = "frmProxOff";
  const auto typed = [&] { return widget<QLineEdit>(constants, "txtProxOff(3)").text(); };
  EXPECT_FALSE(entry("frmStartup", "Proximity Offset Constants"));
  choose_model(5);
  ASSERT_TRUE(entry("frmKVT71385", "Proximity Offset Constants"));
  entry("frmKVT71385", "Proximity Offset Constants")->trigger();
  turn();
  ASSERT_TRUE(window_of(constants).isVisible());
  widget<QLineEdit>(constants, "txtProxOff(3)").setText("200");
  turn();
  window_of(constants).close();
  turn();
  EXPECT_FALSE(window_of(constants).isVisible());
  entry("frmKVT71385", "Proximity Offset Constants")->trigger();
  turn();
  EXPECT_EQ(typed(), "200");
  entry("frmKVT71385", "Choose a Sensor\u2026")->trigger();
  turn();
  EXPECT_FALSE(idle_turn_ends());
  EXPECT_FALSE(window_of(constants).isVisible());
  choose_model(5);
  entry("frmKVT71385", "Proximity Offset Constants")->trigger();
  turn();
  EXPECT_EQ(typed(), "200");
}

TEST_F(WindowMenus, ASensorIsChosenOutOfARunningCollection) {
  open_panel();
  collect(10, [&] { in_menu("Windows", "Choose a Sensor\u2026")->trigger(); });
  EXPECT_FALSE(idle_turn_ends());
  EXPECT_FALSE(program.forms.loaded(panel));
  EXPECT_EQ(program.store.Usb_Open, 0);
  EXPECT_EQ(program.store.Man_Usb_Conn, 0);
  choose_model(0);
  front(panel);
  program.forms.touch<frmKVT71346>().ModeIndex = 2;
  collect_and_stop();
  EXPECT_EQ(status(), "Data Collection Halted");
}

TEST_F(WindowMenus, LeavingWithUnwrittenReadingsAsksOnce) {
  open_panel();
  collect_and_stop();
  click(panel, "CommandButton1");
  EXPECT_FALSE(turn_ends());
  ASSERT_TRUE(windows.leaving_question());
  EXPECT_TRUE(windows.leaving_question()->text().contains("readings were never written"));
  window_of(panel).close();
  EXPECT_FALSE(turn_ends());
  EXPECT_EQ(window_of(panel).findChildren<QMessageBox*>().size(), 1);
  answer("Cancel");
  EXPECT_FALSE(turn_ends());
  EXPECT_TRUE(window_of(panel).isVisible());
  click(panel, "CommandButton1");
  answer("Discard Them");
  EXPECT_TRUE(turn_ends());
}

TEST_F(WindowMenus, ChoosingAnotherSensorAsksBeforeReadingsAreLost) {
  open_panel();
  collect_and_stop();
  in_menu("Windows", "Choose a Sensor\u2026")->trigger();
  answer("Cancel");
  EXPECT_FALSE(idle_turn_ends());
  EXPECT_TRUE(program.forms.loaded(panel));
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  in_menu("Windows", "Choose a Sensor\u2026")->trigger();
  answer("Discard Them");
  turn();
  EXPECT_FALSE(idle_turn_ends());
  EXPECT_FALSE(program.forms.loaded(panel));
}

TEST_F(WindowMenus, LeavingWithWrittenReadingsOrWithFewAsksNothing) {
  const TemporaryFolder folder;
  open_panel();
  program.forms.touch<frmKVT71346>().txtFilePath.Text = folder.path("Data.txt");
  collect_and_stop();
  press(Qt::Key_S, Qt::ControlModifier);
  press(Qt::Key_Q, Qt::ControlModifier);
  EXPECT_FALSE(windows.leaving_question());
  EXPECT_TRUE(idle_turn_ends());
}

TEST_F(WindowMenus, TheExitInTheWorkbenchsMenuAsksToo) {
  open_panel();
  collect_and_stop();
  entry(panel, "Register Workbench")->trigger();
  turn();
  const auto leave = [this] { window_of("frmI2C_General").findChild<QAction*>("mnuUsbDiag(4)")->trigger(); };
  leave();
  EXPECT_FALSE(turn_ends());
  answer("Cancel");
  EXPECT_FALSE(turn_ends());
  EXPECT_TRUE(program.forms.loaded("frmI2C_General"));
  leave();
  answer("Discard Them");
  EXPECT_TRUE(turn_ends());
}

TEST_F(WindowMenus, ThePanelThatComesNextIsntAskedAboutTheReadingsOfTheOneBefore) {
  open_panel();
  collect_and_stop();
  in_menu("Windows", "Choose a Sensor\u2026")->trigger();
  answer("Discard Them");
  turn();
  EXPECT_FALSE(idle_turn_ends());
  choose_model(1);
  EXPECT_GE(program.store.Sample_Count, 40);
  window_of("frmKVT71344").close();
  EXPECT_TRUE(turn_ends());
}

TEST_F(WindowMenus, TheQuestionCountsAsThePanelDoes) {
  open_panel();
  collect_and_stop();
  const int captured = program.forms.touch<frmKVT71346>().run_state().captured;
  EXPECT_GE(captured, 30);
  window_of(panel).close();
  EXPECT_FALSE(turn_ends());
  ASSERT_TRUE(windows.leaving_question());
  EXPECT_EQ(windows.leaving_question()->text(),
            QString::number(captured) + " readings were never written to disk.");
  answer("Cancel");
}

TEST_F(WindowMenus, QuitEndsARunningCollectionOnceTheReadingsMayGo) {
  open_panel();
  collect(40, [&] {
    in_menu("Program", "Quit")->trigger();
    answer("Discard Them");
  });
  EXPECT_TRUE(idle_turn_ends());
  EXPECT_TRUE(program.runtime.ended());
}

TEST_F(WindowMenus, QuitLeavesByThePanelsOwnExit) {
  open_panel();
  int exits = 0;
  program.forms.loaded(panel)->find("CommandButton1")->handle(forms::Event::Click, [&](forms::EventArgs&) {
    ++exits;
  });
  in_menu("Program", "Quit")->trigger();
  EXPECT_TRUE(turn_ends() || idle_turn_ends());
  EXPECT_EQ(exits, 1);
}

TEST_F(WindowMenus, QuitEndsTheProgramBeforeASensorIsChosen) {
  front("frmStartup");
  press(Qt::Key_Q, Qt::ControlModifier);
  EXPECT_TRUE(idle_turn_ends());
}

TEST_F(WindowMenus, TheWorkbenchOpenedFromTheMenuIsHiddenWhenItIsClosed) {
  open_panel();
  entry(panel, "Register Workbench")->trigger();
  turn();
  window_of("frmI2C_General").close();
  EXPECT_FALSE(turn_ends());
  EXPECT_FALSE(window_of("frmI2C_General").isVisible());
  EXPECT_TRUE(program.forms.loaded("frmI2C_General"));
  entry(panel, "Register Workbench")->trigger();
  turn();
  EXPECT_TRUE(window_of("frmI2C_General").isVisible());
  click("frmI2C_General", "cmdexit");
  EXPECT_TRUE(turn_ends());
}

TEST_F(WindowMenus, TheWorkbenchAsTheLastWindowEndsTheProgram) {
  open_panel();
  entry(panel, "Register Workbench")->trigger();
  turn();
  window_of(panel).close();
  turn();
  window_of("frmI2C_General").close();
  EXPECT_TRUE(turn_ends());
}

TEST_F(WindowMenus, TitlesBeginWithTheNameInTheMenu) {
  open_panel();
  for (const char* name : {"Register Workbench", "GPIO Panel", "Script Panel"}) {
    const forms::Runtime::SilentDialogs no_file_chosen(program.runtime);
    entry(panel, name)->trigger();
    turn();
    const forms::Form& opened = *program.forms.front();
    EXPECT_EQ(window_of(opened.name()).windowTitle().toStdString(),
              std::string(name) + ": " + opened.Caption.get() + windows.title_suffix().toStdString());
  }
  EXPECT_FALSE(window_of(panel).windowTitle().contains(": "));
}

TEST_F(WindowMenus, HelpTellsTheKeys) {
  open_panel();
  press(Qt::Key_F1);
  ASSERT_TRUE(windows.help());
  EXPECT_TRUE(windows.help()->isVisible());
  const QString text = windows.help()->findChild<QTextBrowser*>("page")->toPlainText();
  for (const char* key : {"F5", "Shift+F5", "Ctrl+S", "Ctrl+O", "Ctrl+Q", "F1"}) {
    EXPECT_TRUE(text.contains(key)) << key;
  }
}

TEST_F(WindowMenus, EscapeClosesTheWindowsThatOnlyShowSomething) {
  open_panel();
  for (QWidget* window : windows_without_menus()) {
    come_forward(*window);
    QTest::keyClick(window, Qt::Key_Escape);
    EXPECT_FALSE(window->isVisible()) << window->objectName().toStdString();
  }
  front("frmAbout2");
  press(Qt::Key_Escape);
  EXPECT_FALSE(program.forms.loaded("frmAbout2"));
}

TEST_F(WindowMenus, TheKeysWorkInWindowsWithoutMenus) {
  const TemporaryFolder folder;
  open_panel();
  program.forms.touch<frmKVT71346>().txtFilePath.Text = folder.path("Data.txt");
  for (QWidget* window : windows_without_menus()) {
    SCOPED_TRACE(window->objectName().toStdString());
    come_forward(*window);
    collect(40, [&] { QTest::keyClick(window, Qt::Key_F5, Qt::ShiftModifier); });
    EXPECT_EQ(status(), "Data Collection Halted");
    press(Qt::Key_S, Qt::ControlModifier);
    EXPECT_TRUE(status().contains("Measurement set(s) written")) << status().toStdString();
  }
  for (QWidget* window : std::initializer_list<QWidget*>{windows.bus_trace(), windows.bench()}) {
    windows.help()->hide();
    come_forward(*window);
    QTest::keyClick(window, Qt::Key_F1);
    EXPECT_TRUE(windows.help()->isVisible()) << window->objectName().toStdString();
  }
}

TEST_F(WindowMenus, QuitWorksInWindowsWithoutMenus) {
  open_panel();
  collect_and_stop();
  for (QWidget* window : windows_without_menus()) {
    SCOPED_TRACE(window->objectName().toStdString());
    come_forward(*window);
    QTest::keyClick(window, Qt::Key_Q, Qt::ControlModifier);
    EXPECT_FALSE(idle_turn_ends());
    answer("Cancel");
    EXPECT_FALSE(turn_ends());
  }
  come_forward(*windows.bench());
  QTest::keyClick(windows.bench(), Qt::Key_Q, Qt::ControlModifier);
  answer("Discard Them");
  EXPECT_TRUE(idle_turn_ends());
}

TEST_F(WindowMenus, AKeyOfAWindowWithoutMenusIsForTheFormInFront) {
  open_panel();
  front("frmScriptOps");
  load_script();
  int runs = 0;
  int collections = 0;
  program.forms.touch<frmScriptOps>().cmdExecAll.handle(forms::Event::Click,
                                                        [&](forms::EventArgs&) { ++runs; });
  program.forms.touch<frmKVT71346>().cmdCollectData.handle(forms::Event::Click,
                                                           [&](forms::EventArgs&) { ++collections; });
  come_forward(*windows.bench());
  press(Qt::Key_F5);
  EXPECT_EQ(runs, 1);
  EXPECT_EQ(collections, 0);
}

TEST_F(WindowMenus, EnterPressesTheButtonWithTheFocusInWindowsWithoutMenus) {
  open_panel();
  for (QWidget* window : windows_without_menus()) {
    come_forward(*window);
    for (QPushButton* button : window->findChildren<QPushButton*>()) {
      int clicks = 0;
      const auto connection = QObject::connect(button, &QPushButton::clicked, button, [&] { ++clicks; });
      for (const auto key : {Qt::Key_Return, Qt::Key_Enter}) {
        button->setEnabled(true);
        button->setFocus();
        QTest::keyClick(button, key);
      }
      EXPECT_EQ(clicks, 2) << button->objectName().toStdString();
      QObject::disconnect(connection);
    }
  }
}

TEST_F(WindowMenus, EnterPressesTheButtonWithTheFocus) {
  open_panel();
  widget<QPushButton>(panel, "cmdDrawTrace").setFocus();
  program.store.Trace_Y.fill(7);
  press(Qt::Key_Return);
  EXPECT_NE(program.store.Trace_Y[200], 7);
}

TEST_F(WindowMenus, AScriptDroppedOnItsPanelIsLoaded) {
  const TemporaryFolder folder;
  const std::string path = folder.path("dropped.txt");
  std::ofstream(path) << "88 00 12 \r\n";
  show("frmScriptOps");
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(QString::fromStdString(path))});
  window::FormWindow& script = window_of("frmScriptOps");
  for (const QLineEdit* box : script.findChildren<QLineEdit*>()) {
    EXPECT_FALSE(box->acceptDrops()) << "would take the file's name as a text";
  }
  QDragEnterEvent enters({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
  QApplication::sendEvent(&script, &enters);
  EXPECT_TRUE(enters.isAccepted());
  QDropEvent drop({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
  QApplication::sendEvent(&script, &drop);
  QTimer user;
  QObject::connect(&user, &QTimer::timeout, &user, [] {
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (!dialog) return;
    ADD_FAILURE() << "asks for a file";
    dialog->reject();
  });
  user.start(0);
  turn();
  user.stop();
  EXPECT_TRUE(script.windowTitle().contains("dropped.txt")) << script.windowTitle().toStdString();
  QMimeData words;
  words.setText("no file");
  QDragEnterEvent with_words({5, 5}, Qt::CopyAction, &words, Qt::LeftButton, {});
  with_words.ignore();
  QApplication::sendEvent(&script, &with_words);
  EXPECT_FALSE(with_words.isAccepted());
}

}  // namespace
}  // namespace varzelin::testing
