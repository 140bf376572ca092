#include "window/layouts/panel.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <vector>

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
  constexpr int pace_digits = 7;
  std::vector pace{
      place.field("lblDelay", place("CboIntTime", delay_list)),
      place.field("lblInterval", place.keep_room(place.digits(pace_digits, place("txtInterval"))))};
  if (place.has("txtSampling_Delay"))
    pace.push_back(place.field("Label9", 0, place.digits(pace_digits, place("txtSampling_Delay"))));
  QWidget* start = place("cmdSample");
  QWidget* stop = place("cmdEndSampling");
  // Some panels have both on screen all the time.
  QLayout* timed = stop->isHidden() ? place.in_turn(start, stop) : row({{start, 1}, {stop, 1}});
  return place.group(
      "Sampling",
      column({place.fields(pace), timed, place.lines(3, "cmdCollectData"),
              row({{place.keep_room(place("cmdStopData")), 1}, place.keep_room(place("cmdAbort"))})}));
}

QGroupBox* readings_group(Arranger& place) {
  constexpr int digits = 7;
  const auto value = [&](const char* label, const char* box) {
    place.keep_room(place(label));
    return place.field(label, place.keep_room(place.digits(digits, place(box))));
  };
  std::vector fields{value("Label16", "txtReading")};
  if (place.has("txtADCRaw")) fields.push_back(value("Label36", "txtADCRaw"));
  if (place.has("txtReading3")) {
    const Arranger::Field raw =
        place.field(QString("Raw Reading"), place.keep_room(place.digits(digits, place("txtReading3"))));
    place.keep_room(raw.caption);
    fields.push_back(raw);
  }
  fields.insert(fields.end(),
                {value("Label17", "txtReading2"), value("Label6", "txtTime3"), value("Label14", "txtTime1")});
  return place.group("Readings", place.fields(fields));
}

QLayout* triggered_reading(Arranger& place) {
  QBoxLayout* bytes = row({place("lblSampleByte"), Part::room()});
  for (const int i : place.elements_of("txtSampleByte")) {
    QWidget* byte = place.digits(3, place("txtSampleByte", i));
    byte->setAccessibleName("Reply byte " + QString::number(i));
    bytes->addWidget(byte);
  }
  return column({bytes, place.fields({place.field("lblADHex", place.digits(7, place("txtADHex"))),
                                      place.field("lblADDec", place.digits(7, place("txtADDec")))})});
}

QGroupBox* chart_group(Arranger& place, QLayout* right_scale) {
  QWidget* maximum = place.field("lblScale", place.digits(6, place("txtScale"))).widget;
  QWidget* minimum = place.field("lblScaleMin", place.digits(6, place("txtScaleMin"))).widget;
  const auto pair = [&](const char* one, const char* other) {
    return row({{place(one), 1}, {place(other), 1}});
  };
  QBoxLayout* inside =
      column({row({place("lblScale"), maximum, Part::room(), place("lblScaleMin"), minimum})});
  if (right_scale) inside->addLayout(right_scale);
  for (QLayout* buttons : {pair("cmdScale", "cmdAutoScale"), pair("cmdRestoreScreen", "cmdSaveScreen"),
                           pair("cmdWaveformINit", "cmdDrawTrace")}) {
    inside->addLayout(buttons);
  }
  return place.group("Chart", inside);
}

QLayout* closing_row(Arranger& place, std::string_view exit_button) {
  QBoxLayout* line = row({Part::room(), place(exit_button)});
  if (place.has("cbReset")) line->insertWidget(0, place("cbReset"));
  return line;
}

QGroupBox* record_frame(Arranger& place, int lines) {
  QWidget* path = place("txtFilePath");
  path->setAccessibleName("Measurement file");
  QLayout* buttons = row({place("cmdBrowse"), place("chkAppend"), place("cmdStartRec", 0)});
  return place.frame("frmDataRecord", lines == 1 ? row({{path, 1}, buttons}) : column({path, buttons}));
}

namespace {

// The words, and the lamps with what the sensor was set to and the count.
QLayout* status_line(Arranger& place) {
  QWidget* heartbeat = place.keep_room(place("shpSample"));
  place.name_lamp(heartbeat, "Sampling", heartbeat_words);
  auto* count = place.as<QLabel>("lblLoop_Count");
  count->setAccessibleName("Captured Readings");
  count->setMinimumWidth(count->fontMetrics().horizontalAdvance("-0000"));
  auto* verdict = place.as<QLabel>("LblCommTest");
  verdict->setAlignment(Qt::AlignCenter);
  verdict->setMinimumSize(8 * verdict->fontMetrics().averageCharWidth(),
                          verdict->fontMetrics().height() + gap);
  place.keep_room(verdict);
  QBoxLayout* lamps =
      row({place.lamp(place("ShpAttach"), place("Label13"), link_words),
           place.lamp(place("ShpHandleStatus"), place("lblHandleStatus"), yes_words), verdict, heartbeat});
  bool has_words = false;
  for (const char* words : {"lblRegSet", "lblRange"}) {
    if (!place.has(words)) continue;
    lamps->addWidget(place.keep_room(place.giving_way(place.as<QLabel>(words))), 1);
    has_words = true;
  }
  if (!has_words) lamps->addStretch(1);
  lamps->addWidget(place("lblCapturedReadings"));
  lamps->addWidget(count);
  lamps->setSpacing(2 * gap);
  auto* status = place.giving_way(place.as<QLabel>("Label18"));
  QBoxLayout* words = row({{status, 1}, {place.run_state(), 1}});
  words->setSpacing(2 * gap);
  return place.in_one_line_where_wide({words, 1}, {lamps, 1});
}

}  // namespace

QLayout* panel(Arranger& place, QLayout* left, QLayout* right, QLayout* below_chart) {
  // Frames and buttons of the columns come and go; the chart keeps its place.
  const auto side = [](QLayout* inside) {
    auto* widget = new QWidget;
    inside->setContentsMargins(0, 0, 0, 0);
    widget->setLayout(inside);
    widget->setMinimumWidth(widget->sizeHint().width());
    widget->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    return widget;
  };
  QLayout* middle = column({{chart(place), 1}, below_chart});
  place.keep_in_sight(status_line(place));
  return column({{row({side(left), {middle, 1}, side(right)}), 1}});
}

}  // namespace window
