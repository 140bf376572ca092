// The panels of the sensors with eight registers. Everything that is worked while a chart runs is in sight;
// below the chart the registers, the interrupt and the triggered reading take turns.
#include <QGroupBox>
#include <QLabel>
#include <QTabWidget>
#include <array>

#include "window/arranger.h"
#include "window/caption_button.h"
#include "window/layouts/interrupts.h"
#include "window/layouts/layouts.h"
#include "window/layouts/options.h"
#include "window/layouts/pages.h"
#include "window/layouts/panel.h"
#include "window/layouts/register_block.h"
#include "window/look.h"

namespace window {
namespace {

// Elements of ShpInd. A read-back that differs from register n turns the lamp `compare_lamp` + n red.
constexpr int write_lamp = 0;
constexpr int compare_lamp = 4;
constexpr int result_lamp = 8;
constexpr int sync_lamp = 12;

constexpr std::array write_buttons{"cmdSetCommand", "cmdSetControl", "cmdSetIntHigh", "cmdSetIntLow"};
constexpr int written = static_cast<int>(write_buttons.size());

QGroupBox* mode_frame(Arranger& place) {
  QWidget* diodes = place.list_rows(4, place("LstMode2"));
  diodes->setAccessibleName("Measurement");
  return place.frame("frmMode", row({elements(place, "OptMode"), {diodes, 1}}));
}

QLayout* left_column(Arranger& place) {
  QGroupBox* resolution = option_frame(place, "frItime", "OptITime");
  place.keep_room(resolution);
  return column({device_frame(place), mode_frame(place), option_frame(place, "frmTimeBase", "OptTimeBase"),
                 row({option_frame(place, "frmMeasure", "OptMeasure"), resolution,
                      option_frame(place, "frGain", "OptGain")}),
                 option_group(place, "Command", "ChkCommand", 2), Part::room()});
}

QLayout* right_column(Arranger& place) {
  return column({sampling_group(place), readings_group(place), chart_group(place), record_frame(place, 2),
                 Part::room(), closing_row(place)});
}

// --- below the chart ---

RegisterLine line_of(Arranger& place, int number) {
  return {.name = "R" + QString::number(number),
          .label = place("lblRegister", number),
          .read_box = place("txtRegRd", number)};
}

QLayout* registers(Arranger& place) {
  std::vector<RegisterLine> both_ways;
  std::vector<RegisterLine> results;
  for (const int number : place.elements_of("txtRegRd")) {
    RegisterLine line = line_of(place, number);
    if (number < written) {
      line.write_box = place("txtRegHex", number);
      line.write_button = place.as<CaptionButton>(write_buttons[static_cast<std::size_t>(number)]);
      line.write_lamp = place("ShpInd", write_lamp + number);
      line.read_lamp = place("ShpInd", compare_lamp + number);
      both_ways.push_back(line);
    } else {
      line.read_lamp = place("ShpInd", result_lamp + number - written);
      results.push_back(line);
    }
  }
  QLayout* commands = column(
      {place("cmdRead_All"), place("cmdRead_Measurements"),
       row({place("cmdSync"), place.lamp(place("ShpInd", sync_lamp), place("lblSync"))}), Part::room()});
  return row({register_block(place, both_ways), Part::room(), register_block(place, results), Part::room(),
              commands});
}

QLayout* interrupt(Arranger& place) {
  QGroupBox* trips = option_frame(place, "frControl", "OpInt", 2);
  return row({column({trips, clear_command(place)}),
              interrupt_limits_group(place),
              {interrupt_status_group(place), 1}});
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
  add_page(*tabs, "Registers", registers(place));
  add_page(*tabs, "Interrupt", interrupt(place));
  add_page(*tabs, "Last Triggered Reading", triggered(place));
  return tabs;
}

}  // namespace

QLayout* arrange_eight_registers(Arranger& place) {
  QLayout* left = left_column(place);
  QLayout* below_chart =
      column({option_frame(place, "frmGraphSelect", "OptGraph", 3), pages_below_chart(place)});
  return panel(place, left, right_column(place), below_chart);
}

}  // namespace window
