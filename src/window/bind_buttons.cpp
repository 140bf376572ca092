// Push buttons, check boxes and option buttons.
#include <QAbstractButton>
#include <QCheckBox>
#include <QKeyEvent>
#include <QRadioButton>
#include <algorithm>

#include "forms/controls.h"
#include "forms/user.h"
#include "window/binding.h"
#include "window/caption_button.h"
#include "window/look.h"

namespace window {
namespace {

class ButtonBinding : public Binding {
 public:
  ButtonBinding(forms::Control& control, const forms::TextProperty& caption, QAbstractButton* button)
      : Binding(control), caption_(caption), button_(button) {
    adopt(button);
    connect(button, &QAbstractButton::clicked, this, [this] { clicked(); });
  }

  void show() override {
    const QString caption = to_caption(caption_.get());
    if (caption != shown_) {
      shown_ = caption;
      button_->setText(caption);
      button_->updateGeometry();
    }
    Binding::show();
  }

 protected:
  QAbstractButton* button() const { return button_; }
  void released(QPoint) override {}  // Qt's own clicked() says it

 private:
  const forms::TextProperty& caption_;
  QAbstractButton* button_;
  QString shown_;  // the caption without the mark of its key
};

class CheckBinding final : public ButtonBinding {
 public:
  CheckBinding(forms::CheckBox& box, QWidget* parent)
      : ButtonBinding(box, box.Caption, new QCheckBox(parent)), box_(box) {}

  void show() override {
    if (!ahead()) button()->setChecked(box_.Value != 0);
    ButtonBinding::show();
  }

 private:
  forms::CheckBox& box_;
};

// The controls exclude each other themselves, so the widgets don't.
class OptionBinding final : public ButtonBinding {
 public:
  OptionBinding(forms::OptionButton& option, QWidget* parent)
      : ButtonBinding(option, option.Caption, new QRadioButton(parent)), option_(option) {
    button()->setAutoExclusive(false);
  }

  void show() override {
    if (!ahead()) button()->setChecked(option_.Value);
    ButtonBinding::show();
  }

 protected:
  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() == QEvent::KeyPress) {
      switch (static_cast<QKeyEvent*>(event)->key()) {
        case Qt::Key_Left:
        case Qt::Key_Up:
          return select_neighbour(-1);
        case Qt::Key_Right:
        case Qt::Key_Down:
          return select_neighbour(1);
        default:
          break;
      }
    }
    return ButtonBinding::eventFilter(object, event);
  }

 private:
  // The arrow keys select the next option of the same container, around its ends.
  bool select_neighbour(int step) {
    std::vector<forms::Control*> group;
    for (forms::Control* other : option_.form().controls()) {
      if (other->kind() == forms::Kind::OptionButton && other->container() == option_.container() &&
          usable(*other)) {
        group.push_back(other);
      }
    }
    const auto here = std::ranges::find(group, &option_);
    if (here == group.end()) return false;
    const auto count = static_cast<std::ptrdiff_t>(group.size());
    const auto next = (std::distance(group.begin(), here) + step + count) % count;
    auto* neighbour = button()->window()->findChild<QAbstractButton*>(
        to_qt(group[static_cast<std::size_t>(next)]->full_name()));
    if (!neighbour) return false;
    neighbour->setFocus(Qt::OtherFocusReason);
    if (neighbour != button()) neighbour->click();
    return true;
  }

  forms::OptionButton& option_;
};

}  // namespace

std::unique_ptr<Binding> bind_button(forms::Control& control, QWidget* parent) {
  if (auto* check = dynamic_cast<forms::CheckBox*>(&control))
    return std::make_unique<CheckBinding>(*check, parent);
  if (auto* option = dynamic_cast<forms::OptionButton*>(&control)) {
    return std::make_unique<OptionBinding>(*option, parent);
  }
  auto& command = dynamic_cast<forms::CommandButton&>(control);
  return std::make_unique<ButtonBinding>(command, command.Caption, new CaptionButton(parent));
}

}  // namespace window
