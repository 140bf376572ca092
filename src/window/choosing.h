// How a row is chosen, in lists and tables alike: by a click, Enter or Space. Other keys move a cursor.
#pragma once

#include <QEvent>
#include <Qt>

namespace window {

// Of an item view's selection: `event` is what it answers, null for none.
inline bool chooses(const QEvent* event) {
  return event && (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonRelease ||
                   event->type() == QEvent::MouseMove);
}

inline bool is_choosing_key(int key) {
  return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space;
}

}  // namespace window
