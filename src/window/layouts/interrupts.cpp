#include "window/layouts/interrupts.h"

#include <QGridLayout>
#include <QGroupBox>

#include "window/arranger.h"

namespace window {

QGroupBox* interrupt_limits_group(Arranger& place) {
  constexpr int digits = 7;
  QLayout* limits =
      place.fields({place.field("lblIUpperLimit", place.digits(digits, place("txtIUpperLimit"))),
                    place.field("lblILowerLimit", place.digits(digits, place("txtILowerLimit")))});
  return place.group("Interrupt Limits", column({limits, Part::room()}));
}

QGroupBox* interrupt_status_group(Arranger& place) {
  QWidget* pins = place.digits(3, place("txtPbInt"));
  pins->setAccessibleName("Port B");
  QWidget* polled = place("ShpISample");
  polled->setAccessibleName("Interrupt polled");
  return place.group("Interrupt Status",
                     column({row({place.lamp(place("ShpINt"), place("lblINt"), flag_words),
                                  place.lamp(place("ShpINTexternal"), place("lblINTexternal"), pin_words)}),
                             row({place("cmdSample_Portb"), pins, Part::room(), place("cmdClrInt")}),
                             row({polled, place("ChkIpol"), Part::room()}), Part::room()}));
}

QLayout* clear_command(Arranger& place) {
  constexpr int clear_lamp = 13;
  return row({place("cmdClearInt"), place.lamp(place("ShpInd", clear_lamp), place("lblIntClear"))});
}

}  // namespace window
