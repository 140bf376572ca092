// How things look: colours, texts and the one spacing.
#pragma once

#include <QColor>
#include <QSize>
#include <QString>
#include <string>

#include "forms/color.h"

class QApplication;
class QWidget;

namespace window {

// Between neighbours in a layout, and between a frame and what it holds.
inline constexpr int gap = 6;

QColor to_qt(forms::Color color);
inline QString to_qt(const std::string& text) {
  return QString::fromStdString(text);
}

// A caption in which "&" marks the key of a button, a menu or a frame, and "&&" stands for itself. An
// "&" that marks nothing stands for itself too.
QString to_caption(const std::string& caption);
// The same for labels, which mark no key.
QString to_plain_caption(const std::string& caption);

// A widget's text without the marks of its key.
QString without_key(const QString& text);

// A lamp's colour in words: "off", "light green", "red", ...
QString lamp_words(forms::Color color);

// As much of a window's size as its screen has room for.
QSize on_screen(const QWidget& window, QSize size);

// For windows that only show something.
void close_by_escape(QWidget& window);

// Style, icon and names of the application.
void set_look(QApplication& application);

}  // namespace window
