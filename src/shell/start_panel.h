// The small window that the program opens on: the choice of the sensor model.
#pragma once

#include <array>

#include "bridge/program_form.h"

namespace varzelin {

// A row of the model list. The row's index is the list index.
struct ModelRow {
  const char* text;
  const char* panel;          // the form shown for it
  const char* also_prepared;  // a form loaded and left hidden before the panel; null for none
};

extern const std::array<ModelRow, 10> model_list;

class frmStartup final : public ProgramForm {
 public:
  static constexpr const char* form_name = "frmStartup";

  explicit frmStartup(Program& owner);

  void Form_Load() override;
  void cboDeviceSelect_Click();
  void OptRev_Click(int Index);
  void cmdAbout_Click();

  PictureBox Picture1{*this, "Picture1", {.Width = 96, .Height = 96}};
  ComboBox cboDeviceSelect{*this, "cboDeviceSelect", {.Text = "Device Select"}};
  Frame frmRevision{*this, "frmRevision", {.Caption = "KVT713XX Temporary Revision Selection "}};
  ControlArray<OptionButton> OptRev{*this,
                                    "OptRev",
                                    {{0, {.Caption = "Revision A", .Container = &frmRevision}},
                                     {1, {.Caption = "Revision B", .Container = &frmRevision, .Value = 1}}}};
  CommandButton cmdAbout{*this, "cmdAbout", {.Caption = "About"}};
};

}  // namespace varzelin
