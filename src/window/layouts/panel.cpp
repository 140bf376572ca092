#include "window/layouts/panel.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>

#include "window/arranger.h"
#include "window/layouts/chart.h"
#include "window/look.h"

namespace window {

QGroupBox* device_frame(Arranger& place) {
  QWidget* devices = place.list_rows(4, place("LstDeviceSel"));
  devices->setAccessibleName("Device");
  return place.frame(
      "FrmDevice",
      column(
          {devices, place.fields({place.field("lblI2CAddr", place.digits(4, place("txtI2CAddr"))),
                                  place.field("lblI2cXmitAdr", place.digits(4, place("txtI2cXmitAdr")))})}));
}

QGroupBox* sampling_group(Arranger& place) {
  constexpr int delay_list = 5;
  auto* pace = place.fields({place.field("lblDelay", place("CboIntTime", delay_list)),
                             place.field("lblInterval", place.digits(7, place("txtInterval")))});
  return place.group(
      "Sampling", column({pace, place.in_turn(place.lines(2, "cmdSample"), place.lines(2, "cmdEndSampling")),
                          place.lines(3, "cmdCollectData"), place.keep_room(place("cmdStopData")),
                          place.keep_room(place("cmdAbort"))}));
}

QGroupBox* readings_group(Arranger& place) {
  for (const char* name : {"Label17", "txtReading2", "Label6", "txtTime3", "Label14", "txtTime1"}) {
    place.keep_room(place(name));
  }
  return place.group("Readings", place.fields({place.field("Label16", place.digits(7, place("txtReading"))),
                                               place.field("Label17", place.digits(7, place("txtReading2"))),
                                               place.field("Label6", place.digits(7, place("txtTime3"))),
                                               place.field("Label14", place.digits(7, place("txtTime1")))}));
}

QGroupBox* scale_group(Arranger& place) {
  return place.group(
      "Chart Scale",
      column({row({place("lblScale"), place.field("lblScale", place.digits(6, place("txtScale"))).widget,
                   place("lblScaleMin"),
                   place.field("lblScaleMin", place.digits(6, place("txtScaleMin"))).widget}),
              place("cmdScale"), place("cmdAutoScale")}));
}

namespace {

QGroupBox* chart_group(Arranger& place) {
  return place.group("Chart", column({{chart(place), 1},
                                      row({place("cmdRestoreScreen"), place("cmdSaveScreen"), Part::room(),
                                           place("cmdWaveformINit"), place("cmdDrawTrace")})}));
}

QGroupBox* record_frame(Arranger& place) {
  QWidget* path = place("txtFilePath");
  path->setAccessibleName("Measurement file");
  return place.frame("frmDataRecord",
                     row({{path, 1}, place("cmdBrowse"), place("chkAppend"), place("cmdStartRec", 0)}));
}

QLayout* status_line(Arranger& place) {
  QWidget* heartbeat = place.keep_room(place("shpSample"));
  heartbeat->setAccessibleName("Sampling");
  auto* status = place.as<QLabel>("Label18");
  auto* count = place.as<QLabel>("lblLoop_Count");
  count->setAccessibleName("Captured Readings");
  count->setMinimumWidth(count->fontMetrics().horizontalAdvance("-0000"));
  place.keep_room(place("LblCommTest"));
  QBoxLayout* line = row({place.lamp(place("ShpAttach"), place("Label13")),
                          place.lamp(place("ShpHandleStatus"), place("lblHandleStatus")),
                          place("LblCommTest"),
                          heartbeat,
                          {status, 1}});
  line->setSpacing(2 * gap);
  if (place.has("lblRegSet")) line->addWidget(place("lblRegSet"));
  line->addWidget(place("lblCapturedReadings"));
  line->addWidget(count);
  return line;
}

}  // namespace

QLayout* panel(Arranger& place, QLayout* left, QLayout* right) {
  // Frames and buttons of the columns come and go; the chart keeps its place.
  const auto side = [](QLayout* inside) {
    auto* widget = new QWidget;
    inside->setContentsMargins(0, 0, 0, 0);
    widget->setLayout(inside);
    widget->setMinimumWidth(widget->sizeHint().width());
    widget->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    return widget;
  };
  QLayout* middle = column({{chart_group(place), 1}, record_frame(place)});
  return column({{row({side(left), {middle, 1}, side(right)}), 1}, status_line(place)});
}

}  // namespace window
