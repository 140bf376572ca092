#include "window/form_window.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QCloseEvent>
#include <QDropEvent>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMimeData>
#include <QScrollArea>
#include <QUrl>
#include <QVBoxLayout>

#include "window/arranger.h"
#include "window/layouts/layouts.h"
#include "window/look.h"
#include "window/mnemonics.h"
#include "window/names.h"
#include "window/state_words.h"
#include "window/tab_order.h"

namespace window {

FormWindow::FormWindow(forms::Form& form, const Surroundings& around)
    : form_(form), name_(around.name), title_suffix_(around.title_suffix) {
  setObjectName(to_qt(form.name()));
  auto* scroll = new QScrollArea(this);  // a screen may be smaller than the form
  scroll->setWidget(content_ = new QWidget);
  scroll->setWidgetResizable(true);
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setFocusPolicy(Qt::NoFocus);
  name_scroll_bars(*scroll, "the window");
  auto* whole = new QWidget;
  auto* parts = new QVBoxLayout(whole);
  parts->setContentsMargins(0, 0, 0, 0);
  parts->setSpacing(gap);
  parts->addWidget(scroll, 1);
  setCentralWidget(whole);
  make_widgets();
  for (const MenuOfWindow& menu : around.menus) add_menu(*menuBar(), menu);
  arrange();
  mark_keys(*this);
  name_widgets();
  show_title();
  take_size();
}

FormWindow::~FormWindow() {
  bindings_.clear();
}

void FormWindow::make_widgets() {
  for (forms::Control* control : form_.controls()) {
    if (auto binding = bind(*control, content_)) bindings_[control] = std::move(binding);
  }
  for (auto& binding : bind_menus(form_, *menuBar())) {
    const forms::Control* menu = &binding->control();
    bindings_[menu] = std::move(binding);
  }
}

void FormWindow::arrange() {
  // Layouts measure captions, so these come first. Finding a place hides a widget; hence once more.
  const auto show_all = [this] {
    for (const auto& [control, binding] : bindings_) binding->show();
  };
  show_all();
  Arranger place(form_, *centralWidget());
  auto* outermost = new QVBoxLayout(content_);
  outermost->setContentsMargins(gap, gap, gap, gap);
  outermost->setSpacing(gap);
  const LayoutFunction arrange_form = layout_of(form_.name());
  if (arrange_form) {
    outermost->addLayout(arrange_form(place), 1);
    left_over_ = place.left_over();
  }
  if (!place.left_over().empty()) outermost->addLayout(arrange_plainly(place));
  if (place.in_sight()) static_cast<QVBoxLayout*>(centralWidget()->layout())->addLayout(place.in_sight());
  run_state_ = findChild<QLabel*>(run_state_name);
  show_run_state();
  show_all();
  set_tab_order(*centralWidget());
}

namespace {

// It tells its own words, or only holds others.
bool needs_no_name(const QWidget& widget) {
  if (qobject_cast<const QAbstractButton*>(&widget) || qobject_cast<const QLabel*>(&widget)) return true;
  const auto* group = qobject_cast<const QGroupBox*>(&widget);
  return (group && !group->title().isEmpty()) || widget.layout();
}

}  // namespace

// A screen reader's name for each widget: that of the table of names, the layout's caption beside it, its own
// words, its tool tip, or else its control's name.
void FormWindow::name_widgets() {
  for (const auto& [control, binding] : bindings_) {
    QWidget* widget = binding->widget();
    if (!widget) continue;
    const std::string_view name = name_of(*control);
    if (!name.empty()) widget->setAccessibleName(to_qt(std::string(name)));
    if (!widget->accessibleName().isEmpty() || needs_no_name(*widget)) continue;
    const QString tip = to_qt(control->ToolTipText.get());
    widget->setAccessibleName(tip.isEmpty() ? to_qt(control->full_name()) : tip);
  }
}

void FormWindow::show_title() {
  const std::string& activity = form_.Activity.get();
  const QString caption = to_qt(form_.Caption + (activity.empty() ? "" : ": " + activity));
  const QString title = (name_.isEmpty() ? caption : name_ + ": " + caption) + title_suffix_;
  if (title != windowTitle()) setWindowTitle(title);
}

namespace {

QString state_of(const forms::Form& form) {
  if (const auto* measuring = dynamic_cast<const varzelin::Measuring*>(&form))
    return state_words(measuring->run_state());
  const auto* script = dynamic_cast<const varzelin::RunsScript*>(&form);
  return script ? state_words(script->script_state()) : QString();
}

}  // namespace

void FormWindow::show_run_state() {
  if (!run_state_) return;
  const QString words = state_of(form_);
  if (words == run_state_->text()) return;
  run_state_->setText(words);
  QAccessibleEvent said(run_state_, QAccessible::NameChanged);
  QAccessible::updateAccessibility(&said);
}

// A window's own size, as far as the screen has it; a layout alone would get two thirds of the screen.
// The title tells what the numbers are worth, so it is to be read in full.
void FormWindow::take_size() {
  constexpr int icon_and_buttons = 140;
  const int title = fontMetrics().horizontalAdvance(windowTitle()) * 11 / 10 + icon_and_buttons;
  QLayout& parts = *centralWidget()->layout();
  int height = menuBar()->sizeHint().height() + content_->sizeHint().height();
  for (int i = 1; i < parts.count(); ++i) height += parts.itemAt(i)->sizeHint().height() + gap;
  const QSize all(content_->sizeHint().width(), height);
  resize(on_screen(*this, all.expandedTo({title, 0})));
}

void FormWindow::show_change(const forms::Control& control) {
  const auto found = bindings_.find(&control);
  if (found == bindings_.end()) return;
  found->second->show();
  if (control.kind() == forms::Kind::CommandButton || control.kind() == forms::Kind::Menu) mark_keys(*this);
}

void FormWindow::guard(const forms::Control& button, std::function<void(std::function<void()> click)> guard) {
  bindings_.at(&button)->guard = std::move(guard);
}

void FormWindow::take_files(std::function<void(const QString& path)> take) {
  take_file_ = std::move(take);
  setAcceptDrops(true);
  for (QLineEdit* box : findChildren<QLineEdit*>()) box->setAcceptDrops(false);
}

void FormWindow::show_comers(const forms::Control& control) {
  if (!control.Enabled || !control.Visible) return;
  const auto found = bindings_.find(&control);
  if (found == bindings_.end() || !found->second->widget()) return;
  found->second->widget()->setEnabled(true);
  found->second->widget()->setVisible(true);
}

void FormWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  if (on_close) on_close();
}

void FormWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::ActivationChange && isActiveWindow() && on_activated) on_activated();
}

namespace {

// One file of this machine; empty for anything else.
QString file_of(const QMimeData& data) {
  const QList<QUrl> urls = data.urls();
  return urls.size() == 1 ? urls.front().toLocalFile() : QString();
}

}  // namespace

void FormWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (!file_of(*event->mimeData()).isEmpty()) event->acceptProposedAction();
}

void FormWindow::dropEvent(QDropEvent* event) {
  event->acceptProposedAction();
  take_file_(file_of(*event->mimeData()));
}

void FormWindow::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  if (on_resized) on_resized();
}

}  // namespace window
