// A round lamp, as large as the text beside it.
#pragma once

#include <QString>
#include <QWidget>

#include "forms/color.h"

namespace window {

// What a lamp's colours mean. The program turns a lamp that is light green dark green with every further
// action, so that one sees it act.
struct LampWords {
  const char* off;
  const char* light_green;
  const char* dark_green;
  const char* red;
};
inline constexpr LampWords action_words{"not yet", "done", "done", "failed"};
inline constexpr LampWords yes_words{"no", "yes", "yes", "no"};
inline constexpr LampWords use_words{"not in use", "in use", "in use", "not in use"};
inline constexpr LampWords heartbeat_words{"on", "on", "on", "failed"};
inline constexpr LampWords link_words{"not tried", "works", "works", "failed"};
inline constexpr LampWords answer_words{"not tried", "acknowledged", "acknowledged", "not acknowledged"};
inline constexpr LampWords log_words{"empty", "good", "good", "error"};
inline constexpr LampWords read_words{"not yet", "done", "done", "mismatch"};
inline constexpr LampWords comparison_words{"not compared", "match", "match", "mismatch"};
// What comes in at a port may differ from what was written there.
inline constexpr LampWords port_words{"not compared", "match", "differ", "mismatch"};
inline constexpr LampWords pin_words{"not low", "not low", "not low", "low"};
inline constexpr LampWords flag_words{"not set", "not set", "not set", "set"};
inline constexpr LampWords range_words{"not measured", "within", "within", "beyond"};
inline constexpr LampWords over_words{"not measured", "no", "no", "yes"};
inline constexpr LampWords step_words{"not begun", "done", "done", "waiting"};

class Lamp final : public QWidget {
 public:
  explicit Lamp(QWidget* parent = nullptr);
  void set_color(forms::Color color);
  forms::Color color() const { return color_; }
  // What the colour means here. Without words of its own a lamp tells of an action.
  QString meaning() const;
  void set_words(const LampWords& words) { words_ = words; }
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  forms::Color color_;
  LampWords words_ = action_words;
};

}  // namespace window
