#include "waveform/trace.h"

#include <algorithm>
#include <cstdint>
#include <string>

#include "forms/errors.h"
#include "forms/text.h"
#include "waveform/fast_drawing.h"

namespace varzelin {
namespace {

constexpr double label_column_distance = 450;
constexpr double time_label_row = 325;
constexpr double unit_row = 340;
constexpr int redraw_columns = 25;  // a growing picture is shown at every column divisible by this

std::string in_label_format(const std::string& label) {
  return forms::IsNumeric(label) ? forms::Format(forms::Val(label), "00000") : label;
}

void print_at(forms::PictureBox& picture, double x, double y, std::string text) {
  picture.CurrentX = x;
  picture.CurrentY = y;
  picture.Print(std::move(text));
}

void blacken(ImageData& image, int column, int row) {
  for (int channel = 0; channel < 3; ++channel) image.set(channel, column, row, 0);
}

std::int32_t trace_colour(const Store& store) {
  return static_cast<std::int32_t>(forms::RGB(store.Trace_Red, store.Trace_Green, store.Trace_Blue).value);
}

// Calls visit(row) for every row from `from` to `to` that the picture has, in either direction.
template <class Visit>
void each_row(const forms::PictureBox& picture, std::int64_t from, std::int64_t to, Visit&& visit) {
  const auto [low, high] = std::minmax(from, to);
  const std::int64_t last = std::min<std::int64_t>(high, picture.ScaleHeight() - 1);
  for (std::int64_t row = std::max<std::int64_t>(low, 0); row <= last; ++row) visit(static_cast<int>(row));
}

// Calls visit(column, row, saved) for every element of the saved screen that belongs to the picture. The
// row below its last one belongs to it too.
template <class Screen, class Visit>
void each_saved_pixel(Screen& screen, const forms::PictureBox& picture, Visit&& visit) {
  const int columns = std::min(picture.ScaleWidth(), static_cast<int>(screen.size()));
  const int rows = std::min(picture.ScaleHeight() + 1, static_cast<int>(screen[0].size()));
  for (int column = 0; column < columns; ++column) {
    auto& saved = screen[static_cast<std::size_t>(column)];
    for (int row = 0; row < rows; ++row) visit(column, row, saved[static_cast<std::size_t>(row)]);
  }
}

}  // namespace

void clear_trace(Store& store) {
  std::fill_n(store.Trace_Y.begin(), trace_entry + 1, 1);
}

void DrawGrid(Program& program, forms::PictureBox& picture) {
  FastDrawing drawing(program.runtime);
  const int width = drawing.GetImageWidth(picture);
  const int height = drawing.GetImageHeight(picture);
  const int column_step = forms::CLng(width / 10.0);
  const int row_step = forms::CLng(height / 10.0);
  ImageData image;
  drawing.GetImageData(picture, image);
  for (int column = column_step; column <= width; column += column_step) {
    for (int row = 0; row <= height; ++row) blacken(image, column, row);
    if (column % redraw_columns == 0) drawing.SetImageData(picture, image);
  }
  for (int column = 0; column <= width; ++column) {
    for (int row = 0; row <= height; row += row_step) blacken(image, column, row);
    if (column % redraw_columns == 0) drawing.SetImageData(picture, image);
  }
  drawing.SetImageData(picture, image);
}

void DrawGridLabels2(const Store& store, forms::PictureBox& labels, const forms::PictureBox& plot) {
  const double height = plot.ScaleHeight();
  const double width = plot.ScaleWidth();
  labels.Cls();
  const double text_height = forms::PictureBox::TextHeight("Yy");
  const double left = forms::PictureBox::TextWidth("W");
  for (std::size_t i = 0; i <= 10; ++i) {
    const double y = height - static_cast<double>(i) * height / 10 + text_height / 1.5;
    print_at(labels, left, y, in_label_format(store.Label_Left[i]));
    print_at(labels, left + label_column_distance, y, in_label_format(store.Label_Right[i]));
  }
  print_at(labels, left, unit_row, store.GraphUnit1);
  print_at(labels, left + label_column_distance, unit_row, store.GraphUnit2);
  for (std::size_t i = 0; i <= 10; ++i) {
    print_at(labels, static_cast<double>(i) * width / 10 + 4 * left, time_label_row,
             store.Label_Time[10 - i]);
  }
  print_at(labels, labels.ScaleWidth() / 11.0 / 5.0, labels.CurrentY + 5,
           "                     Total 400 Samples");
}

void Save_Screen(Store& store, const forms::PictureBox& picture) {
  each_saved_pixel(store.Screen_Pixels, picture,
                   [&](int column, int row, std::int32_t& saved) { saved = picture.GetPixel(column, row); });
}

void Restore_Screen(const Store& store, forms::PictureBox& picture) {
  each_saved_pixel(store.Screen_Pixels, picture,
                   [&](int column, int row, std::int32_t saved) { picture.SetPixelV(column, row, saved); });
  picture.Refresh();
}

void Scroll_Trace(Store& store, forms::PictureBox& picture, std::int32_t position) {
  if (position > trace_entry) return;
  if (position < 1) forms::raise_error(forms::subscript_out_of_range);
  const std::int32_t colour = trace_colour(store);
  for (int x = position - 1; x < plot_columns; ++x) {
    const auto column = static_cast<std::size_t>(x);
    const std::int64_t old = store.Trace_Y[column];
    const std::int64_t now = store.Trace_Y[column + 1];
    const std::int64_t next = store.Trace_Y[column + 2];
    if (old != now) {
      const int beyond = now > old ? 1 : -1;
      each_row(picture, old - beyond, now + beyond, [&](int row) {
        picture.SetPixelV(x, row, store.Screen_Pixels[column][static_cast<std::size_t>(row)]);
      });
    }
    each_row(picture, now - 1, now + 1, [&](int row) { picture.SetPixelV(x, row, colour); });
    each_row(picture, now, next, [&](int row) { picture.SetPixelV(x, row, colour); });
    store.Trace_Y[column] = now == 0 ? 1 : static_cast<std::int32_t>(now);
  }
  picture.Refresh();
}

void Plot_Trace(forms::PictureBox& picture, std::span<const std::int32_t> rows) {
  constexpr auto pure_red = static_cast<std::int32_t>(forms::clr_red.value);
  for (int column = picture.ScaleWidth() - 1; column >= 0; --column) {
    if (static_cast<std::size_t>(column) >= rows.size()) forms::raise_error(forms::subscript_out_of_range);
    const std::int64_t row = rows[static_cast<std::size_t>(column)];
    each_row(picture, row - 1, row + 1, [&](int y) { picture.SetPixelV(column, y, pure_red); });
    if (picture.AutoRedraw && column % redraw_columns == 0) picture.Refresh();
  }
  picture.Refresh();
}

void toggle_trace_colour(Store& store) {
  const bool was_red = store.Trace_Red > 254;
  store.Trace_Red = was_red ? 0 : 255;
  store.Trace_Blue = was_red ? 255 : 0;
}

std::int32_t trace_row(double reading, std::int32_t min, std::int32_t max) {
  if (max == min) forms::raise_error(forms::division_by_zero);
  const double rows_a_unit = plot_rows / (static_cast<double>(max) - min);
  return limited_row(forms::CLng(plot_rows - (reading - min) * rows_a_unit));
}

std::int32_t whole_trace_row(std::int32_t reading, std::int32_t max) {
  if (max == 0) forms::raise_error(forms::division_by_zero);
  return forms::CLng(forms::Int(plot_rows - reading * (static_cast<double>(plot_rows) / max)));
}

std::int32_t limited_row(std::int32_t row) {
  return std::clamp(row, 1, plot_rows);
}

}  // namespace varzelin
