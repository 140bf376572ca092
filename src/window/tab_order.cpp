#include "window/tab_order.h"

#include <QGridLayout>
#include <QScrollArea>
#include <QTabBar>
#include <QTabWidget>
#include <algorithm>
#include <vector>

namespace window {
namespace {

// The items of a grid line by line, those of any other layout as they were added.
std::vector<QLayoutItem*> in_reading_order(QLayout& layout) {
  struct Placed {
    int row = 0;
    int column = 0;
    QLayoutItem* item;
  };
  auto* grid = qobject_cast<QGridLayout*>(&layout);
  std::vector<Placed> placed;
  for (int i = 0; i < layout.count(); ++i) {
    Placed& each = placed.emplace_back(Placed{.item = layout.itemAt(i)});
    int row_span = 0;
    int column_span = 0;
    if (grid) grid->getItemPosition(i, &each.row, &each.column, &row_span, &column_span);
  }
  std::ranges::stable_sort(placed, [](const Placed& one, const Placed& other) {
    return std::pair(one.row, one.column) < std::pair(other.row, other.column);
  });
  std::vector<QLayoutItem*> items;
  for (const Placed& each : placed) items.push_back(each.item);
  return items;
}

class Walk {
 public:
  std::vector<QWidget*> stops;

  void through(QWidget& widget) {
    if (auto* tabs = qobject_cast<QTabWidget*>(&widget)) {
      // As a stop of its own that passes the focus on it would lead back to its bar from wherever it stands.
      tabs->setFocusProxy(nullptr);
      tabs->setFocusPolicy(Qt::NoFocus);
      through(*tabs->tabBar());
      for (int page = 0; page < tabs->count(); ++page) through(*tabs->widget(page));
      return;
    }
    if (auto* scroll = qobject_cast<QScrollArea*>(&widget); scroll && scroll->widget())
      through(*scroll->widget());
    if (widget.focusPolicy() & Qt::TabFocus) stops.push_back(&widget);
    if (widget.layout()) through(*widget.layout());
  }

 private:
  void through(QLayout& layout) {
    for (QLayoutItem* item : in_reading_order(layout)) {
      if (item->widget()) through(*item->widget());
      if (item->layout()) through(*item->layout());
    }
  }
};

}  // namespace

void set_tab_order(QWidget& content) {
  Walk walk;
  walk.through(content);
  for (std::size_t i = 1; i < walk.stops.size(); ++i) {
    QWidget::setTabOrder(walk.stops[i - 1], walk.stops[i]);
  }
}

}  // namespace window
