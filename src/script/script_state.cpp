// How a script goes, for whoever asks.
#include "script/script_panel.h"

namespace varzelin {

ScriptState frmScriptOps::script_state() const {
  const bool runs = Script_Running != 0 || course_.loop > 0;
  return {.runs = runs,
          .end = course_.end,
          .row = course_.row,
          .rows = Script_Lines,
          .loop = course_.loop,
          .passed = txtRdPass.Text,
          .failed = txtRdFails.Text,
          .board_gone = runs ? board_gone() : course_.without_board,
          .load_line = course_.load_line,
          .load_error = course_.load_error};
}

}  // namespace varzelin
