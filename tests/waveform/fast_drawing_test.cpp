// A picture as one array of colour bytes, and the copy of a screen in the shared store.
#include <gtest/gtest.h>

#include "support/surface.h"
#include "waveform/fast_drawing.h"
#include "waveform/trace.h"

namespace varzelin::testing {
namespace {

struct Drawing : ::testing::Test, TestProgram {
  Surface form{*this, 3, 2};
  forms::PictureBox& picture = form.plot;
  FastDrawing drawing{program.runtime};
  int yields = 0;

  void SetUp() override {
    user.at_yield = [this] { ++yields; };
  }
};

TEST_F(Drawing, WidthIsTheGreatestColumnAndHeightTheCountOfRows) {
  EXPECT_EQ(drawing.GetImageWidth(picture), 2);
  EXPECT_EQ(drawing.GetImageHeight(picture), 2);
  EXPECT_EQ(drawing.GetImageStreamLength(picture), 18);
}

TEST_F(Drawing, ReadsBlueGreenRedFromTheBottomRowUp) {
  picture.SetPixelV(1, 1, 0x030201);  // bottom row
  picture.SetPixelV(2, 0, 0x0C0B0A);  // top row
  ImageData image;
  drawing.GetImageData(picture, image);
  EXPECT_EQ(image.at(0, 1, 0), 3);
  EXPECT_EQ(image.at(1, 1, 0), 2);
  EXPECT_EQ(image.at(2, 1, 0), 1);
  EXPECT_EQ(image.at(0, 2, 1), 0x0C);
  EXPECT_EQ(image.at(1, 2, 1), 0x0B);
  EXPECT_EQ(image.at(2, 2, 1), 0x0A);
  EXPECT_EQ(yields, 0);
}

TEST_F(Drawing, HasOneRowMoreThanThePicture) {
  ImageData image;
  drawing.GetImageData(picture, image);
  for (int column = 0; column < 3; ++column) {
    EXPECT_EQ(image.at(0, column, 1), 255);
    for (int channel = 0; channel < 3; ++channel) EXPECT_EQ(image.at(channel, column, 2), 0);
  }
}

TEST_F(Drawing, WritesBackWhatItReadAndYieldsOnce) {
  picture.SetPixelV(0, 0, 0x123456);
  picture.SetPixelV(2, 1, 0x654321);
  ImageData image;
  drawing.GetImageData(picture, image);
  picture.Cls();
  drawing.SetImageData(picture, image);
  EXPECT_EQ(picture.GetPixel(0, 0), 0x123456);
  EXPECT_EQ(picture.GetPixel(2, 1), 0x654321);
  EXPECT_EQ(picture.GetPixel(1, 1), white_pixel);
  EXPECT_EQ(yields, 1);
}

TEST_F(Drawing, HasThreeBytesOfAPixelThatHasFour) {
  picture.SetPixelV(1, 0, 0x7F123456);
  ImageData image;
  drawing.GetImageData(picture, image);
  drawing.SetImageData(picture, image);
  EXPECT_EQ(picture.GetPixel(1, 0), 0x123456);
}

// A picture is marked for the front ends when it is shown; setting pixels alone doesn't mark it.
TEST_F(Drawing, ShowsThePictureOnlyWithAutomaticRedraw) {
  ImageData image;
  drawing.GetImageData(picture, image);
  picture.AutoRedraw = false;
  program.runtime.take_changes();
  drawing.SetImageData(picture, image);
  EXPECT_FALSE(program.runtime.has_changes());
  picture.AutoRedraw = true;
  program.runtime.take_changes();
  drawing.SetImageData(picture, image);
  EXPECT_TRUE(program.runtime.has_changes());
}

TEST_F(Drawing, StreamsTheSameBytesInOneIndex) {
  picture.SetPixelV(0, 1, 0x030201);
  picture.SetPixelV(2, 0, 0x0C0B0A);
  std::vector<std::uint8_t> stream(99, 7);
  drawing.GetImageDataStream(picture, stream);
  const std::vector<std::uint8_t> expected{3,   2,   1,   255, 255, 255, 255, 255, 255,  // bottom row
                                           255, 255, 255, 255, 255, 255, 12,  11,  10};
  EXPECT_EQ(stream, expected);
}

TEST_F(Drawing, PaintsAStream) {
  std::vector<std::uint8_t> stream(18);
  for (std::size_t i = 0; i < stream.size(); ++i) stream[i] = static_cast<std::uint8_t>(i + 1);
  drawing.SetImageDataStream(picture, stream);
  EXPECT_EQ(picture.GetPixel(0, 1), 0x010203);
  EXPECT_EQ(picture.GetPixel(2, 1), 0x070809);
  EXPECT_EQ(picture.GetPixel(0, 0), 0x0A0B0C);
  EXPECT_EQ(picture.GetPixel(2, 0), 0x101112);
  EXPECT_EQ(yields, 1);
}

TEST_F(Drawing, AStreamThatIsTooShortIsRefusedAndPaintsNothing) {
  const std::vector<std::uint8_t> stream(17);
  EXPECT_THROW(drawing.SetImageDataStream(picture, stream), forms::RunTimeError);
  EXPECT_EQ(picture.GetPixel(0, 0), white_pixel);
}

struct Screen : ::testing::Test, TestProgram {};

TEST_F(Screen, RestoreBeforeAnySavePaintsBlack) {
  Surface form(*this, 403, 304);
  Restore_Screen(store, form.plot);
  for (int x = 0; x < 403; ++x) {
    for (int y = 0; y < 304; ++y) ASSERT_EQ(form.plot.GetPixel(x, y), black_pixel) << x << "," << y;
  }
}

TEST_F(Screen, SavesByColumnAndRowAndRestoresEveryPixel) {
  Surface form(*this, 403, 304);
  const auto colour = [](int x, int y) { return (x * 7919 + y * 104729) & 0xFFFFFF; };
  for (int x = 0; x < 403; ++x) {
    for (int y = 0; y < 304; ++y) form.plot.SetPixelV(x, y, colour(x, y));
  }
  Save_Screen(store, form.plot);
  for (int x = 0; x < 403; ++x) {
    for (int y = 0; y < 304; ++y) {
      ASSERT_EQ(store.Screen_Pixels[static_cast<std::size_t>(x)][static_cast<std::size_t>(y)], colour(x, y))
          << x << "," << y;
    }
  }
  form.plot.Cls();
  Restore_Screen(store, form.plot);
  for (int x = 0; x < 403; ++x) {
    for (int y = 0; y < 304; ++y) ASSERT_EQ(form.plot.GetPixel(x, y), colour(x, y)) << x << "," << y;
  }
}

// The copy takes in the row below the picture's last one, which has no colour there.
TEST_F(Screen, SavesOneRowMoreThanThePictureHasAndNoColumnMore) {
  Surface form(*this, 5, 4);
  store.Screen_Pixels[5].fill(7);
  for (std::size_t x = 0; x < 5; ++x) store.Screen_Pixels[x].fill(7);
  Save_Screen(store, form.plot);
  for (std::size_t x = 0; x < 5; ++x) {
    for (std::size_t y = 0; y < 4; ++y) EXPECT_EQ(store.Screen_Pixels[x][y], white_pixel) << x << "," << y;
    EXPECT_EQ(store.Screen_Pixels[x][4], forms::PictureBox::invalid_color) << x;
    EXPECT_EQ(store.Screen_Pixels[x][5], 7) << x;
  }
  for (std::size_t y = 0; y < 6; ++y) EXPECT_EQ(store.Screen_Pixels[5][y], 7) << y;
}

TEST_F(Screen, APictureLargerThanTheCopyIsSavedAsFarAsTheCopyGoes) {
  Surface form(*this, 500, 500);
  form.plot.SetPixelV(404, 404, red_pixel);
  Save_Screen(store, form.plot);
  EXPECT_EQ(store.Screen_Pixels[404][404], red_pixel);
  form.plot.SetPixelV(404, 404, blue_pixel);
  form.plot.SetPixelV(405, 405, blue_pixel);
  Restore_Screen(store, form.plot);
  EXPECT_EQ(form.plot.GetPixel(404, 404), red_pixel);
  EXPECT_EQ(form.plot.GetPixel(405, 405), blue_pixel);
}

TEST_F(Screen, RestoringShowsThePicture) {
  Surface form(*this, 3, 2);
  program.runtime.take_changes();
  Restore_Screen(store, form.plot);
  EXPECT_TRUE(program.runtime.has_changes());
}

}  // namespace
}  // namespace varzelin::testing
