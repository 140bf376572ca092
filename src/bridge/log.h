// The log: one multi-line text box on the workbench, written also while the workbench is hidden.
#pragma once

#include <cstddef>
#include <string_view>

#include "bridge/program.h"
#include "forms/controls.h"

namespace varzelin {

inline constexpr std::string_view crlf = "\r\n";

// The form that carries the log's controls. Touching the log loads it.
inline constexpr const char* log_form_name = "frmI2C_General";

// The log's bound, bytes. At it the oldest entries go, a block of them at once, and the first line says so.
inline constexpr std::size_t longest_log = std::size_t{64} << 20;

// Appends message, " :", date and time, and the end of line twice (an entry is followed by a blank
// line); then puts the caret to the end. `clear` empties the box first.
void Log_Line(Program& program, forms::TextBox& box, std::string_view message, std::string_view eol,
              bool clear);
// Log_Line on Txtlog, then the lamp shpLogStatus by the flag Log_Error.
void Log_Msg(Program& program, std::string_view message, std::string_view eol = crlf);
// Sets Log_Error and the lamp, then writes the line.
void Log_Err(Program& program, std::string_view message);
// Writes the line, no lamp.
void Log_Info(Program& program, std::string_view message);

// After a file could not be written: where the content is that it had before, an entry for each file.
void Log_Put_Aside(Program& program);

// The driver's words for a status, cut at the first zero character.
std::string Stat_Text(Program& program, boards::Status status);

// Sets the colour variables of the store but Clr_Black, which stays 0. Every form calls it when it
// loads, before it drives a lamp.
void Init_Colors(Store& store);

}  // namespace varzelin
