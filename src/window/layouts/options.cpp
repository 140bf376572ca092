#include "window/layouts/options.h"

#include <QGridLayout>
#include <QGroupBox>

#include "window/arranger.h"
#include "window/look.h"

namespace window {

QGridLayout* elements(Arranger& place, std::string_view array, int columns) {
  const std::vector<int> indices = place.elements_of(array);
  const int count = static_cast<int>(indices.size());
  const int lines = (count + columns - 1) / columns;
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(gap);
  grid->setVerticalSpacing(line_gap);
  grid->setContentsMargins(0, 0, 0, 0);
  for (int i = 0; i < count; ++i) {
    grid->addWidget(place(array, indices[static_cast<std::size_t>(i)]), i % lines, i / lines);
  }
  grid->setRowStretch(lines, 1);
  grid->setColumnStretch(columns, 1);
  return grid;
}

QGroupBox* option_frame(Arranger& place, std::string_view frame, std::string_view array, int columns) {
  return place.frame(frame, elements(place, array, columns));
}

QGroupBox* option_group(Arranger& place, const QString& title, std::string_view array, int columns) {
  return place.group(title, elements(place, array, columns));
}

}  // namespace window
