#include "forms/picture.h"

#include <algorithm>
#include <utility>

namespace forms {

PictureBox::PictureBox(Form& form, std::string name, const Design& design, int index)
    : Control(form, Kind::PictureBox, std::move(name), index, design),
      AutoRedraw(*this, "AutoRedraw", true),
      BackColor(*this, "BackColor", design.BackColor),
      CurrentX(*this, "CurrentX", 0.0),
      CurrentY(*this, "CurrentY", 0.0),
      Left(*this, "Left", 0.0),
      Top(*this, "Top", 0.0),
      Width(*this, "Width", design.Width),
      Height(*this, "Height", design.Height),
      width_(design.Width),
      height_(design.Height),
      pixels_(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_),
              resolved(design.BackColor).value),
      dirty_first_(0),
      dirty_last_(width_ - 1) {}

void PictureBox::Cls() {
  std::fill(pixels_.begin(), pixels_.end(), resolved(BackColor).value);
  printed_.clear();
  dirty_first_ = 0;
  dirty_last_ = width_ - 1;
  CurrentX = 0.0;
  CurrentY = 0.0;
  touched();
}

void PictureBox::Print(std::string text) {
  const double height = TextHeight(text);
  printed_.push_back({CurrentX, CurrentY, std::move(text)});
  CurrentX = 0.0;
  CurrentY = CurrentY + height;
  touched();
}

std::pair<int, int> PictureBox::take_dirty_columns() {
  return {std::exchange(dirty_first_, width_), std::exchange(dirty_last_, -1)};
}

}  // namespace forms
