// The scrolling trace, pixel by pixel, and the static one.
#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <vector>

#include "support/surface.h"
#include "waveform/trace.h"

namespace varzelin::testing {
namespace {

// The trace and its surface in the plainest form: one column at a time, one row at a time, nothing
// clipped before it is drawn.
struct PlainTrace {
  std::array<std::int32_t, 411> y{};
  std::vector<std::vector<std::int32_t>> pixels;
  const Store& store;
  std::int32_t colour;

  PlainTrace(const Store& shared, std::int32_t trace_colour)
      : y(shared.Trace_Y), store(shared), colour(trace_colour) {
    for (int x = 0; x < 403; ++x) {
      pixels.emplace_back();
      for (int row = 0; row < 304; ++row) {
        pixels.back().push_back(
            store.Screen_Pixels[static_cast<std::size_t>(x)][static_cast<std::size_t>(row)]);
      }
    }
  }
  void set(int x, int row, std::int32_t value) {
    if (row < 0 || row >= 304) return;
    pixels[static_cast<std::size_t>(x)][static_cast<std::size_t>(row)] = value;
  }
  void restore(int x, int row) {
    if (row < 0) row = 0;
    if (row > 404) return;
    set(x, row, store.Screen_Pixels[static_cast<std::size_t>(x)][static_cast<std::size_t>(row)]);
  }
  void scroll(int p) {
    if (p >= 404) return;
    for (int x = p - 1; x <= 402; ++x) {
      const auto i = static_cast<std::size_t>(x);
      const int old = y[i];
      const int now = y[i + 1];
      const int next = y[i + 2];
      if (old != now) {
        if (now > old) {
          for (int row = old - 1; row <= now + 1; ++row) restore(x, row);
        } else {
          for (int row = old + 1; row >= now - 1; --row) restore(x, row);
        }
      }
      set(x, now - 1, colour);
      set(x, now, colour);
      set(x, now + 1, colour);
      for (int row = now; row != next; row += now < next ? 1 : -1) set(x, row, colour);
      set(x, next, colour);
      y[i] = now == 0 ? 1 : now;
    }
  }
};

struct Trace : ::testing::Test, TestProgram {
  Surface form{*this, plot_columns, plot_rows};
  forms::PictureBox& picture = form.plot;

  // A picture that has a different colour in every pixel is the best grid to erase to.
  void SetUp() override {
    for (int x = 0; x < 403; ++x) {
      for (int row = 0; row < 304; ++row) picture.SetPixelV(x, row, 0x400000 + x * 1000 + row);
    }
    Save_Screen(store, picture);
    clear_trace(store);
  }
  void expect_same(const PlainTrace& plain, int step) {
    for (int x = 0; x < 403; ++x) {
      for (int row = 0; row < 304; ++row) {
        ASSERT_EQ(picture.GetPixel(x, row),
                  plain.pixels[static_cast<std::size_t>(x)][static_cast<std::size_t>(row)])
            << "column " << x << ", row " << row << ", step " << step;
      }
    }
    ASSERT_EQ(store.Trace_Y, plain.y) << "step " << step;
  }
};

TEST_F(Trace, ScrollsLikeItsPlainStatement) {
  store.Trace_Red = 255;
  PlainTrace plain(store, red_pixel);
  std::mt19937 random(1);
  int position = 403;
  for (int step = 0; step < 900; ++step) {
    // Smooth stretches, jumps across the whole plot, and rows at and beyond its edges.
    const int kind = static_cast<int>(random() % 10);
    std::int32_t row = store.Trace_Y[402] + static_cast<int>(random() % 5) - 2;
    if (kind == 0) row = static_cast<int>(random() % 304) + 1;
    if (kind == 1) row = std::array{0, 1, -1, 303, 304, 305, -40, 380}[random() % 8];
    store.Trace_Y[403] = row;
    plain.y[403] = row;
    Scroll_Trace(store, picture, position);
    plain.scroll(position);
    if (step % 30 == 0 || step > 880) expect_same(plain, step);
    if (position > 1) --position;
  }
}

TEST_F(Trace, ErasesToTheSavedScreenAndNothingElse) {
  store.Trace_Y[402] = 100;
  store.Trace_Y[403] = 103;
  store.Trace_Y[404] = 103;
  Scroll_Trace(store, picture, 403);
  for (const int row : {102, 103, 104}) EXPECT_EQ(picture.GetPixel(402, row), black_pixel);
  for (const int row : {99, 100, 101, 105}) {
    EXPECT_EQ(picture.GetPixel(402, row), 0x400000 + 402 * 1000 + row);
  }
  EXPECT_EQ(picture.GetPixel(401, 103), 0x400000 + 401 * 1000 + 103);
}

TEST_F(Trace, DrawsTheConnectingLineToTheNextColumn) {
  store.Trace_Y[402] = store.Trace_Y[401] = 50;
  store.Trace_Y[403] = 60;
  store.Trace_Y[404] = 60;
  Scroll_Trace(store, picture, 402);
  for (int row = 49; row <= 60; ++row) EXPECT_EQ(picture.GetPixel(401, row), black_pixel) << row;
  EXPECT_EQ(picture.GetPixel(401, 61), 0x400000 + 401 * 1000 + 61);
}

TEST_F(Trace, LeavesItsPositionAlone) {
  store.Trace_Pos = 77;
  Scroll_Trace(store, picture, store.Trace_Pos);
  EXPECT_EQ(store.Trace_Pos, 77);
}

TEST_F(Trace, From404OnNothingIsDrawn) {
  store.Trace_Y[403] = 150;
  const auto before = std::vector(picture.pixels().begin(), picture.pixels().end());
  for (const int position : {404, 405, std::numeric_limits<int>::max()}) {
    Scroll_Trace(store, picture, position);
  }
  EXPECT_TRUE(std::ranges::equal(before, picture.pixels()));
  EXPECT_EQ(store.Trace_Y[402], 1);
}

TEST_F(Trace, APositionBelowOneIsRefused) {
  for (const int position : {0, -1, std::numeric_limits<int>::min()}) {
    EXPECT_THROW(Scroll_Trace(store, picture, position), forms::RunTimeError) << position;
  }
}

TEST_F(Trace, ARowOfZeroIsStoredAsOne) {
  store.Trace_Y[403] = 0;
  Scroll_Trace(store, picture, 403);
  EXPECT_EQ(store.Trace_Y[402], 1);
  EXPECT_EQ(store.Trace_Y[403], 0);
}

TEST_F(Trace, ExtremeRowsNeitherHangNorOverflow) {
  constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
  const std::array values{least, most, least + 1, most - 1, 0, 304};
  std::size_t i = 0;
  for (std::int32_t& row : store.Trace_Y) row = values[i++ % values.size()];
  for (int step = 0; step < 10; ++step) Scroll_Trace(store, picture, 1);
  EXPECT_EQ(store.Trace_Y[0], values[10 % values.size()] == 0 ? 1 : values[10 % values.size()]);
}

TEST_F(Trace, ItsColourIsTheThreeBytes) {
  store.Trace_Red = 1;
  store.Trace_Green = 2;
  store.Trace_Blue = 3;
  store.Trace_Y[403] = 150;
  Scroll_Trace(store, picture, 403);
  EXPECT_EQ(picture.GetPixel(402, 150), 0x030201);
}

TEST_F(Trace, ItsColourTogglesFromBlackToRedToBlueAndBack) {
  const auto colours = [&] {
    return std::array<int, 3>{store.Trace_Red, store.Trace_Green, store.Trace_Blue};
  };
  EXPECT_EQ(colours(), (std::array{0, 0, 0}));
  toggle_trace_colour(store);
  EXPECT_EQ(colours(), (std::array{255, 0, 0}));
  toggle_trace_colour(store);
  EXPECT_EQ(colours(), (std::array{0, 0, 255}));
  toggle_trace_colour(store);
  EXPECT_EQ(colours(), (std::array{255, 0, 0}));
  // Anything but full red isn't red.
  store.Trace_Red = 254;
  toggle_trace_colour(store);
  EXPECT_EQ(colours(), (std::array{255, 0, 0}));
}

TEST_F(Trace, ClearingFillsElements0To403WithOne) {
  store.Trace_Y.fill(9);
  clear_trace(store);
  for (std::size_t i = 0; i <= 403; ++i) ASSERT_EQ(store.Trace_Y[i], 1);
  EXPECT_EQ(store.Trace_Y[404], 9);
}

TEST_F(Trace, RowsArePinnedToThePlot) {
  EXPECT_EQ(limited_row(std::numeric_limits<std::int32_t>::max()), 304);
  EXPECT_EQ(limited_row(304), 304);
  EXPECT_EQ(limited_row(303), 303);
  EXPECT_EQ(limited_row(1), 1);
  EXPECT_EQ(limited_row(0), 1);
  EXPECT_EQ(limited_row(std::numeric_limits<std::int32_t>::min()), 1);
}

TEST_F(Trace, TheStaticTraceIsThreePixelsOfPureRedAColumn) {
  std::vector<std::int32_t> rows(403);
  for (std::size_t i = 0; i < rows.size(); ++i) rows[i] = static_cast<std::int32_t>(i % 310) - 2;
  store.Trace_Blue = 255;
  Plot_Trace(picture, rows);
  for (int x = 0; x < 403; ++x) {
    for (int row = 0; row < 304; ++row) {
      const bool drawn = std::abs(row - rows[static_cast<std::size_t>(x)]) <= 1;
      ASSERT_EQ(picture.GetPixel(x, row), drawn ? red_pixel : 0x400000 + x * 1000 + row) << x << "," << row;
    }
  }
}

TEST_F(Trace, AStaticTraceNeedsARowForEveryColumn) {
  const std::vector<std::int32_t> rows(402, 100);
  EXPECT_THROW(Plot_Trace(picture, rows), forms::RunTimeError);
}

}  // namespace
}  // namespace varzelin::testing
