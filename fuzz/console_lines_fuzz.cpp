// Any bytes as lines of the console.
#include <cstddef>
#include <cstdint>

#include "console_lines_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  varzelin::fuzz::check_console_lines({reinterpret_cast<const char*>(data), size});
  return 0;
}
