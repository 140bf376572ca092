#include "bridge/log.h"

#include <string>

#include "forms/form.h"
#include "forms/text.h"

namespace varzelin {
namespace {

// What is moved up to make room for a block is few times as much as the block.
constexpr std::size_t dropped_block = longest_log / 4;

void make_room(forms::TextProperty& log, std::size_t wanted) {
  if (log.get().size() + wanted <= longest_log) return;
  constexpr std::string_view entry_end = "\r\n\r\n";
  const std::size_t end = log.get().find(entry_end, dropped_block);
  const std::size_t kept = end == std::string::npos ? log.get().size() : end + entry_end.size();
  log.replace_front(kept, "Older entries are gone: the log holds 64 MiB.\r\n\r\n");
}

forms::TextBox& log_box(Program& program) {
  return dynamic_cast<forms::TextBox&>(*program.forms.touch(log_form_name).find("Txtlog"));
}

void show_status(Program& program, double color_index) {
  auto& lamp = dynamic_cast<forms::Shape&>(*program.forms.touch(log_form_name).find("shpLogStatus"));
  lamp.FillColor = forms::QBColor(color_index);
}

}  // namespace

void Log_Line(Program& program, forms::TextBox& box, std::string_view message, std::string_view eol,
              bool clear) {
  if (clear) box.Text = "";
  const std::tm now = program.runtime.clock().local_time();
  std::string line(message);
  line.append(" :").append(forms::date_fixed(now)).append(" ").append(forms::time_fixed(now));
  line.append(eol).append(eol);
  make_room(box.Text, line.size());
  box.Text.append(line);
  box.SelStart = static_cast<std::int32_t>(box.Text.get().size());
}

void Log_Msg(Program& program, std::string_view message, std::string_view eol) {
  Log_Line(program, log_box(program), message, eol, false);
  const Store& store = program.store;
  show_status(program, store.Log_Error != 0 ? store.Clr_Red : store.Clr_LtGreen);
}

void Log_Err(Program& program, std::string_view message) {
  program.store.Log_Error = true_flag;
  show_status(program, program.store.Clr_Red);
  Log_Line(program, log_box(program), message, crlf, false);
}

void Log_Info(Program& program, std::string_view message) {
  Log_Line(program, log_box(program), message, crlf, false);
}

void Log_Put_Aside(Program& program) {
  for (const auto& [path, earlier] : program.runtime.files.take_put_aside()) {
    Log_Info(program, path + " isn't written whole, what it held before is in " + earlier);
  }
}

std::string Stat_Text(Program& program, boards::Status status) {
  const std::string text = program.driver.VB_Stat2Str(status);
  return text.substr(0, text.find('\0'));
}

void Init_Colors(Store& store) {
  store.Clr_DkGreen = 2;
  store.Clr_Gray = 8;
  store.Clr_Blue = 9;
  store.Clr_LtGreen = 10;
  store.Clr_Red = 12;
  store.Clr_White = 15;
}

}  // namespace varzelin
