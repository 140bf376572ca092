#include "workbench/connection_rule.h"

#include "bridge/session.h"
#include "workbench/workbench.h"

namespace varzelin {
namespace {

template <class Step>
void unless_held(Program& program, int yields, Step&& step) {
  if (program.store.Man_Usb_Conn != 0) return;
  step();
  program.runtime.DoEvents(yields);
}

}  // namespace

void connect_by_rule(Program& program, int yields) {
  unless_held(program, yields, [&] { program.forms.touch<frmI2C_General>().cmdUSBConnect_Click(); });
}
void disconnect_by_rule(Program& program, int yields) {
  unless_held(program, yields, [&] { program.forms.touch<frmI2C_General>().cmdUSBDisconnect_Click(); });
}

void connect_unseen_by_rule(Program& program) {
  unless_held(program, 1, [&] { Mod_Connect_Usb(program); });
  program.runtime.DoEvents();
}
void disconnect_unseen_by_rule(Program& program) {
  unless_held(program, 1, [&] { Mod_Disconnect_USB(program); });
  program.runtime.DoEvents();
}

}  // namespace varzelin
