#include <QLabel>

#include "window/arranger.h"
#include "window/emblem.h"
#include "window/layouts/layouts.h"

namespace window {
namespace {

// A text of several lines, as wide as so many characters.
QLabel* paragraph(Arranger& place, const char* name, int index = -1) {
  constexpr int characters = 84;
  auto* label = place.as<QLabel>(name, index);
  label->setWordWrap(true);
  label->setMinimumWidth(characters * label->fontMetrics().averageCharWidth());
  return label;
}

QLabel* heading(Arranger& place, const char* name, int index, double size) {
  auto* label = place.as<QLabel>(name, index);
  QFont font = label->font();
  font.setBold(true);
  font.setPointSizeF(font.pointSizeF() * size);
  label->setFont(font);
  return label;
}

}  // namespace

QLayout* arrange_about_box(Arranger& place) {
  auto* emblem = new Emblem;
  emblem->setFixedSize(emblem->sizeHint());
  QLayout* what = column({heading(place, "lblTitle", -1, 1.4), place("lblVersion"),
                          paragraph(place, "lblDescription"), Part::room()});
  return column({row({emblem, {what, 1}}), heading(place, "lblDisclaimer", 0, 1),
                 paragraph(place, "lblDisclaimer", 1), paragraph(place, "lblLibraries"), Part::room(),
                 row({place("cmdSysInfo"), Part::room(), place("cmdOK")})});
}

}  // namespace window
