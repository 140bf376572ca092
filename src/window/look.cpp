#include "window/look.h"

#include <QApplication>
#include <QFileInfo>
#include <QIcon>
#include <QPixmap>
#include <QRegularExpression>
#include <QScreen>
#include <QShortcut>
#include <QWidget>
#include <array>

#include "shell/application.h"
#include "window/accessibility.h"
#include "window/emblem.h"
#include "window/house_style.h"

namespace window {

QColor to_qt(forms::Color color) {
  const auto value = static_cast<int>(forms::resolved(color).value);
  return QColor(value & 0xFF, (value >> 8) & 0xFF, (value >> 16) & 0xFF);
}

QString to_caption(const std::string& caption) {
  QString result = to_qt(caption);
  for (qsizetype i = 0; i < result.size(); ++i) {
    if (result[i] != '&') continue;
    const bool marks = i + 1 < result.size() && !result[i + 1].isSpace();
    if (!marks) result.insert(i, '&');
    ++i;
  }
  return result;
}

QString to_plain_caption(const std::string& caption) {
  return to_caption(caption).replace("&&", "&");
}

QString without_key(const QString& text) {
  static const QRegularExpression marks("&(.)");
  return QString(text).replace(marks, "\\1");
}

QString lamp_words(forms::Color color) {
  static constexpr std::array words{
      "off",  "dark blue", "dark green",  "dark cyan", "dark red", "purple",  "dark yellow", "light grey",
      "grey", "blue",      "light green", "cyan",      "red",      "magenta", "yellow",      "white"};
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (forms::QBColor(static_cast<double>(i)) == forms::resolved(color)) return words[i];
  }
  return to_qt(forms::html(color));
}

QSize on_screen(const QWidget& window, QSize size) {
  constexpr QSize frame(8, 40);
  return size.boundedTo(window.screen()->availableSize() - frame);
}

void close_by_escape(QWidget& window) {
  QObject::connect(new QShortcut(Qt::Key_Escape, &window), &QShortcut::activated, &window, &QWidget::close);
}

void set_look(QApplication& application) {
  install_accessibility();
  QApplication::setStyle(new HouseStyle);
  QApplication::setApplicationName(varzelin::application_title);
  // Each program's desktop file has the program's name.
  QApplication::setDesktopFileName(QFileInfo(QApplication::applicationFilePath()).fileName());
  QPixmap icon(64, 64);
  icon.fill(Qt::transparent);
  QPainter painter(&icon);
  paint_emblem(painter, QRectF(icon.rect()));
  painter.end();
  application.setWindowIcon(QIcon(icon));
}

}  // namespace window
