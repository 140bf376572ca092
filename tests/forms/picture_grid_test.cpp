// The picture surface and the grid.
#include <gtest/gtest.h>

#include <algorithm>

#include "forms/grid.h"
#include "forms/picture.h"
#include "support/forms_program.h"

namespace varzelin::testing {
namespace {

class Canvas final : public forms::Form {
 public:
  Canvas(forms::FormSet& set, std::string name, Notes&) : Form(set, std::move(name), "Canvas") {}
  forms::PictureBox picture{*this, "picture", {.Width = 4, .Height = 3, .BackColor = forms::clr_white}};
  forms::Grid grid{*this, "grid"};
};

struct FormsCanvas : ::testing::Test, FormsProgram {
  Canvas* canvas = nullptr;
  void SetUp() override {
    add<Canvas>("canvas");
    canvas = &form<Canvas>("canvas");
  }
};

TEST_F(FormsCanvas, PixelsOutsideTheSurfaceReadAsInvalid) {
  auto& picture = canvas->picture;
  EXPECT_EQ(picture.GetPixel(0, 0), 0xFFFFFF);
  EXPECT_EQ(picture.GetPixel(3, 2), 0xFFFFFF);
  for (const auto& [x, y] : {std::pair{-1, 0}, {0, -1}, {4, 0}, {0, 3}}) {
    EXPECT_EQ(picture.GetPixel(x, y), -1);
    picture.SetPixelV(x, y, 0);
  }
  EXPECT_EQ(std::ranges::count(picture.pixels(), 0xFFFFFFu), 12);
}

TEST_F(FormsCanvas, SettingAPixelMarksItsColumn) {
  auto& picture = canvas->picture;
  EXPECT_EQ(picture.take_dirty_columns(), (std::pair{0, 3})) << "all of a new surface";
  EXPECT_GT(picture.take_dirty_columns().first, picture.take_dirty_columns().second);
  picture.SetPixelV(2, 1, 0x0000FF);
  picture.SetPixelV(1, 0, 0x00FF00);
  picture.SetPixelV(3, 0, -1);  // the invalid colour sets nothing
  EXPECT_EQ(picture.GetPixel(2, 1), 0x0000FF);
  EXPECT_EQ(picture.GetPixel(3, 0), 0xFFFFFF);
  EXPECT_EQ(picture.pixels()[4 + 2], 0x0000FFu);
  EXPECT_EQ(picture.take_dirty_columns(), (std::pair{1, 2}));
}

TEST_F(FormsCanvas, PrintPutsTextsAndMovesToTheNextLine) {
  auto& picture = canvas->picture;
  picture.CurrentX = 5;
  picture.CurrentY = 7;
  picture.Print("one");
  EXPECT_EQ(picture.CurrentX, 0.0);
  EXPECT_EQ(picture.CurrentY, 19.0);
  picture.Print("two");
  ASSERT_EQ(picture.printed().size(), 2u);
  EXPECT_EQ(picture.printed()[0].x, 5.0);
  EXPECT_EQ(picture.printed()[0].y, 7.0);
  EXPECT_EQ(picture.printed()[1].text, "two");
  EXPECT_EQ(picture.printed()[1].x, 0.0);
  EXPECT_EQ(picture.printed()[1].y, 19.0);
  picture.SetPixelV(0, 0, 0);
  picture.Cls();
  EXPECT_TRUE(picture.printed().empty());
  EXPECT_EQ(picture.CurrentY, 0.0);
  EXPECT_EQ(picture.GetPixel(0, 0), 0xFFFFFF);
}

TEST_F(FormsCanvas, GridCellsCountFromOne) {
  auto& grid = canvas->grid;
  grid.AddColumn("Line", 40);
  grid.AddColumn("Text", 200);
  grid.set_rows(2);
  grid.set_text(2, 2, "x");
  grid.set_back(2, 2, forms::clr_black);
  grid.set_align(1, 1, forms::Align::Center);
  grid.set_row_height(2, 30);
  EXPECT_EQ(grid.cell(2, 2).text, "x");
  EXPECT_EQ(grid.cell(2, 2).back, forms::clr_black);
  EXPECT_EQ(grid.cell(1, 1).align, forms::Align::Center);
  EXPECT_EQ(grid.RowHeight(2), 30);
  EXPECT_EQ(grid.Header(2), "Text");
  EXPECT_EQ(grid.ColumnWidth(1), 40);
  for (const auto& [row, column] : {std::pair{0, 1}, {3, 1}, {1, 0}, {1, 3}}) {
    EXPECT_EQ(error_of([&] { grid.set_text(row, column, ""); }), 9);
    EXPECT_EQ(error_of([&] { grid.cell(row, column); }), 9);
  }
  EXPECT_EQ(error_of([&] { grid.Header(3); }), 9);
  EXPECT_EQ(error_of([&] { grid.set_row_height(3, 1); }), 9);
  EXPECT_EQ(error_of([&] { grid.set_rows(-1); }), 380);
}

TEST_F(FormsCanvas, GridRowsThatGoTakeTheirCellsAlong) {
  auto& grid = canvas->grid;
  grid.AddColumn("Line", 40);
  grid.set_rows(3);
  grid.set_text(3, 1, "x");
  grid.set_selected_row(3);
  grid.set_rows(2);
  EXPECT_EQ(grid.SelectedRow(), 2);
  grid.set_rows(3);
  EXPECT_EQ(grid.cell(3, 1).text, "");
  grid.AddColumn("Late", 10);
  EXPECT_EQ(grid.cell(3, 2).text, "");
}

TEST_F(FormsCanvas, OnlyTheUserRaisesSelectionChange) {
  auto& grid = canvas->grid;
  grid.AddColumn("Line", 40);
  grid.set_rows(3);
  grid.handle(forms::Event::SelectionChange, [this](forms::EventArgs& args) {
    notes.push_back(std::to_string(args.row) + "," + std::to_string(args.column));
  });
  grid.set_selected_row(2);
  EXPECT_EQ(notes, Notes{});
  grid.select_by_user(3, 1);
  EXPECT_EQ(notes, Notes{"3,1"});
  EXPECT_EQ(grid.SelectedRow(), 3);
  EXPECT_EQ(error_of([&] { grid.select_by_user(4, 1); }), 380);
  EXPECT_EQ(grid.SelectedRow(), 3);
}

TEST_F(FormsCanvas, GridTellsWhichRowsChanged) {
  auto& grid = canvas->grid;
  grid.AddColumn("Line", 40);
  grid.set_rows(9);
  EXPECT_TRUE(grid.take_changes().shape);
  grid.set_text(5, 1, "x");
  grid.set_back(3, 1, std::nullopt);
  const auto changes = grid.take_changes();
  EXPECT_FALSE(changes.shape);
  EXPECT_EQ(changes.first_row, 3);
  EXPECT_EQ(changes.last_row, 5);
  const auto none = grid.take_changes();
  EXPECT_GT(none.first_row, none.last_row);
}

}  // namespace
}  // namespace varzelin::testing
