#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>

#include "window/arranger.h"
#include "window/layouts/layouts.h"
#include "window/layouts/options.h"
#include "window/look.h"

namespace window {
namespace {

// Row and rows of a running script. The form tells both in its boxes; between runs the bar rests.
QProgressBar* progress_of(const QLineEdit* running, const QLineEdit* total) {
  auto* bar = new QProgressBar;
  bar->setAccessibleName("Progress of the script");
  bar->setFormat("row %v of %m");
  bar->setTextVisible(false);
  QObject::connect(running, &QLineEdit::textChanged, bar, [bar, total](const QString& row) {
    bool is_row = false;
    const int value = row.toInt(&is_row);
    bar->setRange(0, std::max(1, total->text().toInt()));
    bar->setValue(is_row ? value : 0);
    bar->setTextVisible(is_row);
  });
  return bar;
}

QLayout* counts(Arranger& place) {
  const auto count = [&](const char* label, const char* box) {
    QWidget* widget = place.digits(6, place(box));
    return place.field(label, widget);
  };
  return place.fields({count("lblTotLines", "txtTotLines"), count("lbltotReads", "txttotReads"),
                       count("lblRdPass", "txtRdPass"), count("lblRdFails", "txtRdFails")});
}

QGroupBox* control_frame(Arranger& place) {
  auto* running = place.as<QLineEdit>("txtRunning");
  auto* total = place.as<QLineEdit>("txtTotLines");
  QLayout* boxes = place.fields({place.field("lblRunning", place.digits(6, running)),
                                 place.field("lblLoopCount", place.digits(6, place("txtLoopCount")))});
  return place.frame("frmScriptExec",
                     column({row({place("cmdExecAll"), place("cmdRunContinuous"), place("cmdAbort")}),
                             row({place("chkAOF"), Part::room(), boxes}), progress_of(running, total)}));
}

// The boxes that nothing hangs on: address, register, four bytes.
QGroupBox* serial_frame(Arranger& place, const char* frame, const char* option, const char* address,
                        const char* reg, const char* bytes, const char* button, const QString& words) {
  const auto box = [&](QWidget* widget, const QString& name) {
    widget->setAccessibleName(words + " " + name);
    return place.digits(3, widget);
  };
  QBoxLayout* line = row({place(option), box(place(address), "address"), box(place(reg), "register")});
  for (int i = 0; i < 4; ++i) line->addWidget(box(place(bytes, i), "byte " + QString::number(i)));
  line->addWidget(place(button));
  return place.frame(frame, line);
}

}  // namespace

QLayout* arrange_script_panel(Arranger& place) {
  QWidget* grid = place("vbalGrid1");
  grid->setAccessibleName("Script");
  grid->setMinimumHeight(16 * grid->fontMetrics().height());
  QWidget* loaded = place.digits(12, place("txtScriptLine1"));
  QLayout* file = place.fields(
      {place.field("lblI2CAdr", place.digits(4, place("txtI2CAdr"))), place.field("lblScriptLine1", loaded)});
  auto* script =
      place.group("Script", column({file, row({place("cmdReload2"), Part::room()}), Part::room()}));
  auto* results = place.group("Results", column({counts(place), Part::room()}));
  QGroupBox* send = serial_frame(place, "fraSend", "optSend", "txtI2CAdrOut", "txtI2CIntAdrOut",
                                 "txtI2CBytesOut", "cmdSendSerial", "Send");
  QGroupBox* receive = serial_frame(place, "fraReceive", "optReceive", "txtI2CAdrIn", "txtI2CIntAdrIn",
                                    "txtI2CBytesIN", "cmdReceiveSerial", "Receive");
  QLayout* all = column(
      {{grid, 1}, row({script, results, {control_frame(place), 1}}), row({send, receive, Part::room()})});
  place.keep_in_sight(row({place.lamp(place("ShpAttach"), place.text("USB Comm"), link_words),
                           {place.run_state(), 2},
                           {place.giving_way(place.as<QLabel>("lblLinesLeftOut")), 1},
                           place("Command1")}));
  return all;
}

QLayout* arrange_batch_panel(Arranger& place) {
  auto* figures = new QGridLayout;
  figures->setSpacing(gap);
  for (int i = 0; place.has("lblALS", i); ++i) {
    auto* caption = place.as<QLabel>("lblCaption", i);
    auto* figure = place.as<QLabel>("lblALS", i);
    figure->setAlignment(Qt::AlignRight);
    figure->setAccessibleName(caption->text());
    figure->setMinimumWidth(10 * figure->fontMetrics().averageCharWidth());
    figures->addWidget(caption, i, 0);
    figures->addWidget(figure, i, 1);
  }
  return column({row({column({figures, Part::room()}),
                      column({option_frame(place, "fraSource", "OptSource"),
                              option_frame(place, "fraPrxADJ", "OptPrxADJ"), Part::room()})}),
                 row({place("cmdScript1"), Part::room(), place("cmdWriteI2C"), place("cmdReadi2c")})});
}

}  // namespace window
