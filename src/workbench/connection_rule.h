// The connection rule: an action opens the session before its first transfer and closes it after its
// last, unless the user or a loop holds the session (Man_Usb_Conn).
#pragma once

#include "bridge/program.h"

namespace varzelin {

// With the workbench's buttons, so that its lamps show the session. `yields` follow what was done; none
// follow when the session is held.
void connect_by_rule(Program& program, int yields = 1);
void disconnect_by_rule(Program& program, int yields = 1);

// Without the workbench. One yield follows what was done, and one more comes in any case.
void connect_unseen_by_rule(Program& program);
void disconnect_unseen_by_rule(Program& program);

}  // namespace varzelin
