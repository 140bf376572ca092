// Pages that take turns below the chart.
#pragma once

#include <QString>

class QLayout;
class QTabWidget;
class QWidget;

namespace window {

// As high as its highest page.
QTabWidget* pages();
int add_page(QTabWidget& tabs, const QString& title, QLayout* inside);
// A page that is there while this frame in it isn't hidden.
void add_page_of(QWidget& frame, QTabWidget& tabs, const QString& title, QLayout* inside);

}  // namespace window
