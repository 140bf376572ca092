// The menus that every window has, and what becomes of a program that is left.
#include <QPushButton>
#include <utility>

#include "boards/simulated/simulated_board.h"
#include "forms/controls.h"
#include "forms/user.h"
#include "shell/application.h"
#include "window/bench_window.h"
#include "window/form_window.h"
#include "window/help_window.h"
#include "window/look.h"
#include "window/program_actions.h"
#include "window/reachable.h"
#include "window/window_front_end.h"
#include "window/windows.h"

namespace window {

Windows::FindForm Windows::as_long_as_loaded(const forms::Form& form) {
  return [this, name = form.name()] { return program_.forms.loaded(name); };
}

std::function<void()> Windows::in_loop(const FindForm& form, std::function<void(forms::Form&)> act) {
  return [this, form, act = std::move(act)] {
    program_.runtime.post([form, act] {
      if (forms::Form* found = form()) act(*found);
    });
  };
}

std::vector<MenuOfWindow> Windows::menus(forms::Form& of_window) {
  return {program_menu(as_long_as_loaded(of_window)), windows_menu(of_window), help_menu()};
}

std::vector<MenuOfWindow> Windows::menus_of_front() {
  return {program_menu([this] { return program_.forms.front(); }), help_menu()};
}

MenuOfWindow Windows::program_menu(const FindForm& of_window) {
  const auto start = in_loop(of_window, [this](forms::Form& form) {
    if (forms::Control* button = start_button(program_, form)) forms::user::click(*button);
  });
  const auto stop_all = in_loop(of_window, [this](forms::Form&) { stop(program_); });
  const auto write = in_loop(of_window, [this](forms::Form&) {
    if (forms::Control* button = write_button(program_)) forms::user::click(*button);
  });
  const auto open_file = in_loop(of_window, [this](forms::Form& form) { open_script(program_, form); });
  const auto leave_program = [this] { leave([this] { act_when_stopped([this] { quit(program_); }); }); };
  return {
      "Progra&m",
      {{"&Start", start, Qt::Key_F5,
        [this, of_window] {
          const forms::Form* form = of_window();
          return form && start_button(program_, *form);
        }},
       {"S&top", stop_all, Qt::SHIFT | Qt::Key_F5, [this] { return is_running(program_); }},
       {"&Write to Disk", write, Qt::CTRL | Qt::Key_S, [this] { return write_button(program_) != nullptr; }},
       {"&Open Script\u2026", open_file, Qt::CTRL | Qt::Key_O},
       {"&Quit", leave_program, Qt::CTRL | Qt::Key_Q}}};
}

MenuOfWindow Windows::windows_menu(forms::Form& of_window) {
  MenuOfWindow menu{"&Windows", {}};
  if (of_window.name() != start_list) {
    menu.entries.push_back({"&Choose a Sensor\u2026", [this] {
                              leave([this] { act_when_stopped([this] { choose_sensor(program_); }); });
                            }});
  }
  for (const Reachable& each : reachable) {
    if (!program_.forms.knows(each.form) || !has_entry(of_window.name(), each)) continue;
    menu.entries.push_back({each.text, [this, name = std::string(each.form)] {
                              program_.runtime.post([this, name] { open(name); });
                            }});
  }
  menu.entries.push_back({"Bus &Trace", [this] { open_bus_trace(); }});
  if (bench_) menu.entries.push_back({"Simulated &Bench", [this] { bring_forward(*bench_); }});
  for (const HiddenDoubleClick& each : hidden_double_clicks) {
    const forms::Control* label = of_window.find(each.label);
    if (!label || !label->handles(forms::Event::DblClick)) continue;
    menu.entries.push_back(
        {each.text, in_loop(as_long_as_loaded(of_window), [name = each.label](forms::Form& form) {
           forms::user::double_click(*form.find(name));
         })});
  }
  return menu;
}

MenuOfWindow Windows::help_menu() {
  return {"&Help", {{"First Steps and &Keys", [this] { open_help(); }, Qt::Key_F1}}};
}

void Windows::open_help() {
  if (!help_) {
    const std::vector<MenuOfWindow> menus = menus_of_front();
    help_ = std::make_unique<HelpWindow>(menus, title_suffix_);
    add_keys(*help_, menus);
    close_by_escape(*help_);
  }
  bring_forward(*help_);
}

// --- leaving ---

void Windows::leave(std::function<void()> go_on) {
  const int lost = unwritten_readings(program_);
  if (lost == 0) {
    go_on();
    return;
  }
  if (question_) {
    question_->activateWindow();
    return;
  }
  question_ = new QMessageBox(QMessageBox::Question, varzelin::application_title + title_suffix_,
                              QString::number(lost) + " readings were never written to disk.",
                              QMessageBox::NoButton, front_window());
  question_->setAttribute(Qt::WA_DeleteOnClose);
  QPushButton* lose = question_->addButton("&Discard Them", QMessageBox::AcceptRole);
  question_->setDefaultButton(question_->addButton(QMessageBox::Cancel));
  QObject::connect(lose, &QPushButton::clicked, question_, go_on);
  question_->open();  // a collection under way goes on
}

void Windows::act_when_stopped(std::function<void()> act) {
  when_stopped_ = std::move(act);
  program_.runtime.post([this] { stop(program_); });
}

bool Windows::act_when_idle() {
  if (!when_stopped_ || program_.runtime.handlers_on_stack() > 0) return false;
  program_.runtime.post(std::exchange(when_stopped_, nullptr));
  return true;
}

void Windows::guard_exit(FormWindow& form_window) {
  for (const forms::Control* control : exits(form_window.form()))
    form_window.guard(*control, [this](const std::function<void()>& click) { leave(click); });
}

// The workbench ends the program when it is unloaded, so what was opened beside a panel is only hidden.
void Windows::close_by_user(FormWindow& form_window) {
  constexpr const char* workbench = "frmI2C_General";
  forms::Form& form = form_window.form();
  const bool beside_a_panel = form.name() == workbench && opened_from_menu_.contains(workbench);
  if (beside_a_panel || keeps_its_texts(form)) {
    program_.forms.hide(form);
    if (!program_.forms.front()) program_.runtime.end();
  } else if (&form == sensor_panel(program_)) {
    leave(in_loop(as_long_as_loaded(form), [this](forms::Form& still_there) { close(still_there); }));
  } else {
    close(form);
  }
}

// A handler that still runs for the form would keep a program without windows alive.
void Windows::close(forms::Form& form) {
  constexpr int close_box = 0;
  if (program_.forms.unload(form, close_box) && !program_.forms.front()) program_.runtime.end();
}

void Windows::take_scripts(FormWindow& form_window) {
  if (!form_window.form().find("mnuScript_Read")) return;
  form_window.take_files([this, name = form_window.form().name()](const QString& path) {
    program_.runtime.post([this, name, path] {
      forms::Form* panel = program_.forms.loaded(name);
      if (!panel) return;
      front_end_.give_file(path.toStdString());
      forms::user::click(*panel->find("mnuScript_Read"));
    });
  });
}

bool Windows::front_appends() const {
  const forms::Form* front = program_.forms.front();
  const auto* append = front ? dynamic_cast<const forms::CheckBox*>(front->find("chkAppend")) : nullptr;
  return append && append->Value == 1;
}

}  // namespace window
