// The keys that press buttons and open menus together with Alt.
#pragma once

class QWidget;

namespace window {

// Marks a letter in the caption of each push button and each menu of the window's menu bar that has none yet,
// no letter twice. A button stays without where more of them than letters are there, and none of its own is
// free. Marks stay as long as their captions.
void mark_keys(QWidget& window);

}  // namespace window
