// Every command by its name.
#pragma once

#include <string_view>
#include <variant>

#include "console/context.h"

namespace console {

class Console;

// A command on the console's own course: it answers by itself, at once or later.
using Steering = void (*)(Console&, Arguments&);

using Command = std::variant<Immediate, Acting, Steering>;

// Throws Refused: "no such command: …".
const Command& find_command(std::string_view name);

}  // namespace console
