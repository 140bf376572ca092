// libFuzzer's entry: any bytes as a script file that is loaded and run. Used as script_loader_fuzz.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "script_loader_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  varzelin::check_script_run({reinterpret_cast<const char*>(data), size});
  return 0;
}
