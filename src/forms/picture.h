// A picture surface: pixels that the program sets one by one, and texts that it prints.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "forms/control.h"

namespace forms {

class PictureBox : public Control {
 public:
  // What GetPixel gives outside the surface.
  static constexpr std::int32_t invalid_color = -1;

  struct PrintedText {
    double x;
    double y;
    std::string text;
  };

  // The design's Width and Height are the surface's size in pixels.
  PictureBox(Form& form, std::string name, const Design& design = {}, int index = -1);

  Property<bool> AutoRedraw;
  Property<Color> BackColor;
  Property<double> CurrentX;
  Property<double> CurrentY;
  // Place and size inside its container, in the container's units.
  Property<double> Left;
  Property<double> Top;
  Property<double> Width;
  Property<double> Height;

  int ScaleWidth() const { return width_; }
  int ScaleHeight() const { return height_; }

  // The system's pixel access. Outside the surface GetPixel gives invalid_color and SetPixelV does
  // nothing; invalid_color sets nothing.
  std::int32_t GetPixel(int x, int y) const {
    return inside(x, y) ? static_cast<std::int32_t>(pixels_[offset(x, y)]) : invalid_color;
  }
  void SetPixelV(int x, int y, std::int32_t color) {
    if (!inside(x, y) || color == invalid_color) return;
    pixels_[offset(x, y)] = static_cast<std::uint32_t>(color);
    if (x < dirty_first_) dirty_first_ = x;
    if (x > dirty_last_) dirty_last_ = x;
  }

  // A row's colours, to be read or written as a whole. The row exists.
  std::span<const std::uint32_t> row(int y) const {
    return std::span(pixels_).subspan(offset(0, y), static_cast<std::size_t>(width_));
  }
  std::span<std::uint32_t> change_row(int y) {
    dirty_first_ = 0;
    dirty_last_ = width_ - 1;
    return std::span(pixels_).subspan(offset(0, y), static_cast<std::size_t>(width_));
  }

  // Rows from the top, each ScaleWidth() colours 0x00BBGGRR.
  std::span<const std::uint32_t> pixels() const { return pixels_; }

  // Fills the surface with BackColor and takes the printed texts away.
  void Cls();
  // Puts a text at CurrentX, CurrentY and moves to the start of the next line.
  void Print(std::string text);
  const std::vector<PrintedText>& printed() const { return printed_; }
  // The surface's font: every picture has the same, whatever a front end draws with.
  static double TextWidth(std::string_view text) { return 12.0 * static_cast<double>(text.size()); }
  static double TextHeight(std::string_view /*text*/) { return 12.0; }

  // Shows what was drawn since the last refresh.
  void Refresh() { touched(); }

  // Front ends: the columns drawn on since the last call, first > last for none.
  std::pair<int, int> take_dirty_columns();

 private:
  bool inside(int x, int y) const { return x >= 0 && y >= 0 && x < width_ && y < height_; }
  std::size_t offset(int x, int y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x);
  }

  const int width_;
  const int height_;
  std::vector<std::uint32_t> pixels_;
  std::vector<PrintedText> printed_;
  int dirty_first_;
  int dirty_last_;
};

}  // namespace forms
