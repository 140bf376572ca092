#include "window/windows.h"

#include <QShortcut>
#include <algorithm>
#include <array>
#include <utility>

#include "boards/simulated/simulated_board.h"
#include "forms/user.h"
#include "window/bench_window.h"
#include "window/bus_trace_window.h"
#include "window/form_window.h"
#include "window/help_window.h"
#include "window/look.h"
#include "window/reachable.h"
#include "window/window_front_end.h"

namespace window {
Windows::Windows(varzelin::Program& program, WindowFrontEnd& front_end, boards::SimulatedBoard* bench)
    : program_(program), front_end_(front_end) {
  if (bench) {
    title_suffix_ = QStringLiteral(" \u2014 ") + to_qt(program.driver.board_name());
    bench_ = std::make_unique<BenchWindow>(*bench, title_suffix_);
    add_keys(*bench_, menus_of_front());
    close_by_escape(*bench_);
  }
  program_.forms.on_unloaded = [this](forms::Form& form) {
    if (shown_in_front_ == &form) shown_in_front_ = nullptr;
    windows_.erase(&form);
  };
  program_.driver.on_advice = [this](const std::string& text) { advice_.push_back(text); };
  front_end_.attach(this);
}

Windows::~Windows() {
  front_end_.attach(nullptr);
  program_.driver.on_advice = nullptr;
  program_.forms.on_unloaded = nullptr;
}

FormWindow* Windows::window_of(std::string_view form_name) const {
  for (const auto& [form, form_window] : windows_) {
    if (form->name() == form_name) return form_window.get();
  }
  return nullptr;
}

QWidget* Windows::front_window() const {
  const auto found = windows_.find(program_.forms.front());
  return found == windows_.end() ? nullptr : found->second.get();
}

FormWindow& Windows::make_window(forms::Form& form) {
  auto& form_window = windows_[&form];
  form_window = std::make_unique<FormWindow>(
      form,
      FormWindow::Surroundings{.name = name_of(form), .title_suffix = title_suffix_, .menus = menus(form)});
  guard_exit(*form_window);
  take_scripts(*form_window);
  if (form.name() == "frmAbout2") close_by_escape(*form_window);
  // The window may be gone when its turn comes.
  const auto later = [this, name = form.name()](void (Windows::*act)(FormWindow&)) {
    return [this, name, act] {
      program_.runtime.post([this, name, act] {
        if (FormWindow* still_there = window_of(name)) (this->*act)(*still_there);
      });
    };
  };
  form_window->on_close = later(&Windows::close_by_user);
  // A form that the program brought forward itself is in front already when its window is.
  form_window->on_activated = [this, &form, come_forward = later(&Windows::activated_by_user)] {
    if (program_.forms.front() != &form) come_forward();
  };
  form_window->on_resized = later(&Windows::resized);
  return *form_window;
}

// What comes on screen comes before the rest goes: a desktop without any window of the program would
// hand the keyboard to another one, and focus moves best to a widget that is already usable.
void Windows::show_changes() {
  if (!program_.runtime.has_changes()) return;
  const auto changes = program_.runtime.take_changes();
  const auto window_for = [this](const forms::Form& form) {
    const auto found = windows_.find(&form);
    return found == windows_.end() ? nullptr : found->second.get();
  };
  for (const forms::Control* control : changes.controls) {
    if (FormWindow* form_window = window_for(control->form())) form_window->show_comers(*control);
  }
  for (const forms::Control* control : changes.controls) {
    if (FormWindow* form_window = window_for(control->form())) form_window->show_change(*control);
  }
  for (const auto& [form, form_window] : windows_) form_window->show_run_state();
  for (forms::Form* form : changes.forms) {
    FormWindow* form_window = window_for(*form);
    if (form_window) form_window->show_title();
    if (!form->visible()) continue;
    had_face_ = true;
    if (!form_window) form_window = &make_window(*form);
    form_window->show();
  }
  const forms::Form* front = program_.forms.front();
  if (front && front != shown_in_front_) {
    if (FormWindow* form_window = window_for(*front)) {
      form_window->raise();
      form_window->activateWindow();
    }
  }
  shown_in_front_ = front;
  for (const forms::Form* form : changes.forms) {
    FormWindow* form_window = window_for(*form);
    if (form_window && !form->visible()) form_window->hide();
  }
}

bool Windows::program_has_face() {
  return !had_face_ || program_.forms.front() != nullptr;
}

bool Windows::tell_advice() {
  if (advice_.empty() || program_.runtime.handlers_on_stack() > 0) return false;
  for (const std::string& text : std::exchange(advice_, {})) {
    program_.runtime.post([this, text] { program_.runtime.MsgBox(text, forms::vbExclamation); });
  }
  return true;
}

void Windows::end_if_faceless() {
  if (!program_has_face() && program_.runtime.handlers_on_stack() == 0) program_.runtime.end();
}

void Windows::open_bus_trace() {
  if (!bus_trace_) {
    bus_trace_ = std::make_unique<BusTraceWindow>(program_.driver, program_.runtime.clock(), front_end_,
                                                  title_suffix_);
    add_keys(*bus_trace_, menus_of_front());
    close_by_escape(*bus_trace_);
  }
  bring_forward(*bus_trace_);
}

void Windows::close_by_escape(QWidget& window) {
  QObject::connect(new QShortcut(Qt::Key_Escape, &window), &QShortcut::activated, &window, [this, &window] {
    window.close();
    if (QWidget* front = front_window()) front->activateWindow();
  });
}

void Windows::open(const std::string& form_name) {
  opened_from_menu_.insert(form_name);
  program_.forms.touch(form_name).Show();
  show_changes();
  if (FormWindow* form_window = window_of(form_name)) bring_forward(*form_window);
}

void Windows::activated_by_user(FormWindow& form_window) {
  forms::Form& form = form_window.form();
  if (!form_window.isActiveWindow() || !form.visible() || program_.forms.front() == &form) return;
  shown_in_front_ = &form;
  program_.forms.show(form);
}

void Windows::resized(FormWindow& form_window) {
  constexpr double units_a_pixel = 15;
  forms::Form& form = form_window.form();
  form.ScaleWidth = units_a_pixel * form_window.content()->width();
  form.ScaleHeight = units_a_pixel * form_window.content()->height();
  program_.runtime.keep(form);
  form.Form_Resize();
}

}  // namespace window
