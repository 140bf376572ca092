#include "window/layouts/converter.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QTabWidget>

#include "window/arranger.h"
#include "window/layouts/options.h"
#include "window/layouts/pages.h"
#include "window/layouts/panel.h"
#include "window/look.h"

namespace window {
namespace {

constexpr int count_digits = 6;
constexpr int byte_digits = 2;
// Elements of ShpInd and ShpIndrd.
constexpr int sync_lamp = 12;

// --- at the left ---

QLayout* status_row(Arranger& place) {
  QBoxLayout* line = row({{option_frame(place, "frmMode", "OptMode", 3), 1}});
  if (place.has("frmProxOffset")) {
    auto* offset = place.as<QLabel>("lblOffset");
    offset->setAccessibleName("Offset");
    offset->setMinimumWidth(count_digits * offset->fontMetrics().averageCharWidth());
    line->addWidget(place.frame("frmProxOffset", row({place("ChkSubract"), Part::room(), offset})), 1);
  }
  return line;
}

// No higher than a small screen has room for.
QGroupBox* operation_frame(Arranger& place) {
  constexpr int most_lines = 4;
  const int operations = static_cast<int>(place.elements_of("OptMeasure").size());
  return option_frame(place, "frmMeasure", "OptMeasure", (operations + most_lines - 1) / most_lines);
}

// What is measured, and what a count stands for.
QLayout* measured_row(Arranger& place) {
  QGroupBox* measured = place.frame("Frame3", row({place("Label3", 0), Part::room()}));
  QGroupBox* factor = place.frame("Frame11", row({place("lblKfactor"), Part::room()}));
  return row({{measured, 2}, {factor, 1}});
}

QGroupBox* converter_frame(Arranger& place) {
  QGroupBox* width = place.frame("frItime", column({elements(place, "OptITime", 2), place("lblBits")}));
  return place.frame("frmadccontrol", row({width, {option_frame(place, "frGain", "OptGain", 2), 1}}));
}

QGroupBox* emitter_frame(Arranger& place) {
  return place.frame("Frame1", column({option_frame(place, "Frame6", "OptPSrc", 4),
                                       row({{option_frame(place, "Frame7", "OptMFreq", 2), 1},
                                            place.keep_room(option_frame(place, "Frame8", "OptIRMode"))})}));
}

QLayout* follower_row(Arranger& place) {
  const auto limit = [&](int index) {
    return place.field("lblGainTrip", index, place.digits(4, place("txtGainTrip", index)));
  };
  QGroupBox* limits = place.frame("Frame14", place.fields({limit(0), limit(1)}));
  return row({option_frame(place, "frmGainMode", "OptGainMode"),
              option_frame(place, "frmIRDRMode", "OptIRDRMode"),
              {place.keep_room(limits), 1}});
}

// --- at the right ---

QLayout* right_scale(Arranger& place) {
  const auto scale = [&](const char* label, const char* box) {
    return place.field(label, place.digits(count_digits, place(box)));
  };
  return row({column({place("chkAutoAuto"), Part::room()}), Part::room(),
              place.fields({scale("lblScale2", "txtScale2"), scale("lblScaleMin2", "txtScaleMin2")})});
}

// --- proximity minus infrared ---

QWidget* pair_box(Arranger& place, int index, int digits, const QString& name) {
  QWidget* box = place.digits(digits, place("txtProx_IR", index));
  box->setAccessibleName(name);
  return box;
}

QGroupBox* pair_frame(Arranger& place) {
  const auto count = [&](int index) {
    const Arranger::Field field =
        place.field("lblProx_IR", index, place.digits(count_digits, place("txtProx_IR", index)));
    return row({field.caption, field.widget});
  };
  const auto over_range = [&](int index, const QString& name) {
    return place.name_lamp(place("ShpOVRange", index), name, over_words);
  };
  QLayout* over =
      row({place("lblOVRange"), over_range(0, "Proximity over range"), over_range(1, "Infrared over range")});
  return place.frame("Frame10",
                     row({count(4), Part::room(), count(5), Part::room(), count(6), Part::room(), over}));
}

// A value's label, and its bytes from high to low.
QGroupBox* pair_bytes(Arranger& place) {
  auto* grid = new QGridLayout;
  grid->setSpacing(gap);
  int line = 0;
  for (const int index : {0, 2}) {
    auto* label = place.as<QLabel>("lblProx_IR", index);
    const QString name = label->text().simplified();
    grid->addWidget(label, line, 0);
    grid->addWidget(pair_box(place, index, byte_digits, name + " high byte"), line, 1);
    grid->addWidget(pair_box(place, index + 1, byte_digits, name + " low byte"), line, 2);
    ++line;
  }
  return place.frame("Frame9", grid);
}

// --- pages ---

QGroupBox* timing_frame(Arranger& place) {
  QBoxLayout* lines = column({elements(place, "OptExtTime", 2)});
  for (const int sync : place.elements_of("ChkEOC1")) {
    QWidget* delay = place.keep_room(place.digits(4, place("txtSync1Delay", sync)));
    delay->setAccessibleName("Wait before sync " + QString::number(sync + 1));
    lines->addLayout(row({place.keep_room(place("ChkEOC1", sync)), delay, Part::room()}));
  }
  lines->addLayout(
      row({place("cmdSync"), Part::room(), place.lamp(place("ShpInd", sync_lamp), place("lblSync"))}));
  return place.frame("Frame5", lines);
}

}  // namespace

QLayout* converter_left_column(Arranger& place) {
  return column({status_row(place), operation_frame(place), measured_row(place), converter_frame(place),
                 emitter_frame(place), follower_row(place), Part::room()});
}

QLayout* converter_right_column(Arranger& place) {
  return column({sampling_group(place), readings_group(place), chart_group(place, right_scale(place)),
                 Part::room(), closing_row(place)});
}

QLayout* graph_line(Arranger& place) {
  return row(
      {option_group(place, "Graph Option Select", "OptGraph", 3), {place.keep_room(pair_frame(place)), 1}});
}

QLayout* register_commands(Arranger& place) {
  QBoxLayout* commands = column({});
  for (const char* command : {"cmdSetCommand", "cmdSetControl", "cmdRead_All", "cmdRead_ADC", "cmdReadTB"}) {
    commands->addWidget(place(command));
  }
  commands->addStretch(1);
  return column({place.frame("Frame2", commands)});
}

QLayout* last_reading(Arranger& place) {
  for (const char* count : {"txtADHex", "txtADDec"}) place.keep_room(place(count));
  QBoxLayout* both =
      row({column({triggered_reading(place), Part::room()}),
           column({place.keep_room(pair_bytes(place)), place.keep_room(place("cmdProx_IR")), Part::room()}),
           Part::room()});
  both->setSpacing(4 * gap);
  return both;
}

void add_timing_page(Arranger& place, QTabWidget& tabs) {
  QGroupBox* timing = timing_frame(place);
  QGroupBox* time_base = option_frame(place, "frmTimeBase", "OptTimeBase");
  if (place.elements_of("OptTimeBase").empty()) place.without_room(time_base);
  add_page_of(*timing, tabs, "Timing",
              column({row({timing, option_frame(place, "Frame4", "OptMeasMode"), time_base, Part::room()}),
                      Part::room()}));
}

void add_device_page(Arranger& place, QTabWidget& tabs) {
  QGroupBox* device = device_frame(place);
  add_page_of(*device, tabs, "Device and File",
              row({column({device, Part::room()}), {column({record_frame(place, 2), Part::room()}), 1}}));
}

}  // namespace window
