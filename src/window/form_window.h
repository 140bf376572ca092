// The window of one form.
#pragma once

#include <QMainWindow>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "forms/form.h"
#include "window/binding.h"
#include "window/menu_bar.h"

class QLabel;

namespace window {

class FormWindow final : public QMainWindow {
 public:
  // What stands around the form's own captions and menus. The window doesn't show itself.
  struct Surroundings {
    QString name = {};          // the window's name in menus, in front of the form's caption; may be empty
    QString title_suffix = {};  // behind it
    std::vector<MenuOfWindow> menus = {};
  };
  FormWindow(forms::Form& form, const Surroundings& around);
  ~FormWindow() override;

  forms::Form& form() const { return form_; }
  void show_title();
  // Brings the words of how the form's work goes in step, where the window has a place for them.
  void show_run_state();
  // Brings the widget of a changed control in step.
  void show_change(const forms::Control& control);
  // Makes widgets that are going to be shown or enabled ready to take the focus from those that go.
  void show_comers(const forms::Control& control);
  // What the form's widgets stand on. Where the window is smaller it scrolls.
  QWidget* content() const { return content_; }
  // Controls that no layout places; they stand at the bottom of the window.
  const std::vector<forms::Control*>& left_over() const { return left_over_; }

  // What is asked before the click of a button goes its way; see Binding.
  void guard(const forms::Control& button, std::function<void(std::function<void()> click)> guard);
  // Takes files that are dropped on the window.
  void take_files(std::function<void(const QString& path)> take);

  // The user wants the window to close; it came to the front; it has another size. The program decides
  // what follows.
  std::function<void()> on_close;
  std::function<void()> on_activated;
  std::function<void()> on_resized;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void make_widgets();
  void arrange();
  void name_widgets();
  void take_size();

  forms::Form& form_;
  const QString name_;
  const QString title_suffix_;
  std::function<void(const QString& path)> take_file_;
  QWidget* content_;
  QLabel* run_state_ = nullptr;
  std::map<const forms::Control*, std::unique_ptr<Binding>> bindings_;
  std::vector<forms::Control*> left_over_;
};

}  // namespace window
