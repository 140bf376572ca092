// What the accessibility tree is told where Qt's own words for a widget don't do: option buttons that don't
// exclude each other by themselves, lamps, labels whose text is a value, the log, drop-downs and their rows,
// and windows without a menu.
#pragma once

namespace window {

// Once for an application.
void install_accessibility();

}  // namespace window
