#include "window/names.h"

#include <QScrollBar>
#include <array>

#include "window/control_words.h"

namespace window {
namespace {

using Name = ControlWords;

constexpr std::array names{
    Name{"frmStartup", "frmRevision", "Chip revision"},
    Name{"frmScriptOps", "cmdSendSerial", "Send the bytes"},
    Name{"frmScriptOps", "cmdReceiveSerial", "Receive the bytes"},
    Name{"frmScriptOps", "Command1", "Command1: mark the second row"},
    Name{"frmScriptOps", "lblLinesLeftOut", "Lines left out"},
    Name{"frmI2C_General", "cmdWrite1Byte(0)", "Write the first value"},
    Name{"frmI2C_General", "cmdWrite1Byte(1)", "Write the second value"},
    Name{"frmKVT71338", "txtFSR2", "Full Scale (lux) of the factor"},
    Name{"frmI2C_General", "VScroll1", "Scroll the register table down"},
    Name{"frmI2C_General", "HScroll1", "Scroll the register table sideways"},
    Name{"", "ChkEOC1(0)", "First sync"},
    Name{"", "ChkEOC1(1)", "Second sync"},
    Name{"", "Label18", "Status"},
    Name{"", "LblCommTest", "Communications test"},
    Name{"", "lblCommTest", "Communications test"},
    Name{"", "cmdProx_IR", "Read Prox-IR"},
};

}  // namespace

std::string_view name_of(const forms::Control& control) {
  return words_for(control, names);
}

namespace {

constexpr const char* named_widget = "named_widget";

}  // namespace

void name_by_label(QWidget& widget, QLabel& label) {
  widget.setAccessibleName(label.text().simplified());
  label.setProperty(named_widget, QVariant::fromValue(&widget));
}

void set_label_text(QLabel& label, const QString& text) {
  auto* named = label.property(named_widget).value<QWidget*>();
  if (named && named->accessibleName() == label.text().simplified())
    named->setAccessibleName(text.simplified());
  label.setText(text);
}

void name_scroll_bars(const QAbstractScrollArea& area, const QString& what) {
  area.verticalScrollBar()->setAccessibleName("Scroll " + what + " down");
  area.horizontalScrollBar()->setAccessibleName("Scroll " + what + " sideways");
}

}  // namespace window
