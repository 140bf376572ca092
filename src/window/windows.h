// The windows of a running program: one for each form that has been on screen, the bench window of a
// simulated board, and the bus trace.
#pragma once

#include <QMessageBox>
#include <QPointer>
#include <QString>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "bridge/program.h"
#include "window/menu_bar.h"

class QWidget;

namespace boards {
class SimulatedBoard;
}

namespace window {

class BenchWindow;
class BusTraceWindow;
class FormWindow;
class HelpWindow;
class WindowFrontEnd;

class Windows {
 public:
  // Joins the program to its front end, and shows the driver's advice; both outlive this object.
  // `bench` is the simulated board behind the program's driver, if there is one: its name then stands in
  // every title.
  Windows(varzelin::Program& program, WindowFrontEnd& front_end, boards::SimulatedBoard* bench = nullptr);
  ~Windows();
  Windows(const Windows&) = delete;
  Windows& operator=(const Windows&) = delete;

  // Brings windows and widgets in step with what changed in the program since the last call.
  void show_changes();
  // False once a form was on screen and none is any more.
  bool program_has_face();
  // Ends the program from its main loop when nothing is on screen any more.
  void end_if_faceless();

  // Posts what waits for the handlers to end. False: nothing does.
  bool act_when_idle();
  // Posts boxes with what the driver advised, once no handler is under way: a box must not stop one, nor
  // come before the window that it belongs to. False: there is nothing to tell.
  bool tell_advice();

  // The form in front adds to its file instead of replacing it.
  bool front_appends() const;
  // The question that is open whether to leave readings behind; null when none is.
  QMessageBox* leaving_question() const { return question_; }

  // The window of the form in front, or null: where dialogs belong.
  QWidget* front_window() const;
  // The window of a loaded form; null when it hasn't been on screen yet.
  FormWindow* window_of(std::string_view form_name) const;
  BenchWindow* bench() const { return bench_.get(); }
  // Null as long as nobody has opened it.
  BusTraceWindow* bus_trace() const { return bus_trace_.get(); }
  HelpWindow* help() const { return help_.get(); }
  const QString& title_suffix() const { return title_suffix_; }

 private:
  FormWindow& make_window(forms::Form& form);
  void guard_exit(FormWindow& form_window);
  void take_scripts(FormWindow& form_window);
  void open(const std::string& form_name);
  void open_bus_trace();
  // For windows that only show something. Where no window manager does it, the window of the form in front
  // has the keyboard then.
  void close_by_escape(QWidget& window);
  void open_help();
  void close_by_user(FormWindow& form_window);
  void close(forms::Form& form);
  void activated_by_user(FormWindow& form_window);
  void resized(FormWindow& form_window);

  // --- the menus of every window ---
  // The form that a window speaks for when something is to be done; null when there is none.
  using FindForm = std::function<forms::Form*()>;
  FindForm as_long_as_loaded(const forms::Form& form);
  std::vector<MenuOfWindow> menus(forms::Form& of_window);
  MenuOfWindow program_menu(const FindForm& form);
  MenuOfWindow windows_menu(forms::Form& of_window);
  MenuOfWindow help_menu();
  // The menus of a window that is no form's: they speak for the form in front.
  std::vector<MenuOfWindow> menus_of_front();
  // Runs in the message loop with the form, if there is one then.
  std::function<void()> in_loop(const FindForm& form, std::function<void(forms::Form&)> act);

  // --- leaving ---
  // Goes on at once, or when the user has said that unwritten readings may be lost.
  void leave(std::function<void()> go_on);
  // Stops what runs, and acts once no handler is under way.
  void act_when_stopped(std::function<void()> act);

  varzelin::Program& program_;
  WindowFrontEnd& front_end_;
  QString title_suffix_;
  std::map<const forms::Form*, std::unique_ptr<FormWindow>> windows_;
  std::unique_ptr<BenchWindow> bench_;
  std::unique_ptr<BusTraceWindow> bus_trace_;
  const forms::Form* shown_in_front_ = nullptr;
  bool had_face_ = false;
  std::vector<std::string> advice_;
  std::unique_ptr<HelpWindow> help_;
  QPointer<QMessageBox> question_;
  std::function<void()> when_stopped_;
  std::set<std::string> opened_from_menu_;
};

}  // namespace window
