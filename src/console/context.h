// What the commands work on, and the kinds of command that there are.
#pragma once

#include <functional>

#include "boards/simulated/simulated_board.h"
#include "bridge/program.h"
#include "console/arguments.h"
#include "console/call_log.h"
#include "console/dialogs.h"
#include "console/json.h"
#include "console/refused.h"

namespace console {

struct Context {
  varzelin::Program& program;
  boards::SimulatedBoard* board;  // null on another board
  CallLog& calls;
  Dialogs& dialogs;
};

// A command that is done when it returns. The answer is the value written, if one was. Everything
// that can be refused is refused before the first piece of it is written.
using Immediate = void (*)(Context&, Arguments&, Json& answer);

// A command that runs handlers: everything that can be refused is refused first, what is left to do
// is the action.
using Action = std::function<void()>;
using Acting = Action (*)(Context&, Arguments&);

}  // namespace console
