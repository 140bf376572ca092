// How a panel's measuring goes: what a front end tells beside the panel's own labels, which say the same
// through whatever ends a run.
#pragma once

#include <cstdint>

namespace varzelin {

struct RunState {
  enum class Kind { none, collection, timed };  // none: nothing has run since the panel was loaded
  enum class End { by_user, board_gone, transfer_failed, run_time_error };

  Kind kind = Kind::none;  // of the present run, or of the last one
  bool runs = false;
  End end = End::by_user;        // of a run that is over
  std::int32_t readings = 0;     // all that the run took, those with no answer among them
  std::int32_t unanswered = 0;   // the sensor didn't acknowledge, or a transfer failed
  std::int32_t captured = 0;     // of a collection: beyond those that let the sensor settle
  std::int64_t ms_a_sample = 0;  // on the average; 0 before the second reading
  bool board_gone = false;
  bool store_full = false;  // further readings overwrite the last one
  std::int32_t kept = 0;    // readings that the measurement file has when the store is full
};

// A form that measures.
class Measuring {
 public:
  virtual ~Measuring() = default;
  virtual RunState run_state() const = 0;
};

}  // namespace varzelin
