// The status line of a panel, and the words of its measuring.
#include <QScrollArea>
#include <QScrollBar>

#include "shell/start_panel.h"
#include "support/panel_window.h"
#include "window/arranger.h"
#include "window/state_words.h"

namespace varzelin::testing {
namespace {

using Kind = RunState::Kind;
using End = RunState::End;

std::string words(const RunState& state) {
  return window::state_words(state).toStdString();
}

TEST(StateWords, OfARun) {
  EXPECT_EQ(words({}), "idle");
  RunState run{.kind = Kind::collection, .runs = true};
  EXPECT_EQ(words(run), "collecting");
  run.readings = 10;
  run.ms_a_sample = 113;
  EXPECT_EQ(words(run), "collecting, 113 ms a sample");
  run.readings = 522;
  run.captured = 512;
  EXPECT_EQ(words(run), "collecting, 113 ms a sample, 512 readings");
  run.kind = Kind::timed;
  EXPECT_EQ(words(run), "sampling, 113 ms a sample, 522 readings");
}

TEST(StateWords, OfAFullStore) {
  RunState run{.kind = Kind::collection, .runs = true, .readings = 2000, .store_full = true, .kept = 999};
  EXPECT_EQ(words(run), "collecting; chart full: the file keeps the first 999");
  run.runs = false;
  EXPECT_EQ(words(run), "stopped by the user; the file keeps the first 999");
}

TEST(StateWords, OfASensorThatDoesntAnswer) {
  RunState run{.kind = Kind::collection, .runs = true, .readings = 97, .unanswered = 12};
  EXPECT_EQ(words(run), "collecting; no answer from the sensor (12 of 97 readings)");
  run.kind = Kind::timed;
  EXPECT_EQ(words(run), "sampling; no answer from the sensor (12 of 97 readings, stored as 0)");
  run.board_gone = true;
  EXPECT_EQ(words(run), "sampling; board unplugged (12 of 97 readings, stored as 0)");
  run.runs = false;
  EXPECT_EQ(words(run), "stopped by the user; no answer from the sensor (12 of 97 readings, stored as 0)");
}

TEST(StateWords, OfAnEnd) {
  RunState run{.kind = Kind::collection, .readings = 97};
  EXPECT_EQ(words(run), "stopped by the user");
  run.unanswered = 1;
  run.end = End::board_gone;
  EXPECT_EQ(words(run), "stopped: board unplugged");
  run.end = End::transfer_failed;
  EXPECT_EQ(words(run), "stopped: a transfer failed");
  run.end = End::run_time_error;
  EXPECT_EQ(words(run), "stopped: run-time error");
}

struct StatusLine : PanelWindow {
  QString state() { return widget<QLabel>(window::run_state_name).text(); }
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
  QString during;
  collect(25, [&] {
    refresh();
    during = state();
  });
  EXPECT_TRUE(during.startsWith("collecting, ") && during.endsWith(" 15 readings")) << during.toStdString();
  EXPECT_EQ(state(), "stopped by the user");
  board.set_sensor_answers(false);
  collect(25, [&] {
    refresh();
    during = state();
  });
  EXPECT_EQ(during, "collecting; no answer from the sensor (25 of 25 readings)");
  board.unplug();
  collect(25);
  EXPECT_EQ(state(), "stopped: board unplugged");
}

}  // namespace
}  // namespace varzelin::testing
