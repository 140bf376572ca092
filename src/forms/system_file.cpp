#include "forms/system_file.h"

#include <unistd.h>

#include <cerrno>

#include "forms/errors.h"

namespace forms {

bool Descriptor::close() {
  const int descriptor = std::exchange(descriptor_, -1);
  return descriptor < 0 || ::close(descriptor) == 0;
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
