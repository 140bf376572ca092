// The program's picture: a light source above a sensor.
#pragma once

#include <QRectF>
#include <QWidget>

class QPainter;

namespace window {

void paint_emblem(QPainter& painter, const QRectF& place);

// It as a widget, for pictures that only decorate.
class Emblem final : public QWidget {
 public:
  using QWidget::QWidget;
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace window
