// Registers in one table: what is written at the left, what is read at the right.
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

QGridLayout* register_block(Arranger& place, const std::vector<RegisterLine>& lines);

}  // namespace window
