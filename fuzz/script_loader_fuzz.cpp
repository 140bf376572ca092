// libFuzzer's entry: any bytes as a script file.
//
//     cmake --preset fuzz && cmake --build --preset fuzz
//     build/fuzz/bin/script_loader_fuzz NEW_FINDINGS fuzz/corpus/script
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "script_loader_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  varzelin::check_script_load({reinterpret_cast<const char*>(data), size});
  return 0;
}
