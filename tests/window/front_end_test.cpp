// Dialogs, and Qt's turns while a handler runs.
#include <QAbstractButton>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTimer>

#include "forms/controls.h"
#include "shell/application.h"
#include "shell/start_panel.h"
#include "support/fake_driver.h"
#include "support/window_program.h"
#include "window/dialogs.h"

namespace varzelin::testing {
namespace {

struct WindowFrontEndTest : WindowProgram {
  void SetUp() override {
    add_forms(program);
    program.runtime.dispatch([&] { start(program); });
    turn();
  }
  // Acts on the dialog that is going to open.
  template <class Dialog>
  void when_open(std::function<void(Dialog&)> act) {
    QTimer::singleShot(0, [act = std::move(act)] {
      auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
      if (!dialog) FAIL() << "no dialog of the kind";
      act(*dialog);
    });
  }
};

TEST_F(WindowFrontEndTest, AMessageBoxGivesTheAnswer) {
  when_open<QMessageBox>([](QMessageBox& box) {
    EXPECT_EQ(box.text(), "Stop?");
    EXPECT_EQ(box.windowTitle(), "Question \u2014 simulated board");
    EXPECT_EQ(box.standardButtons(), QMessageBox::Yes | QMessageBox::No);
    EXPECT_EQ(box.icon(), QMessageBox::Warning);
    box.button(QMessageBox::No)->click();
  });
  EXPECT_EQ(program.runtime.MsgBox("Stop?", forms::vbYesNo | forms::vbExclamation, "Question"), forms::vbNo);
}

TEST_F(WindowFrontEndTest, EscapeCancelsAMessageBox) {
  when_open<QMessageBox>([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
  EXPECT_EQ(program.runtime.MsgBox("Go on?", forms::vbOKCancel), forms::vbCancel);
  when_open<QMessageBox>([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
  EXPECT_EQ(program.runtime.MsgBox("So it is"), forms::vbOK);
}

TEST_F(WindowFrontEndTest, TheFirstButtonIsTheDefault) {
  when_open<QMessageBox>([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); });
  EXPECT_EQ(program.runtime.MsgBox("Again?", forms::vbRetryCancel), forms::vbRetry);
}

TEST_F(WindowFrontEndTest, NoHandlerRunsWhileABoxIsOpen) {
  bool ran = false;
  when_open<QMessageBox>([&](QMessageBox& box) {
    program.runtime.post([&] { ran = true; });
    QApplication::processEvents();
    EXPECT_FALSE(ran);
    box.accept();
  });
  program.runtime.dispatch([&] { program.runtime.MsgBox("Wait"); });
  EXPECT_FALSE(ran);
  turn();
  EXPECT_TRUE(ran);
}

// The driver advises from inside a handler's yields. The box waits for the handler's end.
TEST_F(WindowFrontEndTest, TheDriversAdviceIsABoxWhoseTextCanBeCopied) {
  const QString command = "sudo cp data/70-varzelin-als.rules /etc/udev/rules.d/";
  program.runtime.dispatch([&] {
    board.on_advice("Access denied. Install the rule by \"" + command.toStdString() + "\"");
    EXPECT_FALSE(windows.tell_advice());
  });
  bool shown = false;
  when_open<QMessageBox>([&](QMessageBox& box) {
    shown = true;
    EXPECT_EQ(box.icon(), QMessageBox::Warning);
    EXPECT_TRUE(box.text().contains(command));
    EXPECT_TRUE(box.textInteractionFlags() & Qt::TextSelectableByMouse);
    EXPECT_EQ(box.standardButtons(), QMessageBox::Ok);
    box.accept();
  });
  front_end.idle(std::nullopt);
  EXPECT_FALSE(shown);
  program.runtime.service();
  EXPECT_TRUE(shown);
  EXPECT_FALSE(windows.tell_advice());
}

TEST_F(WindowFrontEndTest, ARunTimeErrorIsReportedWithItsNumber) {
  when_open<QMessageBox>([](QMessageBox& box) {
    EXPECT_EQ(box.text(), "Run-time error '6':\n\nOverflow");
    box.accept();
  });
  program.runtime.dispatch([] { forms::raise_error(forms::overflow); });
}

TEST_F(WindowFrontEndTest, AnInputBoxGivesTheTextOrNone) {
  when_open<QInputDialog>([](QInputDialog& dialog) {
    EXPECT_EQ(dialog.labelText(), "How many?");
    EXPECT_EQ(dialog.textValue(), "5");
    dialog.setTextValue("7");
    dialog.accept();
  });
  EXPECT_EQ(program.runtime.InputBox("How many?", "Count", "5"), "7");
  when_open<QInputDialog>([](QInputDialog& dialog) { dialog.reject(); });
  EXPECT_EQ(program.runtime.InputBox("How many?", "Count", "5"), std::nullopt);
}

TEST_F(WindowFrontEndTest, FiltersArePairsOfTextAndPattern) {
  EXPECT_EQ(window::name_filters("All Files (*.*)|*.*|KVT7134x Data Files(*.txt)|*.txt"),
            (QStringList{"All Files (*)", "KVT7134x Data Files (*.txt)"}));
  EXPECT_EQ(window::name_filters("Both|*.txt;*.kvt"), QStringList{"Both (*.txt *.kvt)"});
  EXPECT_TRUE(window::name_filters("").isEmpty());
}

constexpr const char* recording = "Select File For Recording";

forms::FileDialog text_dialog(bool save, const char* title) {
  return {.save = save,
          .title = title,
          .filter = "All|*.*|Text|*.txt",
          .filter_index = 2,
          .filename = "",
          .default_extension = "*.txt"};
}

void take(QFileDialog& dialog, const QString& folder, const QString& name) {
  if (!folder.isEmpty()) dialog.setDirectory(folder);
  dialog.findChild<QLineEdit*>()->setText(name);
  static_cast<QDialog&>(dialog).accept();
}

void write_file(const QString& path, const char* text) {
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(text);
}

// The measurement file is asked for by a dialog to open, and written.
TEST_F(WindowFrontEndTest, TheDialogForTheMeasurementFileWrites) {
  const QTemporaryDir folder;
  when_open<QFileDialog>([&](QFileDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), "Save: Select File For Recording \u2014 simulated board");
    EXPECT_EQ(dialog.selectedNameFilter(), "Text (*.txt)");
    if (dialog.acceptMode() != QFileDialog::AcceptSave) {
      ADD_FAILURE() << "a dialog to open has no end with a file that isn't there";
      return dialog.reject();
    }
    take(dialog, folder.path(), "fresh");
  });
  EXPECT_EQ(program.runtime.file_dialog(text_dialog(false, recording)),
            folder.filePath("fresh.txt").toStdString());
}

TEST_F(WindowFrontEndTest, ADialogToOpenTakesOnlyWhatIsThere) {
  when_open<QFileDialog>([&](QFileDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), "Select \u2014 simulated board");
    EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptOpen);
    EXPECT_EQ(dialog.fileMode(), QFileDialog::ExistingFile);
    dialog.reject();
  });
  EXPECT_EQ(program.runtime.file_dialog(text_dialog(false, "Select")), std::nullopt);
}

TEST_F(WindowFrontEndTest, DialogsBeginInTheFolderUsedLast) {
  const QTemporaryDir folder;
  const QTemporaryDir other;
  when_open<QFileDialog>([&](QFileDialog& dialog) { take(dialog, folder.path(), "one"); });
  program.runtime.file_dialog(text_dialog(true, ""));
  when_open<QFileDialog>([&](QFileDialog& dialog) {
    EXPECT_EQ(dialog.directory().canonicalPath(), QDir(folder.path()).canonicalPath());
    EXPECT_TRUE(dialog.selectedFiles().front().endsWith("/proposed.txt"));
    dialog.reject();
  });
  auto elsewhere = text_dialog(true, "");
  elsewhere.filename = other.filePath("proposed.txt").toStdString();
  program.runtime.file_dialog(elsewhere);
}

// What the user answers to the question whether a file may be replaced.
struct Replacing {
  QString button;
  QString asked;
  QTimer timer;

  explicit Replacing(const QString& answer) : button(answer) {
    QObject::connect(&timer, &QTimer::timeout, &timer, [this] {
      if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
        asked = box->text() + " " + box->informativeText();
        for (QAbstractButton* each : box->buttons()) {
          if (each->text().remove('&') == button) return each->click();
        }
        box->reject();
      } else if (auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
                 dialog && !asked.isEmpty()) {
        dialog->reject();
      }
    });
    timer.start(1);
  }
};

TEST_F(WindowFrontEndTest, AFileIsReplacedWhenTheUserSaysSo) {
  const QTemporaryDir folder;
  write_file(folder.filePath("there.txt"), "measured");
  for (const auto& [answer, replaced] : {std::pair{"Cancel", false}, {"Replace It", true}}) {
    when_open<QFileDialog>([&](QFileDialog& dialog) { take(dialog, folder.path(), "there.txt"); });
    const Replacing user(answer);
    EXPECT_EQ(program.runtime.file_dialog(text_dialog(true, "")).has_value(), replaced);
    EXPECT_TRUE(user.asked.contains("there.txt is there already")) << user.asked.toStdString();
  }
}

TEST_F(WindowFrontEndTest, SavingASetupOverAFilledOneTellsThatItEmptiesIt) {
  const QTemporaryDir folder;
  write_file(folder.filePath("filled.kvt"), "x, 88");
  forms::FileDialog setup = text_dialog(true, "");
  setup.filter = "All Files (*.*)|*.*|I2C_General Setup Files(*.kvt)|*.kvt";
  when_open<QFileDialog>([&](QFileDialog& dialog) {
    EXPECT_TRUE(dialog.windowTitle().startsWith("Save Setup: the file will be empty"));
    take(dialog, folder.path(), "filled.kvt");
  });
  const Replacing user("Empty It");
  EXPECT_TRUE(program.runtime.file_dialog(setup));
  EXPECT_TRUE(user.asked.contains("Saving empties it"));
}

TEST_F(WindowFrontEndTest, AFileIsOpenedWithoutAQuestion) {
  const QTemporaryDir folder;
  write_file(folder.filePath("there.txt"), "measured");
  when_open<QFileDialog>([&](QFileDialog& dialog) { take(dialog, folder.path(), "there.txt"); });
  const Replacing user("Cancel");
  EXPECT_EQ(program.runtime.file_dialog(text_dialog(false, "Select")),
            folder.filePath("there.txt").toStdString());
  EXPECT_TRUE(user.asked.isEmpty());
}

TEST_F(WindowFrontEndTest, AppendingToAFileAsksNothing) {
  const QTemporaryDir folder;
  write_file(folder.filePath("there.txt"), "measured");
  program.runtime.dispatch([&] { program.forms.touch("frmKVT71346").Show(); });
  turn();
  dynamic_cast<forms::CheckBox&>(*program.forms.loaded("frmKVT71346")->find("chkAppend")).Value = 1;
  when_open<QFileDialog>([&](QFileDialog& dialog) { take(dialog, folder.path(), "there.txt"); });
  const Replacing user("Cancel");
  EXPECT_TRUE(program.runtime.file_dialog(text_dialog(false, recording)));
  EXPECT_TRUE(user.asked.isEmpty());
}

// A long sleep gives Qt its turns, and the program none.
TEST_F(WindowFrontEndTest, ASleepPaintsButRunsNoHandler) {
  forms::SystemClock real;
  bool qt_ran = false;
  bool handler_ran = false;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, &timer, [&] { qt_ran = true; });
  timer.start(0);
  program.runtime.post([&] { handler_ran = true; });
  const auto before = real.now();
  front_end.sleep(real, std::chrono::milliseconds(40));
  EXPECT_GE(real.now() - before, std::chrono::milliseconds(40));
  EXPECT_TRUE(qt_ran);
  EXPECT_FALSE(handler_ran);
}

TEST_F(WindowFrontEndTest, ASleepOnTheVirtualClockIsAsLongAsAsked) {
  for (const int milliseconds : {1, 5, 6, 100}) {
    const auto before = clock.now();
    program.runtime.Sleep(milliseconds);
    EXPECT_EQ(clock.now() - before, std::chrono::milliseconds(milliseconds));
  }
}

TEST_F(WindowFrontEndTest, APauseEndsWithAnEventThatMayRun) {
  const auto length_of = [&](std::int64_t milliseconds) {
    const auto before = clock.now();
    program.runtime.Pause(milliseconds);
    return clock.now() - before;
  };
  turn();
  EXPECT_EQ(length_of(20000), std::chrono::seconds(20));
  QTimer::singleShot(0, [&] { program.runtime.post([] {}); });
  EXPECT_LT(length_of(20000), std::chrono::milliseconds(100));
  EXPECT_LT(length_of(20000), std::chrono::milliseconds(100)) << "it still waits";
  program.runtime.service();
  EXPECT_EQ(length_of(20000), std::chrono::seconds(20));
}

// It would come to nothing but a loop that doesn't sleep.
TEST_F(WindowFrontEndTest, APauseTakesNoEndFromAnEventThatFindsNoRoom) {
  std::function<void()> nest = [&] {
    program.runtime.post([&] { nest(); });
    if (program.runtime.has_room()) return program.runtime.DoEvents();
    const auto before = clock.now();
    program.runtime.Pause(1000);
    EXPECT_EQ(clock.now() - before, std::chrono::seconds(1));
    nest = [] {};
  };
  program.runtime.post([&] { nest(); });
  program.runtime.service();
}

TEST_F(WindowFrontEndTest, YieldsShowWhatChanged) {
  auto& start_panel = program.forms.touch<frmStartup>();
  start_panel.Caption = "Changed";
  forms::SystemClock real;
  const auto before = real.now();
  while (real.now() - before < std::chrono::milliseconds(100)) program.runtime.DoEvents();
  EXPECT_TRUE(window_of("frmStartup").windowTitle().startsWith("Changed"));
}

TEST_F(WindowFrontEndTest, IdlingEndsAtItsLimitAndAtAnEvent) {
  forms::SystemClock real;
  auto before = real.now();
  front_end.idle(std::chrono::milliseconds(20));
  EXPECT_LT(real.now() - before, std::chrono::seconds(5));
  QTimer::singleShot(1, [] {});
  before = real.now();
  front_end.idle(std::nullopt);
  EXPECT_LT(real.now() - before, std::chrono::seconds(5));
}

TEST(WindowsOfAnotherBoard, TheirTitlesNameNoBoard) {
  forms::VirtualClock clock;
  FakeDriver driver;
  window::WindowFrontEnd front_end;
  Program program(clock, driver, front_end);
  window::Windows windows(program, front_end);
  add_forms(program);
  start(program);
  windows.show_changes();
  EXPECT_EQ(windows.window_of("frmStartup")->windowTitle(),
            "Varzelin Light Sensor Demo with Script Execution");
  EXPECT_FALSE(windows.bench());
}

}  // namespace
}  // namespace varzelin::testing
