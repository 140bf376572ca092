#include "window/arranger.h"

#include <QEvent>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QRegularExpression>
#include <QStyle>
#include <algorithm>
#include <stdexcept>

#include "forms/controls.h"
#include "window/caption_button.h"
#include "window/look.h"
#include "window/mnemonics.h"
#include "window/names.h"

namespace window {
namespace {

QBoxLayout* box(QBoxLayout::Direction direction, const Parts& parts) {
  auto* layout = new QBoxLayout(direction);
  layout->setSpacing(gap);
  layout->setContentsMargins(0, 0, 0, 0);
  for (const Part& part : parts) {
    if (part.widget) {
      layout->addWidget(part.widget, part.stretch);
    } else if (part.layout) {
      layout->addLayout(part.layout, part.stretch);
    } else {
      layout->addStretch(part.stretch);
    }
  }
  return layout;
}

// Keeps a caption on screen as long as the widget that it belongs to.
class Companion final : public QObject {
 public:
  Companion(QLabel& caption, QWidget& of) : QObject(&caption), caption_(caption) {
    of.installEventFilter(this);
    caption.setHidden(of.isHidden());
  }

 protected:
  bool eventFilter(QObject* of, QEvent* event) override {
    if (event->type() == QEvent::ShowToParent) caption_.show();
    if (event->type() == QEvent::HideToParent) caption_.hide();
    return QObject::eventFilter(of, event);
  }

 private:
  QLabel& caption_;
};

// Two parts beside each other, or below each other where the window is narrow.
class FoldingRow final : public QWidget {
 public:
  void take(const Part& one, const Part& other) {
    parts_ = row({one, other});
    parts_->setSpacing(2 * gap);
    setLayout(parts_);
    parts_->setSizeConstraint(QLayout::SetNoConstraint);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    fold(true);
  }

 protected:
  void resizeEvent(QResizeEvent* event) override {
    constexpr int characters_of_a_line = 170;
    fold(width() < characters_of_a_line * fontMetrics().averageCharWidth());
    QWidget::resizeEvent(event);
  }

 private:
  void fold(bool folded) {
    parts_->setDirection(folded ? QBoxLayout::BottomToTop : QBoxLayout::LeftToRight);
    parts_->setSpacing(folded ? 0 : 2 * gap);
    updateGeometry();
  }

  QBoxLayout* parts_ = nullptr;
};

bool needs_place(const forms::Control& control) {
  return control.kind() != forms::Kind::Timer && control.kind() != forms::Kind::CommonDialog &&
         control.kind() != forms::Kind::Menu;
}

}  // namespace

QBoxLayout* row(const Parts& parts) {
  return box(QBoxLayout::LeftToRight, parts);
}
QBoxLayout* column(const Parts& parts) {
  return box(QBoxLayout::TopToBottom, parts);
}

QStringList words_of(const QString& caption) {
  static const QRegularExpression columns(" {2,}");
  return caption.split(columns, Qt::SkipEmptyParts);
}

std::vector<int> Arranger::elements_of(std::string_view array) const {
  std::vector<int> elements;
  for (const forms::Control* control : form_.controls()) {
    if (control->name() == array) elements.push_back(control->index());
  }
  std::ranges::sort(elements);
  return elements;
}

QWidget* Arranger::operator()(std::string_view name, int index) {
  const forms::Control* control = form_.find(name, index);
  auto* widget = control ? window_.findChild<QWidget*>(to_qt(control->full_name())) : nullptr;
  if (!widget) throw std::logic_error(form_.name() + " has no widget for " + std::string(name));
  if (std::ranges::find(widgets_, widget) == widgets_.end()) {
    placed_.push_back(control);
    widgets_.push_back(widget);
  }
  return widget;
}

QGroupBox* Arranger::frame(std::string_view name, QLayout* inside, int index) {
  auto* group_box = as<QGroupBox>(name, index);
  inside->setContentsMargins(gap, gap, gap, gap);
  group_box->setLayout(inside);
  return group_box;
}

QGroupBox* Arranger::group(const QString& title, QLayout* inside) {
  auto* group_box = new QGroupBox(title, &window_);
  inside->setContentsMargins(gap, gap, gap, gap);
  group_box->setLayout(inside);
  return group_box;
}

QLabel* Arranger::text(const QString& caption, QWidget* beside) {
  auto* label = new QLabel(caption, &window_);
  if (beside) {
    beside->setAccessibleName(caption);
    label->setToolTip(beside->toolTip());
    new Companion(*label, *beside);
  }
  return label;
}

Arranger::Field Arranger::field(std::string_view label, QWidget* widget) {
  return field(label, -1, widget);
}

Arranger::Field Arranger::field(std::string_view label, int index, QWidget* widget) {
  auto* caption = as<QLabel>(label, index);
  name_by_label(*widget, *caption);
  return {caption, widget};
}

QGridLayout* Arranger::fields(const std::vector<Field>& fields) {
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(gap);
  grid->setVerticalSpacing(line_gap);
  grid->setContentsMargins(0, 0, 0, 0);
  int line = 0;
  for (const Field& field : fields) {
    grid->addWidget(field.caption, line, 0);
    grid->addWidget(field.widget, line, 1, Qt::AlignRight);
    ++line;
  }
  grid->setColumnStretch(0, 1);
  return grid;
}

QWidget* Arranger::digits(int count, QWidget* widget) {
  const QFontMetrics metrics = widget->fontMetrics();
  widget->setFixedWidth(metrics.horizontalAdvance(QString(count, '0')) + 3 * metrics.averageCharWidth());
  return widget;
}

QWidget* Arranger::keep_room(QWidget* widget) {
  QSizePolicy policy = widget->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  widget->setSizePolicy(policy);
  return widget;
}

QLayout* Arranger::in_turn(QWidget* one, QWidget* other) {
  auto* place = new QGridLayout;
  place->setContentsMargins(0, 0, 0, 0);
  place->addWidget(keep_room(one), 0, 0);
  place->addWidget(keep_room(other), 0, 0);
  may_share_keys(*one, *other);
  return place;
}

QWidget* Arranger::lines(int count, std::string_view button, int index) {
  auto* caption_button = as<CaptionButton>(button, index);
  caption_button->reserve_lines(count);
  return caption_button;
}

QWidget* Arranger::list_rows(int count, QWidget* list) {
  const int frame = 2 * list->style()->pixelMetric(QStyle::PM_DefaultFrameWidth);
  list->setFixedHeight(count * list->fontMetrics().height() + frame);
  constexpr int characters = 16;
  list->setMinimumWidth(characters * list->fontMetrics().averageCharWidth());
  list->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  return list;
}

QWidget* Arranger::aligned_by_blanks(QWidget* widget) {
  widget->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  return widget;
}

QWidget* Arranger::without_room(QWidget* widget) {
  widget->setFixedSize(0, 0);
  widget->setFocusPolicy(Qt::NoFocus);
  return widget;
}

QWidget* Arranger::name_lamp(QWidget* lamp, const QString& name, const LampWords& words) {
  lamp->setAccessibleName(name);
  dynamic_cast<Lamp&>(*lamp).set_words(words);
  return lamp;
}

QLayout* Arranger::lamp(QWidget* lamp, QWidget* caption, const LampWords& words) {
  if (const auto* label = qobject_cast<QLabel*>(caption)) name_lamp(lamp, label->text(), words);
  return row({lamp, {caption, 1}});
}

void Arranger::keep_in_sight(QLayout* inside) {
  inside->setContentsMargins(gap, 0, gap, gap);
  in_sight_ = inside;
}

QLayout* Arranger::in_one_line_where_wide(const Part& one, const Part& other) {
  auto* folding = new FoldingRow;
  folding->take(one, other);
  return row({{folding, 1}});
}

QLabel* Arranger::giving_way(QLabel* label) {
  label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  return label;
}

QLabel* Arranger::run_state() {
  auto* label = new QLabel(&window_);
  label->setObjectName(run_state_name);
  label->setAccessibleName("State");
  label->setIndent(2 * gap);  // so that it isn't read on from what stands before it
  return giving_way(label);
}

std::vector<forms::Control*> Arranger::left_over() const {
  std::vector<forms::Control*> left;
  for (forms::Control* control : form_.controls()) {
    if (needs_place(*control) && std::ranges::find(placed_, control) == placed_.end())
      left.push_back(control);
  }
  return left;
}

}  // namespace window
