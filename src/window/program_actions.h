// What the menu of every window does to the program, on whatever forms are there: found by the names of their
// controls. All but the questions run handlers, so call them from the message loop.
#pragma once

#include <string>
#include <vector>

#include "bridge/program.h"

namespace forms {
class Control;
class Form;
}  // namespace forms

namespace window {

inline constexpr const char* start_list = "frmStartup";

// The sensor panel that is loaded; null before a sensor is chosen.
forms::Form* sensor_panel(const varzelin::Program& program);
// What leaves the program, on a panel or on the workbench: its button, then entries of its menus. None on
// other forms.
std::vector<forms::Control*> exits(const forms::Form& form);

// What begins the work of this form, or the panel's collection where the form has none. Null: nothing can
// begin.
forms::Control* start_button(const varzelin::Program& program, const forms::Form& form);
// What writes the readings, also while the short layout hides it. Null: there is no panel, or it is switched
// off.
forms::Control* write_button(const varzelin::Program& program);
// A collection, a timed run, a script or the interrupt test goes on.
bool is_running(const varzelin::Program& program);
// Raises the stop handler of everything that runs, whether or not its button is enabled: a cleared chart
// leaves that of the next collection disabled.
void stop(varzelin::Program& program);

// Asks for a script file, in the form when it is a script panel.
void open_script(varzelin::Program& program, forms::Form& form);
// What was typed into it is kept until the program ends: it is hidden where others are unloaded.
bool keeps_its_texts(const forms::Form& form);
// Unloads the panel with what belongs to it, and shows the start list.
void choose_sensor(varzelin::Program& program);
// Leaves by the panel's own exit; the program ends in any case.
[[noreturn]] void quit(varzelin::Program& program);

// How many readings closing would lose: those of the last run, when they are enough for a file and there is
// none.
int unwritten_readings(const varzelin::Program& program);

}  // namespace window
