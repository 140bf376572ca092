#include "window/log_view.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>

#include "window/look.h"
#include "window/names.h"

namespace window {
namespace {

constexpr int margin = 4;

std::string end_of(const std::string& text, std::size_t length) {
  constexpr std::size_t compared = 256;
  const std::size_t start = length > compared ? length - compared : 0;
  return text.substr(start, length - start);
}

}  // namespace

LogView::LogView(const std::string& text, QWidget* parent) : QAbstractScrollArea(parent), text_(text) {
  setFocusPolicy(Qt::StrongFocus);
  viewport()->setBackgroundRole(QPalette::Base);
  viewport()->setCursor(Qt::IBeamCursor);
  name_scroll_bars(*this, "the log");
  find_lines(0);
}

bool LogView::only_grew() const {
  return text_.size() >= known_length_ && end_of(text_, known_length_) == known_end_;
}

void LogView::find_lines(std::size_t from) {
  for (std::size_t at = text_.find('\n', from); at != std::string::npos; at = text_.find('\n', at + 1)) {
    starts_.push_back(static_cast<std::uint32_t>(at + 1));
  }
  known_length_ = text_.size();
  known_end_ = end_of(text_, known_length_);
}

void LogView::take_text() {
  if (only_grew()) {
    find_lines(known_length_);
  } else {
    starts_.assign(1, 0);
    selected_from_ = selected_to_ = -1;
    widest_ = 0;
    find_lines(0);
  }
  fit_bars();
  verticalScrollBar()->setValue(verticalScrollBar()->maximum());
  viewport()->update();
}

// The text may have changed since it was looked at.
QString LogView::line(int number) const {
  if (number < 0 || number >= line_count()) return {};
  const auto index = static_cast<std::size_t>(number);
  const std::size_t begin = std::min<std::size_t>(starts_[index], text_.size());
  std::size_t end = std::min(index + 1 < starts_.size() ? starts_[index + 1] : text_.size(), text_.size());
  while (end > begin && (text_[end - 1] == '\n' || text_[end - 1] == '\r')) --end;
  return QString::fromUtf8(text_.data() + begin, static_cast<qsizetype>(end - begin));
}

int LogView::lines_that_fit() const {
  return std::max(1, (viewport()->height() - 2 * margin) / fontMetrics().lineSpacing());
}

QStringList LogView::lines_in_sight() const {
  QStringList lines;
  const int first = verticalScrollBar()->value();
  const int last = std::min(first + lines_that_fit(), line_count());
  for (int number = first; number < last; ++number) lines += line(number);
  return lines;
}

void LogView::fit_bars() {
  const int fitting = lines_that_fit();
  verticalScrollBar()->setRange(0, std::max(0, line_count() - fitting));
  verticalScrollBar()->setPageStep(fitting);
  horizontalScrollBar()->setRange(0, std::max(0, widest_ + 2 * margin - viewport()->width()));
  horizontalScrollBar()->setPageStep(viewport()->width());
}

void LogView::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  const int height = fontMetrics().lineSpacing();
  const auto [low, high] = std::minmax(selected_from_, selected_to_);
  int widest = widest_;
  int top = margin;
  int number = verticalScrollBar()->value();
  for (const QString& text : lines_in_sight()) {
    const bool selected = low >= 0 && number >= low && number <= high;
    if (selected) painter.fillRect(0, top, viewport()->width(), height, palette().highlight());
    painter.setPen(palette().color(selected ? QPalette::HighlightedText : QPalette::Text));
    painter.drawText(margin - horizontalScrollBar()->value(), top + fontMetrics().ascent(), text);
    widest = std::max(widest, fontMetrics().horizontalAdvance(text));
    top += height;
    ++number;
  }
  if (widest == widest_) return;
  widest_ = widest;
  QMetaObject::invokeMethod(
      this, [this] { fit_bars(); }, Qt::QueuedConnection);
}

void LogView::resizeEvent(QResizeEvent*) {
  fit_bars();
  verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

void LogView::changeEvent(QEvent* event) {
  if (event->type() == QEvent::FontChange) fit_bars();
  QAbstractScrollArea::changeEvent(event);
}

int LogView::line_at(int y) const {
  const int number = verticalScrollBar()->value() + (y - margin) / fontMetrics().lineSpacing();
  return std::clamp(number, 0, line_count() - 1);
}

void LogView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  selected_from_ = selected_to_ = line_at(event->pos().y());
  viewport()->update();
}

void LogView::mouseMoveEvent(QMouseEvent* event) {
  if (selected_from_ < 0 || !(event->buttons() & Qt::LeftButton)) return;
  if (event->pos().y() < 0) verticalScrollBar()->triggerAction(QScrollBar::SliderSingleStepSub);
  if (event->pos().y() > viewport()->height())
    verticalScrollBar()->triggerAction(QScrollBar::SliderSingleStepAdd);
  selected_to_ = line_at(event->pos().y());
  viewport()->update();
}

void LogView::select_all() {
  selected_from_ = 0;
  selected_to_ = line_count() - 1;
  viewport()->update();
}

void LogView::copy() const {
  if (selected_from_ < 0) return;
  const auto [low, high] = std::minmax(selected_from_, selected_to_);
  QStringList lines;
  for (int number = low; number <= high; ++number) lines += line(number);
  QApplication::clipboard()->setText(lines.join('\n'));
}

void LogView::keyPressEvent(QKeyEvent* event) {
  QScrollBar& bar = *verticalScrollBar();
  if (event->matches(QKeySequence::Copy)) {
    copy();
  } else if (event->matches(QKeySequence::SelectAll)) {
    select_all();
  } else if (event->key() == Qt::Key_Home) {
    bar.setValue(bar.minimum());
  } else if (event->key() == Qt::Key_End) {
    bar.setValue(bar.maximum());
  } else {
    QAbstractScrollArea::keyPressEvent(event);  // arrows and pages
  }
}

void LogView::contextMenuEvent(QContextMenuEvent* event) {
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->addAction("&Copy", this, [this] { copy(); })->setEnabled(selected_from_ >= 0);
  menu->addAction("Select &All", this, [this] { select_all(); });
  menu->popup(event->globalPos());  // doesn't wait for the user: loops go on
}

}  // namespace window
