// Setup files of the workbench: text items separated by commas or line ends. A free text, the I2C
// address in hexadecimal, then for each row its register address and, unless that is empty, its
// description, the value to write and the value read. Nothing is checked, and the file may end anywhere.
#pragma once

#include <array>
#include <string>

#include "forms/files.h"

namespace varzelin {

struct SetupRow {
  std::string register_address;  // empty: the row is blank
  std::string description;
  std::string write_value;
  std::string read_value;
};

struct SetupFile {
  static constexpr int rows = 32;
  std::string i2c_address;
  std::array<SetupRow, rows> row;
};

// Opens the file on the next free number. Raises the platform's file errors.
int open_setup_file(forms::Files& files, const std::string& path);

// Reads an open setup file and closes it. After an error it stays open, so that the next open of the same
// path finds it already open.
SetupFile read_setup_file(forms::Files& files, int number);

// Creates the file, or cuts it to zero length. Nothing fills the stores that a saved table would come
// from, so that is all there is to save.
void Save_Table(forms::Files& files, const std::string& path);

}  // namespace varzelin
