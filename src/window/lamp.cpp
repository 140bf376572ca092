#include "window/lamp.h"

#include <QAccessible>
#include <QPainter>
#include <QRadialGradient>

#include "window/look.h"

namespace window {

Lamp::Lamp(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  setAccessibleDescription(lamp_words(color_));
}

void Lamp::set_color(forms::Color color) {
  if (color == color_) return;
  color_ = color;
  setAccessibleDescription(lamp_words(color));
  QAccessibleEvent said(this, QAccessible::NameChanged);
  QAccessible::updateAccessibility(&said);
  update();
}

QString Lamp::meaning() const {
  const forms::Color shown = forms::resolved(color_);
  if (shown == forms::clr_black) return words_.off;
  if (shown == forms::clr_red) return words_.red;
  return shown == forms::clr_dark_green ? words_.dark_green : words_.light_green;
}

QSize Lamp::sizeHint() const {
  const int side = fontMetrics().height();
  return {side, side};
}

void Lamp::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const double diameter = std::min(width(), height()) - 2.0;
  const QRectF disc((width() - diameter) / 2, (height() - diameter) / 2, diameter, diameter);
  const bool off = forms::resolved(color_) == forms::clr_black;
  const bool on_dark = palette().color(QPalette::Window).lightness() < 128;
  // On a dark window a dark lamp would look as an option to be marked.
  const QColor unlit = on_dark ? QColor(0x70, 0x70, 0x70) : QColor(0x38, 0x38, 0x38);
  const QColor color = off ? unlit : to_qt(color_);
  QRadialGradient glass(disc.center() - QPointF(diameter, diameter) * 0.18, diameter * 0.75);
  glass.setColorAt(0, off ? unlit.lighter(160) : color.lighter(125));
  glass.setColorAt(0.6, color);
  glass.setColorAt(1, color.darker(125));
  painter.setBrush(isEnabled() ? QBrush(glass) : QBrush(palette().mid()));
  painter.setPen(QPen(on_dark ? QColor(0xB0, 0xB0, 0xB0) : QColor(0x28, 0x28, 0x28), 1.2));
  painter.drawEllipse(disc);
}

}  // namespace window
