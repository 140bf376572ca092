#include "workbench/setup_file.h"

namespace varzelin {
namespace {

void read_if_any(forms::Files& files, int number, std::string& item) {
  if (!files.Eof(number)) item = files.InputItem(number);
}

}  // namespace

int open_setup_file(forms::Files& files, const std::string& path) {
  const int number = files.FreeFile();
  files.Open(path, forms::Files::Mode::Input, number);
  return number;
}

SetupFile read_setup_file(forms::Files& files, int number) {
  SetupFile setup;
  files.InputItem(number);  // the free text
  setup.i2c_address = files.InputItem(number);
  for (SetupRow& row : setup.row) {
    read_if_any(files, number, row.register_address);
    if (row.register_address.empty()) continue;
    for (std::string* item : {&row.description, &row.write_value, &row.read_value}) {
      read_if_any(files, number, *item);
    }
  }
  files.Close(number);
  return setup;
}

void Save_Table(forms::Files& files, const std::string& path) {
  const int number = files.FreeFile();
  files.Open(path, forms::Files::Mode::Output, number);
  files.Close(number);
}

}  // namespace varzelin
