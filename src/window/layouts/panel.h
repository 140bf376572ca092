// The parts that all sensor panels share.
#pragma once

#include <string_view>

class QGroupBox;
class QLayout;

namespace window {

class Arranger;

QGroupBox* device_frame(Arranger& place);
// The two ways of sampling with their start and stop buttons.
QGroupBox* sampling_group(Arranger& place);
QGroupBox* readings_group(Arranger& place);
// The bytes of the last triggered reading and what they say.
QLayout* triggered_reading(Arranger& place);
// The chart's scale, that of its right-hand side where there is one, and its buttons.
QGroupBox* chart_group(Arranger& place, QLayout* right_scale = nullptr);
// The buttons that reset the sensor and leave the program, at the bottom of a column.
QLayout* closing_row(Arranger& place, std::string_view exit_button = "Command4");

// The measurement file, in one line or, for a column, in two.
QGroupBox* record_frame(Arranger& place, int lines);

// A panel: its own columns on both sides of the chart, what it has below the chart, and the status line.
QLayout* panel(Arranger& place, QLayout* left, QLayout* right, QLayout* below_chart);

}  // namespace window
