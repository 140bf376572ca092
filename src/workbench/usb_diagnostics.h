// The USB diagnostic menu: looks at the device's configurations, changes the alternate setting, resets a
// pipe, asks for a pipe. Everything it finds goes to the log. It works on Dev_Handle of the shared
// store, so the session has to be open.
#pragma once

#include "bridge/program.h"

namespace varzelin {

enum class Diagnostic { PrintConfigurations, ChangeAlternateSetting, ResetPipe, ReadWritePipe, Exit };

// Diagnostic::Exit unloads `form`.
void Diag_Menu(Program& program, forms::Form& form, Diagnostic choice);

void Print_Device_Configurations(Program& program, boards::Handle device);
void Print_Endpoints(Program& program, const boards::AlternateSetting& setting);

}  // namespace varzelin
