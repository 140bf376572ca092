#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QTabWidget>

#include "window/arranger.h"
#include "window/layouts.h"
#include "window/look.h"

namespace window {
namespace {

constexpr int rows_a_tab = 16;

// A row: write lamp, value to write, value read, read lamp, address, description.
void add_row(Arranger& place, QGridLayout& grid, int line, int register_row) {
  QWidget* write_lamp = place.keep_room(place("shpBwrite", register_row));
  QWidget* read_lamp = place.keep_room(place("Shape1", register_row));
  const QString suffix = " of row " + QString::number(register_row);
  write_lamp->setAccessibleName("Write lamp" + suffix);
  read_lamp->setAccessibleName("Read lamp" + suffix);
  const auto byte = [&](const char* name, const char* words) {
    QWidget* box = place.digits(3, place(name, register_row));
    box->setAccessibleName(words + suffix);
    return box;
  };
  QWidget* description = place("Reg_Desc", register_row);
  description->setAccessibleName("Description" + suffix);
  grid.addWidget(write_lamp, line, 0);
  grid.addWidget(byte("txtBWrite", "Write"), line, 1);
  grid.addWidget(byte("txtRdByte", "Read"), line, 2);
  grid.addWidget(read_lamp, line, 3);
  grid.addWidget(byte("Reg_Adr", "Adr"), line, 4);
  grid.addWidget(description, line, 5);
}

QWidget* register_tab(Arranger& place, int tab) {
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(gap);
  grid->setVerticalSpacing(gap / 3);
  int head = 1;
  for (const char* caption : {"Write", "Read", "", "Adr", "Description"}) {
    grid->addWidget(place.text(caption), 0, head++);
  }
  for (int i = 0; i < rows_a_tab; ++i) add_row(place, *grid, i + 1, tab * rows_a_tab + i);
  grid->setRowStretch(rows_a_tab + 1, 1);
  auto* page = new QWidget;
  QBoxLayout* inside = column({place.frame("Frame1", grid, tab)});
  inside->setContentsMargins(gap, gap, gap, gap);
  page->setLayout(inside);
  return page;
}

QGroupBox* usb_frame(Arranger& place) {
  QWidget* handle = place("txthDriver");
  handle->setAccessibleName("Driver handle");
  const auto named = [&](const char* caption, const char* lamp, int index = -1) {
    return place.lamp(place(lamp, index), place.text(caption));
  };
  auto* lamps = row({named("Connect", "shpUSBCon", 0), named("Disconnect", "shpUSBCon", 1),
                     named("Handle", "ShpHandleStatus"), named("Comm", "ShpAttach")});
  return place.frame("fraUsb",
                     column({place("ChKManUsbConn"), row({place("cmdUSBConnect"), place("cmdUSBDisconnect")}),
                             row({place("cbNoc"), {handle, 1}}), lamps}));
}

QGroupBox* address_frame(Arranger& place) {
  return place.frame(
      "fraAddress",
      place.fields({place.field(QString("I2C Address"), place.digits(4, place("txtI2CAdr"))),
                    place.field("lblActualWrtAddress", place.digits(4, place("txtActualWrtAddress"))),
                    place.field("lblActualReadAddress", place.digits(4, place("txtActualReadAddress")))}));
}

}  // namespace

QLayout* arrange_workbench(Arranger& place) {
  auto* tabs = place.as<QTabWidget>("SSTab1");
  tabs->setAccessibleName("Register table");
  tabs->addTab(register_tab(place, 0), "Rows 0 to 15");
  tabs->addTab(register_tab(place, 1), "Rows 16 to 31");

  auto* log = place.as<QPlainTextEdit>("Txtlog");
  log->setReadOnly(true);
  log->setAccessibleName("Log");
  log->setMinimumWidth(64 * log->fontMetrics().averageCharWidth());
  auto* log_group =
      place.group("Log", column({{log, 1},
                                 row({place.lamp(place("shpLogStatus"), place.text("Log status")),
                                      Part::room(), place("cmdClearLog")})}));
  return row({{column({usb_frame(place),
                       address_frame(place),
                       {log_group, 1},
                       row({place("cbSend"), place("cbReset"), Part::room(), place("cmdexit")})}),
               1},
              {tabs, 1}});
}

}  // namespace window
