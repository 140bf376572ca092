// Shows a picture surface, scaled to the widget: its pixels, the texts printed on it, and other
// surfaces that stand on it. After a change only the columns that were drawn on are painted again.
#pragma once

#include <QImage>
#include <QWidget>
#include <optional>
#include <vector>

#include "forms/picture.h"

class QFontMetricsF;

namespace window {

class PictureView final : public QWidget {
 public:
  explicit PictureView(forms::PictureBox& picture, QWidget* parent = nullptr);

  // Puts another view on this surface, its corner at this pixel of it. Both scale together.
  void stand_on_it(PictureView& view, QPoint corner);
  // Shows a ten-by-ten black grid in a colour of its own, so that a black trace is told from it. The surface
  // keeps its pixels.
  void tell_grid_apart();
  // The texts printed in this row are a time axis, and get its unit behind them: "s" for times, "samples" for
  // whole numbers.
  void name_unit_of_axis(double row);
  // Takes over what was drawn since the last call.
  void show_changes();

  // Size of one surface pixel on the widget.
  double scale_x() const { return width() / static_cast<double>(image_.width()); }
  double scale_y() const { return height() / static_cast<double>(image_.height()); }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  struct Standing {
    PictureView* view;
    QPoint corner;
  };
  // A text with its leading blanks turned into room, in surface pixels.
  struct Placed {
    double x;
    double y;
    QString text;
  };
  void copy_columns(int first, int last);
  bool belongs_to_grid(int x, int y) const;
  void add_unit_of_axis(std::vector<Placed>& placed, const QFontMetricsF& metrics) const;
  std::vector<Placed> placed_texts(const QFont& font) const;
  // How far a text may reach to the right before it runs into something.
  double room_for(const Placed& text, const std::vector<Placed>& all) const;
  void paint_texts(QPainter& painter) const;

  forms::PictureBox& picture_;
  QImage image_;
  bool grid_apart_ = false;
  std::optional<double> axis_row_;
  std::vector<Standing> standing_;
  std::vector<forms::PictureBox::PrintedText> texts_;
};

}  // namespace window
