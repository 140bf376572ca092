#include "forms/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>

#include "forms/errors.h"
#include "forms/overwriting.h"
#include "forms/system_file.h"

namespace forms {
namespace {

constexpr int last_file_number = 255;
constexpr std::size_t buffer_size = 65536;
// What is printed is written at once up to here, so that no other program's lines come between.
constexpr std::size_t most_kept_back = 1024 * 1024;

bool is_there(const std::string& path) {
  struct stat info;
  return ::stat(path.c_str(), &info) == 0;
}

std::string folder_of(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

// Nothing stands at the path: is it the file that misses, or the folder for it?
[[noreturn]] void raise_missing(const std::string& path, Files::Mode mode) {
  const bool only_file = mode == Files::Mode::Input && is_there(folder_of(path));
  raise_error(only_file ? file_not_found : path_not_found);
}

int open_flags(Files::Mode mode) {
  // O_NONBLOCK: a FIFO that took the file's place since it was looked at must not block.
  constexpr int always = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
  return always | (mode == Files::Mode::Input ? O_RDONLY : O_WRONLY | O_CREAT | O_APPEND);
}

[[noreturn]] void raise_too_large(const char* what) {
  throw RunTimeError{input_too_large, what};
}

// Opens a plain file and nothing else.
Descriptor open_plain_file(const std::string& path, Files::Mode mode) {
  struct stat info;
  if (::stat(path.c_str(), &info) == 0) {
    if (!S_ISREG(info.st_mode)) raise_error(path_file_access_error);
  } else if (errno != ENOENT) {
    raise_system_error(errno);
  }
  Descriptor file(::open(path.c_str(), open_flags(mode), 0666));
  if (file.get() >= 0) return file;
  if (errno == ENOENT) raise_missing(path, mode);
  raise_system_error(errno);
}

}  // namespace

struct Files::OpenFile {
  OpenFile(const std::string& file_path, Mode file_mode)
      : path(file_path), mode(file_mode), file(open_plain_file(path, mode)) {
    identify();
  }

  void identify() {
    if (::fstat(descriptor(), &identity) != 0) raise_system_error(errno);
    if (!S_ISREG(identity.st_mode)) raise_error(path_file_access_error);
  }

  void begin_anew() {
    overwriting.emplace(std::move(file), path);
    identify();
  }

  int descriptor() const { return overwriting ? overwriting->descriptor() : file.get(); }

  void close() {
    if (mode != Mode::Input) flush();
    if (overwriting) {
      overwriting->finish();
    } else if (!file.close() && errno != EINTR) {
      raise_system_error(errno);
    }
  }

  static void check_size(std::size_t size) {
    if (size > largest_input) raise_too_large("The file is larger than 64 MiB");
  }

  bool is_same_file(const OpenFile& other) const {
    return identity.st_dev == other.identity.st_dev && identity.st_ino == other.identity.st_ino;
  }

  // Whether there is a next character to read.
  bool more() {
    if (position < buffer.size()) return true;
    buffer.resize(buffer_size);
    position = 0;
    ssize_t count = 0;
    do {
      count = ::read(descriptor(), buffer.data(), buffer.size());
    } while (count < 0 && errno == EINTR);
    buffer.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    if (count < 0) raise_system_error(errno);
    taken += buffer.size();
    check_size(taken);
    return count > 0;
  }

  bool take(char c) {
    if (!more() || buffer[position] != c) return false;
    ++position;
    return true;
  }

  bool take_line_end() {
    if (take('\r')) {
      take('\n');
      return true;
    }
    return take('\n');
  }

  void skip_blanks() {
    while (take(' ')) {
    }
  }

  // Everything in front of the first character that stops, which stays to be read.
  template <class Stops>
  std::string take_until(Stops stops) {
    std::string text;
    while (more()) {
      const auto begin = buffer.begin() + static_cast<std::ptrdiff_t>(position);
      const auto stop = std::find_if(begin, buffer.end(), stops);
      text.append(begin, stop);
      if (text.size() > longest_line) raise_too_large("A line of the file is longer than 1 MiB");
      position = static_cast<std::size_t>(stop - buffer.begin());
      if (stop != buffer.end()) break;
    }
    return text;
  }

  // Writes what is kept back. What can't be written stays.
  void flush() {
    while (!buffer.empty()) {
      const ssize_t count = ::write(descriptor(), buffer.data(), buffer.size());
      if (count >= 0) {
        buffer.erase(0, static_cast<std::size_t>(count));
      } else if (errno != EINTR) {
        raise_system_error(errno);
      }
    }
  }

  const std::string path;
  const Mode mode;
  Descriptor file;  // of a file that isn't written anew
  std::optional<Overwriting> overwriting;
  struct stat identity {};
  bool told = false;         // where its earlier content is
  std::string buffer;        // read and not yet taken, or printed and not yet written
  std::size_t position = 0;  // reading: the next character in the buffer
  std::size_t taken = 0;     // reading: so much of the file, which may be one that grows
};

Files::Files() = default;

Files::~Files() {
  for (const auto& entry : open_) {
    OpenFile& file = *entry.second;
    if (file.mode != Mode::Input) resume_next([&] { file.flush(); });
  }
}

int Files::FreeFile() const {
  int number = 1;
  while (open_.contains(number)) ++number;
  if (number > last_file_number) raise_error(too_many_files);
  return number;
}

void Files::Open(std::string_view path_text, Mode mode, int number) {
  const bool possible = !path_text.empty() && path_text.find('\0') == std::string_view::npos;
  if (number < 1 || number > last_file_number || !possible) raise_error(bad_file_name_or_number);
  if (open_.contains(number)) raise_error(file_already_open);

  auto file = std::make_unique<OpenFile>(std::string(path_text), mode);
  for (const auto& [other_number, other] : open_)
    if (file->is_same_file(*other)) raise_error(file_already_open);
  // Begun anew only now, so that a file that is open already keeps what it has.
  if (mode == Mode::Output) file->begin_anew();
  if (mode == Mode::Input) OpenFile::check_size(static_cast<std::size_t>(file->identity.st_size));
  open_.emplace(number, std::move(file));
}

void Files::Close(int number) {
  const auto found = open_.find(number);
  if (found == open_.end()) return;
  const auto file = std::move(found->second);
  open_.erase(found);
  try {
    file->close();
  } catch (const RunTimeError&) {
    note_put_aside(*file);
    throw;
  }
}

void Files::note_put_aside(OpenFile& file) {
  if (!file.overwriting || file.overwriting->put_aside().empty() || std::exchange(file.told, true)) return;
  left_.push_back({file.path, file.overwriting->put_aside()});
}

std::vector<Files::PutAside> Files::take_put_aside() {
  for (const auto& [number, file] : open_) note_put_aside(*file);
  return std::exchange(left_, {});
}

bool Files::Eof(int number) {
  OpenFile& file = get(number);
  return file.mode != Mode::Input || !file.more();
}

std::string Files::LineInput(int number) {
  OpenFile& file = get_for_input(number);
  std::string line = file.take_until([](char c) { return c == '\r' || c == '\n'; });
  file.take_line_end();
  return line;
}

std::string Files::InputItem(int number) {
  OpenFile& file = get_for_input(number);
  file.skip_blanks();
  std::string item;
  if (file.take('"')) {
    item = file.take_until([](char c) { return c == '"'; });
    file.take('"');
    file.skip_blanks();
  } else {
    item = file.take_until([](char c) { return c == ',' || c == '\r' || c == '\n'; });
    item.erase(item.find_last_not_of(' ') + 1);
  }
  if (!file.take(',')) file.take_line_end();
  return item;
}

void Files::PrintLine(int number, std::string_view text) {
  OpenFile& file = get(number);
  if (file.mode == Mode::Input) raise_error(bad_file_mode);
  if (file.buffer.size() >= most_kept_back) file.flush();
  file.buffer.append(text).append("\r\n");
}

Files::OpenFile& Files::get(int number) const {
  const auto found = open_.find(number);
  if (found == open_.end()) raise_error(bad_file_name_or_number);
  return *found->second;
}

Files::OpenFile& Files::get_for_input(int number) const {
  OpenFile& file = get(number);
  if (file.mode != Mode::Input) raise_error(bad_file_mode);
  if (!file.more()) raise_error(input_past_end_of_file);
  return file;
}

}  // namespace forms
