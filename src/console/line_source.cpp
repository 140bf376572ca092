#include "console/line_source.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "forms/files.h"

namespace console {

LineSource::Result StreamLines::next(std::string& line, std::optional<std::chrono::nanoseconds>) {
  if (!std::getline(in_, line)) return Result::End;
  if (in_.eof()) return Result::HalfLine;
  return line.size() > forms::longest_line ? Result::TooLong : Result::Line;
}

LineSource::Result DescriptorLines::next(std::string& line, std::optional<std::chrono::nanoseconds> limit) {
  while (!take_line(line)) {
    if (end_) return take_half_line(line) ? Result::HalfLine : Result::End;
    if (!readable(limit)) return Result::NotYet;
    receive();
  }
  return std::exchange(cut_, false) || line.size() > forms::longest_line ? Result::TooLong : Result::Line;
}

bool DescriptorLines::take_line(std::string& line) {
  const std::size_t line_end = buffer_.find('\n', searched_);
  searched_ = buffer_.size();
  if (line_end == std::string::npos) {
    cut_long_line();
    return false;
  }
  line.assign(buffer_, begin_, line_end - begin_);
  begin_ = searched_ = line_end + 1;
  if (begin_ == buffer_.size()) {
    std::string().swap(buffer_);  // one long line mustn't keep its memory
    begin_ = searched_ = 0;
  }
  return true;
}

void DescriptorLines::cut_long_line() {
  if (buffer_.size() - begin_ <= forms::longest_line) return;
  buffer_.resize(begin_ + forms::longest_line);
  searched_ = buffer_.size();
  cut_ = true;
}

bool DescriptorLines::take_half_line(std::string& line) {
  line = buffer_.substr(begin_);
  begin_ = searched_ = buffer_.size();
  return !line.empty();
}

// A wait that a signal cut short counts as nothing to read: the caller comes again.
bool DescriptorLines::readable(std::optional<std::chrono::nanoseconds> limit) const {
  constexpr int for_ever = -1;
  int milliseconds = for_ever;
  if (limit) {
    const auto whole = std::chrono::ceil<std::chrono::milliseconds>(*limit).count();
    milliseconds = static_cast<int>(std::clamp<std::int64_t>(whole, 0, 1000));
  }
  pollfd waiting[] = {{descriptor_, POLLIN, 0}, {alarm_, POLLIN, 0}};
  return poll(waiting, std::size(waiting), milliseconds) > 0 && waiting[1].revents == 0;
}

void DescriptorLines::receive() {
  buffer_.erase(0, begin_);
  searched_ -= begin_;
  begin_ = 0;
  std::array<char, 65536> piece;
  const ssize_t count = read(descriptor_, piece.data(), piece.size());
  if (count > 0) {
    buffer_.append(piece.data(), static_cast<std::size_t>(count));
  } else if (count == 0 || (errno != EINTR && errno != EAGAIN)) {
    end_ = true;
  }
}

}  // namespace console
