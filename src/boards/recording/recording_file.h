// The file that a recording goes to. What it held before stays beside it until the recording is whole
// (forms/overwriting.h); devices and pipes are written as they are.
#pragma once

#include <optional>
#include <ostream>
#include <streambuf>
#include <string>

#include "forms/overwriting.h"

namespace boards {

class RecordingFile {
 public:
  // Throws std::runtime_error when the file can't be written; it then is what it was.
  explicit RecordingFile(const std::string& path);

  std::ostream& out() { return out_; }
  // The recording has ended. False when not all of it reached the file.
  bool finish();
  // Where the content is that the file had before; empty once that is gone, or when it had none.
  std::string earlier() const { return overwriting_ ? overwriting_->put_aside() : std::string(); }

 private:
  // Writes at each flush.
  class Buffer final : public std::streambuf {
   public:
    int descriptor = -1;

   private:
    int_type overflow(int_type character) override;
    std::streamsize xsputn(const char* text, std::streamsize size) override;
    int sync() override;
    std::string waiting_;
  };

  forms::Descriptor file_;  // of what isn't a plain file
  std::optional<forms::Overwriting> overwriting_;
  Buffer buffer_;
  std::ostream out_{&buffer_};
};

}  // namespace boards
