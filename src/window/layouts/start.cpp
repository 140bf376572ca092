#include <QLabel>

#include "window/arranger.h"
#include "window/emblem.h"
#include "window/layouts/layouts.h"
#include "window/look.h"

namespace window {

QLayout* arrange_start_panel(Arranger& place) {
  QWidget* picture = place("Picture1");
  auto* emblem = new Emblem(picture);
  emblem->resize(emblem->sizeHint());
  picture->setFixedSize(emblem->sizeHint());
  picture->setAccessibleName("Light on a sensor");

  QWidget* devices = place("cboDeviceSelect");
  auto* choice = column({place.text("Which sensor is on the board?", devices), devices, Part::room()});
  auto* revision = place.frame("frmRevision", row({place("OptRev", 0), place("OptRev", 1), Part::room()}));
  return column(
      {row({picture, {choice, 1}}), revision, Part::room(), row({Part::room(), place("cmdAbout")})});
}

}  // namespace window
