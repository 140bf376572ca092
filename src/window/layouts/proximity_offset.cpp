#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>

#include "window/arranger.h"
#include "window/layouts/layouts.h"
#include "window/look.h"

namespace window {

QLayout* arrange_proximity_offset(Arranger& place) {
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(gap);
  grid->setVerticalSpacing(line_gap);
  grid->setColumnStretch(0, 1);
  for (int i = 0; place.has("txtProxOff", i); ++i) {
    auto* label = place.as<QLabel>("LblOffsetLables", i);
    QWidget* counts = place.digits(6, place("txtProxOff", i));
    counts->setAccessibleName(label->text());
    grid->addWidget(label, i, 0);
    grid->addWidget(counts, i, 1);
  }
  return column({place.frame("FrmOffsets", grid), Part::room()});
}

}  // namespace window
