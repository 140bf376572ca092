#include "window/state_words.h"

namespace window {
namespace {

using varzelin::RunState;

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
  const QString what = timed ? "sampling" : "collecting";
  if (const QString wrong = trouble(state); !wrong.isEmpty()) return what + "; " + wrong;
  QString words = what;
  if (state.ms_a_sample > 0) words += QString(", %1 ms a sample").arg(state.ms_a_sample);
  const int counted = timed ? state.readings : state.captured;
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
    case RunState::End::by_user:
      break;
  }
  return "stopped by the user";
}

}  // namespace

QString state_words(const RunState& state) {
  if (state.kind == RunState::Kind::none) return "idle";
  if (state.runs) return running(state);
  const QString ended = how_it_ended(state.end);
  const QString wrong = trouble(state);
  return wrong.isEmpty() || state.end != RunState::End::by_user ? ended : ended + "; " + wrong;
}

}  // namespace window
