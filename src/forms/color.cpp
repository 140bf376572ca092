#include "forms/color.h"

#include <cmath>
#include <cstdio>

#include "forms/errors.h"

namespace forms {

Color QBColor(double index) {
  static constexpr std::array<std::uint32_t, 16> table{
      0x000000, 0x800000, 0x008000, 0x808000, 0x000080, 0x800080, 0x008080, 0xC0C0C0,
      0x808080, 0xFF0000, 0x00FF00, 0xFFFF00, 0x0000FF, 0xFF00FF, 0x00FFFF, 0xFFFFFF};
  const double rounded = std::nearbyint(index);
  if (!(rounded >= 0 && rounded <= 15)) raise_error(invalid_procedure_call);
  return {table[static_cast<std::size_t>(rounded)]};
}

Color resolved(Color color) {
  if ((color.value & 0x80000000u) == 0) return color;
  switch (color.value & 0xFFu) {
    case 0x05:
      return clr_white;
    case 0x0F:
      return RGB(0xF0, 0xF0, 0xF0);
    default:
      return clr_black;
  }
}

std::string html(Color color) {
  const auto value = resolved(color).value;
  char text[8];
  std::snprintf(text, sizeof text, "#%02X%02X%02X", value & 0xFFu, (value >> 8) & 0xFFu,
                (value >> 16) & 0xFFu);
  return text;
}

}  // namespace forms
