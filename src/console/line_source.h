// Where command lines come from.
#pragma once

#include <chrono>
#include <istream>
#include <optional>
#include <string>

namespace console {

class LineSource {
 public:
  enum class Result {
    Line,
    TooLong,   // longer than forms::longest_line: its beginning, the rest is passed over
    HalfLine,  // what stands behind the last line end: perhaps not all that was meant
    NotYet,
    End
  };

  virtual ~LineSource() = default;
  // The next line without its end, waiting for it at most `limit` (none: as long as it takes).
  virtual Result next(std::string& line, std::optional<std::chrono::nanoseconds> limit) = 0;
};

// Lines of a stream that never keeps a reader waiting: a file, a text.
class StreamLines final : public LineSource {
 public:
  explicit StreamLines(std::istream& in) : in_(in) {}
  Result next(std::string& line, std::optional<std::chrono::nanoseconds> limit) override;

 private:
  std::istream& in_;
};

// Lines of a file descriptor, such as standard input.
class DescriptorLines final : public LineSource {
 public:
  // While `alarm` is readable no more input is taken, however long the caller would wait. -1: no alarm.
  explicit DescriptorLines(int descriptor, int alarm = -1) : descriptor_(descriptor), alarm_(alarm) {}
  Result next(std::string& line, std::optional<std::chrono::nanoseconds> limit) override;

 private:
  bool take_line(std::string& line);
  bool take_half_line(std::string& line);
  void cut_long_line();
  bool readable(std::optional<std::chrono::nanoseconds> limit) const;
  void receive();

  const int descriptor_;
  const int alarm_;
  std::string buffer_;
  std::size_t searched_ = 0;  // no line end before this place of the buffer
  std::size_t begin_ = 0;     // what lies before was taken
  bool cut_ = false;          // of the line that begins there only the beginning is kept
  bool end_ = false;
};

}  // namespace console
