#include "window/program_actions.h"

#include <algorithm>
#include <array>
#include <vector>

#include "bridge/run_state.h"
#include "forms/controls.h"
#include "forms/user.h"
#include "window/binding.h"

namespace window {
namespace {

using forms::Control;
using forms::Form;
using varzelin::Program;

constexpr const char* script_panel = "frmScriptOps";
// Belong to no sensor, and stay when another one is chosen.
constexpr std::array staying{start_list, "frmI2C_General", "frmGPIO", script_panel, "frmAbout2"};

std::string_view base_name(const Form& form) {
  const std::string_view name = form.name();
  return name.substr(0, name.find('#'));
}

bool stays(const Form& form) {
  return std::ranges::find(staying, base_name(form)) != staying.end();
}

// A button that is offered while something runs: some models show it then, others enable it.
Control* offered(const Form& form, std::string_view name) {
  Control* button = form.find(name);
  return button && button->Visible && button->Enabled ? button : nullptr;
}

// The buttons whose handlers stop what runs.
std::vector<Control*> stop_buttons(const Program& program) {
  std::vector<Control*> buttons;
  for (const Form* form : program.forms.all_loaded()) {
    Control* button = nullptr;
    if (form->find("cmdStopData")) {
      button = program.store.Sample_Run != 0 ? form->find("cmdStopData") : offered(*form, "cmdEndSampling");
    } else if (base_name(*form) == script_panel) {
      button = offered(*form, "cmdAbort");
    } else if (form->find("cmdRunCase1") && !offered(*form, "cmdRunCase1")) {
      button = offered(*form, "cmdAbort1");
    }
    if (button) buttons.push_back(button);
  }
  return buttons;
}

}  // namespace

Form* sensor_panel(const Program& program) {
  for (Form* form : program.forms.all_loaded()) {
    if (form->find("cmdCollectData")) return form;
  }
  return nullptr;
}

std::vector<Control*> exits(const Form& form) {
  std::vector<Control*> found;
  if (!form.find("cmdCollectData") && !form.find("cmdUSBConnect")) return found;
  for (Control* control : form.controls()) {
    const auto* button = dynamic_cast<const forms::CommandButton*>(control);
    const auto* entry = dynamic_cast<const forms::Menu*>(control);
    if (button && button->Caption == "Exit") found.insert(found.begin(), control);
    if (entry && entry->Caption == "Exit") found.push_back(control);
  }
  return found;
}

Control* start_button(const Program& program, const Form& form) {
  for (const char* name : {"cmdCollectData", "cmdExecAll", "cmdRunCase1"}) {
    if (Control* button = form.find(name)) return usable(*button) ? button : nullptr;
  }
  const Form* panel = sensor_panel(program);
  return panel ? start_button(program, *panel) : nullptr;
}

Control* write_button(const Program& program) {
  const Form* panel = sensor_panel(program);
  Control* button = panel ? panel->find("cmdStartRec", 0) : nullptr;
  return button && button->Enabled ? button : nullptr;
}

bool is_running(const Program& program) {
  return !stop_buttons(program).empty();
}

void stop(Program& program) {
  for (Control* button : stop_buttons(program)) button->raise(forms::Event::Click);
}

bool keeps_its_texts(const Form& form) {
  return form.name() == "frmProxOff";
}

// A script panel that isn't loaded asks for a file as it loads.
void open_script(Program& program, Form& form) {
  Form* panel = base_name(form) == script_panel ? &form : program.forms.loaded(script_panel);
  if (!panel) {
    program.forms.touch(script_panel).Show();
    return;
  }
  panel->Show();
  forms::user::click(*panel->find("mnuScript_Read"));
}

void choose_sensor(Program& program) {
  const std::vector<Form*> loaded = program.forms.all_loaded();
  program.forms.touch(start_list).Show();
  for (auto form = loaded.rbegin(); form != loaded.rend(); ++form) {
    if (keeps_its_texts(**form)) {
      (*form)->Hide();
    } else if (!stays(**form)) {
      program.forms.unload(**form);
    }
  }
}

void quit(Program& program) {
  if (const Form* panel = sensor_panel(program)) exits(*panel).front()->raise(forms::Event::Click);
  program.runtime.end();
}

int unwritten_readings(const Program& program) {
  constexpr const char* writes_no_file = "frmKVT71338";
  constexpr int least_for_a_file = 20;
  const Form* panel = sensor_panel(program);
  if (!panel || panel->name() == writes_no_file || program.store.Sample_Count < least_for_a_file) return 0;
  // The status line tells of a file until the next run begins.
  const auto& status = dynamic_cast<const forms::Label&>(*panel->find("Label18")).Caption.get();
  if (status.find("Measurement set(s) written") != std::string::npos) return 0;
  // Of this panel: the store may hold those of one that is gone.
  const varzelin::RunState run = dynamic_cast<const varzelin::Measuring&>(*panel).run_state();
  return run.store_full ? run.kept : run.captured;
}

}  // namespace window
