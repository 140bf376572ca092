#include <cstddef>
#include <cstdint>

#include "recording_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  varzelin::fuzz::check_recording({reinterpret_cast<const char*>(data), size});
  return 0;
}
