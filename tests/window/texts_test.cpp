// Text boxes: what the user types, what handlers make of it, and the log.
#include <QClipboard>
#include <QLineEdit>
#include <QPlainTextEdit>

#include "support/sample_form.h"
#include "support/window_program.h"

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
  QPlainTextEdit& page() { return widget<QPlainTextEdit>(SampleForm::form_name, "txtLog"); }
};

TEST_F(WindowTexts, TypingReachesTheControlAtItsTurn) {
  QTest::keyClicks(&line("txt"), "er");
  EXPECT_EQ(form->txt.Text, "plain");
  turn();
  EXPECT_EQ(form->txt.Text, line("txt").text().toStdString());
  EXPECT_EQ(form->txt.Text.get().size(), 7u);
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
  page().setReadOnly(true);
  std::string expected;
  for (int i = 0; i < 200; ++i) {
    form->txtLog.Text.append("line\r\n");
    expected += "line\n";
    if (i % 50 == 0) turn();
  }
  turn();
  EXPECT_EQ(page().toPlainText().toStdString(), expected);
  EXPECT_EQ(page().textCursor().position(), static_cast<int>(expected.size()));
  form->txtLog.Text = "";
  turn();
  EXPECT_EQ(page().toPlainText(), "");
  form->txtLog.Text = "afresh, and longer than nothing";
  turn();
  EXPECT_EQ(page().toPlainText(), "afresh, and longer than nothing");
}

// Nothing that was shown is laid out again when lines come.
TEST_F(WindowTexts, ALogIsAppendedTo) {
  page().setReadOnly(true);
  form->txtLog.Text = "first\r\n";
  turn();
  int removed = 0;
  QObject::connect(page().document(), &QTextDocument::contentsChange, &page(),
                   [&](int, int taken, int) { removed += taken; });
  form->txtLog.Text.append("second\r\n");
  turn();
  EXPECT_EQ(page().toPlainText(), "first\nsecond\n");
  EXPECT_EQ(removed, 0);
}

TEST_F(WindowTexts, APageIsEditedByTheUser) {
  page().setFocus();
  QTest::keyClicks(&page(), "ab");
  QTest::keyClick(&page(), Qt::Key_Return);
  turn();
  EXPECT_EQ(form->txtLog.Text, "ab\r\n");
}

}  // namespace
}  // namespace varzelin::testing
