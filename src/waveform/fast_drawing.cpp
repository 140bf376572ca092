#include "waveform/fast_drawing.h"

#include <algorithm>

namespace varzelin {
namespace {

constexpr int channels = 3;

}  // namespace

void ImageData::resize(int columns, int rows) {
  columns_ = static_cast<std::size_t>(columns);
  colors_.assign(columns_ * static_cast<std::size_t>(rows), 0);
}

int FastDrawing::GetImageStreamLength(const forms::PictureBox& picture) const {
  return picture.ScaleWidth() * picture.ScaleHeight() * channels;
}

void FastDrawing::GetImageData(const forms::PictureBox& picture, ImageData& image) const {
  constexpr std::uint32_t color_bits = 0xFFFFFF;
  const int rows = picture.ScaleHeight();
  image.resize(picture.ScaleWidth(), rows + 1);
  for (int row = 0; row < rows; ++row) {
    std::ranges::transform(picture.row(rows - 1 - row), image.row(row).begin(),
                           [](std::uint32_t pixel) { return pixel & color_bits; });
  }
}

void FastDrawing::SetImageData(forms::PictureBox& picture, const ImageData& image) {
  const int rows = picture.ScaleHeight();
  for (int row = 0; row < rows; ++row) {
    std::ranges::copy(image.row(row), picture.change_row(rows - 1 - row).begin());
  }
  show(picture);
}

void FastDrawing::GetImageDataStream(const forms::PictureBox& picture,
                                     std::vector<std::uint8_t>& stream) const {
  ImageData image;
  GetImageData(picture, image);
  stream.clear();
  stream.reserve(static_cast<std::size_t>(GetImageStreamLength(picture)));
  for (int row = 0; row < picture.ScaleHeight(); ++row) {
    for (int column = 0; column < picture.ScaleWidth(); ++column) {
      for (int channel = 0; channel < channels; ++channel) stream.push_back(image.at(channel, column, row));
    }
  }
}

void FastDrawing::SetImageDataStream(forms::PictureBox& picture, const std::vector<std::uint8_t>& stream) {
  if (stream.size() < static_cast<std::size_t>(GetImageStreamLength(picture))) {
    forms::raise_error(forms::subscript_out_of_range);
  }
  ImageData image;
  image.resize(picture.ScaleWidth(), picture.ScaleHeight() + 1);
  auto byte = stream.begin();
  for (int row = 0; row < picture.ScaleHeight(); ++row) {
    for (int column = 0; column < picture.ScaleWidth(); ++column) {
      for (int channel = 0; channel < channels; ++channel) image.set(channel, column, row, *byte++);
    }
  }
  SetImageData(picture, image);
}

void FastDrawing::show(forms::PictureBox& picture) {
  if (picture.AutoRedraw) picture.Refresh();
  runtime_.DoEvents();
}

}  // namespace varzelin
