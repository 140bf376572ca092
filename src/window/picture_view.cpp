#include "window/picture_view.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QLayout>
#include <QPaintEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "window/look.h"

namespace window {
namespace {

using forms::PictureBox;

// On white it is seen, and leaves the trace in front.
constexpr QRgb grid_color = qRgb(0x8C, 0x8C, 0x8C);

bool same_text(const PictureBox::PrintedText& a, const PictureBox::PrintedText& b) {
  return a.x == b.x && a.y == b.y && a.text == b.text;
}

// The colours 0x00BBGGRR of a surface as Qt has them.
QRgb to_rgb(std::uint32_t color) {
  return qRgb(static_cast<int>(color & 0xFFu), static_cast<int>((color >> 8) & 0xFFu),
              static_cast<int>((color >> 16) & 0xFFu));
}

}  // namespace

PictureView::PictureView(PictureBox& picture, QWidget* parent)
    : QWidget(parent),
      picture_(picture),
      image_(std::max(1, picture.ScaleWidth()), std::max(1, picture.ScaleHeight()), QImage::Format_RGB32) {
  image_.fill(Qt::white);
  setAttribute(Qt::WA_OpaquePaintEvent, picture.ScaleWidth() > 0);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  copy_columns(0, picture.ScaleWidth() - 1);
}

void PictureView::tell_grid_apart() {
  grid_apart_ = true;
  copy_columns(0, picture_.ScaleWidth() - 1);
  update();
}

void PictureView::name_unit_of_axis(double row) {
  axis_row_ = row;
  update();
}

// A line of the grid is one pixel wide, a trace is three pixels high: where the pixels beside a line are
// black too it is hidden by the trace.
bool PictureView::belongs_to_grid(int x, int y) const {
  const int columns = picture_.ScaleWidth();
  const int rows = picture_.ScaleHeight();
  const auto black = [&](int at_x, int at_y) {
    const bool inside = at_x >= 0 && at_x < columns && at_y >= 0 && at_y < rows;
    return inside && picture_.GetPixel(at_x, at_y) == 0;
  };
  const bool in_column = columns >= 10 && x % (columns / 10) == 0;
  const bool in_row = rows >= 10 && (rows - 1 - y) % (rows / 10) == 0;  // from the bottom
  const bool upright = in_column && !black(x - 1, y) && !black(x + 1, y);
  const bool level = in_row && !black(x, y - 1) && !black(x, y + 1);
  const bool crossing = in_column && in_row && !black(x - 1, y - 1) && !black(x + 1, y + 1);
  return upright || level || crossing;
}

void PictureView::stand_on_it(PictureView& view, QPoint corner) {
  view.setParent(this);
  standing_.push_back({&view, corner});
}

// The system's colour of a button face is the window's own here, whatever the platform's palette is.
void PictureView::copy_columns(int first, int last) {
  const auto pixels = picture_.pixels();
  const auto stride = static_cast<std::size_t>(picture_.ScaleWidth());
  const std::uint32_t face = forms::resolved(forms::clr_button_face).value;
  const bool on_face = picture_.BackColor.get() == forms::clr_button_face;
  const QRgb window_color = palette().color(QPalette::Window).rgb();
  for (int y = 0; y < picture_.ScaleHeight(); ++y) {
    auto* line = reinterpret_cast<QRgb*>(image_.scanLine(y));
    for (int x = first; x <= last; ++x) {
      const std::uint32_t pixel = pixels[static_cast<std::size_t>(y) * stride + static_cast<std::size_t>(x)];
      line[x] = on_face && pixel == face                             ? window_color
                : grid_apart_ && pixel == 0 && belongs_to_grid(x, y) ? grid_color
                                                                     : to_rgb(pixel);
    }
  }
}

void PictureView::show_changes() {
  const auto [first, last] = picture_.take_dirty_columns();
  if (first <= last) {
    copy_columns(first, last);
    const int left = static_cast<int>(std::floor((first - 1) * scale_x()));
    const int right = static_cast<int>(std::ceil((last + 2) * scale_x()));
    update(left, 0, right - left, height());
  }
  if (!std::ranges::equal(picture_.printed(), texts_, same_text)) {
    texts_ = picture_.printed();
    update();
  }
}

// A picture without a surface holds other widgets.
QSize PictureView::sizeHint() const {
  return layout() ? QWidget::sizeHint() : image_.size() * 3 / 2;
}

QSize PictureView::minimumSizeHint() const {
  return layout() ? QWidget::minimumSizeHint() : image_.size();
}

void PictureView::resizeEvent(QResizeEvent*) {
  for (const Standing& standing : standing_) {
    const QRectF place(standing.corner.x() * scale_x(), standing.corner.y() * scale_y(),
                       standing.view->image_.width() * scale_x(), standing.view->image_.height() * scale_y());
    standing.view->setGeometry(place.toRect());
  }
}

void PictureView::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange) {
    copy_columns(0, picture_.ScaleWidth() - 1);
    update();
  }
  QWidget::changeEvent(event);
}

void PictureView::paintEvent(QPaintEvent* event) {
  if (picture_.ScaleWidth() == 0) return;
  QPainter painter(this);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  const QRect exposed = event->rect();
  const int first = std::max(0, static_cast<int>(std::floor(exposed.left() / scale_x())) - 1);
  const int last = std::min(image_.width() - 1, static_cast<int>(std::ceil(exposed.right() / scale_x())) + 1);
  const int columns = last - first + 1;
  painter.drawImage(QRectF(first * scale_x(), 0, columns * scale_x(), height()), image_,
                    QRectF(first, 0, columns, image_.height()));
  paint_texts(painter);
}

std::vector<PictureView::Placed> PictureView::placed_texts(const QFont& font) const {
  const double blank = QFontMetricsF(font).horizontalAdvance(' ') / std::min(scale_x(), scale_y());
  std::vector<Placed> placed;
  for (const auto& printed : texts_) {
    const auto blanks = std::min(printed.text.find_first_not_of(' '), printed.text.size());
    placed.push_back({printed.x + static_cast<double>(blanks) * blank,
                      printed.y + PictureBox::TextHeight(printed.text) / 2,
                      to_qt(printed.text.substr(blanks))});
  }
  return placed;
}

void PictureView::add_unit_of_axis(std::vector<Placed>& placed, const QFontMetricsF& metrics) const {
  if (!axis_row_) return;
  const double row = *axis_row_ + PictureBox::TextHeight({}) / 2;
  const Placed* last = nullptr;
  bool times = false;
  for (const Placed& text : placed) {
    if (text.y != row) continue;
    times = times || text.text.contains('.');
    if (!last || text.x > last->x) last = &text;
  }
  if (!last) return;
  constexpr double between = 5;
  const double behind = last->x + metrics.horizontalAdvance(last->text) / scale_x() + between;
  placed.push_back({behind, row, times ? "s" : "samples"});
}

double PictureView::room_for(const Placed& text, const std::vector<Placed>& all) const {
  constexpr double between = 3;
  const double half = PictureBox::TextHeight({}) / 2;
  double end = image_.width();
  for (const Placed& other : all) {
    if (other.x > text.x && std::abs(other.y - text.y) < half) end = std::min(end, other.x);
  }
  for (const Standing& standing : standing_) {
    const QRect place(standing.corner, standing.view->image_.size());
    if (place.left() > text.x && text.y > place.top() - half && text.y < place.bottom() + half) {
      end = std::min(end, static_cast<double>(place.left()));
    }
  }
  return end - text.x - between;
}

// Texts are drawn at the widget's own resolution; one that is too wide for its place is drawn narrower.
void PictureView::paint_texts(QPainter& painter) const {
  if (texts_.empty()) return;
  QFont scaled = font();
  const double scale = std::min(scale_x(), scale_y());
  scaled.setPixelSize(std::max(8, static_cast<int>(PictureBox::TextHeight({}) * scale * 0.92)));
  painter.setPen(palette().color(QPalette::WindowText));
  painter.setFont(scaled);
  const QFontMetricsF metrics(scaled);
  auto placed = placed_texts(scaled);
  add_unit_of_axis(placed, metrics);
  for (const Placed& text : placed) {
    const double width = metrics.horizontalAdvance(text.text);
    const double room = room_for(text, placed) * scale_x();
    painter.save();
    painter.translate(text.x * scale_x(), text.y * scale_y());
    if (width > room && room > 0) painter.scale(room / width, 1);
    painter.drawText(QPointF(0, (metrics.ascent() - metrics.descent()) / 2), text.text);
    painter.restore();
  }
}

}  // namespace window
