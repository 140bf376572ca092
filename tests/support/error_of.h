// What a statement raises.
#pragma once

#include <gtest/gtest.h>

#include <functional>

#include "forms/errors.h"

namespace varzelin::testing {

// The number of the run-time error that a statement raises, 0 for none. The platform's errors have its words.
inline int error_of(const std::function<void()>& statement) {
  try {
    statement();
  } catch (const forms::RunTimeError& error) {
    const bool of_the_platform = forms::error_text(error.number) != forms::error_text(0);
    if (of_the_platform) {
      EXPECT_EQ(error.text, forms::error_text(error.number));
    }
    return error.number;
  }
  return 0;
}

}  // namespace varzelin::testing
