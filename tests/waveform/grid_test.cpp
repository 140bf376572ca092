// The grid of the chart and the labels around it.
#include <gtest/gtest.h>

#include "support/surface.h"
#include "waveform/trace.h"

namespace varzelin::testing {
namespace {

struct Grid : ::testing::Test, TestProgram {
  Surface form{*this, plot_columns, plot_rows};
  std::vector<forms::PictureBox::PrintedText> print() {
    DrawGridLabels2(store, form.labels, form.plot);
    return form.labels.printed();
  }
};

TEST_F(Grid, HasALineEvery40ColumnsAndEvery30RowsFromTheBottom) {
  DrawGrid(program, form.plot);
  for (int x = 0; x < 403; ++x) {
    for (int row = 0; row < 304; ++row) {
      // The left edge has no line of its own, the bottom row has.
      const bool line = (x > 0 && x % 40 == 0) || (303 - row) % 30 == 0;
      ASSERT_EQ(form.plot.GetPixel(x, row), line ? black_pixel : white_pixel) << x << "," << row;
    }
  }
}

// 200 and 400 are the line columns divisible by 25; columns 0, 25, ... 400 come in the second pass.
TEST_F(Grid, IsShownAsItGrows) {
  int shown = 0;
  int columns_at_first = 0;
  user.at_yield = [&] {
    if (++shown > 1) return;
    for (int x = 0; x < 403; ++x) columns_at_first += form.plot.GetPixel(x, 2) == black_pixel;
  };
  DrawGrid(program, form.plot);
  EXPECT_EQ(shown, 2 + 17 + 1);
  EXPECT_EQ(columns_at_first, 5);
}

TEST_F(Grid, IsDrawnOverWhatThePictureShows) {
  form.plot.SetPixelV(41, 2, red_pixel);
  DrawGrid(program, form.plot);
  EXPECT_EQ(form.plot.GetPixel(41, 2), red_pixel);
}

TEST_F(Grid, PrintsTheScaleLabelsFromTheBottomUp) {
  for (std::size_t i = 0; i <= 10; ++i) {
    store.Label_Left[i] = std::to_string(i * 1500);
    store.Label_Right[i] = std::to_string(i);
  }
  const auto printed = print();
  for (std::size_t i = 0; i <= 10; ++i) {
    const auto& left = printed[2 * i];
    const auto& right = printed[2 * i + 1];
    const double y = 304 - 30.4 * static_cast<double>(i) + 12 / 1.5;
    EXPECT_DOUBLE_EQ(left.x, 12);
    EXPECT_DOUBLE_EQ(right.x, 462);
    EXPECT_NEAR(left.y, y, 1e-9);
    EXPECT_NEAR(right.y, y, 1e-9);
  }
  EXPECT_EQ(printed[0].text, "00000");
  EXPECT_EQ(printed[2].text, "01500");
  EXPECT_EQ(printed[20].text, "15000");
  EXPECT_EQ(printed[21].text, "00010");
}

TEST_F(Grid, ALabelKeepsItsSignAndAllOfItsDigits) {
  store.Label_Left[0] = "-250";
  store.Label_Left[1] = "1234567";
  store.Label_Left[2] = "";
  const auto printed = print();
  EXPECT_EQ(printed[0].text, "-00250");
  EXPECT_EQ(printed[2].text, "1234567");
  EXPECT_EQ(printed[4].text, "");
}

TEST_F(Grid, PrintsTheUnitsUnderTheLabelColumns) {
  const auto start = print();
  EXPECT_EQ(start[22].text, "AD Cnt");
  EXPECT_EQ(start[23].text, "AD Cnt");
  store.GraphUnit1 = "one";
  store.GraphUnit2 = "two";
  const auto printed = print();
  EXPECT_EQ(printed[22].text, "one");
  EXPECT_DOUBLE_EQ(printed[22].x, 12);
  EXPECT_DOUBLE_EQ(printed[22].y, 340);
  EXPECT_EQ(printed[23].text, "two");
  EXPECT_DOUBLE_EQ(printed[23].x, 462);
  EXPECT_DOUBLE_EQ(printed[23].y, 340);
}

TEST_F(Grid, TimeRunsBackwards) {
  for (std::size_t i = 0; i <= 10; ++i) store.Label_Time[i] = std::to_string(40 * i);
  const auto printed = print();
  for (std::size_t i = 0; i <= 10; ++i) {
    const auto& label = printed[24 + i];
    EXPECT_EQ(label.text, std::to_string(400 - 40 * i));
    EXPECT_NEAR(label.x, 40.3 * static_cast<double>(i) + 48, 1e-9);
    EXPECT_DOUBLE_EQ(label.y, 325);
  }
}

TEST_F(Grid, NamesTheCountOfSamplesBelowTheTimeLabels) {
  const auto printed = print();
  ASSERT_EQ(printed.size(), 36u);
  EXPECT_EQ(printed[35].text, "                     Total 400 Samples");
  EXPECT_DOUBLE_EQ(printed[35].x, 520 / 11.0 / 5);
  EXPECT_DOUBLE_EQ(printed[35].y, 325 + 12 + 5);
}

TEST_F(Grid, PrintingAnewTakesTheOldLabelsAway) {
  print();
  EXPECT_EQ(print().size(), 36u);
}

}  // namespace
}  // namespace varzelin::testing
