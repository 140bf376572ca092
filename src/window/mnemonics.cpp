#include "window/mnemonics.h"

#include <QAction>
#include <QMainWindow>
#include <QMenuBar>
#include <QPushButton>
#include <algorithm>
#include <functional>
#include <map>
#include <set>
#include <vector>

namespace window {
namespace {

struct Caption {
  QString text;
  std::function<void(const QString&)> set;
  QChar key = {};  // upper case; null for none
};

qsizetype place_of_mark(const QString& text) {
  for (qsizetype i = 0; i + 1 < text.size(); ++i) {
    if (text[i] != '&') continue;
    if (text[i + 1] != '&') return i;
    ++i;
  }
  return -1;
}

std::vector<Caption> captions_of(QWidget& window) {
  std::vector<Caption> captions;
  const auto add = [&](const QString& text, auto set) {
    const qsizetype mark = place_of_mark(text);
    captions.push_back({text, set, mark < 0 ? QChar() : text[mark + 1].toUpper()});
  };
  if (auto* main = qobject_cast<QMainWindow*>(&window)) {
    for (QAction* menu : main->menuBar()->actions()) {
      add(menu->text(), [menu](const QString& text) { menu->setText(text); });
    }
  }
  for (QPushButton* button : window.findChildren<QPushButton*>()) {
    add(button->text(), [button](const QString& text) { button->setText(text); });
  }
  return captions;
}

// The places of a caption's letters, those that words begin with first.
std::vector<qsizetype> letters_of(const QString& text) {
  std::vector<qsizetype> places;
  for (const bool first_of_word : {true, false}) {
    for (qsizetype i = 0; i < text.size(); ++i) {
      const bool begins = i == 0 || !text[i - 1].isLetter();
      if (text[i].isLetter() && text[i].unicode() < 128 && begins == first_of_word) places.push_back(i);
    }
  }
  return places;
}

// A key for each caption as far as possible: one that finds its letters taken moves others to theirs.
class Matching {
 public:
  explicit Matching(std::vector<Caption>& captions) : captions_(captions) {
    for (std::size_t i = 0; i < captions.size(); ++i) {
      if (!captions[i].key.isNull()) fixed_.insert(captions[i].key);
    }
  }
  void run() {
    for (std::size_t i = 0; i < captions_.size(); ++i) {
      if (!captions_[i].key.isNull()) continue;
      std::set<QChar> tried = fixed_;
      place(i, tried);
    }
    for (const auto& [key, caption] : owner_) captions_[caption].key = key;
  }

 private:
  bool place(std::size_t caption, std::set<QChar>& tried) {
    for (const qsizetype at : letters_of(captions_[caption].text)) {
      const QChar key = captions_[caption].text[at].toUpper();
      if (!tried.insert(key).second) continue;
      const auto taken = owner_.find(key);
      if (taken != owner_.end() && !place(taken->second, tried)) continue;
      owner_[key] = caption;
      return true;
    }
    return false;
  }

  std::vector<Caption>& captions_;
  std::set<QChar> fixed_;
  std::map<QChar, std::size_t> owner_;
};

}  // namespace

void mark_keys(QWidget& window) {
  std::vector<Caption> captions = captions_of(window);
  Matching(captions).run();
  for (const Caption& caption : captions) {
    if (caption.key.isNull() || place_of_mark(caption.text) >= 0) continue;
    for (const qsizetype at : letters_of(caption.text)) {
      if (caption.text[at].toUpper() != caption.key) continue;
      QString marked = caption.text;
      caption.set(marked.insert(at, '&'));
      break;
    }
  }
}

}  // namespace window
