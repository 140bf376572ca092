#include "console/extra_properties.h"

#include <array>

#include "forms/controls.h"
#include "forms/grid.h"
#include "forms/picture.h"

namespace console {
namespace {

using Indices = const std::vector<int>&;

struct Extra {
  std::string_view name;
  std::size_t indices;
  bool listed;
  bool (*is_of)(const forms::Control&);
  void (*write)(const forms::Control&, Indices, Json&);
};

template <class Kind, auto Write>
constexpr Extra extra(std::string_view name, std::size_t indices, bool listed) {
  return {name, indices, listed,
          [](const forms::Control& control) { return dynamic_cast<const Kind*>(&control) != nullptr; },
          [](const forms::Control& control, Indices at, Json& json) {
            Write(dynamic_cast<const Kind&>(control), at, json);
          }};
}

void write_rows(const forms::ListControl& list, Indices, Json& json) {
  json.begin_array();
  for (const std::string& row : list.List()) json.value(row);
  json.end_array();
}

void write_printed(const forms::PictureBox& picture, Indices, Json& json) {
  json.begin_array();
  for (const auto& printed : picture.printed()) {
    json.begin_object();
    json.member("x", printed.x).member("y", printed.y).member("text", printed.text);
    json.end_object();
  }
  json.end_array();
}

const char* align_name(forms::Align align) {
  switch (align) {
    case forms::Align::Center:
      return "center";
    case forms::Align::Right:
      return "right";
    default:
      return "left";
  }
}

void write_cell(const forms::Grid& grid, Indices at, Json& json) {
  const forms::GridCell& cell = grid.cell(at[0], at[1]);
  json.begin_object().member("text", cell.text).key("back");
  cell.back ? json.value(forms::html(*cell.back)) : json.null();
  json.member("align", align_name(cell.align)).end_object();
}

using forms::Grid;
using forms::ListControl;
using forms::PictureBox;
using forms::SSTab;
using forms::TextBox;

constexpr std::array extras{
    extra<ListControl, write_rows>("List", 0, true),
    extra<ListControl, [](const ListControl& list, Indices, Json& json) { json.value(list.ListCount()); }>(
        "ListCount", 0, true),
    extra<TextBox, [](const TextBox& box, Indices, Json& json) { json.value(box.MultiLine); }>("MultiLine", 0,
                                                                                               true),
    extra<SSTab, [](const SSTab& tab, Indices, Json& json) { json.value(tab.Tabs); }>("Tabs", 0, true),
    extra<PictureBox, [](const PictureBox& box, Indices, Json& json) { json.value(box.ScaleWidth()); }>(
        "ScaleWidth", 0, true),
    extra<PictureBox, [](const PictureBox& box, Indices, Json& json) { json.value(box.ScaleHeight()); }>(
        "ScaleHeight", 0, true),
    extra<PictureBox, write_printed>("Printed", 0, false),
    extra<Grid, [](const Grid& grid, Indices, Json& json) { json.value(grid.Rows()); }>("Rows", 0, true),
    extra<Grid, [](const Grid& grid, Indices, Json& json) { json.value(grid.Columns()); }>("Columns", 0,
                                                                                           true),
    extra<Grid, [](const Grid& grid, Indices, Json& json) { json.value(grid.SelectedRow()); }>("SelectedRow",
                                                                                               0, true),
    extra<Grid, [](const Grid& grid, Indices at, Json& json) { json.value(grid.Header(at[0])); }>("Header", 1,
                                                                                                  false),
    extra<Grid, [](const Grid& grid, Indices at, Json& json) { json.value(grid.ColumnWidth(at[0])); }>(
        "ColumnWidth", 1, false),
    extra<Grid, [](const Grid& grid, Indices at, Json& json) { json.value(grid.RowHeight(at[0])); }>(
        "RowHeight", 1, false),
    extra<Grid, write_cell>("Cell", 2, false),
};

}  // namespace

bool write_extra(const forms::Control& control, std::string_view name, Indices indices, Json& answer) {
  for (const Extra& known : extras) {
    if (known.name == name && known.indices == indices.size() && known.is_of(control)) {
      known.write(control, indices, answer);
      return true;
    }
  }
  return false;
}

void write_listed_extras(const forms::Control& control, Json& answer) {
  for (const Extra& known : extras) {
    if (!known.listed || !known.is_of(control)) continue;
    answer.key(known.name);
    known.write(control, {}, answer);
  }
}

}  // namespace console
