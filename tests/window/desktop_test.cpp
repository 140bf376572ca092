// What is left of the desktop program behind its windows.
#include "window/desktop.h"

#include <gtest/gtest.h>

#include <new>

namespace window {
namespace {

struct Unknown {};

TEST(Desktop, WhatTheProgramThrowsIsToldAndEndsIt) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(guarded("program", [] { return 7; }), 7);
  EXPECT_EQ(guarded("program", []() -> int { throw std::bad_alloc(); }), 1);
  EXPECT_EQ(guarded("program", []() -> int { throw Unknown{}; }), 1);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "program: std::bad_alloc\nprogram: an unknown error\n");
}

}  // namespace
}  // namespace window
