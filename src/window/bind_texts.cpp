// Text boxes of one line and of many.
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>

#include "forms/controls.h"
#include "forms/user.h"
#include "window/binding.h"
#include "window/log_view.h"
#include "window/look.h"
#include "window/results.h"

namespace window {
namespace {

using forms::Event;

constexpr int escape = 27;

// The character code that a key press has for a handler; 0 for keys that are none.
int key_ascii(const QKeyEvent& key) {
  switch (key.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return forms::vbKeyReturn;
    case Qt::Key_Backspace:
      return forms::vbKeyBack;
    case Qt::Key_Escape:
      return escape;
    default:
      break;
  }
  if (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) return 0;
  const QString text = key.text();
  if (text.size() != 1) return 0;
  const int code = text[0].unicode();
  return code >= ' ' && code <= 0xFF ? code : 0;
}

// Keys that leave the box or work the window are not the box's own.
bool leaves_box(const QKeyEvent& key) {
  return key.key() == Qt::Key_Tab || key.key() == Qt::Key_Backtab || (key.modifiers() & Qt::AltModifier) ||
         (key.key() >= Qt::Key_F1 && key.key() <= Qt::Key_F35);
}

class TextBinding : public Binding {
 public:
  explicit TextBinding(forms::TextBox& box) : Binding(box), box_(box) {}

  void show() override {
    if (!ahead()) put_text();
    show_colors();
    Binding::show();
  }

 protected:
  forms::TextBox& box() const { return box_; }
  // The widget's text in the control's form.
  virtual std::string entered() const = 0;
  // Types the text at the caret.
  virtual void insert(const QString& text) = 0;
  // Brings the widget to the control's text, the caret kept where that makes sense.
  virtual void put_text() = 0;

  void edited_by_user() {
    if (replaying_) return;
    post([this, text = entered()] { box_.Text = text; });
  }

  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() == QEvent::KeyPress && object == widget() && !replaying_) {
      const auto& key = *static_cast<QKeyEvent*>(event);
      if (click_by_key(key)) return true;
      if (box_.handles(Event::KeyPress) && !leaves_box(key)) {
        post_key(key);
        return true;
      }
    }
    return Binding::eventFilter(object, event);
  }

 private:
  // A box that waits for a click, or two, has a key for each as well.
  bool click_by_key(const QKeyEvent& key) {
    if (key_ascii(key) != forms::vbKeyReturn || !(key.modifiers() & Qt::ControlModifier)) return false;
    if (key.modifiers() & Qt::ShiftModifier) {
      clicked_twice();
    } else {
      released({});
    }
    return true;
  }

  // The handler decides what becomes of a key, so all keys wait for their turn in the message loop,
  // where those that it lets pass reach the widget in the order they were pressed.
  void post_key(const QKeyEvent& key) {
    post([this, still_here = alive(), copy = std::shared_ptr<QKeyEvent>(key.clone())] {
      const int code = key_ascii(*copy);
      const int left = code == 0 ? 0 : forms::user::press_key(box_, code);
      if (still_here.expired() || (code != 0 && left == 0)) return;
      if (!ahead()) put_text();
      replaying_ = true;
      if (left == code) {
        QApplication::sendEvent(widget(), copy.get());
      } else {
        insert(QChar(static_cast<char16_t>(left)));
      }
      replaying_ = false;
      box_.Text = entered();
    });
  }

  // The system's colours are the platform's own palette. Others are the program's, where the text can be
  // read.
  void show_colors() {
    const auto own = [](forms::Color color, forms::Color system) {
      return color == system ? std::optional<QColor>() : to_qt(color);
    };
    const TextColors colors{QPalette::Text, QPalette::Base, own(box_.ForeColor, forms::clr_window_text),
                            own(box_.BackColor, forms::clr_window_background)};
    const QPalette palette = palette_of(colors, QApplication::palette(widget()));
    if (palette == shown_colors_) return;
    shown_colors_ = palette;
    widget()->setPalette(palette);
  }

  forms::TextBox& box_;
  bool replaying_ = false;
  QPalette shown_colors_;
};

class LineBinding final : public TextBinding {
 public:
  LineBinding(forms::TextBox& text_box, QWidget* parent)
      : TextBinding(text_box), edit_(new QLineEdit(parent)), shown_caret_(text_box.SelStart) {
    adopt(edit_);
    const Result result = result_of(text_box);
    if (result != Result::none) edit_->setFocusPolicy(Qt::ClickFocus);
    edit_->setReadOnly(result == Result::shown);
    // A screen reader enters a text as the program would; only what the program puts isn't the user's.
    connect(edit_, &QLineEdit::textChanged, this, [this] {
      if (!putting_) edited_by_user();
    });
  }

 protected:
  std::string entered() const override { return edit_->text().toStdString(); }
  void insert(const QString& text) override { edit_->insert(text); }
  void put_text() override {
    const QString text = to_qt(box().Text.get());
    if (text != edit_->text()) {
      const auto caret = std::min<qsizetype>(edit_->cursorPosition(), text.size());
      putting_ = true;
      edit_->setText(text);
      putting_ = false;
      edit_->setCursorPosition(edit_->hasFocus() ? static_cast<int>(caret) : 0);
    }
    if (shown_caret_ != box().SelStart) {
      shown_caret_ = box().SelStart;
      edit_->setCursorPosition(shown_caret_);
    }
  }

 private:
  QLineEdit* edit_;
  std::int32_t shown_caret_;
  bool putting_ = false;
};

// A text of many lines is a log, for reading.
class LogBinding final : public Binding {
 public:
  LogBinding(forms::TextBox& box, QWidget* parent)
      : Binding(box), view_(new LogView(box.Text.get(), parent)) {
    adopt(view_);
    watch(view_->viewport());
  }
  void show() override {
    view_->take_text();
    Binding::show();
  }

 private:
  LogView* view_;
};

}  // namespace

std::unique_ptr<Binding> bind_text_box(forms::Control& control, QWidget* parent) {
  auto& box = dynamic_cast<forms::TextBox&>(control);
  if (box.MultiLine) return std::make_unique<LogBinding>(box, parent);
  return std::make_unique<LineBinding>(box, parent);
}

}  // namespace window
