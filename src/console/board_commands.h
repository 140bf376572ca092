// The commands that work on the simulated board: `board WHAT …`.
#pragma once

#include "console/context.h"

namespace console {

void board(Context& context, Arguments& arguments, Json& answer);

}  // namespace console
