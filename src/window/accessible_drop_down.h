// A drop-down in the accessibility tree: its name, its choice, and rows that can be pressed. Qt's own rows
// can only be marked, which chooses nothing.
#pragma once

class QAbstractItemView;
class QAccessibleInterface;
class QComboBox;

namespace window {

QAccessibleInterface* accessible_drop_down(QComboBox& drop_down);
QAccessibleInterface* rows_of_drop_down(QAbstractItemView& list);

}  // namespace window
