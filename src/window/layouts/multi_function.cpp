// The panels of the sensors with light, infrared, proximity and an interrupt in nine registers.
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QTabWidget>

#include "window/arranger.h"
#include "window/caption_button.h"
#include "window/layouts/converter.h"
#include "window/layouts/layouts.h"
#include "window/layouts/options.h"
#include "window/layouts/pages.h"
#include "window/layouts/panel.h"
#include "window/layouts/register_block.h"
#include "window/look.h"

namespace window {
namespace {

constexpr int count_digits = 6;
// Elements of ShpIndrd behind those of the registers.
constexpr int pin_lamp = 9;
constexpr int cycle_lamp = 10;

// --- registers ---

// Two long labels have the numbers and the names of all registers; the heads of the columns show them.
QGridLayout* register_table(Arranger& place) {
  auto* all_numbers = place.as<QLabel>("lblRegister", 0);
  auto* all_names = place.as<QLabel>("lblRegister", 1);
  const QStringList numbers = words_of(all_numbers->text());
  const QStringList names = words_of(all_names->text());
  std::vector<RegisterLine> registers;
  for (int i = 0; i < numbers.size(); ++i) {
    QLabel* head = place.text(numbers[i] + "\n" + names[i]);
    head->setAlignment(Qt::AlignCenter);
    registers.push_back({.name = numbers[i] + " " + names[i],
                         .label = head,
                         .write_box = place("txtRegHex", i),
                         .write_button = place.as<CaptionButton>("cmdWrtReg", i),
                         .write_lamp = place("ShpIndwr", i),
                         .read_box = place("txtRegRd", i),
                         .read_button = place.as<CaptionButton>("cmdRDReg", i),
                         .read_lamp = place("ShpIndrd", i)});
  }
  QGridLayout* table = register_columns(place, registers);
  for (QLabel* shown_by_heads : {all_numbers, all_names})
    table->addWidget(place.without_room(shown_by_heads), 0, 0);
  return table;
}

// Dormant lamps, and a button that is hidden in both layouts.
QLayout* unseen(Arranger& place) {
  QBoxLayout* line = row({place.without_room(place("cmdIntr1"))});
  line->setSpacing(0);
  for (const int dormant : {2, 3, 4}) {
    QWidget* lamp = place.without_room(place("ShpInd", dormant));
    lamp->setAccessibleName("Lamp without a signal");
    line->addWidget(lamp);
  }
  return line;
}

QLayout* registers(Arranger& place) {
  QGridLayout* table = register_table(place);
  QLayout* cycle = place.lamp(place("ShpIndrd", cycle_lamp), place.text("Registers read"));
  return row({column({table, row({cycle, unseen(place), Part::room()}), Part::room()}), Part::room(),
              register_commands(place)});
}

// --- interrupt ---

QLayout* limits(Arranger& place) {
  const auto limit = [&](const char* label, const char* box) {
    return place.field(label, place.digits(count_digits, place(box)));
  };
  return column({place("lblLimits"),
                 place.fields({limit("lblIHigh", "txtIHigh"), limit("lblILow", "txtILow")}),
                 row({place("cmdWrtILimits"), place("cmdReadILimits")}), Part::room()});
}

QLayout* status(Arranger& place) {
  QWidget* sampled = place("ShpIndrd", pin_lamp);
  sampled->setAccessibleName("Interrupt pin sampled");
  return column(
      {row({place("lblStatus"), Part::room(), place.lamp(place("ShpINt"), place("lblINt"), flag_words),
            place.lamp(place("ShpINTexternal"), place("lblINTexternal"), pin_words)}),
       place("cmdSampleIIIntr"), place("cmdSampleInterrupt"),
       row({place("ChkSampleInt"), Part::room(), sampled}), Part::room()});
}

// How the limits are to be understood, with room for the longest words.
QLayout* format(Arranger& place) {
  constexpr int characters = 16;
  auto* scheme = place.as<QLabel>("lblIlimitsformat", 0);
  scheme->setMinimumWidth(characters * scheme->fontMetrics().averageCharWidth());
  return elements(place, "lblIlimitsformat");
}

QGroupBox* interrupt(Arranger& place) {
  return place.frame("fraINT", row({elements(place, "optINTP"), Part::room(), limits(place), Part::room(),
                                    format(place), Part::room(), status(place)}));
}

// --- measurement details ---

// A caption, and two boxes with theirs, from the one label that has them all.
QGroupBox* history(Arranger& place) {
  auto* grid = new QGridLayout;
  grid->setSpacing(gap);
  int line = 0;
  for (const int first : place.elements_of("lblADMax")) {
    auto* label = place.as<QLabel>("lblADMax", first);
    const QStringList words = words_of(label->text());
    grid->addWidget(place.without_room(label), line, 0);
    grid->addWidget(place.text(words[0]), line, 0);
    for (int box = 0; box < 2; ++box) {
      QWidget* value = place.digits(count_digits, place("txtADMax", first + box));
      value->setAccessibleName(words[0] + " " + words[box + 1]);
      grid->addWidget(place.text(words[box + 1]), line, 2 * box + 1);
      grid->addWidget(value, line, 2 * box + 2);
    }
    ++line;
  }
  constexpr int behind = 5;
  grid->addWidget(place("cmdClearHist"), 0, behind + 1);
  grid->setColumnStretch(behind, 1);
  grid->setRowStretch(line, 1);
  return place.frame("FrmMeasureDetails", grid);
}

QGroupBox* cover_workbook(Arranger& place) {
  std::vector<Arranger::Field> results;
  for (const int i : place.elements_of("lblCover")) {
    auto* result = place.as<QLabel>("lblCoverRdgs", i);
    result->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    result->setMinimumWidth(2 * count_digits * result->fontMetrics().averageCharWidth());
    results.push_back(place.field("lblCover", i, result));
  }
  QWidget* factor = place.digits(count_digits, place("txtRatio_Limit", 0));
  factor->setAccessibleName("XX");
  return place.frame("Frame12",
                     row({place.fields(results), Part::room(),
                          column({row({place("cmdALS_IR"), Part::room()}), place("lblCoverlimits", 1),
                                  row({place.text("XX =", factor), factor, Part::room()}), Part::room()})}));
}

QLayout* details(Arranger& place) {
  QGroupBox* of_readings = history(place);
  if (!place.has("Frame12")) return column({of_readings});
  return column({row({place("ChkCover"), Part::room()}), place.in_turn(of_readings, cover_workbook(place))});
}

QTabWidget* pages_below_chart(Arranger& place) {
  QTabWidget* tabs = pages();
  add_page(*tabs, "Registers", registers(place));
  add_timing_page(place, *tabs);
  QGroupBox* limits_and_pin = interrupt(place);
  add_page_of(*limits_and_pin, *tabs, "Interrupt", column({place.keep_room(limits_and_pin)}),
              WhileHidden::tab_is_grey);
  add_page(*tabs, place.has("Frame12") ? "Details and Cover" : "Details", details(place));
  add_page(*tabs, "Last Triggered Reading", last_reading(place));
  add_device_page(place, *tabs);
  return tabs;
}

}  // namespace

QLayout* arrange_multi_function(Arranger& place) {
  QLayout* left = converter_left_column(place);
  QLayout* below_chart = column({graph_line(place), pages_below_chart(place)});
  return panel(place, left, converter_right_column(place), below_chart);
}

}  // namespace window
