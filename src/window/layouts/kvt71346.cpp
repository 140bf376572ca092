#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>

#include "window/arranger.h"
#include "window/layouts/layouts.h"
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
      "frmMode",
      column({row({column({place("OptMode", 0), place("OptMode", 1), place("OptMode", 2)}), {diodes, 1}}),
              modes,
              row({place("cmdSetMode"), Part::room(), place("lblModeByte"),
                   place.field("lblModeByte", place.digits(3, place("txtModeByte"))).widget})}));
}

QLayout* left_column(Arranger& place) {
  QWidget* sections = place.list_rows(6, place("lst_MainOptions"));
  sections->setAccessibleName("Section of the panel");
  auto* time_base = place.frame("frmTimeBase", column({place("OptTimeBase", 0), place("OptTimeBase", 1)}));
  return column({place.group("Panel Section", column({sections})), device_frame(place), mode_frame(place),
                 time_base, Part::room()});
}

QGroupBox* counts(Arranger& place) {
  QBoxLayout* bytes = row({Part::room()});
  for (int i = 0; i < 3; ++i) {
    QWidget* byte = place.digits(3, place("txtSampleByte", i));
    byte->setAccessibleName("Reply byte " + QString::number(i));
    bytes->addWidget(byte);
  }
  auto* holder = new QWidget;
  holder->setLayout(bytes);
  return place.group("Last Triggered Reading",
                     place.fields({place.field("lblSampleByte", holder),
                                   place.field("lblADHex", place.digits(7, place("txtADHex"))),
                                   place.field("lblADDec", place.digits(7, place("txtADDec")))}));
}

}  // namespace

QLayout* arrange_kvt71346(Arranger& place) {
  QLayout* right = column({sampling_group(place), readings_group(place), counts(place), scale_group(place),
                           Part::room(), row({place("cbReset"), Part::room(), place("CommandButton1")})});
  return panel(place, left_column(place), right);
}

}  // namespace window
