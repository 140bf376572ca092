// Colours as the platform stores them: 0x00BBGGRR, or a system colour with the top bit set.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace forms {

struct Color {
  std::uint32_t value = 0;
  friend bool operator==(Color, Color) = default;
};

constexpr Color RGB(int red, int green, int blue) {
  return {static_cast<std::uint32_t>(red | green << 8 | blue << 16)};
}

inline constexpr Color clr_black = RGB(0, 0, 0);
inline constexpr Color clr_white = RGB(255, 255, 255);
inline constexpr Color clr_red = RGB(255, 0, 0);
inline constexpr Color clr_green = RGB(0, 255, 0);
inline constexpr Color clr_dark_green = RGB(0, 128, 0);
inline constexpr Color clr_window_background{0x80000005};
inline constexpr Color clr_window_text{0x80000008};
inline constexpr Color clr_button_face{0x8000000F};
inline constexpr Color clr_button_text{0x80000012};

// The platform's table of 16 colours. The index may come from a floating-point variable; it is
// rounded to the nearest, halves to even. Raises invalid_procedure_call outside 0 to 15.
Color QBColor(double index);

// What the colour looks like on screen: system colours resolved, otherwise the colour itself.
Color resolved(Color color);

// "#RRGGBB" of the resolved colour.
std::string html(Color color);

}  // namespace forms
