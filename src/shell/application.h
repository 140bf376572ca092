// The program put together: every form by its name, and the first one on screen.
#pragma once

#include "bridge/program.h"

namespace varzelin {

// The program's name as it stands in titles and messages.
inline constexpr const char* application_title = "Varzelin ALS Demonstration";
// Major, minor, revision.
inline constexpr const char* application_version = "5.4.1";

// Tells the program which forms there are.
void add_forms(Program& program);

// Shows the start panel. The main loop (program.runtime.run) does the rest.
void start(Program& program);

}  // namespace varzelin
