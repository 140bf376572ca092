// How a form's work goes: what a front end tells beside the form's own labels, which say the same through
// whatever ends a run.
#pragma once

#include <cstdint>
#include <string>

namespace varzelin {

struct RunState {
  enum class Kind { none, collection, timed, test };  // none: nothing has run since the panel was loaded
  enum class End { by_user, board_gone, transfer_failed, run_time_error, completed };

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

struct ScriptState {
  enum class End { none, completed, by_user, by_failed_read };  // none: nothing has run since the load

  bool runs = false;  // between the passes of a loop, too
  End end = End::none;
  std::int32_t row = 0;  // in execution, or the last one that was; 0: before the first
  std::int32_t rows = 0;
  std::int32_t loop = 0;    // the pass under way in a loop, from 1; 0: no loop runs
  std::string passed = {};  // reads of this pass
  std::string failed = {};
  bool board_gone = false;
  std::int32_t load_line = 0;   // the line that the last load came to
  std::string load_error = {};  // what ended it; empty: the end of the file
};

// A form that runs scripts.
class RunsScript {
 public:
  virtual ~RunsScript() = default;
  virtual ScriptState script_state() const = 0;
};

}  // namespace varzelin
