// The panel of the sensor with an external resistor. In its short form it keeps what a measurement needs: the
// converter's options, the readings, the chart and the command register.
#include <QGridLayout>
#include <QGroupBox>
#include <QTabWidget>

#include "window/arranger.h"
#include "window/caption_button.h"
#include "window/layouts/layouts.h"
#include "window/layouts/options.h"
#include "window/layouts/pages.h"
#include "window/layouts/panel.h"
#include "window/layouts/register_block.h"
#include "window/look.h"

namespace window {
namespace {

constexpr int delay_digits = 4;
constexpr int value_digits = 8;
// Elements of ShpInd.
constexpr int write_lamp = 0;
constexpr int read_lamp = 4;
constexpr int adc_lamp = 8;
constexpr int time_base_lamp = 10;
constexpr int sync_lamp = 12;

// --- at the left ---

// They come and go with the options, the rest keeps its place.
QWidget* switch_of(Arranger& place, std::string_view name, int index = -1) {
  return place.keep_room(place(name, index));
}

QWidget* delay(Arranger& place, const QString& name, std::string_view box, int index = -1) {
  QWidget* widget = place.keep_room(place.digits(delay_digits, place(box, index)));
  widget->setAccessibleName(name);
  return widget;
}

QGroupBox* converter_frame(Arranger& place) {
  QLayout* triggers = column(
      {row({switch_of(place, "ChkOneShot"), Part::room(),
            delay(place, "Wait behind the one shot command", "txtOneShotDelay")}),
       row({switch_of(place, "ChkSync", 0), delay(place, "Wait behind the first sync", "txtDelaySync", 0),
            Part::room(), switch_of(place, "ChkSync", 1),
            delay(place, "Wait behind the second sync", "txtDelaySync", 1)})});
  return place.frame(
      "frmadccontrol",
      column(
          {row({option_frame(place, "frmPower", "OptPwr"), option_frame(place, "frmMeasQty", "OptMeasQty")}),
           option_frame(place, "frmMeasure", "OptMeasure", 2), triggers,
           row({place("cmdSync"), Part::room(), place.lamp(place("ShpInd", sync_lamp), place("lblSync"))})}));
}

QLayout* left_column(Arranger& place) {
  return column({device_frame(place),
                 row({option_frame(place, "frmMode", "OptMode"),
                      option_frame(place, "frmTimeBase", "ChkExternalTime")}),
                 converter_frame(place),
                 row({option_frame(place, "frItime", "OptITime"), option_frame(place, "frGain", "OptGain")}),
                 Part::room()});
}

// --- at the right ---

QGroupBox* readings(Arranger& place) {
  for (const char* name : {"Label28", "txtCaclulated_Lux", "Label16", "txtTimeBaseReading", "Label6",
                           "txtTime3", "Label14", "txtTime1"}) {
    place.keep_room(place(name));
  }
  const auto value = [&](const char* label, const char* box) {
    return place.field(label, place.digits(value_digits, place(box)));
  };
  return place.group(
      "Readings", place.fields({value("lblADC_Reading", "txtADC_Reading"),
                                value("Label28", "txtCaclulated_Lux"), value("Label16", "txtTimeBaseReading"),
                                value("lblReading", "txtReading"), value("Label17", "txtReading2"),
                                value("Label6", "txtTime3"), value("Label14", "txtTime1")}));
}

// The chart's scales, those of the counts below those of the lux.
QGroupBox* both_scales(Arranger& place) {
  const auto scale = [&](const char* label, const char* box, int digits) {
    return place.field(label, place.digits(digits, place(box))).widget;
  };
  const auto align = [&](const char* label, const char* below) {
    place(label)->setMinimumWidth(place(below)->sizeHint().width());
  };
  align("lblScale", "lblScale2");
  align("lblScaleMin", "lblScaleMin2");
  QWidget* maximum = scale("lblScale2", "txtScale2", 6);
  QWidget* minimum = scale("lblScaleMin2", "txtScaleMin2", 5);
  QGroupBox* chart = chart_group(place);
  place.digits(5, place("txtScaleMin"));  // as the one below it
  static_cast<QBoxLayout*>(chart->layout())
      ->insertLayout(1, row({place("lblScale2"), maximum, Part::room(), place("lblScaleMin2"), minimum}));
  return chart;
}

QLayout* right_column(Arranger& place) {
  return column(
      {sampling_group(place), readings(place), both_scales(place), Part::room(), closing_row(place)});
}

// --- below the chart ---

// A value under its caption.
QLayout* value(Arranger& place, const char* label, const char* box, int digits = value_digits) {
  const Arranger::Field field = place.field(label, place.digits(digits, place(box)));
  QBoxLayout* both = column({field.caption, row({field.widget, Part::room()})});
  both->setSpacing(line_gap);
  return both;
}

QGroupBox* calculator(Arranger& place) {
  constexpr int ohm_digits = 6;
  constexpr int count_digits = 5;
  constexpr int time_digits = 7;
  constexpr int factor_digits = 18;
  QGroupBox* resistor = place.frame(
      "Frame2", row({elements(place, "OptREXT", 3), value(place, "lblREXT", "txtREXT", ohm_digits),
                     value(place, "lblRREF", "txtRREF", ohm_digits)}));
  QGroupBox* oscillator = place.frame("Frame3", row({value(place, "lblFOSC_Freq", "txtFOSC_Freq"),
                                                     value(place, "lblFoscPeriod", "txtFoscPeriod")}));
  QGroupBox* integration = place.frame(
      "Frame5",
      row({value(place, "lblClockCounts2", "txtClockCounts2", count_digits),
           value(place, "lblCalcITIme", "txtCalcITIme", time_digits), value(place, "lblFSR", "txtFSR")}));
  QGroupBox* lux = place.frame(
      "Frame6", row({value(place, "lblFSR2", "txtFSR2"), value(place, "lbl2N", "txt2N", count_digits),
                     value(place, "lblLFactor", "txtLFactor", factor_digits)}));
  return place.frame("Frame7", column({row({{resistor, 1}, oscillator}), row({integration, {lux, 1}})}));
}

QLayout* registers(Arranger& place) {
  const auto data = [&](int number, int lamp, const char* button = nullptr) {
    return RegisterLine{.name = "Data byte " + QString::number(number),
                        .label = place("lblRegister", number),
                        .read_box = place("txtRegRd", number),
                        .read_button = button ? place.as<CaptionButton>(button) : nullptr,
                        .read_lamp = place("ShpInd", lamp)};
  };
  const RegisterLine command{.name = "b000",
                             .label = place("lblRegister", 0),
                             .write_box = place("txtRegHex", 0),
                             .write_button = place.as<CaptionButton>("cmdSetCommand"),
                             .write_lamp = place("ShpInd", write_lamp),
                             .read_box = place("txtRegRd", 0),
                             .read_button = place.as<CaptionButton>("cmdSetControl"),
                             .read_lamp = place("ShpInd", read_lamp)};
  QLayout* hidden =
      row({place("cmdRead_All"), place("cmdSetIntHigh"), place("cmdSetIntLow"), place("cmdClearInt")});
  return column(
      {row({register_block(place, {command, data(4, adc_lamp, "cmdRead_ADC"), data(5, adc_lamp + 1),
                                   data(6, time_base_lamp, "cmdReadTB"), data(7, time_base_lamp + 1)}),
            Part::room()}),
       hidden});
}

QLayout* triggered(Arranger& place) {
  QLayout* cycles = place.fields({place.field("lblICycHex", place.digits(7, place("txtICycHex"))),
                                  place.field("lblICYCDec", place.digits(7, place("txtICYCDec")))});
  QBoxLayout* both =
      row({column({triggered_reading(place), Part::room()}), column({cycles, Part::room()}), Part::room()});
  both->setSpacing(4 * gap);
  return both;
}

QTabWidget* pages_below_chart(Arranger& place) {
  QTabWidget* tabs = pages();
  const auto add_frame = [&](const QString& title, QGroupBox* frame) {
    add_page_of(*frame, *tabs, title, column({frame, Part::room()}));
  };
  add_page(*tabs, "Registers", registers(place));
  add_frame("Calculator", calculator(place));
  add_page(*tabs, "Last Triggered Reading", triggered(place));
  add_frame("Measurement File", record_frame(place, 1));
  return tabs;
}

}  // namespace

QLayout* arrange_kvt71338(Arranger& place) {
  QLayout* left = left_column(place);
  QLayout* below_chart =
      column({option_frame(place, "frmGraphSelect", "OptGraph", 3), pages_below_chart(place)});
  return panel(place, left, right_column(place), below_chart);
}

}  // namespace window
