// A table of text cells with one selected row. Rows and columns count from 1.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "forms/control.h"

namespace forms {

enum class Align { Left, Center, Right };

struct GridCell {
  std::string text;
  std::optional<Color> back;
  Align align = Align::Left;
};

class Grid : public Control {
 public:
  Grid(Form& form, std::string name, const Design& design = {}, int index = -1);

  void AddColumn(std::string header, int width);
  int Columns() const { return static_cast<int>(columns_.size()); }
  const std::string& Header(int column) const;
  int ColumnWidth(int column) const;

  int Rows() const { return static_cast<int>(rows_.size()); }
  // Rows that come are fresh; rows that go take their cells with them.
  void set_rows(int count);
  int RowHeight(int row) const;
  void set_row_height(int row, int height);

  // Raises subscript_out_of_range for a cell that doesn't exist.
  const GridCell& cell(int row, int column) const;
  void set_text(int row, int column, std::string text);
  void set_back(int row, int column, std::optional<Color> back);
  void set_align(int row, int column, Align align);

  // 0 for none. Setting it from the program doesn't raise SelectionChange.
  int SelectedRow() const { return selected_row_; }
  void set_selected_row(int row);
  // What a user's click on a cell does: selects the row, then raises SelectionChange.
  void select_by_user(int row, int column);

  // Front ends: whether the number of rows changed, and the rows whose cells changed, since the last
  // call.
  struct Changes {
    bool shape = false;
    int first_row = 1;
    int last_row = 0;
  };
  Changes take_changes();

 private:
  struct Column {
    std::string header;
    int width;
  };
  struct Row {
    std::vector<GridCell> cells;
    int height = 15;
  };
  GridCell& at(int row, int column);
  void row_changed(int row);

  std::vector<Column> columns_;
  std::vector<Row> rows_;
  int selected_row_ = 0;
  Changes changes_;
};

}  // namespace forms
