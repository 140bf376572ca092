// A push button whose caption wraps, so that a long caption makes it higher and not wider.
#pragma once

#include <QPushButton>

namespace window {

class CaptionButton final : public QPushButton {
 public:
  explicit CaptionButton(QWidget* parent = nullptr);
  // Room for so many lines of caption from the start, so that a change of the caption moves nothing.
  void reserve_lines(int lines);
  // Its caption doesn't wrap: in a table all lines are of one height.
  void stay_on_one_line();
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  // Enter presses the button, as the space bar does.
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  int lines_ = 1;
  bool wraps_ = true;
};

}  // namespace window
