#include "forms/overwriting.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "forms/errors.h"

namespace forms {
namespace {

constexpr int new_file = O_WRONLY | O_CREAT | O_EXCL | O_APPEND | O_CLOEXEC;

struct stat state_of(const Descriptor& file) {
  struct stat state;
  if (::fstat(file.get(), &state) != 0) raise_system_error(errno);
  return state;
}

// False when another one has the lock. A file system without locks knows no other one.
bool lock(const Descriptor& file) {
  return ::flock(file.get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

// The path behind all links; empty when there is none.
std::string resolved(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> text(::realpath(path.c_str(), nullptr), &std::free);
  return text ? text.get() : std::string();
}

// A new, empty and locked file beside `path`, whose name is left in `name`. Its descriptor is negative on
// failure, which is told by errno.
Descriptor make_beside(const std::string& path, std::string& name) {
  for (int number = 1;; ++number) {
    name = path + "~" + (number == 1 ? "" : std::to_string(number));
    Descriptor made(::open(name.c_str(), new_file, 0600));
    if (made.get() >= 0) lock(made);
    if (made.get() >= 0 || errno != EEXIST) return made;
  }
}

bool give_owner_and_mode(const Descriptor& file, const struct stat& like) {
  const struct stat own = state_of(file);
  const bool owned = own.st_uid == like.st_uid && own.st_gid == like.st_gid;
  if (!owned && ::fchown(file.get(), like.st_uid, like.st_gid) != 0) return false;
  return ::fchmod(file.get(), like.st_mode & 07777) == 0;
}

// Always false, with the error that there was.
bool give_up(const std::string& beside) {
  const int why = errno;
  ::unlink(beside.c_str());
  errno = why;
  return false;
}

// Puts `made`, which is at `beside`, in the place of `path`, and what is there to `beside`. On failure, which
// is told by errno, `made` is gone and the other one where it was.
bool exchange(const std::string& path, const std::string& beside, Descriptor& made) {
  if (::renameat2(AT_FDCWD, beside.c_str(), AT_FDCWD, path.c_str(), RENAME_EXCHANGE) == 0) return true;
  const bool unknown = errno == EINVAL || errno == ENOSYS;
  const struct stat state = state_of(made);
  if (!unknown || ::rename(path.c_str(), beside.c_str()) != 0) return give_up(beside);
  // A file system that can't exchange two names: for a moment nothing is at the path.
  made = Descriptor(::open(path.c_str(), new_file, 0600));
  if (made.get() >= 0 && lock(made) && give_owner_and_mode(made, state)) return true;
  const int why = errno;
  ::rename(beside.c_str(), path.c_str());
  errno = why;
  return false;
}

// Whether a file is written in place for this error: it isn't where the machine is short of something, for
// then the new content may come to nothing, too.
bool keeps_out(int system_error) {
  switch (system_error) {
    case ENOSPC:
    case EDQUOT:
    case EIO:
    case EMFILE:
    case ENFILE:
    case ENOMEM:
      return false;
    default:
      return true;
  }
}

}  // namespace

Overwriting::Overwriting(Descriptor file, const std::string& path) : file_(std::move(file)) {
  const bool mine = lock(file_);
  const struct stat state = state_of(file_);
  const bool worth_keeping = state.st_size > 0 || !mine;
  if (worth_keeping && state.st_nlink <= 1) replace(resolved(path));
  if (!put_aside_.empty()) return;
  if (!mine) raise_error(permission_denied);
  if (::ftruncate(file_.get(), 0) != 0) raise_system_error(errno);
}

// Leaves all as it is when the file has to be written in place.
void Overwriting::replace(const std::string& path) {
  if (path.empty()) return;
  std::string beside;
  Descriptor made = make_beside(path, beside);
  const bool alike = made.get() >= 0 && (give_owner_and_mode(made, state_of(file_)) || give_up(beside));
  if (alike && exchange(path, beside, made)) {
    file_ = std::move(made);
    put_aside_ = beside;
  } else if (!keeps_out(errno)) {
    raise_system_error(errno);
  }
}

void Overwriting::finish() {
  if (!put_aside_.empty() && ::fsync(file_.get()) != 0) raise_system_error(errno);
  if (!file_.close() && errno != EINTR) raise_system_error(errno);
  if (put_aside_.empty()) return;
  const std::string folder = put_aside_.substr(0, put_aside_.rfind('/') + 1);
  const Descriptor names(::open(folder.c_str(), O_RDONLY | O_CLOEXEC));
  if (::fsync(names.get()) != 0 && errno == EIO) raise_system_error(errno);
  ::unlink(put_aside_.c_str());
  put_aside_.clear();
}

}  // namespace forms
