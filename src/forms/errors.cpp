#include "forms/errors.h"

#include <new>

namespace forms {

std::string error_text(int number) {
  switch (number) {
    case invalid_procedure_call:
      return "Invalid procedure call or argument";
    case overflow:
      return "Overflow";
    case subscript_out_of_range:
      return "Subscript out of range";
    case out_of_memory:
      return "Out of memory";
    case division_by_zero:
      return "Division by zero";
    case type_mismatch:
      return "Type mismatch";
    case internal_error:
      return "Internal error";
    case bad_file_name_or_number:
      return "Bad file name or number";
    case file_not_found:
      return "File not found";
    case bad_file_mode:
      return "Bad file mode";
    case file_already_open:
      return "File already open";
    case device_io_error:
      return "Device I/O error";
    case disk_full:
      return "Disk full";
    case input_past_end_of_file:
      return "Input past end of file";
    case too_many_files:
      return "Too many files";
    case permission_denied:
      return "Permission denied";
    case path_file_access_error:
      return "Path/File access error";
    case path_not_found:
      return "Path not found";
    case no_such_element:
      return "Control array element doesn't exist";
    case invalid_property_value:
      return "Invalid property value";
    default:
      return "Application-defined or object-defined error";
  }
}

RunTimeError as_run_time_error(const std::exception& exception) {
  if (dynamic_cast<const std::bad_alloc*>(&exception)) return {out_of_memory, error_text(out_of_memory)};
  return {internal_error, error_text(internal_error) + " (" + exception.what() + ")"};
}

void raise_error(int number) {
  throw RunTimeError{number, error_text(number)};
}

}  // namespace forms
