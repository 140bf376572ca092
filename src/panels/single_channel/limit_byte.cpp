#include "panels/single_channel/limit_byte.h"

#include "forms/text.h"

namespace varzelin {

LimitEntry limit_entry(double number, const LimitRules& rules) {
  constexpr std::int32_t step = 256;
  const std::int32_t limit = forms::CLng(number);
  LimitEntry entry;
  if (limit % step == 0) {
    const bool in_range = (limit >= step && limit <= rules.maximum) || (limit == 0 && rules.zero_allowed);
    if (!in_range) return entry;
    entry.byte = limit / step;
  } else {
    const double steps = static_cast<double>(limit) / step;
    entry.shown = forms::CLng(forms::Int(steps) * step);
    entry.byte = forms::CLng(steps);
  }
  if (entry.byte == 0 && !rules.zero_allowed) entry.byte = step;
  return entry;
}

}  // namespace varzelin
