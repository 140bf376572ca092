// A group of controls of a panel with its handlers, as an object of its own: panels that lack it don't
// have it. A part is a member of its panel, behind what it uses of it.
#pragma once

#include "panels/common/register_panel.h"

namespace varzelin {

template <class Panel>
class PartOf : protected ProgramAccess {
 protected:
  PartOf(Program& owner, Panel& of_panel) : ProgramAccess(owner), panel(of_panel) {}

  template <class Source, class Part, class... Args>
  void on(Source& control, Event event, void (Part::*handler)(Args...)) {
    forms::handle(control, event, static_cast<Part&>(*this), handler);
  }

  Panel& panel;
};

using PanelPart = PartOf<RegisterPanel>;

}  // namespace varzelin
