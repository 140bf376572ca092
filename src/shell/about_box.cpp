#include "shell/about_box.h"

#include "bridge/log.h"
#include "shell/application.h"

namespace varzelin {
namespace {

constexpr const char* disclaimer =
    "Every effort has been made to ensure the accuracy of the information presented. However, Varzelin "
    "assumes no responsibility for the accuracy of the information. Product information is subject to "
    "change without notice. Changes, if any, will be incorporated in new editions of these publications. "
    "Varzelin may make improvements and/or changes in the products and/or the programs described in these "
    "publications at any time without notice";

}  // namespace

frmAbout2::frmAbout2(Program& owner)
    : ProgramForm(owner, form_name, ""),
      lblDisclaimer(*this, "lblDisclaimer", forms::captioned({"ACCURACY OF INFORMATION", disclaimer})) {
  on(cmdOK, Event::Click, &frmAbout2::cmdOK_Click);
  on(cmdSysInfo, Event::Click, &frmAbout2::cmdSysInfo_Click);
}

void frmAbout2::Form_Load() {
  Init_Colors(store);
  Caption = std::string("About ") + application_title;
  lblVersion.Caption = std::string("Version ") + application_version;
  lblTitle.Caption = application_title;
  lblDescription.Caption = "Evaluation of ambient light, infrared and proximity sensors on the I2C bus";
  std::string libraries = "MIT licence. The C++ standard library";
  for (const std::string& library : program.libraries) libraries += ", " + library;
  lblLibraries.Caption = libraries;
}

void frmAbout2::cmdOK_Click() {
  set().unload(*this);
}
void frmAbout2::cmdSysInfo_Click() {
  StartSysInfo();
}

// There is no system information tool here. The "0" stands where the end of the line would. An error on
// the way isn't shown.
void frmAbout2::StartSysInfo() {
  forms::resume_next([this] { Log_Msg(program, "System Information Is Unavailable At This Time", "0"); });
}

}  // namespace varzelin
