// What handlers have at hand, in a form or in a part of one: the program, its store, and the platform's
// operations by their names.
#pragma once

#include <string>

#include "bridge/program.h"
#include "forms/controls.h"
#include "forms/text.h"

namespace varzelin {

class ProgramAccess {
 protected:
  explicit ProgramAccess(Program& owner) : program(owner), store(owner.store) {}
  ~ProgramAccess() = default;

  Program& program;
  Store& store;

  void DoEvents(int times = 1) { program.runtime.DoEvents(times); }
  void Sleep(std::int64_t milliseconds) { program.runtime.Sleep(milliseconds); }
  void Pause(std::int64_t milliseconds) { program.runtime.Pause(milliseconds); }
  std::int64_t timeGetTime() const { return program.runtime.timeGetTime(); }
  int MsgBox(std::string text, int buttons = forms::vbOKOnly, std::string title = {}) {
    return program.runtime.MsgBox(std::move(text), buttons, std::move(title));
  }
  // The default instance of a form, loaded on first touch.
  template <class F>
  F& form() {
    return program.forms.touch<F>();
  }
  std::string Date() const { return forms::date_short(program.runtime.clock().local_time()); }
  std::string Time() const { return forms::time_short(program.runtime.clock().local_time()); }
  // The lamp colour of an index kept in the store.
  static forms::Color lamp(double color_index) { return forms::QBColor(color_index); }
  // Light and dark green alternate, so that a repeated good action shows that it was done. Anything else
  // becomes light green.
  void flip_lamp(forms::Shape& shape) { flip_lamp(shape, store.Clr_DkGreen); }
  // The same with another colour than dark green, by its index.
  void flip_lamp(forms::Shape& shape, double other);
  // A good action flips its lamp, a failed one turns it red.
  void show_action(forms::Shape& shape, bool good);
  // The result of a communications test: "Good" on green or "Fail" on red.
  static void show_verdict(forms::Label& label, bool good);
};

}  // namespace varzelin
