// A whole picture as one array of colour bytes.
#pragma once

#include <cstdint>
#include <vector>

#include "bridge/program.h"
#include "forms/picture.h"

namespace varzelin {

// Image bytes by channel (0 blue, 1 green, 2 red), column and row. Rows count from the bottom, and
// there is one row more than the picture has.
class ImageData {
 public:
  void resize(int columns, int rows);
  std::uint8_t& at(int channel, int column, int row) { return bytes_[offset(channel, column, row)]; }
  std::uint8_t at(int channel, int column, int row) const { return bytes_[offset(channel, column, row)]; }

 private:
  std::size_t offset(int channel, int column, int row) const {
    return (static_cast<std::size_t>(row) * columns_ + static_cast<std::size_t>(column)) * 3 +
           static_cast<std::size_t>(channel);
  }
  std::size_t columns_ = 0;
  std::vector<std::uint8_t> bytes_;
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
