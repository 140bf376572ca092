// A whole picture as one array of colour bytes.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "bridge/program.h"
#include "forms/picture.h"

namespace varzelin {

// Image bytes by channel (0 blue, 1 green, 2 red), column and row. Rows count from the bottom, and
// there is one row more than the picture has. The bytes of a pixel lie together as the picture's colour, so
// that a row goes from one to the other as it stands.
class ImageData {
 public:
  // All bytes become 0.
  void resize(int columns, int rows);
  std::uint8_t at(int channel, int column, int row) const {
    return static_cast<std::uint8_t>(colors_[offset(column, row)] >> shift_of(channel));
  }
  void set(int channel, int column, int row, std::uint8_t byte) {
    std::uint32_t& color = colors_[offset(column, row)];
    color = (color & ~(0xFFu << shift_of(channel))) | std::uint32_t{byte} << shift_of(channel);
  }
  // Colours 0x00BBGGRR.
  std::span<std::uint32_t> row(int row) { return std::span(colors_).subspan(offset(0, row), columns_); }
  std::span<const std::uint32_t> row(int row) const {
    return std::span(colors_).subspan(offset(0, row), columns_);
  }

 private:
  static constexpr int shift_of(int channel) { return 8 * (2 - channel); }
  std::size_t offset(int column, int row) const {
    return static_cast<std::size_t>(row) * columns_ + static_cast<std::size_t>(column);
  }
  std::size_t columns_ = 0;
  std::vector<std::uint32_t> colors_;
};

// Width is the greatest column index, height is the count of rows: callers loop up to both inclusive.
class FastDrawing {
 public:
  explicit FastDrawing(forms::Runtime& runtime) : runtime_(runtime) {}

  int GetImageWidth(const forms::PictureBox& picture) const { return picture.ScaleWidth() - 1; }
  int GetImageHeight(const forms::PictureBox& picture) const { return picture.ScaleHeight(); }
  // Bytes of the stream form: no alignment of the lines.
  int GetImageStreamLength(const forms::PictureBox& picture) const;

  void GetImageData(const forms::PictureBox& picture, ImageData& image) const;
  // Shows the picture if it redraws itself, then yields.
  void SetImageData(forms::PictureBox& picture, const ImageData& image);
  // The same bytes with one index.
  void GetImageDataStream(const forms::PictureBox& picture, std::vector<std::uint8_t>& stream) const;
  // Raises subscript_out_of_range for a stream shorter than the picture's.
  void SetImageDataStream(forms::PictureBox& picture, const std::vector<std::uint8_t>& stream);

 private:
  void show(forms::PictureBox& picture);
  forms::Runtime& runtime_;
};

}  // namespace varzelin
