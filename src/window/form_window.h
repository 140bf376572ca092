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

namespace window {

class FormWindow final : public QMainWindow {
 public:
  // `title_suffix` stands behind the form's caption. The window doesn't show itself.
  FormWindow(forms::Form& form, QString title_suffix, const std::vector<WindowEntry>& windows);
  ~FormWindow() override;

  forms::Form& form() const { return form_; }
  void show_title();
  // Brings the widget of a changed control in step.
  void show_change(const forms::Control& control);
  // Makes widgets that are going to be shown or enabled ready to take the focus from those that go.
  void show_comers(const forms::Control& control);
  // What the form's widgets stand on. Where the window is smaller it scrolls.
  QWidget* content() const { return content_; }
  // Controls that no layout places; they stand at the bottom of the window.
  const std::vector<forms::Control*>& left_over() const { return left_over_; }

  // The user wants the window to close; it came to the front; it has another size. The program decides
  // what follows.
  std::function<void()> on_close;
  std::function<void()> on_activated;
  std::function<void()> on_resized;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void make_widgets();
  void arrange();
  void name_widgets();
  void take_focus(const std::vector<QWidget*>& stops);
  void take_size();

  forms::Form& form_;
  const QString title_suffix_;
  QWidget* content_;
  std::map<const forms::Control*, std::unique_ptr<Binding>> bindings_;
  std::vector<forms::Control*> left_over_;
};

}  // namespace window
