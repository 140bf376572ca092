// The interrupt test: what is set up at the left, the course and what it comes to at the right.
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <array>
#include <initializer_list>

#include "window/arranger.h"
#include "window/layouts/layouts.h"
#include "window/layouts/options.h"
#include "window/look.h"

namespace window {
namespace {

constexpr int digits = 7;
constexpr int sample_lamp = 10;  // element of ShpIndrd, behind those of the steps

// --- set up ---

Arranger::Field entry(Arranger& place, const char* words, const char* box) {
  return place.field(QString(words), place.digits(digits, place(box)));
}

QGroupBox* thresholds(Arranger& place) {
  const Arranger::Field light =
      place.field("lblLuxThreshold", place.digits(digits, place("txtLuxThreshold")));
  return place.frame("Frame1", column({place.fields({entry(place, "High Threshold", "txtIHigh"),
                                                     entry(place, "Low Threshold", "txtILow"), light}),
                                       place("cmdWriteLimits")}));
}

QGroupBox* parameters(Arranger& place) {
  return place.frame("Frame6", place.fields({entry(place, "Least ALS (Solution 1)", "txtCase2Sol1Lux"),
                                             entry(place, "Delay mS (Solution 2)", "txtDeltaTime"),
                                             entry(place, "Slope Limit (Solution 2)", "txtDeltaADC")}));
}

QGroupBox* status(Arranger& place) {
  QLayout* pin = place.lamp(place("ShpINTexternal"), place.text("Pin 7"), pin_words);
  QLayout* sampled = place.lamp(place("ShpIndrd", sample_lamp), place.text("Pin Sampled"));
  return place.frame("Frame3",
                     column({row({pin, sampled}), row({place("cmdSampleII"), place("cmdClearIntr")})}));
}

// --- values ---

QLabel* value(Arranger& place, std::string_view name, int index, const QString& words) {
  auto* label = place.as<QLabel>(name, index);
  label->setAccessibleName(words);
  label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  label->setMinimumWidth(label->fontMetrics().horizontalAdvance(QString(digits, '0')));
  return label;
}

QGroupBox* saved(Arranger& place) {
  auto* grid = new QGridLayout;
  grid->setSpacing(gap);
  for (const int i : place.elements_of("cmdRecordLux")) {
    const QString number = QString::number(i + 1);
    grid->addWidget(place("cmdRecordLux", i), i, 0);
    grid->addWidget(value(place, "lblLux1", i, "Recorded Lux" + number), i, 1);
    grid->addWidget(place("mcdRecordProx", i), i, 2);
    grid->addWidget(value(place, "Label2", i, "Recorded Prox" + number), i, 3);
  }
  grid->setColumnStretch(4, 1);
  return place.frame("Frame2", grid);
}

// --- the course ---

QGroupBox* steps(Arranger& place) {
  QBoxLayout* lines = column({});
  for (const int i : place.elements_of("lblStep")) {
    lines->addLayout(place.lamp(place("ShpIndrd", i), place("lblStep", i), step_words));
  }
  return place.group("Steps", lines);
}

QGroupBox* recorded(Arranger& place) {
  auto* grid = new QGridLayout;
  grid->setSpacing(gap);
  constexpr std::array interrupts{"High Interrupt", "Low Interrupt"};
  int line = 1;
  for (const char* interrupt : interrupts) grid->addWidget(place.text(interrupt), line++, 0);
  grid->setRowStretch(line, 1);
  int column_number = 1;
  for (const auto& [array, quantity] : {std::pair{"lblProx", "Proximity"}, {"lblRecordedLux", "ALS"}}) {
    QLabel* head = place.text(quantity);
    head->setAlignment(Qt::AlignRight);
    grid->addWidget(head, 0, column_number);
    int element = 0;
    for (const char* interrupt : interrupts) {
      QLabel* number = value(place, array, element, QString("%1 @ %2").arg(quantity, interrupt));
      grid->addWidget(number, ++element, column_number);
    }
    ++column_number;
  }
  return place.group("Recorded", grid);
}

// The values that one solution compared, and the two lamps of how they compare.
QGroupBox* solution(Arranger& place, const char* title, const char* array, int first_lamp,
                    std::initializer_list<const char*> words) {
  auto* grid = new QGridLayout;
  grid->setSpacing(gap);
  int line = 0;
  for (const char* each : words) {
    grid->addWidget(place.text(each), line, 0);
    grid->addWidget(value(place, array, line, QString("%1: %2").arg(title, each)), line, 1);
    ++line;
  }
  QBoxLayout* lamps = row({});
  for (const int i : {first_lamp, first_lamp + 1}) {
    lamps->addLayout(place.lamp(place("ShpALSCompare", i), place("lblALSCompare", i), yes_words));
  }
  grid->addLayout(lamps, line, 0, 1, 2);
  return place.group(title, grid);
}

QGroupBox* course(Arranger& place) {
  auto* message = place.as<QLabel>("lblMessage");
  message->setAccessibleName("Progress");
  QLayout* buttons =
      row({place.keep_room(place("cmdRunCase1")), place.keep_room(place("cmdAbort1")), {message, 1}});
  QGroupBox* light = solution(place, "Solution 1", "lblCase21", 0,
                              {"ALS @ High Interrupt", "Least ALS", "Compared: ALS @ High Interrupt",
                               "Compared: ALS @ Low Interrupt"});
  QGroupBox* slope =
      solution(place, "Solution 2", "lblCase22_Delta", 2,
               {"Proximity @ Low Interrupt", "Proximity Behind the Delay", "Difference", "Slope Limit"});
  return place.frame("Frame5", column({buttons, row({{steps(place), 1}, recorded(place)}),
                                       row({{light, 1}, {slope, 1}}), Part::room()}));
}

}  // namespace

QLayout* arrange_interrupt_test(Arranger& place) {
  QLayout* left = column({thresholds(place), option_frame(place, "Frame4", "OptResolution", 2),
                          parameters(place), status(place), Part::room()});
  QLayout* right = column({{course(place), 1}, saved(place)});
  QLayout* attached = place.lamp(place("ShpAttach"), place.text("USB Comm"), link_words);
  place.keep_in_sight(row({attached, {place.run_state(), 1}}));
  return row({left, {right, 1}});
}

}  // namespace window
