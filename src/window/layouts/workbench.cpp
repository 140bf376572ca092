#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QTabWidget>

#include "window/arranger.h"
#include "window/layouts/layouts.h"
#include "window/look.h"

namespace window {
namespace {

constexpr int rows_a_tab = 16;

// A row: write lamp, value to write, value read, read lamp, address, description.
void add_row(Arranger& place, QGridLayout& grid, int line, int register_row) {
  QWidget* write_lamp = place.keep_room(place("shpBwrite", register_row));
  QWidget* read_lamp = place.keep_room(place("Shape1", register_row));
  const QString suffix = " of row " + QString::number(register_row);
  place.name_lamp(write_lamp, "Write" + suffix, action_words);
  place.name_lamp(read_lamp, "Read" + suffix, action_words);
  const auto byte = [&](const char* name, const char* words) {
    QWidget* box = place.digits(3, place(name, register_row));
    box->setAccessibleName(words + suffix);
    return box;
  };
  QWidget* description = place("Reg_Desc", register_row);
  description->setAccessibleName("Description" + suffix);
  grid.addWidget(write_lamp, line, 0);
  grid.addWidget(byte("txtBWrite", "Value to write"), line, 1);
  grid.addWidget(byte("txtRdByte", "Value read"), line, 2);
  grid.addWidget(read_lamp, line, 3);
  grid.addWidget(byte("Reg_Adr", "Address"), line, 4);
  grid.addWidget(description, line, 5);
}

// Both tabs have the same heads. The form's own ones stand on the first tab.
QWidget* register_tab(Arranger& place, int tab) {
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(gap);
  grid->setVerticalSpacing(line_gap);
  constexpr int head_columns[] = {1, 2, 4, 5};
  for (int head = 0; head < 4; ++head) {
    auto* label = place.as<QLabel>("Label2", head);
    grid->addWidget(tab == 0 ? label : place.text(label->text()), 0, head_columns[head]);
  }
  for (int i = 0; i < rows_a_tab; ++i) add_row(place, *grid, i + 1, tab * rows_a_tab + i);
  grid->setRowStretch(rows_a_tab + 1, 1);
  auto* page = new QWidget;
  QBoxLayout* inside = column({place.frame("Frame1", grid, tab)});
  inside->setContentsMargins(gap, gap, gap, gap);
  page->setLayout(inside);
  return page;
}

// The pictures that the form scrolls its table by hold it here; the table always fits.
QWidget* register_table(Arranger& place) {
  auto* tabs = place.as<QTabWidget>("SSTab1");
  tabs->setAccessibleName("Register table");
  tabs->addTab(register_tab(place, 0), "Rows 0 to 15");
  tabs->addTab(register_tab(place, 1), "Rows 16 to 31");
  QWidget* inner = place("pbinner");
  inner->setLayout(column({{tabs, 1}}));
  QWidget* outer = place("pbouter");
  outer->setLayout(column({{inner, 1}}));
  auto* scrolled = new QGridLayout;
  scrolled->setContentsMargins(0, 0, 0, 0);
  scrolled->setSpacing(0);
  scrolled->addWidget(outer, 0, 0);
  scrolled->addWidget(place("VScroll1"), 0, 1);
  scrolled->addWidget(place("HScroll1"), 1, 0);
  QWidget* table = place("PbForm");
  table->setLayout(scrolled);
  return table;
}

// A value with its lamp above its button.
QLayout* byte_transfer(Arranger& place, QWidget* button, QWidget* value, const QString& words, int lamp) {
  QWidget* result = place("Shape2", lamp);
  value->setAccessibleName(words);
  place.name_lamp(result, words, action_words);
  return column({row({place.digits(4, value), result, Part::room()}), button});
}

QGroupBox* single_byte_frame(Arranger& place) {
  QWidget* address = place.field("lblUserRegAdr", place.digits(4, place("txtUserRegAdr"))).widget;
  QLayout* transfers =
      row({byte_transfer(place, place("cmdWrite1Byte", 0), place("txtsbwr", 0), "First value to write", 0),
           byte_transfer(place, place("cmdWrite1Byte", 1), place("txtsbwr", 1), "Second value to write", 1),
           byte_transfer(place, place("cmdRead"), place("txtReadByte"), "Value read", 2)});
  auto* count = place.as<QLabel>("lblReadCount");
  count->setAccessibleName(place.as<QLabel>("lblTransferCount")->text().simplified());
  count->setMinimumWidth(count->fontMetrics().horizontalAdvance("-000"));
  return place.frame("FRGEN", column({row({place("lblUserRegAdr"), address, Part::room(),
                                           place.lamp(place("Shape3"), place("lblNak"), answer_words)}),
                                      transfers, row({place("lblTransferCount"), count, Part::room()})}));
}

QGroupBox* usb_frame(Arranger& place) {
  QWidget* handle = place("txthDriver");
  handle->setAccessibleName("Driver handle");
  const auto named = [&](const char* caption, const LampWords& words, const char* lamp, int index = -1) {
    return place.lamp(place(lamp, index), place.text(caption), words);
  };
  auto* lamps =
      row({named("Connect", yes_words, "shpUSBCon", 0), named("Disconnect", yes_words, "shpUSBCon", 1),
           named("Handle", yes_words, "ShpHandleStatus"), named("Comm", link_words, "ShpAttach")});
  return place.frame("fraUsb",
                     column({place("ChKManUsbConn"), row({place("cmdUSBConnect"), place("cmdUSBDisconnect")}),
                             row({place("cbNoc"), {handle, 1}}), lamps}));
}

QGroupBox* address_frame(Arranger& place) {
  QLayout* fields =
      place.fields({place.field(QString("I2C Address"), place.digits(4, place("txtI2CAdr"))),
                    place.field("lblActualWrtAddress", place.digits(4, place("txtActualWrtAddress"))),
                    place.field("lblActualReadAddress", place.digits(4, place("txtActualReadAddress")))});
  QWidget* status = place.digits(3, place("txtTstReg", 0));
  QWidget* data = place.digits(3, place("txtTstReg", 1));
  status->setAccessibleName("Status of the test");
  data->setAccessibleName("Data of the test");
  auto* result = place.as<QLabel>("lblCommTest");
  result->setAlignment(Qt::AlignCenter);
  result->setMinimumWidth(8 * result->fontMetrics().averageCharWidth());
  return place.frame("fraAddress",
                     column({fields, row({place("cmdTestComm"), result, Part::room(), status, data})}));
}

}  // namespace

QLayout* arrange_workbench(Arranger& place) {
  auto* log = place("Txtlog");
  log->setAccessibleName("Log");
  log->setMinimumWidth(64 * log->fontMetrics().averageCharWidth());
  auto* log_group =
      place.group("Log", column({{log, 1},
                                 row({place.lamp(place("shpLogStatus"), place.text("Log status"), log_words),
                                      Part::room(), place("cmdClearLog")})}));
  QLayout* left = column({usb_frame(place), address_frame(place), single_byte_frame(place), {log_group, 1}});
  QLayout* right =
      column({{register_table(place), 1},
              row({place.lines(2, "cmdReadRegs"), place.lines(2, "cmdwriteAll"), place.lines(2, "Command7")}),
              row({place("cbSend"), place("cbReset"), Part::room(), place("cmdexit")})});
  return row({{left, 1}, {right, 1}});
}

}  // namespace window
