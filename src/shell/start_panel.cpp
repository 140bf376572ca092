#include "shell/start_panel.h"

#include "bridge/log.h"

namespace varzelin {

const std::array<ModelRow, 10> model_list{{{"KVT71346/7", "frmKVT71346", nullptr},
                                           {"KVT71344/5", "frmKVT71344", nullptr},
                                           {"KVT71388", "frmKVT71388", nullptr},
                                           {"KVT71356", "frmKVT71356", nullptr},
                                           {"KVT71374", "frmKVT71374", nullptr},
                                           {"KVT71385", "frmKVT71385", "frmProxOff"},
                                           {"KVT71338", "frmKVT71338", nullptr},
                                           {"KVT71390", "frmKVT71390", nullptr},
                                           {"KVT71376", "frmKVT71376", nullptr},
                                           {"KVT71392", "frmKVT71392", nullptr}}};

frmStartup::frmStartup(Program& owner)
    : ProgramForm(owner, form_name, "Varzelin Light Sensor Demo with Script Execution") {
  on(cboDeviceSelect, Event::Click, &frmStartup::cboDeviceSelect_Click);
  on(OptRev, Event::Click, &frmStartup::OptRev_Click);
  on(cmdAbout, Event::Click, &frmStartup::cmdAbout_Click);
}

void frmStartup::Form_Load() {
  Init_Colors(store);
  for (const ModelRow& row : model_list) cboDeviceSelect.AddItem(row.text);
  store.Rev_Sel = "B";
}

void frmStartup::OptRev_Click(int Index) {
  store.Rev_Sel = Index == 0 ? "A" : "B";
}

void frmStartup::cboDeviceSelect_Click() {
  const std::int32_t index = cboDeviceSelect.ListIndex;
  if (index < 0) return;
  const ModelRow& row = forms::element(model_list, index);
  program.driver.model_chosen(row.text);
  Hide();
  program.forms.touch(log_form_name).Hide();
  if (row.also_prepared) program.forms.touch(row.also_prepared).Hide();
  program.forms.touch(row.panel).Show();
}

void frmStartup::cmdAbout_Click() {
  program.forms.touch("frmAbout2").Show();
}

}  // namespace varzelin
