#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>

#include "window/arranger.h"
#include "window/layouts/layouts.h"
#include "window/look.h"

namespace window {
namespace {

struct Port {
  const char* boxes;
  int count;
};

QLayout* boxes_of(Arranger& place, const Port& port) {
  QBoxLayout* boxes = column({});
  for (int i = 0; i < port.count; ++i) boxes->addWidget(place(port.boxes, i));
  boxes->setSpacing(line_gap);
  return boxes;
}

// Written and read-back byte of a port, and the lamp that compares them.
void add_bytes(Arranger& place, QGridLayout& grid, int line, const QString& group, const QString& port,
               const char* boxes, int written, int lamp, const LampWords& words) {
  QWidget* out = place.digits(3, place(boxes, written));
  QWidget* back = place.digits(3, place(boxes, written + 1));
  QWidget* compared = place("shpGpioWr", lamp);
  const QString name = group + ", " + port;
  out->setAccessibleName(name + " written");
  back->setAccessibleName(name + " read back");
  place.name_lamp(compared, name + " compared", words);
  grid.addWidget(place.text(port), line, 0);
  grid.addWidget(out, line, 1);
  grid.addWidget(back, line, 2);
  grid.addWidget(compared, line, 3);
}

QGridLayout* bytes_of(Arranger& place, const QString& group, const char* boxes, int first_lamp,
                      const LampWords& words) {
  auto* grid = new QGridLayout;
  grid->setSpacing(gap);
  grid->addWidget(place.text("Written"), 0, 1);
  grid->addWidget(place.text("Read"), 0, 2);
  add_bytes(place, *grid, 1, group, "PB Hex", boxes, 0, first_lamp, words);
  add_bytes(place, *grid, 2, group, "PC Hex", boxes, 2, first_lamp + 1, words);
  grid->setColumnStretch(4, 1);
  return grid;
}

}  // namespace

QLayout* arrange_gpio(Arranger& place) {
  const auto ports = [&](const Port& b, const Port& c, const Port& leds, QGridLayout* bytes) {
    QBoxLayout* c_and_leds = column({boxes_of(place, c), boxes_of(place, leds), Part::room()});
    c_and_leds->setSpacing(line_gap);
    return row({column({boxes_of(place, b), Part::room()}), c_and_leds, column({bytes, Part::room()})});
  };
  auto* enables = place.frame("Frame1", ports({"chkOutEn", 8}, {"chkOutEnc", 4}, {"ChLed1", 2},
                                              bytes_of(place, "Enable", "txtPCHex", 2, comparison_words)));
  auto* data = place.frame("Frame2", ports({"ChkBData", 8}, {"ChkCData", 4}, {"ChKLedData", 2},
                                           bytes_of(place, "Data", "txtPCHexData", 4, port_words)));
  constexpr int signal_count = 12;
  constexpr int signals_a_line = 6;
  auto* names = new QGridLayout;
  names->setSpacing(gap);
  for (int i = 0; i < signal_count; ++i) {
    names->addWidget(place("txtGPIOUserName", i), i / signals_a_line, i % signals_a_line);
  }
  auto* board_signals = place.frame("Frame3", names);
  for (const int dormant : {0, 1}) place("shpGpioWr", dormant)->setAccessibleName("Lamp without a signal");
  return column(
      {row({enables, data}), board_signals, Part::room(),
       row({place.lamp(place("ShpAttach"), place("lblUsbComm"), link_words), Part::room(),
            place("shpGpioWr", 0), place("shpGpioWr", 1), place("cmdReadGPIO"), place("cmdGPIO_Write")})});
}

}  // namespace window
