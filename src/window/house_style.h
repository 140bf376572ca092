// Fusion with what it leaves unseen: the focus of lists and tables, and that a box only shows something.
#pragma once

#include <QProxyStyle>

namespace window {

class HouseStyle final : public QProxyStyle {
 public:
  HouseStyle() : QProxyStyle("fusion") {}
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
};

}  // namespace window
