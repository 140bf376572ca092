#include "window/accessibility.h"

#include <QAccessibleWidget>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QRadioButton>
#include <algorithm>

#include "window/accessible_drop_down.h"
#include "window/lamp.h"
#include "window/log_view.h"
#include "window/look.h"
#include "window/picture_view.h"

namespace window {
namespace {

// The title of the group that a widget stands in.
QString group_of(const QWidget& widget) {
  for (const QWidget* each = widget.parentWidget(); each; each = each->parentWidget()) {
    const auto* group = qobject_cast<const QGroupBox*>(each);
    if (group && !group->title().isEmpty()) return without_key(group->title());
  }
  return {};
}

// Options and check boxes. Qt tells an option that isn't exclusive by itself as a check box. Captions change,
// so whether one alone tells which it is shows when it is asked for: "Manual" is of the gain or of the
// current.
class OptionAccessible final : public QAccessibleWidget {
 public:
  OptionAccessible(QAbstractButton& option, QAccessible::Role role)
      : QAccessibleWidget(&option, role), option_(option) {}

  QString text(QAccessible::Text what) const override {
    if (what != QAccessible::Name || !option_.accessibleName().isEmpty())
      return QAccessibleWidget::text(what);
    const QString words = without_key(option_.text());
    const QString group = group_of(option_);
    return group.isEmpty() || !ambiguous(words) ? words : words + ", " + group;
  }
  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.checkable = true;
    state.checked = option_.isChecked();
    return state;
  }
  QStringList actionNames() const override {
    QStringList names = QAccessibleWidget::actionNames();
    if (option_.isEnabled()) names.prepend(toggleAction());
    return names;
  }
  void doAction(const QString& action) override {
    if (action == toggleAction()) {
      option_.click();
    } else {
      QAccessibleWidget::doAction(action);
    }
  }

 private:
  bool ambiguous(const QString& words) const {
    const auto is_called_so = [&](const QWidget* other) {
      const auto* button = qobject_cast<const QAbstractButton*>(other);
      return other != &option_ &&
             (other->accessibleName() == words || (button && without_key(button->text()) == words));
    };
    return std::ranges::any_of(option_.window()->findChildren<QWidget*>(), is_called_so);
  }

  QAbstractButton& option_;
};

// Its name and what its colour means there.
class LampAccessible final : public QAccessibleWidget {
 public:
  explicit LampAccessible(Lamp& lamp) : QAccessibleWidget(&lamp, QAccessible::StaticText), lamp_(lamp) {}

  QString text(QAccessible::Text what) const override {
    if (what != QAccessible::Name) return QAccessibleWidget::text(what);
    return lamp_.accessibleName() + ": " + lamp_.meaning();
  }

 private:
  Lamp& lamp_;
};

// A label's text; where the label has a name, behind that.
class LabelAccessible final : public QAccessibleWidget {
 public:
  explicit LabelAccessible(QLabel& label)
      : QAccessibleWidget(&label, QAccessible::StaticText), label_(label) {}

  QString text(QAccessible::Text what) const override {
    if (what != QAccessible::Name) return QAccessibleWidget::text(what);
    const QString words = label_.buddy() ? without_key(label_.text()) : label_.text();
    const QString name = label_.accessibleName();
    if (name.isEmpty() || words.isEmpty()) return name + words;
    return name + ": " + words;
  }
  // What stands on a label only takes its key.
  int childCount() const override { return 0; }

 private:
  QLabel& label_;
};

// Its lines that are in sight: a log is too long to be told.
class LogAccessible final : public QAccessibleWidget {
 public:
  explicit LogAccessible(LogView& log) : QAccessibleWidget(&log, QAccessible::Document), log_(log) {}

  QString text(QAccessible::Text what) const override {
    return what == QAccessible::Value ? log_.lines_in_sight().join('\n') : QAccessibleWidget::text(what);
  }

 private:
  LogView& log_;
};

// Qt asks for the class of a widget and for those that it derives from, in turn.
QAccessibleInterface* accessible_of(const QString& class_name, QObject* object) {
  auto* widget = qobject_cast<QWidget*>(object);
  if (!widget) return nullptr;
  if (auto* lamp = dynamic_cast<Lamp*>(widget)) return new LampAccessible(*lamp);
  if (auto* log = dynamic_cast<LogView*>(widget)) return new LogAccessible(*log);
  if (auto* picture = dynamic_cast<PictureView*>(widget); picture && !picture->layout())
    return new QAccessibleWidget(picture, QAccessible::Chart);
  if (auto* option = qobject_cast<QRadioButton*>(widget))
    return new OptionAccessible(*option, QAccessible::RadioButton);
  if (auto* box = qobject_cast<QCheckBox*>(widget)) return new OptionAccessible(*box, QAccessible::CheckBox);
  if (class_name == "QComboBox") return accessible_drop_down(*static_cast<QComboBox*>(widget));
  if (class_name == "QTabWidget") return new QAccessibleWidget(widget, QAccessible::Grouping);
  if (class_name == "QLabel") return new LabelAccessible(*static_cast<QLabel*>(widget));
  if (class_name == "QComboBoxListView") return rows_of_drop_down(*static_cast<QAbstractItemView*>(widget));
  const bool plain_window = class_name == "QWidget" && widget->windowType() == Qt::Window;
  return plain_window ? new QAccessibleWidget(widget, QAccessible::Window) : nullptr;
}

}  // namespace

void install_accessibility() {
  QAccessible::installFactory(accessible_of);
}

}  // namespace window
