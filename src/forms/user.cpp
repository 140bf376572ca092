#include "forms/user.h"

#include "forms/controls.h"

namespace forms::user {

void click(Control& control) {
  if (auto* option = dynamic_cast<OptionButton*>(&control)) {
    option->select_quietly();
  } else if (auto* box = dynamic_cast<CheckBox*>(&control)) {
    box->Value = box->Value == 0 ? 1 : 0;  // raises Click itself
    return;
  }
  control.raise(Event::Click);
}

void click_row(ListControl& list, int row) {
  list.select_quietly(row);
  if (auto* combo = dynamic_cast<ComboBox*>(&list)) combo->Text = combo->List(row);
  list.raise(Event::MouseDown);
  list.raise(Event::Click);
  list.raise(Event::MouseUp);
}

void double_click(Control& control) {
  control.raise(Event::DblClick);
}

int press_key(TextBox& box, int key_ascii) {
  EventArgs args;
  args.key_ascii = key_ascii;
  box.raise(Event::KeyPress, args);
  return args.key_ascii;
}

void type(TextBox& box, std::string_view text) {
  for (const char character : text) {
    const int key = press_key(box, static_cast<unsigned char>(character));
    if (key == vbKeyBack) {
      if (!box.Text.get().empty()) box.Text = box.Text.get().substr(0, box.Text.get().size() - 1);
    } else if (key == vbKeyReturn && box.MultiLine) {
      box.Text.append("\r\n");
    } else if (key != 0 && key != vbKeyReturn) {
      const char entered = static_cast<char>(key);
      box.Text.append({&entered, 1});
    }
  }
}

void enter(TextBox& box) {
  type(box, "\r");
}

void fill(TextBox& box, const std::string& text) {
  box.Text = text;
}

void leave(Control& control) {
  control.raise(Event::LostFocus);
}

void focus(Control& control) {
  control.raise(Event::GotFocus);
}

void scroll(ScrollBar& bar, int value) {
  bar.Value = value;
}

}  // namespace forms::user
