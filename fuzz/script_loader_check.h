// What holds for every script file, whatever its bytes. Used by the fuzzer and by the test that replays
// its corpus.
#pragma once

#include <string_view>

namespace varzelin {

// Parses the lines, loads the file into a panel and runs it once on the simulated board. Throws
// std::logic_error, with what is wrong, when a promise is broken.
void check_script(std::string_view file);

}  // namespace varzelin
