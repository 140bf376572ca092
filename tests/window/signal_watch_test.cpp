// The program's end by a signal while Qt waits.
#include "window/signal_watch.h"

#include <QApplication>
#include <QMenu>
#include <QMessageBox>
#include <QTimer>
#include <csignal>
#include <optional>

#include "panels/single_channel/kvt71346.h"
#include "support/window_of_program.h"

namespace varzelin::testing {
namespace {

struct SignalWatchTest : WindowOfProgram {
  const forms::EndSignals end_signals;
  const window::SignalWatch watch{program, front_end, end_signals};
};

TEST_F(SignalWatchTest, AnIdleProgramEnds) {
  QTimer::singleShot(0, [] { std::raise(SIGTERM); });
  program.runtime.run(program.forms);
  EXPECT_TRUE(program.runtime.ended());
}

TEST_F(SignalWatchTest, ACollectionWithALongIntervalEndsAtOnce) {
  choose_model(0);
  program.forms.touch<frmKVT71346>().txtInterval.Text = "20000";
  std::optional<std::int64_t> raised;
  QTimer user;
  QObject::connect(&user, &QTimer::timeout, &user, [&] {
    if (program.store.Sample_Count < 2 || raised) return;
    raised = program.runtime.timeGetTime();
    std::raise(SIGHUP);
  });
  user.start(0);
  click("frmKVT71346", "cmdCollectData");
  EXPECT_TRUE(turn_ends());
  ASSERT_TRUE(raised);
  EXPECT_LT(program.runtime.timeGetTime() - *raised, 100);
}

TEST_F(SignalWatchTest, ALongSleepEndsAtOnce) {
  program.runtime.post([&] {
    QTimer::singleShot(0, [] { std::raise(SIGTERM); });
    program.runtime.Sleep(3'600'000);
    EXPECT_LT(program.runtime.timeGetTime(), 100);
    program.runtime.DoEvents();
    ADD_FAILURE() << "the handler goes on";
  });
  program.runtime.run(program.forms);
}

TEST_F(SignalWatchTest, AMenuThatHoldsUpTheLoopIsClosed) {
  QMenu menu;
  menu.addAction("Stay");
  program.runtime.post([&] {
    QTimer::singleShot(0, [] { std::raise(SIGTERM); });
    QTimer in_the_end;
    QObject::connect(&in_the_end, &QTimer::timeout, &menu, [&menu] {
      ADD_FAILURE() << "the menu stays open";
      menu.close();
    });
    in_the_end.start(5000);
    menu.exec();
    program.runtime.DoEvents();
    ADD_FAILURE() << "the handler goes on";
  });
  program.runtime.run(program.forms);
}

// Cancels a dialog that is still open after some of Qt's turns.
void fail_if_open(int turns) {
  if (turns > 0) return QTimer::singleShot(0, [turns] { fail_if_open(turns - 1); });
  auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
  if (!dialog) return;
  ADD_FAILURE() << "a dialog stays open";
  dialog->reject();
}

TEST_F(SignalWatchTest, DialogsAreCancelledAndTheProgramEnds) {
  std::vector<int> answers;
  program.runtime.post([&] {
    QTimer::singleShot(0, [] {
      EXPECT_TRUE(qobject_cast<QMessageBox*>(QApplication::activeModalWidget()));
      std::raise(SIGINT);
      fail_if_open(20);
    });
    answers.push_back(program.runtime.MsgBox("Go on?", forms::vbYesNo));
    QTimer::singleShot(0, [] { fail_if_open(20); });
    answers.push_back(program.runtime.MsgBox("Still?", forms::vbOKCancel));
    program.runtime.DoEvents();
    ADD_FAILURE() << "the handler goes on";
  });
  program.runtime.run(program.forms);
  EXPECT_EQ(answers, (std::vector{forms::vbNo, forms::vbCancel}));
}

}  // namespace
}  // namespace varzelin::testing
