#include "window/caption_button.h"

#include <QKeyEvent>
#include <QStyleOptionButton>
#include <QStylePainter>

namespace window {
namespace {

constexpr int text_flags = Qt::AlignCenter | Qt::TextWordWrap | Qt::TextShowMnemonic;
constexpr int characters_a_line = 30;

}  // namespace

CaptionButton::CaptionButton(QWidget* parent) : QPushButton(parent) {
  setAutoDefault(false);
}

void CaptionButton::reserve_lines(int lines) {
  lines_ = lines;
  updateGeometry();
}

void CaptionButton::stay_on_one_line() {
  wraps_ = false;
  updateGeometry();
}

QSize CaptionButton::sizeHint() const {
  const QFontMetrics metrics = fontMetrics();
  constexpr int no_limit = 10000;
  const int most = wraps_ ? characters_a_line * metrics.averageCharWidth() : no_limit;
  const QRect wrapped = metrics.boundingRect(QRect(0, 0, most, no_limit), text_flags, text());
  QStyleOptionButton option;
  initStyleOption(&option);
  const QSize contents(wrapped.width() + metrics.averageCharWidth(),
                       std::max(wrapped.height(), lines_ * metrics.lineSpacing()));
  return style()->sizeFromContents(QStyle::CT_PushButton, &option, contents, this);
}

void CaptionButton::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    click();
  } else {
    QPushButton::keyPressEvent(event);
  }
}

void CaptionButton::paintEvent(QPaintEvent*) {
  QStylePainter painter(this);
  QStyleOptionButton option;
  initStyleOption(&option);
  painter.drawControl(QStyle::CE_PushButtonBevel, option);
  const QRect inside = style()->subElementRect(QStyle::SE_PushButtonContents, &option, this);
  constexpr int margin = 4;
  painter.drawItemText(inside.adjusted(margin, 0, -margin, 0), text_flags, palette(), isEnabled(), text(),
                       QPalette::ButtonText);
  if (option.state & QStyle::State_HasFocus) {
    QStyleOptionFocusRect focus;
    focus.initFrom(this);
    focus.rect = style()->subElementRect(QStyle::SE_PushButtonFocusRect, &option, this);
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
  }
}

}  // namespace window
