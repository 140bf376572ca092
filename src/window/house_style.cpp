#include "window/house_style.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QEvent>
#include <QLineEdit>
#include <QPainter>
#include <QStyleOptionFrame>

#include "window/look.h"

namespace window {

// Qt asks for it again whenever the platform's palette has changed.
void HouseStyle::polish(QPalette& platform) {
  QProxyStyle::polish(platform);
  make_readable(platform);
}

void HouseStyle::polish(QApplication* application) {
  QProxyStyle::polish(application);
  application->installEventFilter(this);
}

// Some desktops set the application's palette over that of their platform, past the style.
bool HouseStyle::eventFilter(QObject* object, QEvent* event) {
  if (event->type() == QEvent::ApplicationPaletteChange && object == qApp) {
    QPalette colors = QApplication::palette();
    make_readable(colors);
    if (colors != QApplication::palette()) QApplication::setPalette(colors);
  }
  return QProxyStyle::eventFilter(object, event);
}

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

namespace {

// Fusion's is a shade of the window, which is next to nothing on a dark one.
QColor outline_of(const QStyleOption& option) {
  const bool by_keyboard = option.state & QStyle::State_KeyboardFocusChange;
  const bool focused = by_keyboard && option.state & QStyle::State_HasFocus;
  const QColor color = option.palette.color(focused ? QPalette::Highlight : QPalette::Mid);
  return readable(color, option.palette.color(QPalette::Window), least_outline_contrast);
}

// Over Fusion's own outline.
void draw_outline(QStyle::PrimitiveElement element, const QStyleOption& option, QPainter& painter) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(Qt::NoBrush);
  if (element == QStyle::PE_IndicatorRadioButton) {
    constexpr double width = 1.25;  // a line on a circle is mostly between the pixels
    painter.setPen(QPen(outline_of(option), width));
    const int side = option.rect.width();
    const double radius = (side + (side + 1) % 2) / 2.0 - 1;
    painter.drawEllipse(QPointF(option.rect.center() + QPoint(1, 1)), radius, radius);
  } else {
    const double rounding = element == QStyle::PE_FrameLineEdit ? 2 : 0;
    painter.setPen(outline_of(option));
    painter.drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5), rounding, rounding);
  }
  painter.restore();
}

// A box that has the focus has an outline of Fusion's that is seen.
bool has_faint_outline(QStyle::PrimitiveElement element, const QStyleOption& option) {
  switch (element) {
    case QStyle::PE_IndicatorCheckBox:
    case QStyle::PE_IndicatorRadioButton:
      return true;
    case QStyle::PE_FrameLineEdit:
      return !(option.state & QStyle::State_HasFocus);
    default:
      return false;
  }
}

}  // namespace

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
  if (has_faint_outline(element, *option)) draw_outline(element, *option, *painter);
}

int HouseStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                          QStyleHintReturn* data) const {
  return hint == SH_ScrollBar_ContextMenu ? 0 : QProxyStyle::styleHint(hint, option, widget, data);
}

}  // namespace window
