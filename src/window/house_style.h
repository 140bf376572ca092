// Fusion with what it leaves unseen: the focus of lists and tables, that a box only shows something, outlines
// of boxes and of what is to be marked, and texts of the platform that are too pale; and without the menu of
// scroll bars, whose wait for the user would hold up the program's loops.
#pragma once

#include <QProxyStyle>

namespace window {

class HouseStyle : public QProxyStyle {
 public:
  HouseStyle() : QProxyStyle("fusion") {}
  using QProxyStyle::polish;
  void polish(QPalette& platform) override;
  void polish(QApplication* application) override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override;

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;
};

}  // namespace window
