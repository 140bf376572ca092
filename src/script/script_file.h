// The lines of a script file: what one line means, told without a form, a bus or a file.
//
// A script is a plain text file, one transaction, delay or pause a line:
//
//     `A88             the bus address from here on, 8-bit write form
//     40,8C,           writes register 40
//     02,,1F  # id     reads one byte of register 02 and expects 1F
//     `w250            waits 250 ms
//     `w               waits for the user
//
// No line is refused: anything odd becomes a remark in the row, or a row that does nothing.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace varzelin {

// Operation of a row that does nothing.
inline constexpr const char* no_operation = "NOP";
// Delay of a row that waits for the user.
inline constexpr std::int16_t wait_for_user = -1;

// One line of a script, as the grid shows it and as it is executed.
struct ScriptRow {
  std::string address;  // the row's own bus address, hexadecimal
  std::string reg;      // register bytes, upper-case hexadecimal; so are the next two
  std::string data_wr;
  std::string data_rd;  // what a read is expected to bring
  std::string act_rd;
  std::string operation = no_operation;
  std::string comment;
  std::int16_t delay = 0;  // milliseconds; wait_for_user

  // Bytes of the three fields. Only a transaction line has them: a row of another kind leaves the
  // tables as they were.
  std::optional<std::int16_t> reg_qty;
  std::optional<std::int16_t> wr_qty;
  std::optional<std::int16_t> rd_qty;

  bool is_read = false;    // counts among the reads of the script
  bool bad_delay = false;  // a delay that is no number
  int error = 0;           // run-time error that ends the load at this row; the row is filled up to it
};

// Reads one line (without its end). `script_address` is the address in force and becomes the one for
// the lines that follow. Raises nothing.
ScriptRow parse_script_line(std::string line, std::string& script_address);

}  // namespace varzelin
