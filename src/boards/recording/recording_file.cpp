#include "boards/recording/recording_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>

#include "forms/errors.h"

namespace boards {

RecordingFile::RecordingFile(const std::string& path)
    : file_(::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NOCTTY, 0666)) {
  struct stat state {};
  if (::fstat(file_.get(), &state) != 0) throw std::runtime_error("can't write " + path);
  if (S_ISREG(state.st_mode)) {
    try {
      overwriting_.emplace(std::move(file_), path);
    } catch (const forms::RunTimeError& error) {
      throw std::runtime_error("can't write " + path + ": " + error.text);
    }
  }
  buffer_.descriptor = overwriting_ ? overwriting_->descriptor() : file_.get();
}

bool RecordingFile::finish() {
  return out_.flush() && (!overwriting_ || forms::resume_next([this] { overwriting_->finish(); }));
}

RecordingFile::Buffer::int_type RecordingFile::Buffer::overflow(int_type character) {
  if (!traits_type::eq_int_type(character, traits_type::eof()))
    waiting_ += traits_type::to_char_type(character);
  return traits_type::not_eof(character);
}

std::streamsize RecordingFile::Buffer::xsputn(const char* text, std::streamsize size) {
  waiting_.append(text, static_cast<std::size_t>(size));
  return size;
}

// What can't be written stays; the stream then takes nothing more.
int RecordingFile::Buffer::sync() {
  while (!waiting_.empty()) {
    const ssize_t count = ::write(descriptor, waiting_.data(), waiting_.size());
    if (count < 0 && errno != EINTR) return -1;
    if (count > 0) waiting_.erase(0, static_cast<std::size_t>(count));
  }
  return 0;
}

}  // namespace boards
