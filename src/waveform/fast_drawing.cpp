#include "waveform/fast_drawing.h"

namespace varzelin {
namespace {

constexpr int channels = 3;

std::uint8_t channel_of(std::int32_t color, int channel) {
  return static_cast<std::uint8_t>(color >> (8 * (2 - channel)));  // colours hold red in the low byte
}

std::int32_t color_of(std::uint8_t blue, std::uint8_t green, std::uint8_t red) {
  return red | green << 8 | blue << 16;
}

}  // namespace

void ImageData::resize(int columns, int rows) {
  columns_ = static_cast<std::size_t>(columns);
  bytes_.assign(columns_ * static_cast<std::size_t>(rows) * channels, 0);
}

int FastDrawing::GetImageStreamLength(const forms::PictureBox& picture) const {
  return picture.ScaleWidth() * picture.ScaleHeight() * channels;
}

void FastDrawing::GetImageData(const forms::PictureBox& picture, ImageData& image) const {
  const int columns = picture.ScaleWidth();
  const int rows = picture.ScaleHeight();
  image.resize(columns, rows + 1);
  for (int row = 0; row < rows; ++row) {
    for (int column = 0; column < columns; ++column) {
      const std::int32_t color = picture.GetPixel(column, rows - 1 - row);
      for (int channel = 0; channel < channels; ++channel) {
        image.at(channel, column, row) = channel_of(color, channel);
      }
    }
  }
}

void FastDrawing::SetImageData(forms::PictureBox& picture, const ImageData& image) {
  const int rows = picture.ScaleHeight();
  for (int row = 0; row < rows; ++row) {
    int column = 0;
    for (std::uint32_t& pixel : picture.change_row(rows - 1 - row)) {
      pixel = static_cast<std::uint32_t>(
          color_of(image.at(0, column, row), image.at(1, column, row), image.at(2, column, row)));
      ++column;
    }
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
      for (int channel = 0; channel < channels; ++channel) image.at(channel, column, row) = *byte++;
    }
  }
  SetImageData(picture, image);
}

void FastDrawing::show(forms::PictureBox& picture) {
  if (picture.AutoRedraw) picture.Refresh();
  runtime_.DoEvents();
}

}  // namespace varzelin
