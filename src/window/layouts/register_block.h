// Registers in one table.
#pragma once

#include <QString>
#include <vector>

class QGridLayout;
class QWidget;

namespace window {

class Arranger;
class CaptionButton;

// A register's widgets. A null one leaves its place in the table empty.
struct RegisterLine {
  QString name;  // names boxes and lamps for a screen reader
  QWidget* label;
  QWidget* write_box = nullptr;
  CaptionButton* write_button = nullptr;
  QWidget* write_lamp = nullptr;
  QWidget* read_box = nullptr;
  CaptionButton* read_button = nullptr;
  QWidget* read_lamp = nullptr;
};

// A line a register: what is written at the left, what is read at the right.
QGridLayout* register_block(Arranger& place, const std::vector<RegisterLine>& lines);
// A column a register: what is written above, what is read below. Names its buttons as well, whose captions
// don't tell the register.
QGridLayout* register_columns(Arranger& place, const std::vector<RegisterLine>& columns);

}  // namespace window
