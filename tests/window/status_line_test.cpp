// The status line of a window, and what it says of the work there.
#include <QScrollArea>
#include <QScrollBar>
#include <fstream>

#include "bridge/run_state.h"
#include "shell/start_panel.h"
#include "support/panel_window.h"
#include "support/temporary_folder.h"
#include "window/arranger.h"

namespace varzelin::testing {
namespace {

struct StatusLine : PanelWindow {
  QString state() { return widget<QLabel>(window::run_state_name).text(); }
  // While a collection of so many readings goes on.
  QString state_in_a_collection(std::int32_t readings) {
    QString during;
    collect(readings, [&] {
      refresh();
      during = state();
    });
    return during;
  }
  // Where a widget stands in its window.
  QRect place_of(const char* name) {
    auto& found = widget<QWidget>(name);
    return {found.mapTo(&window_of(form), QPoint()), found.size()};
  }
  void expect_in_sight(QSize client) {
    window_of(form).resize(client);
    turn();
    settle();
    ASSERT_EQ(window_of(form).size(), client);
    for (const char* name :
         {"ShpAttach", "Label13", "LblCommTest", "lblLoop_Count", "Label18", window::run_state_name}) {
      EXPECT_TRUE(QRect(QPoint(), client).contains(place_of(name))) << form << " " << name;
    }
  }
};

TEST_F(StatusLine, IsInSightWhateverTheWindowsSize) {
  open(0);
  for (const ModelRow& model : model_list) {
    form = model.panel;
    show(form);
    // A screen of 1366 x 768 with a task bar, at 1, 1.5 and 2 times scale.
    for (const QSize client : {QSize(1366, 680), QSize(910, 453), QSize(683, 340)}) expect_in_sight(client);
  }
}

TEST_F(StatusLine, HasRoomForTheWordsOfTheControlRegister) {
  open(0);
  window_of(form).resize(1366, 680);
  for (const char* words : {"Control Register Not Initialized", "Control Register set to 8C Hex"}) {
    dynamic_cast<forms::Label&>(*program.forms.loaded(form)->find("lblRegSet")).Caption = words;
    turn();
    settle();
    const auto& label = widget<QLabel>("lblRegSet");
    EXPECT_GE(label.width(), label.sizeHint().width()) << words;
  }
}

TEST_F(StatusLine, NothingMovesWhenAVerdictOrLongWordsAppear) {
  open(1);
  window_of(form).resize(1366, 680);
  turn();
  const auto all = [this] {
    settle();
    std::map<std::string, QRect> places;
    for (const forms::Control* control : program.forms.loaded(form)->controls()) {
      const std::string name = control->full_name();
      if (const auto* each = window_of(form).findChild<QWidget*>(QString::fromStdString(name)))
        places[name] = each->isVisible() ? place_of(name.c_str()) : QRect();
    }
    return places;
  };
  const auto before = all();
  auto& panel = *program.forms.loaded(form);
  dynamic_cast<forms::Label&>(*panel.find("Label18")).Caption = std::string(300, 'W');
  auto& verdict = dynamic_cast<forms::Label&>(*panel.find("LblCommTest"));
  verdict.Caption = "Good";
  verdict.Visible = true;
  turn();
  const auto behind = all();
  for (const auto& [name, place] : before) {
    if (name != "LblCommTest") {
      EXPECT_EQ(behind.at(name), place) << name;
    }
  }
}

TEST_F(StatusLine, TellsHowTheMeasuringGoes) {
  open(1);
  EXPECT_EQ(state(), "idle");
  const QString during = state_in_a_collection(25);
  EXPECT_TRUE(during.startsWith("collecting, ") && during.endsWith(" 15 readings")) << during.toStdString();
  EXPECT_EQ(state(), "stopped by the user");
}

// The bridge answers for a sensor that doesn't, so the lamp of the link stays green.
TEST_F(StatusLine, TellsOfASensorThatDoesntAnswerWhileTheLampIsGreen) {
  open(1);
  board.set_sensor_answers(false);
  EXPECT_EQ(state_in_a_collection(25), "collecting; no answer from the sensor (25 of 25 readings)");
  EXPECT_EQ(lamp("ShpAttach"), "light green");
  EXPECT_TRUE(state().startsWith("stopped by the user; no answer from the sensor ("))
      << state().toStdString();
}

TEST_F(StatusLine, TellsWhatEndedACollection) {
  open(1);
  board.unplug();
  collect(25);
  EXPECT_EQ(state(), "stopped: board unplugged");
  board.plug();
  collect(25, [this] { board.fail_transfers(1, boards::statuses::time_out); });
  EXPECT_EQ(state(), "stopped: a transfer failed");
}

TEST_F(StatusLine, TellsThatTheFileKeepsTheFirstReadingsOnly) {
  open(0);
  EXPECT_EQ(state_in_a_collection(1010), "collecting; chart full: the file keeps the first 999");
  EXPECT_EQ(state(), "stopped by the user; the file keeps the first 999");
}

// Nobody checks the reads of a timed run here: it goes on.
TEST_F(StatusLine, TellsOfATimedRunWhichReadingsAreStoredAsZero) {
  open(1);
  const auto is_stored_as_zero = [](const QString& words, const char* why) {
    return words.startsWith(QString("sampling; ") + why + " (") && words.endsWith(" readings, stored as 0)");
  };
  QString without_answer;
  QString without_board;
  program.store.Sample_Count = 0;
  run("cmdSample", [&] {
    const std::int32_t count = program.store.Sample_Count;
    if (count >= 10 && count < 20) board.set_sensor_answers(false);
    if (count >= 20 && without_answer.isEmpty()) {
      refresh();
      without_answer = state();
      board.unplug();
    }
    if (count < 30) return;
    if (without_board.isEmpty()) {
      refresh();
      without_board = state();
    }
    widget<QAbstractButton>("cmdEndSampling").click();
  });
  EXPECT_TRUE(is_stored_as_zero(without_answer, "no answer from the sensor")) << without_answer.toStdString();
  EXPECT_TRUE(is_stored_as_zero(without_board, "board unplugged")) << without_board.toStdString();
  EXPECT_EQ(program.store.Sample_Value[25], 0);
}

struct ScriptStatusLine : StatusLine {
  const TemporaryFolder folder;

  void load(const char* script) {
    const std::string path = folder.path("script.txt");
    std::ofstream(path) << script;
    form = "frmScriptOps";
    front_end.give_file(path);
    program.runtime.dispatch([this] { program.forms.touch(form).Show(); });
    turn();
  }
};

TEST_F(ScriptStatusLine, TellsHowAScriptGoes) {
  load("08,5A,5A\n08,,5B\n08,,5A\n");
  EXPECT_EQ(state(), "idle");
  const auto& script = dynamic_cast<const RunsScript&>(*program.forms.loaded(form));
  QString during;
  run("cmdRunContinuous", [&] {
    if (!during.isEmpty() || script.script_state().loop < 3) return;
    refresh();
    during = state();
    widget<QAbstractButton>("cmdAbort").click();
  });
  EXPECT_TRUE(during.startsWith("running row ") && during.contains(" of 3 in loop ")) << during.toStdString();
  EXPECT_TRUE(state().startsWith("stopped by the user in row ")) << state().toStdString();
  board.unplug();
  click("cmdExecAll");
  EXPECT_TRUE(state().startsWith("done: ") && state().endsWith("; board unplugged")) << state().toStdString();
}

// A load that fails says so nowhere else.
TEST_F(ScriptStatusLine, TellsOfALoadThatEndedEarly) {
  load("08,5A,5A\n`w40000\n");
  EXPECT_EQ(state(), "load ended in line 2: Overflow; the file stays open");
}

}  // namespace
}  // namespace varzelin::testing
