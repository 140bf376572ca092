// How each form is arranged: a function per form or family, found by the form's name.
#pragma once

#include <string_view>

class QLayout;

namespace window {

class Arranger;

using LayoutFunction = QLayout* (*)(Arranger&);

// Null for a form that has none of its own.
LayoutFunction layout_of(std::string_view form_name);

// All controls that are left over, frame by frame.
QLayout* arrange_plainly(Arranger& place);

QLayout* arrange_start_panel(Arranger& place);
QLayout* arrange_about_box(Arranger& place);
QLayout* arrange_proximity_offset(Arranger& place);
QLayout* arrange_interrupt_test(Arranger& place);
QLayout* arrange_gpio(Arranger& place);
QLayout* arrange_workbench(Arranger& place);
QLayout* arrange_kvt71338(Arranger& place);
QLayout* arrange_kvt71346(Arranger& place);
QLayout* arrange_eight_registers(Arranger& place);
QLayout* arrange_multi_function(Arranger& place);
QLayout* arrange_two_mode(Arranger& place);
QLayout* arrange_script_panel(Arranger& place);
QLayout* arrange_batch_panel(Arranger& place);

}  // namespace window
