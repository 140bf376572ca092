#include "window/layouts/layouts.h"

#include <QGridLayout>
#include <QGroupBox>
#include <array>
#include <map>

#include "window/arranger.h"
#include "window/look.h"

namespace window {
namespace {

struct Entry {
  std::string_view form;
  LayoutFunction arrange;
};
constexpr std::array entries{
    Entry{"frmStartup", arrange_start_panel},      Entry{"frmAbout2", arrange_about_box},
    Entry{"frmProxOff", arrange_proximity_offset}, Entry{"frmGPIO", arrange_gpio},
    Entry{"frmI2C_General", arrange_workbench},    Entry{"frmKVT71346", arrange_kvt71346},
    Entry{"frmKVT71338", arrange_kvt71338},        Entry{"frmKVT71344", arrange_eight_registers},
    Entry{"frmKVT71356", arrange_eight_registers}, Entry{"frmScriptOps", arrange_script_panel},
    Entry{"ALS_Batch", arrange_batch_panel},       Entry{"frmKVT71385", arrange_multi_function},
    Entry{"frmKVT71388", arrange_multi_function},  Entry{"frmKVT71390", arrange_multi_function},
    Entry{"frmKVT71392", arrange_multi_function},  Entry{"frm71385INTR", arrange_interrupt_test},
    Entry{"frmKVT71374", arrange_two_mode},        Entry{"frmKVT71376", arrange_two_mode},
};

}  // namespace

// A second instance, "frmScriptOps#2", looks like the first.
LayoutFunction layout_of(std::string_view form_name) {
  const std::string_view base = form_name.substr(0, form_name.find('#'));
  for (const Entry& entry : entries) {
    if (entry.form == base) return entry.arrange;
  }
  return nullptr;
}

QLayout* arrange_plainly(Arranger& place) {
  constexpr int columns = 4;
  std::map<const forms::Control*, QGridLayout*> inside;
  const auto grid_of = [&](const forms::Control* container) {
    QGridLayout*& grid = inside[container];
    if (!grid) {
      grid = new QGridLayout;
      grid->setSpacing(gap);
    }
    return grid;
  };
  QGridLayout* outermost = grid_of(nullptr);
  const auto left = place.left_over();
  for (const forms::Control* control : left) {
    QWidget* widget = place(control->name(), control->index());
    const forms::Control* container = control->container();
    const bool in_frame = container && container->kind() == forms::Kind::Frame && inside.contains(container);
    QGridLayout* grid = in_frame ? grid_of(container) : outermost;
    const int count = grid->count();
    grid->addWidget(widget, count / columns, count % columns);
    if (control->kind() == forms::Kind::Frame) widget->setLayout(grid_of(control));
  }
  return outermost;
}

}  // namespace window
