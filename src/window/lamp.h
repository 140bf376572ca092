// A round lamp, as large as the text beside it.
#pragma once

#include <QWidget>

#include "forms/color.h"

namespace window {

class Lamp final : public QWidget {
 public:
  explicit Lamp(QWidget* parent = nullptr);
  void set_color(forms::Color color);
  forms::Color color() const { return color_; }
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  forms::Color color_;
};

}  // namespace window
