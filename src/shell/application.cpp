#include "shell/application.h"

#include <memory>
#include <string>
#include <utility>

#include "panels/multi_function/interrupt_test.h"
#include "panels/multi_function/multi_function_panel.h"
#include "panels/multi_function/proximity_offset.h"
#include "panels/single_channel/eight_register_panel.h"
#include "panels/single_channel/kvt71338.h"
#include "panels/single_channel/kvt71346.h"
#include "panels/two_mode/two_mode_panel.h"
#include "script/batch_panel.h"
#include "script/script_panel.h"
#include "shell/about_box.h"
#include "shell/start_panel.h"
#include "workbench/gpio_panel.h"
#include "workbench/workbench.h"

namespace varzelin {
namespace {

// A form of which there is one instance.
template <class F>
void add(Program& program) {
  program.forms.add(F::form_name, [&program](const std::string&) { return std::make_unique<F>(program); });
}

const PanelModel& panel_of(const auto& model) {
  if constexpr (requires { model.converter; }) {
    return model.converter.panel;
  } else {
    return model.panel;
  }
}

// Panels of one class, each by its model's record.
template <class Panel, class Models>
void add_models(Program& program, const Models& models) {
  for (const auto& model : models) {
    program.forms.add(panel_of(model).form_name, [&program, &model](const std::string&) {
      return std::make_unique<Panel>(program, model);
    });
  }
}

}  // namespace

void add_forms(Program& program) {
  add<frmStartup>(program);
  add<frmAbout2>(program);
  add<frmI2C_General>(program);
  add<frmGPIO>(program);
  // The one form of which there may be several.
  program.forms.add(frmScriptOps::form_name, [&program](std::string name) {
    return std::make_unique<frmScriptOps>(program, std::move(name));
  });
  add<ALS_Batch>(program);
  add<frmKVT71346>(program);
  add_models<EightRegisterPanel>(program, eight_register_models());
  add<frmKVT71338>(program);
  add_models<TwoModePanel>(program, two_mode_models());
  add_models<MultiFunctionPanel>(program, multi_function_models());
  add<frmProxOff>(program);
  add<frm71385INTR>(program);
}

void start(Program& program) {
  program.forms.touch<frmStartup>().Show();
}

}  // namespace varzelin
