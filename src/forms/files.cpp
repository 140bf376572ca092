#include "forms/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "forms/errors.h"

namespace forms {
namespace {

constexpr int last_file_number = 255;
constexpr std::size_t buffer_size = 65536;

// A system error while a file is opened, read or written.
[[noreturn]] void raise_system_error(int system_error) {
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
  switch (mode) {
    case Files::Mode::Input:
      return always | O_RDONLY;
    case Files::Mode::Output:
      return always | O_WRONLY | O_CREAT;
    case Files::Mode::Append:
      break;
  }
  return always | O_WRONLY | O_CREAT | O_APPEND;
}

// The system's handle of a file, closed when it goes.
class Descriptor {
 public:
  explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
  ~Descriptor() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int get() const { return descriptor_; }
  // False on failure, which is told by errno.
  bool close() {
    const int result = ::close(descriptor_);
    descriptor_ = -1;
    return result == 0;
  }

 private:
  int descriptor_;
};

// Opens a plain file and nothing else.
int open_plain_file(const std::string& path, Files::Mode mode) {
  struct stat info;
  if (::stat(path.c_str(), &info) == 0) {
    if (!S_ISREG(info.st_mode)) raise_error(path_file_access_error);
  } else if (errno != ENOENT) {
    raise_system_error(errno);
  }
  const int descriptor = ::open(path.c_str(), open_flags(mode), 0666);
  if (descriptor >= 0) return descriptor;
  if (errno == ENOENT) raise_missing(path, mode);
  raise_system_error(errno);
}

}  // namespace

struct Files::OpenFile {
  OpenFile(int descriptor, Mode file_mode) : file(descriptor), mode(file_mode) {
    if (::fstat(file.get(), &identity) != 0) raise_system_error(errno);
    if (!S_ISREG(identity.st_mode)) raise_error(path_file_access_error);
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
      count = ::read(file.get(), buffer.data(), buffer.size());
    } while (count < 0 && errno == EINTR);
    buffer.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    if (count < 0) raise_system_error(errno);
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
      position = static_cast<std::size_t>(stop - buffer.begin());
      if (stop != buffer.end()) break;
    }
    return text;
  }

  // Writes what is kept back. What can't be written stays.
  void flush() {
    while (!buffer.empty()) {
      const ssize_t count = ::write(file.get(), buffer.data(), buffer.size());
      if (count >= 0) {
        buffer.erase(0, static_cast<std::size_t>(count));
      } else if (errno != EINTR) {
        raise_system_error(errno);
      }
    }
  }

  Descriptor file;
  Mode mode;
  struct stat identity {};
  std::string buffer;        // read and not yet taken, or printed and not yet written
  std::size_t position = 0;  // reading: the next character in the buffer
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

  auto file = std::make_unique<OpenFile>(open_plain_file(std::string(path_text), mode), mode);
  for (const auto& [other_number, other] : open_)
    if (file->is_same_file(*other)) raise_error(file_already_open);
  // Emptied only now, so that a file that is open already keeps what it has.
  if (mode == Mode::Output && ::ftruncate(file->file.get(), 0) != 0) raise_system_error(errno);
  open_.emplace(number, std::move(file));
}

void Files::Close(int number) {
  const auto found = open_.find(number);
  if (found == open_.end()) return;
  const auto file = std::move(found->second);
  open_.erase(found);
  if (file->mode != Mode::Input) file->flush();
  if (!file->file.close() && errno != EINTR) raise_system_error(errno);
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
  if (file.buffer.size() >= buffer_size) file.flush();
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
