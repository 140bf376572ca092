// The keys that press buttons and open menus together with Alt.
#pragma once

#include <vector>

class QAbstractButton;
class QLabel;
class QWidget;

namespace window {

// Marks a letter or a digit in the caption of each push button, each menu of the window's menu bar, and each
// label with a buddy, that has none yet: none twice among those that can be in sight together, which the
// pages of one stack can't, nor what may_share_keys() was told of. Called again after a caption changed it
// moves other marks of its own only where none is free. A button of a group has none.
void mark_keys(QWidget& window);

// Tells of two that are never in sight together.
void may_share_keys(QWidget& one, QWidget& other);

// For buttons that are too many, and too much alike, for keys of their own: the label's key brings the focus
// to the first, and the arrow keys go on among them.
void lead_to(QLabel& label, QAbstractButton& first);
void go_by_arrows(const std::vector<QAbstractButton*>& buttons);

}  // namespace window
