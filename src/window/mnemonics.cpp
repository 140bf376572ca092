#include "window/mnemonics.h"

#include <QAbstractButton>
#include <QAction>
#include <QButtonGroup>
#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>
#include <QPushButton>
#include <QStackedWidget>
#include <algorithm>
#include <functional>
#include <map>
#include <vector>

#include "window/key_matching.h"

namespace window {
namespace {

struct Caption {
  QString text;  // without a mark that was set here
  std::function<void(const QString&)> set;
  const QWidget* widget;  // null for a menu
  QChar key;              // upper case; null for none
  bool fixed;             // the mark isn't from here
};

// What a caption became by its mark, as a property of its widget or menu.
constexpr const char* marked_here = "marked_here";

qsizetype place_of_mark(const QString& text) {
  for (qsizetype i = 0; i + 1 < text.size(); ++i) {
    if (text[i] != '&') continue;
    if (text[i + 1] != '&') return i;
    ++i;
  }
  return -1;
}

// A button of a group goes by the group's key and the arrows.
bool has_own_key(const QAbstractButton& button) {
  return !button.group() && (qobject_cast<const QPushButton*>(&button) || place_of_mark(button.text()) >= 0);
}

std::vector<Caption> captions_of(QWidget& window) {
  std::vector<Caption> captions;
  const auto add = [&](auto& owner, const QWidget* widget) {
    QString text = owner.text();
    const qsizetype mark = place_of_mark(text);
    const QChar key = mark < 0 ? QChar() : text[mark + 1].toUpper();
    const bool from_here = mark >= 0 && owner.property(marked_here) == text;
    if (from_here) text.remove(mark, 1);
    const auto set = [&owner](const QString& marked) {
      owner.setText(marked);
      owner.setProperty(marked_here, marked);
    };
    captions.push_back({text, set, widget, key, mark >= 0 && !from_here});
  };
  if (auto* main = qobject_cast<QMainWindow*>(&window)) {
    for (QAction* menu : main->menuBar()->actions()) add(*menu, nullptr);
  }
  for (QAbstractButton* button : window.findChildren<QAbstractButton*>()) {
    if (has_own_key(*button)) add(*button, button);
  }
  for (QLabel* label : window.findChildren<QLabel*>()) {
    if (label->buddy()) add(*label, label);
  }
  return captions;
}

// What a widget takes turns with others in, as a property of it.
constexpr const char* turns = "turns";

// The page of each stack that the widget stands on, or which of two that are never in sight together.
std::map<const QWidget*, const QWidget*> pages_of(const QWidget* widget) {
  std::map<const QWidget*, const QWidget*> pages;
  for (const QWidget* each = widget; each && each->parentWidget(); each = each->parentWidget()) {
    if (qobject_cast<const QStackedWidget*>(each->parentWidget())) pages[each->parentWidget()] = each;
    if (const auto* both = each->property(turns).value<QWidget*>()) pages[both] = each;
  }
  return pages;
}

// The places of a caption's letters and digits: those that words begin with first, digits last.
std::vector<qsizetype> places_of_keys(const QString& text) {
  const auto rank = [&](qsizetype at) {
    if (text[at].isDigit()) return 2;
    return at > 0 && text[at - 1].isLetter() ? 1 : 0;
  };
  std::vector<qsizetype> places;
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (text[i].isLetterOrNumber() && text[i].unicode() < 128) places.push_back(i);
  }
  std::ranges::stable_sort(places, {}, rank);
  return places;
}

KeyWish wish_of(const Caption& caption) {
  KeyWish wish{.key = caption.key, .fixed = caption.fixed, .keys = {}, .pages = pages_of(caption.widget)};
  for (const qsizetype at : places_of_keys(caption.text)) wish.keys.push_back(caption.text[at].toUpper());
  return wish;
}

}  // namespace

void mark_keys(QWidget& window) {
  const std::vector<Caption> captions = captions_of(window);
  std::vector<KeyWish> wishes;
  for (const Caption& caption : captions) wishes.push_back(wish_of(caption));
  const std::vector<QChar> keys = match_keys(wishes);
  for (std::size_t i = 0; i < captions.size(); ++i) {
    if (keys[i] == captions[i].key) continue;
    const std::vector<QChar>& own = wishes[i].keys;
    const auto at = static_cast<std::size_t>(std::ranges::find(own, keys[i]) - own.begin());
    QString text = captions[i].text;
    if (at < own.size()) text.insert(places_of_keys(text)[at], '&');
    captions[i].set(text);
  }
}

void may_share_keys(QWidget& one, QWidget& other) {
  for (QWidget* each : {&one, &other}) each->setProperty(turns, QVariant::fromValue(&one));
}

void lead_to(QLabel& label, QAbstractButton& first) {
  // A button as the label's buddy would be pressed.
  auto* way = new QWidget(&label);
  way->hide();
  way->setFocusPolicy(Qt::ClickFocus);
  way->setFocusProxy(&first);
  label.setBuddy(way);
}

void go_by_arrows(const std::vector<QAbstractButton*>& buttons) {
  auto* group = new QButtonGroup(buttons.front());
  group->setExclusive(false);
  for (QAbstractButton* button : buttons) group->addButton(button);
}

}  // namespace window
