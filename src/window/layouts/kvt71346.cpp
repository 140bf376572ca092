#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>

#include "window/arranger.h"
#include "window/layouts/layouts.h"
#include "window/layouts/options.h"
#include "window/layouts/panel.h"
#include "window/look.h"

namespace window {
namespace {

QGroupBox* mode_frame(Arranger& place) {
  QWidget* diodes = place.keep_room(place.list_rows(3, place("LstMode2")));
  QWidget* modes = place.list_rows(6, place.aligned_by_blanks(place("Lst71346_Mode")));
  modes->setMinimumWidth(modes->fontMetrics().horizontalAdvance("Loop Bk Com Test-xx  ") + 2 * gap);
  diodes->setAccessibleName("Diode");
  modes->setAccessibleName("Mode");
  return place.frame(
      "frmMode", column({row({elements(place, "OptMode"), {column({diodes, Part::room()}), 1}}), modes,
                         row({place("cmdSetMode"), Part::room(), place("lblModeByte"),
                              place.field("lblModeByte", place.digits(3, place("txtModeByte"))).widget})}));
}

QLayout* left_column(Arranger& place) {
  QWidget* sections = place.list_rows(6, place("lst_MainOptions"));
  sections->setAccessibleName("Section of the panel");
  QGroupBox* time_base = option_frame(place, "frmTimeBase", "OptTimeBase");
  return column({place.group("Panel Section", column({sections})), device_frame(place), mode_frame(place),
                 time_base, Part::room()});
}

}  // namespace

QLayout* arrange_kvt71346(Arranger& place) {
  QGroupBox* triggered = place.group("Last Triggered Reading", triggered_reading(place));
  QLayout* right = column({sampling_group(place), readings_group(place), triggered, chart_group(place),
                           Part::room(), closing_row(place, "CommandButton1")});
  return panel(place, left_column(place), right, column({record_frame(place, 1)}));
}

}  // namespace window
