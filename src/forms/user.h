// What a user's actions do to a control, for the front ends: the change of the control and the events
// that come of it. Handlers run in the caller's stack, so call these from the message loop.
#pragma once

#include <string>
#include <string_view>

namespace forms {

class Control;
class ListControl;
class ScrollBar;
class TextBox;

namespace user {

// A button or a menu entry raises Click; an option button is selected, a check box turned over, then
// Click; any other control raises Click.
void click(Control& control);
// Selects a row of a list or a drop-down (from 0), then raises MouseDown, Click and MouseUp. Raises
// invalid_property_value for a row that doesn't exist.
void click_row(ListControl& list, int row);
void double_click(Control& control);
// A key press: gives what the handler left of the key (0: swallowed).
int press_key(TextBox& box, int key_ascii);
// Each character as a key press at the end of the box; what the handler lets pass is entered. A
// backspace takes the last character away.
void type(TextBox& box, std::string_view text);
// The Enter key, which enters no character in a single line.
void enter(TextBox& box);
// Replaces the text, as a user who types over it.
void fill(TextBox& box, const std::string& text);
void leave(Control& control);
void focus(Control& control);
void scroll(ScrollBar& bar, int value);

}  // namespace user
}  // namespace forms
