// What holds for every script file, whatever its bytes. Used by the fuzzer and by the test that replays
// its corpus.
#pragma once

#include <string_view>

namespace varzelin {

// Both throw std::logic_error, with what is wrong, when a promise is broken.

// Parses the lines and loads the file into a panel.
void check_script_load(std::string_view file);
// Loads the file and runs it once on the simulated board; a hundred times slower.
void check_script_run(std::string_view file);

}  // namespace varzelin
