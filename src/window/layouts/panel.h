// The parts that all sensor panels share.
#pragma once

class QGroupBox;
class QLayout;

namespace window {

class Arranger;

QGroupBox* device_frame(Arranger& place);
// The two ways of sampling with their start and stop buttons.
QGroupBox* sampling_group(Arranger& place);
QGroupBox* readings_group(Arranger& place);
QGroupBox* scale_group(Arranger& place);

// A panel: its own columns on both sides of the chart, the chart's buttons and the measurement file
// below the chart, and the status line.
QLayout* panel(Arranger& place, QLayout* left, QLayout* right);

}  // namespace window
