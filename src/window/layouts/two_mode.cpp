// The panels of the sensors with two modes in two registers, and their proximity filter.
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QTabWidget>
#include <array>

#include "window/arranger.h"
#include "window/caption_button.h"
#include "window/layouts/converter.h"
#include "window/layouts/layouts.h"
#include "window/layouts/pages.h"
#include "window/layouts/panel.h"
#include "window/layouts/register_block.h"
#include "window/look.h"

namespace window {
namespace {

constexpr int count_digits = 5;
// Elements of ShpInd.
constexpr int settled_lamp = 2;
constexpr int read_back_lamp = 4;
constexpr int result_lamp = 8;
constexpr int cycles_lamp = 10;

// --- registers ---

QLayout* registers(Arranger& place) {
  const auto written = [&](int number, const QString& name) {
    return RegisterLine{.name = name,
                        .label = place("lblRegister", number),
                        .write_box = place("txtRegHex", number),
                        .write_lamp = place("ShpInd", number),
                        .read_box = place("txtRegRd", number),
                        .read_lamp = place("ShpInd", read_back_lamp + number)};
  };
  const auto read = [&](int number, int lamp, const QString& name) {
    return RegisterLine{.name = name,
                        .label = place("lblRegister", number),
                        .read_box = place("txtRegRd", number),
                        .read_lamp = place("ShpInd", lamp)};
  };
  QGridLayout* table =
      register_block(place, {written(0, "b000"), written(1, "b001"), read(2, result_lamp, "ADC low byte"),
                             read(3, result_lamp + 1, "ADC high byte"), read(4, cycles_lamp, "T.B. low byte"),
                             read(5, cycles_lamp + 1, "T.B. high byte")});
  return row({table, Part::room(), register_commands(place)});
}

// --- the filter: settings, what they make, lamps ---

class FilterTable {
 public:
  explicit FilterTable(Arranger& place) : place_(place) {
    grid_->setHorizontalSpacing(gap);
    grid_->setVerticalSpacing(line_gap);
  }
  // A caption with its box in the next line of a third, and a lamp behind it. Without one, -1.
  void add(int third, int caption, QWidget* box, int lamp = -1, const LampWords& words = action_words) {
    int& line = lines_.at(static_cast<std::size_t>(third));
    const int first = third * (columns + 1);
    const Arranger::Field field = place_.field("lblFilter", caption, place_.digits(count_digits, box));
    grid_->addWidget(field.caption, line, first);
    grid_->addWidget(field.widget, line, first + 1);
    if (lamp >= 0) grid_->addWidget(named_lamp(lamp, field.caption, words), line, first + 2);
    ++line;
  }
  // A caption with a lamp alone.
  void add(int third, int caption, int lamp, const LampWords& words) {
    int& line = lines_.at(static_cast<std::size_t>(third));
    const int first = third * (columns + 1);
    QWidget* label = place_("lblFilter", caption);
    grid_->addWidget(label, line, first);
    grid_->addWidget(named_lamp(lamp, label, words), line, first + 2);
    ++line;
  }
  QGridLayout* grid() {
    for (const int gap_column : {columns, 2 * columns + 1}) grid_->setColumnStretch(gap_column, 1);
    return grid_;
  }

 private:
  static constexpr int columns = 3;

  QWidget* named_lamp(int lamp, QWidget* caption, const LampWords& words) {
    return Arranger::name_lamp(place_.keep_room(place_("ShpInd", lamp)),
                               static_cast<QLabel*>(caption)->text(), words);
  }

  Arranger& place_;
  QGridLayout* grid_ = new QGridLayout;
  std::array<int, 3> lines_{};
};

QGroupBox* filter_frame(Arranger& place) {
  FilterTable table(place);
  table.add(0, 1, place("txtProxHighLimit"), 6, range_words);
  table.add(0, 0, place("txtProxLowLimit"), 7, range_words);
  table.add(0, 4, place("txtCorrectThreshold"));
  table.add(0, 3, place("txtProxConstant"), 13, use_words);
  table.add(0, 5, place("txtCorrectionConstant"), 19, use_words);
  table.add(0, 10, place("txtProxADJ"));
  table.add(1, 2, place("txtProxDelta"), 14, range_words);
  table.add(1, 11, place("txtMaxChange"));
  table.add(1, 12, place("lblProxOvercount"));
  table.add(1, 7, place("txtProxGrossDelta"));
  table.add(1, 13, 15, action_words);
  table.add(1, 6, place("txtProx_Weight"));
  table.add(2, 14, place("txtPROXGross", 0));
  table.add(2, 15, place("txtPROXGross", 1));
  table.add(2, 16, place("txtPROXGross", 2));
  table.add(2, 8, place("txtHighThreshold"), 18, yes_words);
  table.add(2, 17, 17, yes_words);
  table.add(2, 9, place("txtLowThreshold"), 16, yes_words);
  return place.frame("Frame12", table.grid());
}

// Whether a pair has settled, and what is taken for that.
QGroupBox* stability(Arranger& place) {
  QWidget* settled = place("ShpInd", settled_lamp);
  place.name_lamp(settled, "Settled", yes_words);
  for (const char* name : {"lblStabDif", "txtStabDif", "lblStabDelay", "txtStabDelay"}) {
    place.keep_room(place(name));
  }
  const auto setting = [&](const char* label, const char* box) {
    return place.field(label, place.digits(count_digits, place(box)));
  };
  return place.group(
      "Prox-IR Stability",
      column({row({place("ChStab"), Part::room(), settled}),
              place.fields({setting("lblStabDif", "txtStabDif"), setting("lblStabDelay", "txtStabDelay")}),
              row({place.without_room(place("FrProxIRStab"))})}));
}

QLayout* last_triggered(Arranger& place) {
  return row({last_reading(place),
              column({stability(place), row({place("cmdRead"), place("cmdBatchShow")}), Part::room()})});
}

QTabWidget* pages_below_chart(Arranger& place) {
  QTabWidget* tabs = pages();
  add_page(*tabs, "Registers", registers(place));
  add_timing_page(place, *tabs);
  QGroupBox* filter = filter_frame(place);
  add_page_of(*filter, *tabs, "Proximity Filter", column({place.keep_room(filter)}),
              WhileHidden::tab_is_grey);
  add_page(*tabs, "Last Triggered Reading", last_triggered(place));
  add_device_page(place, *tabs);
  return tabs;
}

}  // namespace

QLayout* arrange_two_mode(Arranger& place) {
  QLayout* left = converter_left_column(place);
  QLayout* below_chart = column({graph_line(place), pages_below_chart(place)});
  return panel(place, left, converter_right_column(place), below_chart);
}

}  // namespace window
