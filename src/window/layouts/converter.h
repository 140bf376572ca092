// The parts that the panels over a sensor with one converter share. What a panel lacks leaves no gap.
#pragma once

class QGroupBox;
class QLayout;
class QTabWidget;

namespace window {

class Arranger;

// The options, from the operation to the range that follows by itself.
QLayout* converter_left_column(Arranger& place);
QLayout* converter_right_column(Arranger& place);
// What the chart shows, and the pair's counts, which keep their room.
QLayout* graph_line(Arranger& place);

// --- pages ---

// The commands of the registers, which only the full layout has.
QLayout* register_commands(Arranger& place);
QLayout* last_reading(Arranger& place);
// Pages of the full layout.
void add_timing_page(Arranger& place, QTabWidget& tabs);
void add_device_page(Arranger& place, QTabWidget& tabs);

}  // namespace window
