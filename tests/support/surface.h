// A form that is nothing but two pictures, for tests that draw.
#pragma once

#include "bridge/program_form.h"
#include "support/test_program.h"

namespace varzelin::testing {

struct Surface : ProgramForm {
  Surface(TestProgram& test, int width, int height)
      : ProgramForm(test.program, "Surface", ""),
        plot(*this, "plot", {.Width = width, .Height = height, .BackColor = forms::clr_white}),
        labels(*this, "labels", {.Width = 520, .Height = 362}) {}

  PictureBox plot;
  PictureBox labels;
};

inline constexpr std::int32_t black_pixel = 0x000000;
inline constexpr std::int32_t white_pixel = 0xFFFFFF;
inline constexpr std::int32_t red_pixel = 0x0000FF;  // red is the low byte
inline constexpr std::int32_t blue_pixel = 0xFF0000;

}  // namespace varzelin::testing
