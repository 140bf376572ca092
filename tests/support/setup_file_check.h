// Reads a setup file as the workbench does and checks what holds for every content.
#pragma once

#include <cstdlib>
#include <string>

#include "forms/errors.h"
#include "workbench/setup_file.h"

namespace varzelin::testing {

constexpr int setup_rows = 32;

// 0, or the number of the run-time error that the reader raised. Aborts when a row holds what a blank row
// can't, so that a fuzzer sees it too.
inline int check_setup_file(const std::string& path) {
  forms::Files files;
  try {
    const int number = open_setup_file(files, path);
    read_setup_address(files, number);
    bool at_end = false;
    for (int i = 0; i < setup_rows; ++i) {
      const bool was_at_end = at_end || files.Eof(number);
      const SetupRow row = read_setup_row(files, number);
      const bool rest_is_empty = (row.description + row.write_value + row.read_value).empty();
      if (row.register_address.empty() && !rest_is_empty) std::abort();
      if (was_at_end && !row.register_address.empty()) std::abort();
      at_end = was_at_end;
    }
    files.Close(number);
  } catch (const forms::RunTimeError& error) {
    return error.number;
  }
  return 0;
}

}  // namespace varzelin::testing
