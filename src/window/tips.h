// Tool tips for the controls that have none of their own, in one table. They are the window's: the controls
// keep theirs as they are.
#pragma once

#include <QString>

#include "forms/control.h"

namespace window {

// Empty for a control that the table doesn't have.
QString tip_of(const forms::Control& control);

}  // namespace window
