#include "window/look.h"

#include <QApplication>
#include <QFileInfo>
#include <QIcon>
#include <QPixmap>
#include <QRegularExpression>
#include <QScreen>
#include <QWidget>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "shell/application.h"
#include "window/accessibility.h"
#include "window/emblem.h"
#include "window/house_style.h"

namespace window {

QColor to_qt(forms::Color color) {
  const auto value = static_cast<int>(forms::resolved(color).value);
  return QColor(value & 0xFF, (value >> 8) & 0xFF, (value >> 16) & 0xFF);
}

namespace {

double luminance(const QColor& color) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor blended(const QColor& one, const QColor& other, double part) {
  const auto mix = [part](int from, int to) {
    return static_cast<int>(std::lround(from + part * (to - from)));
  };
  return {mix(one.red(), other.red()), mix(one.green(), other.green()), mix(one.blue(), other.blue())};
}

}  // namespace

double contrast(const QColor& text, const QColor& ground) {
  const auto [dark, light] = std::minmax({luminance(text), luminance(ground)});
  return (light + 0.05) / (dark + 0.05);
}

QColor ink_on(const QColor& ground) {
  return contrast(Qt::black, ground) > contrast(Qt::white, ground) ? Qt::black : Qt::white;
}

QColor readable(const QColor& text, const QColor& ground, double least) {
  const QColor opaque = blended(ground, text, text.alphaF());
  const QColor end = ink_on(ground);
  constexpr int steps = 20;
  for (int step = 0; step < steps; ++step) {
    const QColor tried = blended(opaque, end, step / static_cast<double>(steps));
    if (contrast(tried, ground) >= least) return tried;
  }
  return end;
}

QPalette palette_of(const TextColors& colors, const QPalette& platform) {
  QPalette own;
  if (colors.ground) own.setColor(colors.ground_role, *colors.ground);
  if (!colors.text && !colors.ground) return own;
  for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
    const QColor ground = colors.ground.value_or(platform.color(group, colors.ground_role));
    const QColor text = colors.text.value_or(platform.color(group, colors.text_role));
    own.setColor(group, colors.text_role, readable(text, ground));
  }
  return own;
}

void make_readable(QPalette& colors) {
  using Role = QPalette::ColorRole;
  const auto change = [&colors](QPalette::ColorGroup group, Role changed, Role other) {
    const QColor present = colors.color(group, changed);
    const QColor wanted = readable(present, colors.color(group, other));
    if (wanted != present) colors.setColor(group, changed, wanted);
  };
  for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
    for (const auto& [text, ground] : {std::pair<Role, Role>{QPalette::WindowText, QPalette::Window},
                                       {QPalette::Text, QPalette::Base},
                                       {QPalette::ButtonText, QPalette::Button},
                                       {QPalette::PlaceholderText, QPalette::Base},
                                       {QPalette::PlaceholderText, QPalette::Button}}) {
      change(group, text, ground);
    }
    // What is chosen is told by its ground, so that the ground gives way.
    change(group, QPalette::Highlight, QPalette::HighlightedText);
  }
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
