// Text boxes: what the user types, what handlers make of it, and the log.
#include <QClipboard>
#include <QLineEdit>
#include <QScrollBar>
#include <QTimer>

#include "support/sample_form.h"
#include "support/window_program.h"
#include "window/log_view.h"

namespace varzelin::testing {
namespace {

struct WindowTexts : WindowProgram {
  SampleForm* form = nullptr;

  void SetUp() override {
    program.forms.add(SampleForm::form_name, [this](const std::string&) {
      auto made = std::make_unique<SampleForm>(program.forms);
      form = made.get();
      return made;
    });
    show(SampleForm::form_name);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window_of(SampleForm::form_name)));
    turn();
    form->events.clear();
  }
  QLineEdit& line(const char* name) { return widget<QLineEdit>(SampleForm::form_name, name); }
  window::LogView& log() { return widget<window::LogView>(SampleForm::form_name, "txtLog"); }
};

TEST_F(WindowTexts, TypingReachesTheControlAtItsTurn) {
  QTest::keyClicks(&line("txt"), "er");
  EXPECT_EQ(form->txt.Text, "plain");
  turn();
  EXPECT_EQ(form->txt.Text, line("txt").text().toStdString());
  EXPECT_EQ(form->txt.Text.get().size(), 7u);
}

TEST_F(WindowTexts, ATextThatAScreenReaderEntersIsTheUsers) {
  line("txt").setText("entered");
  turn();
  EXPECT_EQ(form->txt.Text, "entered");
}

TEST_F(WindowTexts, ATextOfTheProgramIsNotTakenForTheUsers) {
  form->txt.Text = "first";
  windows.show_changes();
  form->txt.Text = "second";
  turn();
  EXPECT_EQ(form->txt.Text, "second");
}

TEST_F(WindowTexts, AProgramsTextDoesntOvertakeTheUsersTyping) {
  line("txt").setText("");
  form->txt.Text = "";
  turn();
  QTest::keyClicks(&line("txt"), "ab");
  form->txt.Text = "program";
  windows.show_changes();
  EXPECT_EQ(line("txt").text(), "ab");
  turn();
  EXPECT_EQ(form->txt.Text, "ab");
}

TEST_F(WindowTexts, AKeyHandlerDecidesWhatBecomesOfAKey) {
  auto& box = line("txtKeys");
  box.setFocus();
  QTest::keyClicks(&box, "axqb");
  EXPECT_TRUE(form->keys.empty());
  turn();
  EXPECT_EQ(form->keys, (std::vector<int>{'a', 'x', 'q', 'b'}));
  EXPECT_EQ(box.text(), "aQb");
  EXPECT_EQ(form->txtKeys.Text, "aQb");
}

TEST_F(WindowTexts, KeysActAtTheCaretInTheirOrder) {
  auto& box = line("txtKeys");
  form->txtKeys.Text = "1234";
  turn();
  box.setFocus();
  box.setCursorPosition(4);
  QTest::keyClick(&box, Qt::Key_Left);
  QTest::keyClicks(&box, "9");
  QTest::keyClick(&box, Qt::Key_Backspace);
  QTest::keyClick(&box, Qt::Key_Backspace);
  QTest::keyClick(&box, Qt::Key_Delete);
  turn();
  EXPECT_EQ(form->keys, (std::vector<int>{'9', 8, 8}));
  EXPECT_EQ(form->txtKeys.Text, "12");
  EXPECT_EQ(box.text(), "12");
}

TEST_F(WindowTexts, EnterIsTheKey13AndEntersNothing) {
  QTest::keyClick(&line("txtKeys"), Qt::Key_Return);
  turn();
  EXPECT_EQ(form->keys, std::vector<int>{13});
  EXPECT_EQ(form->txtKeys.Text, "");
}

TEST_F(WindowTexts, PastedTextIsTakenAsItIs) {
  auto& box = line("txtKeys");
  box.setFocus();
  QApplication::clipboard()->setText("xyz");
  QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
  turn();
  EXPECT_TRUE(form->keys.empty());
  EXPECT_EQ(form->txtKeys.Text, "xyz");
}

TEST_F(WindowTexts, LeavingABoxRaisesLostFocusButAnotherWindowDoesnt) {
  line("txt").setFocus(Qt::OtherFocusReason);
  turn();
  form->events.clear();
  QFocusEvent window_lost(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
  QApplication::sendEvent(&line("txt"), &window_lost);
  turn();
  EXPECT_TRUE(form->events.empty());
  line("txtKeys").setFocus(Qt::TabFocusReason);
  turn();
  EXPECT_EQ(form->events, (std::vector<std::string>{"txt LostFocus"}));
}

// Going through a window by the keyboard acts on nothing: leaving a box may stop a collection.
TEST_F(WindowTexts, ABoxThatTheTabKeyPassesRaisesNothing) {
  widget<QWidget>(SampleForm::form_name, "cmd").setFocus(Qt::TabFocusReason);
  line("txt").setFocus(Qt::TabFocusReason);
  turn();
  line("txtKeys").setFocus(Qt::BacktabFocusReason);
  turn();
  EXPECT_TRUE(form->events.empty());
}

TEST_F(WindowTexts, ABoxThatIsEditedGetsItsFocusFirst) {
  line("txt").setFocus(Qt::TabFocusReason);
  QTest::keyClicks(&line("txt"), "er");
  line("txtKeys").setFocus(Qt::TabFocusReason);
  turn();
  EXPECT_EQ(form->events, (std::vector<std::string>{"txt GotFocus", "txt LostFocus"}));
}

TEST_F(WindowTexts, ABoxIsClickedByMouseAndByKeyboard) {
  QTest::mouseClick(&line("txt"), Qt::LeftButton);
  QTest::keyClick(&line("txt"), Qt::Key_Return, Qt::ControlModifier);
  turn();
  EXPECT_EQ(std::ranges::count(form->events, "txt Click"), 2);
  QTest::keyClick(&line("txt"), Qt::Key_Return, Qt::ControlModifier | Qt::ShiftModifier);
  turn();
  EXPECT_EQ(std::ranges::count(form->events, "txt DblClick"), 1);
}

TEST_F(WindowTexts, ALogGrowsAndStaysAtItsEnd) {
  for (int i = 0; i < 200; ++i) {
    form->txtLog.Text.append("line " + std::to_string(i) + "\r\n");
    if (i % 50 == 0) turn();
  }
  turn();
  EXPECT_EQ(log().line_count(), 201);  // the last one is empty
  EXPECT_EQ(log().line(0), "line 0");
  EXPECT_EQ(log().line(199), "line 199");
  EXPECT_EQ(log().lines_in_sight().back(), "");
  EXPECT_EQ(log().lines_in_sight().at(log().lines_in_sight().size() - 2), "line 199");
  form->txtLog.Text = "";
  turn();
  EXPECT_EQ(log().lines_in_sight(), QStringList{""});
  form->txtLog.Text = "afresh, and longer than nothing";
  turn();
  EXPECT_EQ(log().lines_in_sight(), QStringList{"afresh, and longer than nothing"});
}

// Whatever its length, what is laid out is what there is room for.
// Whether the menu that the user asks for there waits for its end, and so holds up the program.
bool menu_waits(QWidget& widget) {
  bool waits = false;
  QTimer in_a_wait;
  QObject::connect(&in_a_wait, &QTimer::timeout, &widget, [&waits] {
    waits = true;
    if (QWidget* menu = QApplication::activePopupWidget()) menu->close();
  });
  in_a_wait.start(0);
  const QPoint place(5, 5);
  QContextMenuEvent asked(QContextMenuEvent::Mouse, place, widget.mapToGlobal(place));
  QApplication::sendEvent(&widget, &asked);
  return waits;
}

TEST_F(WindowTexts, TheMenusOfALogHoldUpNothing) {
  EXPECT_FALSE(menu_waits(*log().verticalScrollBar()));
  EXPECT_FALSE(QApplication::activePopupWidget());
  EXPECT_FALSE(menu_waits(*log().viewport()));
  QWidget* menu = QApplication::activePopupWidget();
  ASSERT_TRUE(menu);
  menu->close();
}

TEST_F(WindowTexts, OfALongLogOnlyWhatIsInSightIsLaidOut) {
  std::string text;
  for (int i = 0; i < 100'000; ++i) text += "line " + std::to_string(i) + "\r\n";
  form->txtLog.Text = text;
  turn();
  EXPECT_EQ(log().line_count(), 100'001);
  EXPECT_LE(log().lines_in_sight().size(), log().viewport()->height() / log().fontMetrics().lineSpacing());
  log().setFocus();
  QTest::keyClick(&log(), Qt::Key_Home);
  EXPECT_EQ(log().lines_in_sight().front(), "line 0");
  QTest::keyClick(&log(), Qt::Key_PageDown);
  EXPECT_EQ(log().lines_in_sight().front(), "line " + QString::number(log().lines_in_sight().size()));
  QTest::keyClick(&log(), Qt::Key_End);
  EXPECT_EQ(log().lines_in_sight().back(), "");
}

// The oldest lines go, as they do in a log at its bound.
TEST_F(WindowTexts, ALogThatLosesItsBeginningIsShownAnew) {
  form->txtLog.Text = "one\r\ntwo\r\nthree\r\n";
  turn();
  form->txtLog.Text.replace_front(5, "gone\r\n");
  EXPECT_EQ(log().line(7), "") << "before its turn, too, no line is read beyond the text";
  turn();
  EXPECT_EQ(log().lines_in_sight(), (QStringList{"gone", "two", "three", ""}));
}

TEST_F(WindowTexts, LinesOfALogAreSelectedAndCopied) {
  form->txtLog.Text = "one\r\ntwo\r\nthree\r\nfour";
  turn();
  const int height = log().fontMetrics().lineSpacing();
  QTest::mousePress(log().viewport(), Qt::LeftButton, {}, {10, 4 + 2 * height + 1});
  QMouseEvent drag(QEvent::MouseMove, QPointF(10, 4 + height + 1), QPointF(), Qt::NoButton, Qt::LeftButton,
                   {});
  QApplication::sendEvent(log().viewport(), &drag);
  QTest::keyClick(&log(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), "two\nthree");
  QTest::keyClick(&log(), Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(&log(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), "one\ntwo\nthree\nfour");
}

TEST_F(WindowTexts, ASelectionInALogIsSeen) {
  form->txtLog.Text = "one\r\ntwo";
  turn();
  const auto color_of_line = [&](int line) {
    const QImage shown = log().viewport()->grab().toImage();
    return shown.pixelColor(shown.width() - 3, 4 + line * log().fontMetrics().lineSpacing() + 2);
  };
  const QColor before = color_of_line(0);
  QTest::mouseClick(log().viewport(), Qt::LeftButton, {}, {10, 6});
  EXPECT_NE(color_of_line(0), before);
  EXPECT_EQ(color_of_line(1), before);
}

}  // namespace
}  // namespace varzelin::testing
