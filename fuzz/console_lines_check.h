// What holds for any bytes on the console's standard input.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "console/json.h"
#include "console/line_source.h"
#include "console/refused.h"
#include "console/words.h"

namespace varzelin::fuzz {

inline std::vector<std::string> all_lines(console::LineSource& source) {
  std::vector<std::string> lines;
  std::string line;
  for (;;) {
    const auto result = source.next(line, std::nullopt);
    if (result != console::LineSource::Result::Line && result != console::LineSource::Result::HalfLine) break;
    lines.push_back((result == console::LineSource::Result::Line ? "whole " : "half ") + line);
  }
  return lines;
}

inline std::string quoted(const std::string& word) {
  std::ostringstream text;
  console::Json json(text);
  json.value(word);
  json.end_line();
  return text.str().substr(0, text.str().find_last_not_of('\n') + 1);
}

// A stream and a file descriptor give the same lines; the words of a line, written as JSON strings, are
// read back as words of the same number, and the second time around as the same words. Aborts otherwise.
inline void check_console_lines(std::string_view bytes) {
  std::istringstream stream{std::string(bytes)};
  console::StreamLines from_stream(stream);
  const std::vector<std::string> lines = all_lines(from_stream);

  const int descriptor = ::memfd_create("lines", 0);
  if (::write(descriptor, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) std::abort();
  ::lseek(descriptor, 0, SEEK_SET);
  console::DescriptorLines from_descriptor(descriptor);
  if (all_lines(from_descriptor) != lines) std::abort();
  ::close(descriptor);

  for (const std::string& line : lines) {
    std::vector<std::string> words;
    try {
      words = console::split_words(line);
    } catch (const console::Refused&) {
      continue;
    }
    std::string again;
    for (const std::string& word : words) again += quoted(word) + " ";
    const std::vector<std::string> once = console::split_words(again);
    std::string twice;
    for (const std::string& word : once) twice += quoted(word) + " ";
    if (once.size() != words.size() || console::split_words(twice) != once) std::abort();
  }
}

}  // namespace varzelin::fuzz
