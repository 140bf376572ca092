#include "window/layouts/register_block.h"

#include <QGridLayout>
#include <QLabel>
#include <algorithm>
#include <array>
#include <utility>

#include "window/arranger.h"
#include "window/caption_button.h"
#include "window/look.h"
#include "window/mnemonics.h"

namespace window {
namespace {

constexpr int byte_digits = 2;
constexpr int write_box_cell = 1;
constexpr int read_box_cell = 4;

// A register's widgets in the order of their cells.
std::array<QWidget*, 7> cells_of(const RegisterLine& line) {
  return {line.label,    line.write_box,   line.write_button, line.write_lamp,
          line.read_box, line.read_button, line.read_lamp};
}

void name_widgets(const RegisterLine& line) {
  for (const auto& [box, words] : {std::pair{line.write_box, " to write"}, {line.read_box, " as read"}}) {
    if (box) box->setAccessibleName(line.name + words);
  }
  if (line.write_lamp) Arranger::name_lamp(line.write_lamp, line.name + " written", action_words);
  if (line.read_lamp) Arranger::name_lamp(line.read_lamp, line.name + " read", read_words);
}

QGridLayout* table() {
  auto* grid = new QGridLayout;
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setHorizontalSpacing(gap);
  grid->setVerticalSpacing(line_gap);
  return grid;
}

void narrow_boxes(Arranger& place, const RegisterLine& line) {
  for (QWidget* box : {line.write_box, line.read_box}) {
    if (box) place.digits(byte_digits, box);
  }
}

}  // namespace

QGridLayout* register_block(Arranger& place, const std::vector<RegisterLine>& lines) {
  QGridLayout* grid = table();
  int at = 0;
  bool written = false;
  for (const RegisterLine& line : lines) {
    ++at;
    name_widgets(line);
    narrow_boxes(place, line);
    written = written || line.write_box;
    for (CaptionButton* button : {line.write_button, line.read_button}) {
      if (button) button->stay_on_one_line();
    }
    int cell = 0;
    for (QWidget* widget : cells_of(line)) {
      if (widget) grid->addWidget(widget, at, cell);
      ++cell;
    }
  }
  if (written) grid->addWidget(place.text("Write"), 0, write_box_cell);
  grid->addWidget(place.text("Read"), 0, read_box_cell);
  grid->setRowStretch(at + 1, 1);
  return grid;
}

QGridLayout* register_columns(Arranger& place, const std::vector<RegisterLine>& columns) {
  constexpr int column_gap = 4;
  QGridLayout* grid = table();
  grid->setHorizontalSpacing(column_gap);
  QLabel* write = place.text("Write");
  QLabel* read = place.text("Read");
  grid->addWidget(write, write_box_cell, 0);
  grid->addWidget(read, read_box_cell, 0);
  lead_to(*write, *columns.front().write_button);
  lead_to(*read, *columns.front().read_button);
  std::vector<QAbstractButton*> buttons;
  int at = 0;
  int widest = 0;
  for (const RegisterLine& column : columns) {
    ++at;
    name_widgets(column);
    narrow_boxes(place, column);
    for (const auto& [button, words] :
         {std::pair{column.write_button, "Write "}, {column.read_button, "Read "}}) {
      place.digits(byte_digits, button)->setAccessibleName(words + column.name);
      buttons.push_back(button);
    }
    int cell = 0;
    for (QWidget* widget : cells_of(column)) grid->addWidget(widget, cell++, at, Qt::AlignHCenter);
    widest = std::max(widest, column.label->sizeHint().width());
  }
  go_by_arrows(buttons);
  for (; at > 0; --at) grid->setColumnMinimumWidth(at, widest);
  grid->setRowStretch(static_cast<int>(cells_of({}).size()), 1);
  return grid;
}

}  // namespace window
