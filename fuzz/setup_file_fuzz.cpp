// Any bytes as a setup file: the reader raises run-time errors at most, and blank rows are blank.
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>

#include "support/setup_file_check.h"

namespace {

// A file in memory, so that no disk is in the way.
class MemoryFile {
 public:
  std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }
  void fill(const std::uint8_t* data, std::size_t size) const {
    if (::ftruncate(descriptor_, 0) != 0) std::abort();
    if (::pwrite(descriptor_, data, size, 0) != static_cast<ssize_t>(size)) std::abort();
  }

 private:
  int descriptor_ = ::memfd_create("setup", 0);
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const MemoryFile file;
  file.fill(data, size);
  const int error = varzelin::testing::check_setup_file(file.path());
  if (error != 0 && error != forms::input_past_end_of_file) std::abort();
  return 0;
}
