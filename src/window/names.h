// Names for a screen reader where neither a caption nor the layout gives one.
#pragma once

#include <QAbstractScrollArea>
#include <QLabel>
#include <QString>
#include <string_view>

#include "forms/control.h"

namespace window {

// Empty for a control that needs none.
std::string_view name_of(const forms::Control& control);

// The widget is called what the label says, also when that changes, unless it has been given a name since.
void name_by_label(QWidget& widget, QLabel& label);
// Sets a label's text, and the name of the widget that it names.
void set_label_text(QLabel& label, const QString& text);

// Names the bars of an area that scrolls `what`: "the log".
void name_scroll_bars(const QAbstractScrollArea& area, const QString& what);

}  // namespace window
