#include "window/emblem.h"

#include <QPainter>
#include <cmath>
#include <numbers>

namespace window {

void paint_emblem(QPainter& painter, const QRectF& place) {
  const double unit = std::min(place.width(), place.height()) / 16;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(place.center());
  const QPointF source(-2 * unit, -2 * unit);
  painter.setPen(QPen(QColor(0xE0, 0x9A, 0x1E), 0.9 * unit, Qt::SolidLine, Qt::RoundCap));
  for (int ray = 0; ray < 8; ++ray) {
    const double angle = ray * std::numbers::pi / 4;
    const QPointF direction(std::cos(angle), std::sin(angle));
    painter.drawLine(source + direction * 3.6 * unit, source + direction * (ray == 1 ? 6.6 : 5.0) * unit);
  }
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0xF7, 0xB9, 0x32));
  painter.drawEllipse(source, 2.7 * unit, 2.7 * unit);
  painter.setBrush(QColor(0x24, 0x4A, 0x6B));
  painter.drawRoundedRect(QRectF(2.6 * unit, 2.6 * unit, 5 * unit, 5 * unit), unit * 0.8, unit * 0.8);
  painter.setBrush(QColor(0x8F, 0xC7, 0xE8));
  painter.drawEllipse(QPointF(5.1 * unit, 5.1 * unit), 1.4 * unit, 1.4 * unit);
  painter.restore();
}

QSize Emblem::sizeHint() const {
  const int side = 6 * fontMetrics().height();
  return {side, side};
}

void Emblem::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  paint_emblem(painter, QRectF(rect()));
}

}  // namespace window
