#include "window/layouts/chart.h"

#include "window/arranger.h"
#include "window/picture_view.h"

namespace window {
namespace {

// Where the plot stands on the labels' picture. Labels are printed 8 pixels below the plot's row that
// they belong to and are 12 pixels high, so that here their middle is at that row.
constexpr QPoint plot_corner(52, 14);
// Where the labels of the time axis are printed.
constexpr double time_row = 325;

}  // namespace

QWidget* chart(Arranger& place, std::string_view labels, std::string_view plot) {
  auto* sheet = place.as<PictureView>(labels);
  auto* view = place.as<PictureView>(plot);
  sheet->stand_on_it(*view, plot_corner);
  sheet->name_unit_of_axis(time_row);
  view->tell_grid_apart();
  sheet->setAccessibleName("Chart scale");
  view->setAccessibleName("Chart");
  return sheet;
}

}  // namespace window
