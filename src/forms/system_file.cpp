#include "forms/system_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "forms/errors.h"

namespace forms {

bool Descriptor::close() {
  const int descriptor = std::exchange(descriptor_, -1);
  return descriptor < 0 || ::close(descriptor) == 0;
}

void take_standard_descriptors() {
  for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    const bool is_open = ::fcntl(standard, F_GETFD) >= 0;
    // The lowest free number is this one. Of O_PATH nothing is read or written.
    if (!is_open) ::open("/", O_PATH);
  }
}

void raise_system_error(int system_error) {
  switch (system_error) {
    case EACCES:
    case EPERM:
    case EROFS:
    case ETXTBSY:
      raise_error(permission_denied);
    case ENOTDIR:
      raise_error(path_not_found);
    case EISDIR:
    case ELOOP:
    case ENXIO:
      raise_error(path_file_access_error);
    case ENAMETOOLONG:
    case EILSEQ:
      raise_error(bad_file_name_or_number);
    case EMFILE:
    case ENFILE:
      raise_error(too_many_files);
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      raise_error(disk_full);
    default:
      raise_error(device_io_error);
  }
}

}  // namespace forms
