// The about box: title, version, disclaimer, and the road to the system's information tool.
#pragma once

#include "bridge/program_form.h"

namespace varzelin {

class frmAbout2 final : public ProgramForm {
 public:
  static constexpr const char* form_name = "frmAbout2";

  explicit frmAbout2(Program& owner);

  void Form_Load() override;
  void cmdOK_Click();
  void cmdSysInfo_Click();

  Label lblTitle{*this, "lblTitle"};
  Label lblVersion{*this, "lblVersion"};
  Label lblDescription{*this, "lblDescription"};
  ControlArray<Label> lblDisclaimer;
  Label lblLibraries{*this, "lblLibraries"};  // the libraries in use, with version and licence
  CommandButton cmdOK{*this, "cmdOK", {.Caption = "OK"}};
  CommandButton cmdSysInfo{*this, "cmdSysInfo", {.Caption = "&System Info..."}};

 private:
  void StartSysInfo();
};

}  // namespace varzelin
