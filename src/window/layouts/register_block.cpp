#include "window/layouts/register_block.h"

#include <QGridLayout>
#include <QLabel>
#include <array>
#include <utility>

#include "window/arranger.h"
#include "window/caption_button.h"
#include "window/look.h"

namespace window {
namespace {

constexpr int write_box_column = 1;
constexpr int read_box_column = 4;

// A register's widgets by columns.
std::array<QWidget*, 7> cells_of(const RegisterLine& line) {
  return {line.label,    line.write_box,   line.write_button, line.write_lamp,
          line.read_box, line.read_button, line.read_lamp};
}

void name_widgets(const RegisterLine& line) {
  for (const auto& [widget, words] : {std::pair{line.write_box, " to write"},
                                      {line.write_lamp, " written"},
                                      {line.read_box, " as read"},
                                      {line.read_lamp, " read"}}) {
    if (widget) widget->setAccessibleName(line.name + words);
  }
}

}  // namespace

QGridLayout* register_block(Arranger& place, const std::vector<RegisterLine>& lines) {
  constexpr int byte_digits = 2;
  auto* grid = new QGridLayout;
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setHorizontalSpacing(gap);
  grid->setVerticalSpacing(gap / 3);
  int at = 0;
  bool written = false;
  for (const RegisterLine& line : lines) {
    ++at;
    name_widgets(line);
    written = written || line.write_box;
    for (QWidget* box : {line.write_box, line.read_box}) {
      if (box) place.digits(byte_digits, box);
    }
    for (CaptionButton* button : {line.write_button, line.read_button}) {
      if (button) button->stay_on_one_line();
    }
    int at_column = 0;
    for (QWidget* cell : cells_of(line)) {
      if (cell) grid->addWidget(cell, at, at_column);
      ++at_column;
    }
  }
  if (written) grid->addWidget(place.text("Write"), 0, write_box_column);
  grid->addWidget(place.text("Read"), 0, read_box_column);
  grid->setRowStretch(at + 1, 1);
  return grid;
}

}  // namespace window
