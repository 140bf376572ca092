#include "forms/grid.h"

#include <algorithm>
#include <utility>

namespace forms {

Grid::Grid(Form& form, std::string name, const Design& design, int index)
    : Control(form, Kind::Grid, std::move(name), index, design) {}

void Grid::AddColumn(std::string header, int width) {
  columns_.push_back({std::move(header), width});
  for (Row& row : rows_) row.cells.resize(columns_.size());
  changes_.shape = true;
  touched();
}

const std::string& Grid::Header(int column) const {
  if (column < 1 || column > Columns()) raise_error(subscript_out_of_range);
  return columns_[static_cast<std::size_t>(column - 1)].header;
}

int Grid::ColumnWidth(int column) const {
  if (column < 1 || column > Columns()) raise_error(subscript_out_of_range);
  return columns_[static_cast<std::size_t>(column - 1)].width;
}

void Grid::set_rows(int count) {
  if (count < 0) raise_error(invalid_property_value);
  rows_.resize(static_cast<std::size_t>(count), Row{std::vector<GridCell>(columns_.size())});
  selected_row_ = std::min(selected_row_, count);
  changes_.shape = true;
  touched();
}

int Grid::RowHeight(int row) const {
  if (row < 1 || row > Rows()) raise_error(subscript_out_of_range);
  return rows_[static_cast<std::size_t>(row - 1)].height;
}

void Grid::set_row_height(int row, int height) {
  if (row < 1 || row > Rows()) raise_error(subscript_out_of_range);
  rows_[static_cast<std::size_t>(row - 1)].height = height;
  row_changed(row);
}

const GridCell& Grid::cell(int row, int column) const {
  return const_cast<Grid*>(this)->at(row, column);
}

GridCell& Grid::at(int row, int column) {
  if (row < 1 || row > Rows() || column < 1 || column > Columns()) raise_error(subscript_out_of_range);
  return rows_[static_cast<std::size_t>(row - 1)].cells[static_cast<std::size_t>(column - 1)];
}

void Grid::set_text(int row, int column, std::string text) {
  at(row, column).text = std::move(text);
  row_changed(row);
}

void Grid::set_back(int row, int column, std::optional<Color> back) {
  at(row, column).back = back;
  row_changed(row);
}

void Grid::set_align(int row, int column, Align align) {
  at(row, column).align = align;
  row_changed(row);
}

void Grid::set_selected_row(int row) {
  if (row < 0 || row > Rows()) raise_error(invalid_property_value);
  selected_row_ = row;
  touched();
}

void Grid::select_by_user(int row, int column) {
  set_selected_row(row);
  EventArgs args;
  args.row = row;
  args.column = column;
  raise(Event::SelectionChange, args);
}

void Grid::row_changed(int row) {
  if (changes_.first_row > changes_.last_row) {
    changes_.first_row = changes_.last_row = row;
  } else {
    changes_.first_row = std::min(changes_.first_row, row);
    changes_.last_row = std::max(changes_.last_row, row);
  }
  touched();
}

Grid::Changes Grid::take_changes() {
  return std::exchange(changes_, Changes{});
}

}  // namespace forms
