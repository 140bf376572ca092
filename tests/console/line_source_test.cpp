// Where command lines come from: whole lines, half a line at the end, input that isn't ready.
#include "console/line_source.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "forms/files.h"

namespace {

using console::LineSource;
using Result = console::LineSource::Result;

struct Pipe {
  Pipe() {
    int ends[2];
    if (::pipe(ends) != 0) throw std::runtime_error("no pipe");
    out = ends[0];
    in = ends[1];
    ::fcntl(out, F_SETFL, O_NONBLOCK);
  }
  ~Pipe() {
    ::close(out);
    close_in();
  }
  void write(const std::string& text) const {
    if (::write(in, text.data(), text.size()) != static_cast<ssize_t>(text.size())) std::abort();
  }
  void close_in() {
    if (in >= 0) ::close(in);
    in = -1;
  }
  int out;
  int in;
};

// 'S' while a thread of this process sleeps.
char state_of_thread(pid_t thread) {
  std::ifstream stat("/proc/self/task/" + std::to_string(thread) + "/stat");
  std::string number, name;
  char state = ' ';
  stat >> number >> name >> state;
  return state;
}

void expect_half_line_at_end(LineSource& lines) {
  std::string line;
  EXPECT_EQ(lines.next(line, std::nullopt), Result::Line);
  EXPECT_EQ(line, "one");
  EXPECT_EQ(lines.next(line, std::nullopt), Result::Line);
  EXPECT_EQ(line, "");
  EXPECT_EQ(lines.next(line, std::nullopt), Result::HalfLine);
  EXPECT_EQ(line, "two");
  EXPECT_EQ(lines.next(line, std::nullopt), Result::End);
}

TEST(ConsoleLineSource, WhatStandsBehindTheLastLineEndIsHalfALine) {
  std::istringstream text("one\n\ntwo");
  console::StreamLines stream(text);
  expect_half_line_at_end(stream);
  Pipe pipe;
  pipe.write("one\n\ntwo");
  pipe.close_in();
  console::DescriptorLines descriptor(pipe.out);
  expect_half_line_at_end(descriptor);
}

TEST(ConsoleLineSource, BehindALineEndIsNoHalfLine) {
  std::istringstream text("one\n");
  console::StreamLines stream(text);
  std::string line;
  EXPECT_EQ(stream.next(line, std::nullopt), Result::Line);
  EXPECT_EQ(stream.next(line, std::nullopt), Result::End);
}

void expect_only_the_first_line_is_too_long(LineSource& lines) {
  std::string line;
  EXPECT_EQ(lines.next(line, std::nullopt), Result::TooLong);
  EXPECT_EQ(line.substr(0, 8), "get xxxx");
  EXPECT_EQ(lines.next(line, std::nullopt), Result::Line);
  EXPECT_EQ(line.size(), forms::longest_line);
  EXPECT_EQ(lines.next(line, std::nullopt), Result::Line);
  EXPECT_EQ(line, "clock");
}

// By one byte, and by more than is read at once.
TEST(ConsoleLineSource, ALineOfMoreThanOneMiBIsToldAndPassedOver) {
  for (const std::size_t length : {forms::longest_line + 1, 3 * forms::longest_line}) {
    const std::string text =
        "get " + std::string(length - 4, 'x') + "\n" + std::string(forms::longest_line, 'y') + "\nclock\n";
    std::istringstream stream_text(text);
    console::StreamLines stream(stream_text);
    expect_only_the_first_line_is_too_long(stream);
    Pipe pipe;
    std::thread writer([&] { pipe.write(text); });
    console::DescriptorLines descriptor(pipe.out);
    expect_only_the_first_line_is_too_long(descriptor);
    writer.join();
  }
}

TEST(ConsoleLineSource, OfALineWithoutEndOnlyOneMiBIsKept) {
  Pipe pipe;
  std::thread writer([&] {
    pipe.write(std::string(5 * forms::longest_line, 'x'));
    pipe.close_in();
  });
  console::DescriptorLines lines(pipe.out);
  std::string line;
  EXPECT_EQ(lines.next(line, std::nullopt), Result::HalfLine);
  EXPECT_EQ(line.size(), forms::longest_line);
  writer.join();
}

// The writer comes when the reader sleeps.
TEST(ConsoleLineSource, InputThatIsNotReadyIsWaitedFor) {
  Pipe pipe;
  console::DescriptorLines lines(pipe.out);
  std::thread writer([&, reader = ::gettid()] {
    while (state_of_thread(reader) != 'S') std::this_thread::yield();
    pipe.write("clock\n");
  });
  std::string line;
  EXPECT_EQ(lines.next(line, std::nullopt), Result::Line);
  EXPECT_EQ(line, "clock");
  writer.join();
}

}  // namespace
