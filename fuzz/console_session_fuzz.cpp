// Whole sessions on the console, on every panel. While one runs the current folder is one of its own, so give
// -artifact_prefix as an absolute path. With VARZELIN_SHOW_SESSION set the lines of each session are shown.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>

#include "console_session_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto session = varzelin::fuzz::check_console_session({reinterpret_cast<const char*>(data), size});
  if (std::getenv("VARZELIN_SHOW_SESSION")) {
    for (const std::string& line : session) std::cerr << line << '\n';
  }
  return 0;
}
