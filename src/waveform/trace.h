// The strip chart: the shared trace store's drawing on the plot picture, and its labels on the
// picture behind it. Drawing is pixel by pixel, so that the chart scrolls without redrawing the grid:
// an erased pixel is put back from the saved copy of the empty chart.
#pragma once

#include <cstdint>
#include <span>

#include "bridge/program.h"
#include "forms/picture.h"

namespace varzelin {

inline constexpr int plot_rows = 304;     // row 1 is the top, row 304 the bottom
inline constexpr int plot_columns = 403;  // columns 0 to 402 are drawn
inline constexpr int trace_entry = 403;   // element of Trace_Y where new samples come in
inline constexpr int label_width = 520;   // of the picture with the labels
inline constexpr int label_height = 362;

// Fills Trace_Y(0..403) with 1, the cleared state.
void clear_trace(Store& store);

// The ten-by-ten black grid. Yields while it grows.
void DrawGrid(Program& program, forms::PictureBox& picture);
// Clears the label picture and prints the scale and time labels.
void DrawGridLabels2(const Store& store, forms::PictureBox& labels, const forms::PictureBox& plot);

// Copies all pixels into Screen_Pixels, and back.
void Save_Screen(Store& store, const forms::PictureBox& picture);
void Restore_Screen(const Store& store, forms::PictureBox& picture);

// Advances the trace by one column; `position` is Trace_Pos, which the call leaves alone. From 404 on
// nothing is drawn; below 1 subscript_out_of_range is raised.
void Scroll_Trace(Store& store, forms::PictureBox& picture, std::int32_t position);

// A static trace in pure red, a row per column.
void Plot_Trace(forms::PictureBox& picture, std::span<const std::int32_t> rows);

// A change of range shows as a change of colour: red and blue in turn.
void toggle_trace_colour(Store& store);

// The row of a reading on a scale from `min` to `max`, rounded half to even and kept within the plot. Raises
// division_by_zero for a scale without a span.
std::int32_t trace_row(double reading, std::int32_t min, std::int32_t max);
// The row of a reading on a scale from 0 to `max`: its whole part, not kept within the plot. Raises as above.
std::int32_t whole_trace_row(std::int32_t reading, std::int32_t max);

// A row kept within the plot: 304 and more is 304, below 1 is 1.
std::int32_t limited_row(std::int32_t row);

}  // namespace varzelin
