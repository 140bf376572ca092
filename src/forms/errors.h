// The two things that a handler can throw, and the helper for handlers that go on after an error.
#pragma once

#include <concepts>
#include <exception>
#include <iterator>
#include <string>
#include <utility>

namespace forms {

// The platform's numbers for the errors that this runtime raises.
enum ErrorNumber : int {
  invalid_procedure_call = 5,
  overflow = 6,
  out_of_memory = 7,
  subscript_out_of_range = 9,
  division_by_zero = 11,
  type_mismatch = 13,
  internal_error = 51,
  bad_file_name_or_number = 52,
  file_not_found = 53,
  bad_file_mode = 54,
  file_already_open = 55,
  device_io_error = 57,
  disk_full = 61,
  input_past_end_of_file = 62,
  too_many_files = 67,
  permission_denied = 70,
  path_file_access_error = 75,
  path_not_found = 76,
  no_such_element = 340,
  invalid_property_value = 380,
  input_too_large = 513,  // the application's own: a file or a line beyond what files.h takes
};

// A run-time error. Handlers catch it only at their named error branches; anything else reaches the
// event dispatcher, which shows the default error report and lets the program go on.
struct RunTimeError {
  int number;
  std::string text;
};

// Thrown by Runtime::end(): unwinds every handler to the main loop. Nothing else catches it.
struct EndProgram {};

// The platform's words for an error number, e.g. 6 -> "Overflow". A number that isn't listed above has
// the platform's words for an error of the application's own.
std::string error_text(int number);

// What is reported for an exception that no handler was to throw: out_of_memory, or internal_error and its
// words.
RunTimeError as_run_time_error(const std::exception& exception);

// Throws RunTimeError with the platform's words.
[[noreturn]] void raise_error(int number);

// An element of an array by the platform's rules: beyond its ends subscript_out_of_range is raised.
template <class Array>
auto& element(Array& array, std::integral auto index) {
  if (std::cmp_less(index, 0) || std::cmp_greater_equal(index, std::size(array))) {
    raise_error(subscript_out_of_range);
  }
  return array[static_cast<std::size_t>(index)];
}

// Runs one statement and swallows a run-time error of it: the next statement follows either way.
// True when the statement ran through.
template <class Statement>
bool resume_next(Statement&& statement) {
  try {
    std::forward<Statement>(statement)();
    return true;
  } catch (const RunTimeError&) {
    return false;
  }
}

}  // namespace forms
