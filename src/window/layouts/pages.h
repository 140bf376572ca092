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
// A page with a frame in it, and what becomes of the page while the frame is hidden. Where only the tab is
// greyed out the other tabs keep their places.
enum class WhileHidden { page_is_away, tab_is_grey };
void add_page_of(QWidget& frame, QTabWidget& tabs, const QString& title, QLayout* inside,
                 WhileHidden while_hidden = WhileHidden::page_is_away);

}  // namespace window
