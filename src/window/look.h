// How things look: colours, texts and the one spacing.
#pragma once

#include <QColor>
#include <QPalette>
#include <QSize>
#include <QString>
#include <optional>
#include <string>

#include "forms/color.h"

class QApplication;
class QWidget;

namespace window {

// Between neighbours in a layout, and between a frame and what it holds.
inline constexpr int gap = 6;
// Between the lines of a list of options, of fields, or of registers.
inline constexpr int line_gap = gap / 3;

QColor to_qt(forms::Color color);
inline QString to_qt(const std::string& text) {
  return QString::fromStdString(text);
}

// How well a text is told from its ground, from 1 (not at all) to 21, and what a text and an outline should
// have at least.
double contrast(const QColor& text, const QColor& ground);
inline constexpr double least_contrast = 4.5;
inline constexpr double least_outline_contrast = 3;
// Black or white, whichever is read better on the ground.
QColor ink_on(const QColor& ground);
// The colour itself where it has the contrast on the ground, else the nearest to it that has.
QColor readable(const QColor& text, const QColor& ground, double least = least_contrast);
// A text's colour, and the one of its ground. Without a value the platform's own.
struct TextColors {
  QPalette::ColorRole text_role;
  QPalette::ColorRole ground_role;
  std::optional<QColor> text;
  std::optional<QColor> ground;
  bool operator==(const TextColors&) const = default;
};
// What differs from the platform's palette, with the text readable in each state of its widget.
QPalette palette_of(const TextColors& colors, const QPalette& platform);
// Makes a palette's texts readable on their grounds: those that are greyed out, chosen or only placeholders
// are too pale in many.
void make_readable(QPalette& colors);

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

// Style, icon and names of the application.
void set_look(QApplication& application);

}  // namespace window
