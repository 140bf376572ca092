// A disk that takes nothing while a test says so: a definition in the place of the C library's, so for one
// file of a test program.
#pragma once

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

namespace varzelin::testing {

inline mode_t failing = 0;

class FailingDisk {
 public:
  // Plain files or folders (S_IFREG, S_IFDIR).
  explicit FailingDisk(mode_t kind) { failing = kind; }
  ~FailingDisk() { failing = 0; }
  FailingDisk(const FailingDisk&) = delete;
  FailingDisk& operator=(const FailingDisk&) = delete;
};

}  // namespace varzelin::testing

extern "C" int fsync(int file) {
  struct stat state {};
  if (::fstat(file, &state) != 0 || (state.st_mode & S_IFMT) != varzelin::testing::failing) {
    return static_cast<int>(::syscall(SYS_fsync, file));
  }
  errno = EIO;
  return -1;
}
