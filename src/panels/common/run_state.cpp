// How a run goes, for whoever asks.
#include <algorithm>

#include "panels/common/sensor_panel.h"

namespace varzelin {

void SensorPanel::run_begins(RunState::Kind kind) {
  run_ = {.kind = kind, .missing_before = missing_replies(), .failed_before = failed_transfers()};
}

// A reading may take several replies.
void SensorPanel::run_took_reading() {
  run_.latest_ms = timeGetTime();
  if (run_.readings++ == 0) run_.first_ms = run_.latest_ms;
  if (missing_replies() != run_.missing_before) ++run_.unanswered;
  run_.missing_before = missing_replies();
}

// A failed transfer ends a run but for the timed one whose transfers nobody checks.
void SensorPanel::run_ends() {
  const bool stops = run_.kind == RunState::Kind::collection || model.transfers == Transfers::checked;
  const bool failed = failed_transfers() != run_.failed_before;
  run_.end = stops && failed ? RunState::End::transfer_failed : RunState::End::by_user;
}

// That the board is gone is heard of behind the transfer that failed.
void SensorPanel::run_is_over() {
  if (run_.end == RunState::End::transfer_failed && board_gone()) run_.end = RunState::End::board_gone;
}

RunState SensorPanel::run_state() const {
  const std::int32_t steps = run_.readings - 1;
  return {.kind = run_.kind,
          .runs = run_.kind == RunState::Kind::timed ? sampling_ : collecting_,
          .end = run_.end,
          .readings = run_.readings,
          .unanswered = run_.unanswered,
          .captured = std::max(0, run_.readings - settling_samples),
          .ms_a_sample = steps > 0 ? (run_.latest_ms - run_.first_ms) / steps : 0,
          .board_gone = board_gone(),
          .store_full = store.Sample_Count == last_sample,
          .kept = last_sample - first_written};
}

}  // namespace varzelin
