#include "window/state_words.h"

#include "window/look.h"

namespace window {
namespace {

using varzelin::RunState;
using varzelin::ScriptState;

// What is wrong with the readings, or nothing.
QString trouble(const RunState& state) {
  const bool timed = state.kind == RunState::Kind::timed;
  if (state.unanswered > 0) {
    return QString("%1 (%2 of %3 readings%4)")
        .arg(state.board_gone && state.runs ? "board unplugged" : "no answer from the sensor")
        .arg(state.unanswered)
        .arg(state.readings)
        .arg(timed ? ", stored as 0" : "");
  }
  if (!state.store_full) return {};
  return QString(state.runs ? "chart full: the file keeps the first %1" : "the file keeps the first %1")
      .arg(state.kept);
}

QString running(const RunState& state) {
  const bool timed = state.kind == RunState::Kind::timed;
  const bool test = state.kind == RunState::Kind::test;
  const QString what = test ? "testing" : timed ? "sampling" : "collecting";
  if (const QString wrong = trouble(state); !wrong.isEmpty()) return what + "; " + wrong;
  QString words = what;
  if (state.ms_a_sample > 0) words += QString(", %1 ms a sample").arg(state.ms_a_sample);
  const int counted = timed || test ? state.readings : state.captured;
  return counted > 0 ? words + QString(", %1 readings").arg(counted) : words;
}

QString how_it_ended(RunState::End end) {
  switch (end) {
    case RunState::End::board_gone:
      return "stopped: board unplugged";
    case RunState::End::transfer_failed:
      return "stopped: a transfer failed";
    case RunState::End::run_time_error:
      return "stopped: run-time error";
    case RunState::End::completed:
      return "done";
    case RunState::End::by_user:
      break;
  }
  return "stopped by the user";
}

// A load that an error ended is told nowhere else.
QString before_a_run(const ScriptState& state) {
  if (state.load_error.empty()) return "idle";
  if (state.load_line == 0) return "not loaded: " + to_qt(state.load_error);
  return QString("load ended in line %1: %2; the file stays open")
      .arg(state.load_line)
      .arg(to_qt(state.load_error));
}

}  // namespace

QString state_words(const RunState& state) {
  if (state.kind == RunState::Kind::none) return "idle";
  if (state.runs) return running(state);
  const QString ended = how_it_ended(state.end);
  const QString wrong = trouble(state);
  const bool by_itself = state.end == RunState::End::by_user || state.end == RunState::End::completed;
  return wrong.isEmpty() || !by_itself ? ended : ended + "; " + wrong;
}

QString state_words(const ScriptState& state) {
  if (!state.runs && state.end == ScriptState::End::none) return before_a_run(state);
  const QString place = QString("row %1 of %2").arg(state.row).arg(state.rows);
  const QString reads = QString(": %1 passed, %2 failed").arg(to_qt(state.passed), to_qt(state.failed));
  const QString board = state.board_gone ? "; board unplugged" : "";
  if (state.runs) {
    const QString loop = state.loop > 0 ? QString(" in loop %1").arg(state.loop) : "";
    return "running " + place + loop + reads + board;
  }
  switch (state.end) {
    case ScriptState::End::by_user:
      return "stopped by the user in " + place + reads + board;
    case ScriptState::End::by_failed_read:
      return "stopped by a failed read in " + place + reads + board;
    default:
      return "done" + reads + board;
  }
}

}  // namespace window
