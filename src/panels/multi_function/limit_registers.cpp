#include "panels/multi_function/limit_registers.h"

#include <array>

#include "panels/multi_function/multi_function_panel.h"
#include "registers/kvt71385.h"

namespace varzelin {
namespace {

namespace map = registers::kvt71385;

}  // namespace

LimitRegisters::LimitRegisters(Program& owner, MultiFunctionPanel& of_panel, Frame& frame)
    : PartOf(owner, of_panel),
      lblLimits(panel, "lblLimits", {.Caption = "Interrupt Limits", .Container = &frame}),
      lblILow(panel, "lblILow", {.Caption = "Lower ", .Container = &frame}),
      txtILow(
          panel, "txtILow",
          {.ToolTipText = "Enter Decimal value 1-65535 for Interrupt Low Threshold, click write to update "
                          "device.",
           .Container = &frame}),
      lblIHigh(panel, "lblIHigh", {.Caption = "Upper ", .Container = &frame}),
      txtIHigh(panel, "txtIHigh",
               {.ToolTipText = "Enter Decimal value 1-65535 for Interrupt High Threshold, click write to "
                               "update device.",
                .Container = &frame}),
      cmdWrtILimits(panel, "cmdWrtILimits",
                    {.Caption = "Write",
                     .ToolTipText = "Click here to update Interrupt Threshold Registers in the device.",
                     .Container = &frame}),
      cmdReadILimits(panel, "cmdReadILimits",
                     {.Caption = "Read",
                      .ToolTipText = "Click here to read Interrupt Threshold Registers in the device",
                      .Container = &frame}),
      lblIlimitsformat(
          panel, "lblIlimitsformat",
          forms::captioned({"Single Polarity", "12 Bits", "4095 Max", "0 Min"}, {.Container = &frame})) {
  on(cmdWrtILimits, Event::Click, &LimitRegisters::cmdWrtILimits_Click);
  on(cmdReadILimits, Event::Click, &LimitRegisters::cmdReadILimits_Click);
}

void LimitRegisters::show_bounds() {
  lblIlimitsformat(2).Caption = std::to_string(store.LimitMax) + " Max";
  lblIlimitsformat(3).Caption = std::to_string(store.LimitMin) + " Min";
}

void LimitRegisters::tell_bounds(const char* before, const char* behind) {
  MsgBox(before + forms::Str(store.LimitMin) + " Min and " + forms::Str(store.LimitMax) + behind);
}

// Widths that have no format of their own keep the one before.
void LimitRegisters::take_sign(std::int32_t mask_16_bits, std::int32_t mask_12_bits) {
  if (store.AdcBits == 16) {
    store.SignMask = mask_16_bits;
    store.SignBit = sign_bit_16;
  }
  if (store.AdcBits == 12) {
    store.SignMask = mask_12_bits;
    store.SignBit = sign_bit_12;
  }
}

LimitBytes LimitRegisters::bytes_of(const TextBox& box) const {
  return limit_bytes(forms::Val(box.Text), store.SignMask, store.SignBit);
}

// A limit out of bounds leaves the session as it is.
void LimitRegisters::cmdWrtILimits_Click() {
  take_sign(0xFFFF, 0x0FFF);
  panel.connect_by_rule();
  for (const Limit* limit : {&low_, &high_}) {
    if (within_bounds(forms::CLng(forms::Val(limit->box.Text)))) continue;
    tell_bounds(limit->refused, limit->re_enter);
    return;
  }
  const LimitBytes low = bytes_of(txtILow);
  const LimitBytes high = bytes_of(txtIHigh);
  panel.send({0, panel.address(panel.model.write_address), map::low_limit_register, low.low, low.high,
              high.low, high.high},
             panel.sensor_route());
  int shown = map::low_limit_register;
  for (const std::int32_t byte : {low.low, low.high, high.low, high.high}) {
    panel.txtRegHex(shown++).Text = forms::Hex2(byte);
  }
  panel.disconnect_by_rule();
}

void LimitRegisters::cmdReadILimits_Click() {
  take_sign(0x7FFF, 0x07FF);
  panel.connect_by_rule();
  std::array<int, 4> bytes{};
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] = panel.read_register(map::low_limit_register + static_cast<int>(i));
  }
  const auto value = [this](int low, int high) {
    const bool is_plain = store.SinglePolarity != 0;
    return is_plain ? plain_count(low, high).value
                    : twos_complement(low, high, store.SignBit, store.SignMask).value;
  };
  txtILow.Text = std::to_string(value(bytes[0], bytes[1]));
  txtIHigh.Text = std::to_string(value(bytes[2], bytes[3]));
  for (const Limit* limit : {&low_, &high_}) {
    if (!within_bounds(forms::CLng(forms::Val(limit->box.Text)))) tell_bounds(limit->outside, limit->update);
  }
  panel.disconnect_by_rule();
}

}  // namespace varzelin
