#include "panels/single_channel/interrupt_limits.h"

#include "bridge/text_utilities.h"
#include "registers/kvt71344.h"

namespace varzelin {

InterruptLimits::InterruptLimits(Program& owner, RegisterPanel& of_panel,
                                 const EightRegisterModel& panel_model)
    : PanelPart(owner, of_panel),
      model_(panel_model),
      txtIUpperLimit(panel, "txtIUpperLimit", {.Text = forms::CStr(panel_model.limit_maximum)}) {
  on(txtIUpperLimit, Event::KeyPress, &InterruptLimits::txtIUpperLimit_KeyPress);
  on(txtILowerLimit, Event::KeyPress, &InterruptLimits::txtILowerLimit_KeyPress);
}

InterruptLimits::Limit InterruptLimits::high() {
  return {registers::kvt71344::high_limit_register,
          txtIUpperLimit,
          &Store::PendingIntHigh,
          {model_.limit_maximum, false},
          "Hign Interrupt Limit must be  => 256 and < =",
          forms::CStr(model_.limit_maximum)};
}

InterruptLimits::Limit InterruptLimits::low() {
  return {registers::kvt71344::low_limit_register,
          txtILowerLimit,
          &Store::PendingIntLow,
          {model_.limit_maximum, true},
          "Low Interrupt Limit must be 0, => 256 and < =",
          "0"};
}

void InterruptLimits::show_limit_of(int register_number) {
  for (const Limit& limit : {high(), low()}) {
    if (limit.register_number != register_number) continue;
    limit.box.Text = forms::CStr(HexVal(panel.txtRegHex(register_number).Text) * 256);
  }
}

void InterruptLimits::txtIUpperLimit_KeyPress(int& KeyAscii) {
  store.PendingIntHigh = false_flag;  // a write that waits is dropped by any key
  if (KeyAscii == forms::vbKeyReturn) enter(high());
}

void InterruptLimits::txtILowerLimit_KeyPress(int& KeyAscii) {
  store.PendingIntLow = false_flag;
  if (KeyAscii == forms::vbKeyReturn) enter(low());
}

void InterruptLimits::enter(const Limit& limit) {
  // A text that is no number writes the register as it stands.
  if (forms::IsNumeric(limit.box.Text)) {
    const LimitEntry entry = limit_entry(forms::Val(limit.box.Text), limit.rules);
    if (!entry.byte) {
      MsgBox(limit.message + forms::CStr(limit.rules.maximum));
      limit.box.Text = limit.refused_text;
      return;
    }
    if (entry.shown) limit.box.Text = std::to_string(*entry.shown);
    panel.txtRegHex(limit.register_number).Text = forms::Hex2(*entry.byte);
  } else {
    TextBox& box = panel.txtRegHex(limit.register_number);
    box.Text = forms::Hex2(HexVal(box.Text));
  }
  store.*limit.pending = true_flag;
  panel.commit({.pending = {limit.pending}, .registers = {limit.register_number}});
}

}  // namespace varzelin
