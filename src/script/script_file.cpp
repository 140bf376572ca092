#include "script/script_file.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "bridge/text_utilities.h"
#include "forms/errors.h"
#include "forms/text.h"

namespace varzelin {
namespace {

constexpr char command_marker = '`';
constexpr char comment_marker = '#';

void blank_control_characters(std::string& line) {
  std::ranges::replace_if(
      line, [](char c) { return c == '\x09' || c == '\x0F'; }, ' ');
}

std::string without_blanks(std::string text) {
  std::erase(text, ' ');
  return text;
}

// Takes the comment, its marker included, off the line. False when there is none.
bool split_comment(std::string& line, std::string& comment) {
  const std::size_t marker = line.find(comment_marker);
  if (marker == std::string::npos) return false;
  comment = line.substr(marker);
  line.erase(marker);
  return true;
}

std::int16_t bytes_of(const std::string& digits) {
  return forms::CInt(static_cast<double>(digits.size()) / 2);
}

void set_address(const std::string& command, ScriptRow& row, std::string& script_address) {
  row.operation = "Cmd:Set I2C Adr";
  if (command.size() == 4) {
    script_address = forms::UCase(command.substr(2));
    row.address = script_address;
  } else {
    // The row itself keeps the former address; the lines that follow have the new one.
    script_address = "0" + forms::UCase(command.substr(command.size() - 1));
  }
}

void set_delay(const std::string& command, ScriptRow& row) {
  const std::string text = forms::UCase(command.substr(2));
  if (text.empty()) {
    row.operation = "Cmd: Delay Keypress";
    row.delay = wait_for_user;
    return;
  }
  row.delay = forms::CInt(forms::Val(text));
  if (forms::IsNumeric(text)) {
    row.operation = "Cmd:Delay :" + text + ": mSec";
  } else {
    row.delay = 0;
    row.operation = "Error Delay_Time";
    row.bad_delay = true;
    row.comment += "Delay Error: Time not numeric";
  }
}

void parse_command(std::string command, ScriptRow& row, std::string& script_address) {
  row.operation = "Cmd:";
  if (split_comment(command, row.comment)) command = without_blanks(std::move(command));
  if (command.size() < 2) return;
  if (command[1] == 'A') set_address(command, row, script_address);
  if (command[1] == 'w') set_delay(command, row);
}

// A data field: "8" is "08" and "123" is "0123". Longer odd fields stay as they are.
std::string data_field(const std::string& field) {
  const bool padded = field.size() == 1 || field.size() == 3;
  return forms::UCase(padded ? "0" + field : field);
}

void parse_transaction(std::string line, ScriptRow& row) {
  const bool has_comment = split_comment(line, row.comment);
  line = without_blanks(std::move(line));
  if (line.empty() && has_comment) return;

  constexpr std::size_t most_fields = 11;
  std::array<std::string, most_fields> fields;
  Split_Fields(line, fields, ",");

  row.reg = forms::UCase(fields[0].size() == 1 ? "0" + fields[0] : fields[0]);
  row.operation.clear();
  row.reg_qty = bytes_of(row.reg);
  if (row.reg.empty()) {
    row.comment = "No Internal Register" + row.comment;
  } else {
    row.operation = " Reg:" + std::to_string(*row.reg_qty);
  }

  row.data_wr = data_field(fields[1]);
  row.wr_qty = bytes_of(row.data_wr);
  if (!row.data_wr.empty()) row.operation += " W:" + std::to_string(*row.wr_qty);

  row.data_rd = data_field(fields[2]);
  row.rd_qty = bytes_of(row.data_rd);
  if (!row.data_rd.empty()) {
    row.operation += " R:" + std::to_string(*row.rd_qty);
    row.is_read = true;
    row.act_rd = "--";
  }
}

void parse(std::string line, ScriptRow& row, std::string& script_address) {
  blank_control_characters(line);
  if (line.empty()) {
    row.comment = "Script File has a blank line";
  } else if (line.front() == command_marker) {
    parse_command(std::move(line), row, script_address);
  } else {
    parse_transaction(std::move(line), row);
  }
}

}  // namespace

ScriptRow parse_script_line(std::string line, std::string& script_address) {
  ScriptRow row;
  row.address = script_address;
  try {
    parse(std::move(line), row, script_address);
  } catch (const forms::RunTimeError& error) {
    row.error = error.number;
  }
  return row;
}

}  // namespace varzelin
