// The interrupt limits in r4 to r7, entered in decimal: without a sign, or in two's complement at the
// converter's width.
#pragma once

#include "panels/common/panel_part.h"
#include "panels/multi_function/limit_bytes.h"

namespace varzelin {

class MultiFunctionPanel;

class LimitRegisters : public PartOf<MultiFunctionPanel> {
 public:
  LimitRegisters(Program& owner, MultiFunctionPanel& of_panel, Frame& frame);

  void cmdWrtILimits_Click();
  void cmdReadILimits_Click();

  // Bounds and format, as the options have left them.
  void show_bounds();

 private:
  struct Limit {
    TextBox& box;
    const char* refused;  // the words in front of the bounds, and behind them
    const char* re_enter;
    const char* outside;
    const char* update;
  };
  bool within_bounds(std::int32_t value) const { return value >= store.LimitMin && value <= store.LimitMax; }
  void tell_bounds(const char* before, const char* behind);
  void take_sign(std::int32_t mask_16_bits, std::int32_t mask_12_bits);
  LimitBytes bytes_of(const TextBox& box) const;

 public:
  Label lblLimits;
  Label lblILow;
  TextBox txtILow;
  Label lblIHigh;
  TextBox txtIHigh;
  CommandButton cmdWrtILimits;
  CommandButton cmdReadILimits;
  ControlArray<Label> lblIlimitsformat;

 private:
  const Limit low_{txtILow, "Low Limit must be within ", " Max. Re-enter Low Limit",
                   "Low Limit Should be Within ", " Max. Update Low Limit"};
  const Limit high_{txtIHigh, "High Limit must be within ", " Max. Re-enter High Limt",
                    "High Limit Should be Within ", " Max. Update High Limit"};
};

}  // namespace varzelin
