// Files by number, with the platform's statements and errors. Lines are written with CR LF; on
// reading, CR LF, a lone LF and a lone CR end a line. Every other character is an ordinary one, NUL
// included. An open file stays open until it is closed or its Files object goes.
//
// A number that isn't open raises bad_file_name_or_number in every operation but Close. Reading from a
// file that is open for writing, and writing to one that is open for reading, raises bad_file_mode.
// Every operation raises device_io_error when the system fails in a way that has no number of its own.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace forms {

// The longest line or item that is read, and the largest file, in bytes: what no one writes by hand or by
// this program must not take all memory. Beyond, reading raises input_too_large, whose text says which it is.
inline constexpr std::size_t longest_line = 1024 * 1024;
inline constexpr std::size_t largest_input = 64 * 1024 * 1024;

class Files {
 public:
  enum class Mode { Input, Output, Append };

  Files();
  // Writes what is still kept back, and can't tell anybody when that fails: close to know.
  ~Files();
  Files(const Files&) = delete;
  Files& operator=(const Files&) = delete;

  // The lowest number not in use, from 1; raises too_many_files beyond 255.
  int FreeFile() const;

  // Output empties the file, Append writes behind its end; both create a missing one. What Output finds in
  // the file is put aside beside it until the file is closed (forms/overwriting.h).
  //
  // Raises bad_file_name_or_number (number outside 1..255; empty, overlong or otherwise impossible
  // path), file_already_open (this number is in use, or this file is open under another, by whatever
  // path; the file is left as it is), file_not_found (input of a missing file), path_not_found (missing
  // folder), permission_denied, path_file_access_error (a directory, or anything else that isn't a
  // plain file: never opened, so that nothing hangs on a FIFO or a device), too_many_files, disk_full,
  // input_too_large; and permission_denied where two programs overwrite a file whose folder takes no other
  // one.
  void Open(std::string_view path, Mode mode, int number);
  // Closing a number that isn't open does nothing. What was printed reaches the file at the latest
  // here: raises disk_full or device_io_error when it can't, and the file is closed all the same. What was
  // put aside then stays; so it does when the file is never closed.
  void Close(int number);
  // True when nothing is left to read, and always for a file open for writing.
  bool Eof(int number);
  // The next line without its end. Raises input_past_end_of_file.
  std::string LineInput(int number);
  // The next item. A comma or a line end ends it, so an empty line is an empty item; blanks around it
  // are dropped. In an item that begins with a double quote, everything up to the next double quote
  // (or the end of the file) counts, commas, blanks and line ends too; text behind the closing quote
  // is the next item. A comma at the very end of the file has no item behind it.
  // Raises input_past_end_of_file.
  std::string InputItem(int number);
  // Writes the text and CR LF. A disk_full raised here is of earlier lines that were kept back: this
  // one was not taken.
  void PrintLine(int number, std::string_view text);

  // Files that were opened for output and are still open or couldn't be written whole, and where the content
  // is that they had before. Each is told once.
  struct PutAside {
    std::string path;
    std::string earlier;
  };
  std::vector<PutAside> take_put_aside();

 private:
  struct OpenFile;
  OpenFile& get(int number) const;
  OpenFile& get_for_input(int number) const;
  void note_put_aside(OpenFile& file);
  std::map<int, std::unique_ptr<OpenFile>> open_;
  std::vector<PutAside> left_;
};

}  // namespace forms
