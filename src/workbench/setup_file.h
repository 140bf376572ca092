// Setup files of the workbench: text items separated by commas or line ends. A free text, the I2C
// address in hexadecimal, then for each row its register address and, unless that is empty, its
// description, the value to write and the value read. Nothing is checked, and the file may end anywhere.
#pragma once

#include <string>

#include "forms/files.h"

namespace varzelin {

struct SetupRow {
  std::string register_address;  // empty: the row is blank
  std::string description;
  std::string write_value;
  std::string read_value;
};

// Opens the file on the next free number. Raises the platform's file errors. Until the caller has closed
// it, the next open of the same path finds it already open.
int open_setup_file(forms::Files& files, const std::string& path);

// The two steps of reading an open setup file: the free text and the address, once, then row by row.
// Without an address the first raises input_past_end_of_file; rows past the end of the file are blank.
std::string read_setup_address(forms::Files& files, int number);
SetupRow read_setup_row(forms::Files& files, int number);

// Creates the file, or cuts it to zero length. Nothing fills the stores that a saved table would come
// from, so that is all there is to save.
void Save_Table(forms::Files& files, const std::string& path);

}  // namespace varzelin
