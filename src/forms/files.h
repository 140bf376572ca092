// Files by number, with the platform's statements and errors. Lines are written with CR LF; on
// reading, CR LF, a lone LF and a lone CR end a line. An open file stays open until it is closed or
// its Files object goes.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace forms {

class Files {
 public:
  enum class Mode { Input, Output, Append };

  Files();
  ~Files();
  Files(const Files&) = delete;
  Files& operator=(const Files&) = delete;

  // The lowest number not in use, from 1; raises too_many_files beyond 255.
  int FreeFile() const;

  // Raises file_not_found (input of a missing file), path_not_found (missing folder),
  // permission_denied, path_file_access_error (a directory, a device that isn't a plain file, a FIFO:
  // never opened, so that nothing hangs on it), file_already_open (this number is in use, or this
  // file is open under another), bad_file_name_or_number (number outside 1..255, empty path).
  void Open(std::string_view path, Mode mode, int number);
  // Closing a number that isn't open does nothing.
  void Close(int number);
  // Bytes of a file opened for output reach the disk at the latest here; raises disk_full or
  // device_io_error when they can't.
  bool Eof(int number);  // true when nothing is left to read
  // The next line without its end. Raises input_past_end_of_file; bad_file_mode on a file opened
  // for writing.
  std::string LineInput(int number);
  // The next item of comma-separated input: blanks around it dropped, double quotes taken off.
  std::string InputItem(int number);
  // Writes the text and CR LF.
  void PrintLine(int number, std::string_view text);

 private:
  struct OpenFile;
  OpenFile& get(int number);
  std::map<int, std::unique_ptr<OpenFile>> open_;
};

}  // namespace forms
