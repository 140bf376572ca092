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

std::string read_setup_address(forms::Files& files, int number) {
  files.InputItem(number);  // the free text
  return files.InputItem(number);
}

SetupRow read_setup_row(forms::Files& files, int number) {
  SetupRow row;
  read_if_any(files, number, row.register_address);
  if (row.register_address.empty()) return row;
  for (std::string* item : {&row.description, &row.write_value, &row.read_value}) {
    read_if_any(files, number, *item);
  }
  return row;
}

void Save_Table(forms::Files& files, const std::string& path) {
  const int number = files.FreeFile();
  files.Open(path, forms::Files::Mode::Output, number);
  files.Close(number);
}

}  // namespace varzelin
