// A plain file that is written anew. What it held is put aside beside it, as "Data.txt~" ("Data.txt~2" and so
// on where that name is taken), until the new content is whole and on the disk: a failure or a crash leaves
// it there.
//
// The file is locked against others that overwrite it (flock), so each one's content stays whole; the last
// one's stands at the path. In place are written, without a copy: an empty file, one with several names, and
// one whose folder doesn't take another file, or not with the same owner.
#pragma once

#include <string>

#include "forms/system_file.h"

namespace forms {

class Overwriting {
 public:
  // `file` is the plain file at `path`, open for writing with O_APPEND. Links are followed.
  // Raises permission_denied when it has to be written in place and another program is writing it; disk_full
  // and device_io_error. The file then is what it was.
  Overwriting(Descriptor file, const std::string& path);

  int descriptor() const { return file_.get(); }
  // Where the earlier content is; empty when nothing was put aside.
  const std::string& put_aside() const { return put_aside_; }
  // All is written: takes it to the disk, closes it and removes what was put aside. Raises disk_full or
  // device_io_error, and then leaves that.
  void finish();

 private:
  void replace(const std::string& path);

  Descriptor file_;
  std::string put_aside_;
};

}  // namespace forms
