#include "window/house_style.h"

#include <QAbstractItemView>
#include <QLineEdit>
#include <QPainter>
#include <QStyleOptionFrame>

namespace window {

void HouseStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                             const QWidget* widget) const {
  QProxyStyle::drawControl(element, option, painter, widget);
  const bool focused = option->state & State_HasFocus;
  if (element != CE_ShapedFrame || !focused || !qobject_cast<const QAbstractItemView*>(widget)) return;
  constexpr double width = 2;
  painter->save();
  painter->setPen(
      QPen(option->palette.color(QPalette::Highlight), width, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
  painter->drawRect(QRectF(option->rect).adjusted(width / 2, width / 2, -width / 2, -width / 2));
  painter->restore();
}

// A box with a ground of its own keeps it.
void HouseStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
  const auto* line = qobject_cast<const QLineEdit*>(widget);
  const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
  if (element == PE_PanelLineEdit && frame && line && line->isReadOnly() &&
      !line->testAttribute(Qt::WA_SetPalette)) {
    QStyleOptionFrame like_the_window = *frame;
    like_the_window.palette.setBrush(QPalette::Base, option->palette.brush(QPalette::Window));
    QProxyStyle::drawPrimitive(element, &like_the_window, painter, widget);
    return;
  }
  QProxyStyle::drawPrimitive(element, option, painter, widget);
}

}  // namespace window
