// What a layout file works with: the form's widgets by their controls' names, and rows, columns and
// fields to put them in. The arranger remembers which controls found a place.
#pragma once

#include <QBoxLayout>
#include <QLabel>
#include <QString>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "forms/form.h"
#include "window/lamp.h"

class QGridLayout;
class QGroupBox;
class QWidget;

namespace window {

class Binding;

// A part of a row or a column: a widget, a layout, or room that grows.
struct Part {
  Part(QWidget* part, int share = 0) : widget(part), stretch(share) {}
  Part(QLayout* part, int share = 0) : layout(part), stretch(share) {}
  static Part room() { return Part(static_cast<QWidget*>(nullptr), 1); }

  QWidget* widget = nullptr;
  QLayout* layout = nullptr;
  int stretch = 0;
};
using Parts = std::initializer_list<Part>;

QBoxLayout* row(const Parts& parts);
QBoxLayout* column(const Parts& parts);

// The words of a caption that two blanks or more bring in columns.
QStringList words_of(const QString& caption);

class Arranger {
 public:
  Arranger(forms::Form& form, QWidget& window) : form_(form), window_(window) {}

  bool has(std::string_view name, int index = -1) const { return form_.find(name, index) != nullptr; }
  // The elements that the form has of a control array, in ascending order.
  std::vector<int> elements_of(std::string_view array) const;
  // The widget of a control, which has a place now. Throws std::logic_error when the form has no such
  // control.
  QWidget* operator()(std::string_view name, int index = -1);
  template <class Widget>
  Widget* as(std::string_view name, int index = -1) {
    return static_cast<Widget*>((*this)(name, index));
  }

  // A frame control with what stands in it.
  QGroupBox* frame(std::string_view name, QLayout* inside, int index = -1);
  // A group that only the layout knows.
  QGroupBox* group(const QString& title, QLayout* inside);
  // A caption that only the layout knows. It names the widget that it stands beside, and is hidden with it.
  QLabel* text(const QString& caption, QWidget* beside = nullptr);
  // Caption and widget under each other in two aligned columns.
  struct Field {
    QWidget* caption;
    QWidget* widget;
  };
  QGridLayout* fields(const std::vector<Field>& fields);
  Field field(const QString& caption, QWidget* widget) { return {text(caption, widget), widget}; }
  // The caption is a label control of the form.
  Field field(std::string_view label, QWidget* widget);
  Field field(const char* label, QWidget* widget) { return field(std::string_view(label), widget); }
  Field field(std::string_view label, int index, QWidget* widget);

  // Makes a widget as wide as so many digits.
  QWidget* digits(int count, QWidget* widget);
  // A widget that keeps its room while it is hidden.
  QWidget* keep_room(QWidget* widget);
  // Two that are never on screen together, in one place.
  QLayout* in_turn(QWidget* one, QWidget* other);
  // A button with room for so many lines of caption.
  QWidget* lines(int count, std::string_view button, int index = -1);
  // A list as high as so many rows.
  QWidget* list_rows(int count, QWidget* list);
  // A widget whose texts are brought in columns by blanks.
  QWidget* aligned_by_blanks(QWidget* widget);
  // A control that has nothing to show, or is shown by other widgets.
  QWidget* without_room(QWidget* widget);
  // A lamp's name, and what its colours mean.
  static QWidget* name_lamp(QWidget* lamp, const QString& name, const LampWords& words);
  // A lamp with its caption; the caption names it.
  QLayout* lamp(QWidget* lamp, QWidget* caption, const LampWords& words = action_words);

  // Puts a layout below what scrolls, always in sight. Its words are cut where they don't fit.
  void keep_in_sight(QLayout* inside);
  // Both in one line, or in a narrow window below each other.
  static QLayout* in_one_line_where_wide(const Part& one, const Part& other);
  // What keep_in_sight() was given; null: nothing.
  QLayout* in_sight() const { return in_sight_; }
  // A label that gives way where the window is narrow, and doesn't widen it.
  static QLabel* giving_way(QLabel* label);
  // Where the window shows how the form's work goes.
  QLabel* run_state();

  // Controls that need a place and have none.
  std::vector<forms::Control*> left_over() const;

 private:
  forms::Form& form_;
  QWidget& window_;
  std::vector<const forms::Control*> placed_;
  std::vector<QWidget*> widgets_;
  QLayout* in_sight_ = nullptr;
};

inline constexpr const char* run_state_name = "run_state";

}  // namespace window
