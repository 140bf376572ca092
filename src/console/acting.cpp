#include "console/acting.h"

#include <algorithm>
#include <array>

#include "console/names.h"
#include "console/store_commands.h"
#include "console/values.h"
#include "forms/controls.h"
#include "forms/form.h"
#include "forms/grid.h"
#include "forms/user.h"

namespace console {
namespace {

constexpr int by_close_box = 0;  // an unload mode

forms::Control& named_control(Context& context, Arguments& arguments) {
  return find_control(context.program.forms, arguments.text("NAME"));
}

// The control, if it is of that kind.
template <class Kind>
Kind& as(forms::Control& control, const char* kind) {
  auto* own = dynamic_cast<Kind*>(&control);
  if (!own) throw Refused{std::string("not a ") + kind + ": " + path_of(control)};
  return *own;
}

void check_reachable(const forms::Control& control) {
  if (!control.shown()) throw Refused{"not shown: " + path_of(control)};
  for (const forms::Control* around = &control; around; around = around->container()) {
    if (!around->Enabled) throw Refused{"not enabled: " + path_of(control)};
  }
}

[[noreturn]] void refuse_row(int row) {
  throw Refused{"no such row: " + std::to_string(row)};
}

Action click_grid_row(forms::Grid& grid, int row) {
  if (row < 1 || row > grid.Rows()) refuse_row(row);
  return [&grid, row] {
    grid.select_by_user(row, 1);
    for (const auto event : {forms::Event::MouseDown, forms::Event::Click, forms::Event::MouseUp}) {
      grid.raise(event);
    }
  };
}

Action click_row(forms::Control& control, int row) {
  if (auto* grid = dynamic_cast<forms::Grid*>(&control)) return click_grid_row(*grid, row);
  auto& list = as<forms::ListControl>(control, "list");
  if (row < 0 || row >= list.ListCount()) refuse_row(row);
  return [&list, row] { forms::user::click_row(list, row); };
}

forms::Form& visible_form(Context& context, Arguments& arguments) {
  forms::Form& form = find_form(context.program.forms, arguments.text("FORM"));
  arguments.end();
  if (!form.visible()) throw Refused{"not shown: " + form.name()};
  return form;
}

// A command that is no more than one action on one control.
template <class Act>
Action on_control(Context& context, Arguments& arguments, Act act) {
  forms::Control& control = named_control(context, arguments);
  arguments.end();
  check_reachable(control);
  return [&control, act] { act(control); };
}

struct FormEvent {
  std::string_view name;
  void (*raise)(forms::Form&);
};
constexpr std::array form_events{
    FormEvent{"Load", [](forms::Form& form) { form.Form_Load(); }},
    FormEvent{"Activate", [](forms::Form& form) { form.Form_Activate(); }},
    FormEvent{"QueryUnload",
              [](forms::Form& form) {
                bool cancel = false;
                form.Form_QueryUnload(cancel, by_close_box);
              }},
    FormEvent{"Unload",
              [](forms::Form& form) {
                bool cancel = false;
                form.Form_Unload(cancel);
              }},
    FormEvent{"Resize", [](forms::Form& form) { form.Form_Resize(); }},
};

Action form_event(forms::Form& form, const std::string& event, const Arguments& arguments) {
  const auto found = std::ranges::find(form_events, event, &FormEvent::name);
  if (found == form_events.end()) throw Refused{"no such event: " + event};
  arguments.end();
  return [&form, raise = found->raise] {
    form.runtime().keep(form);
    raise(form);
  };
}

Action control_event(forms::Control& control, const std::string& event_name, Arguments& arguments) {
  forms::Event event;
  if (!forms::event_from_name(event_name, event)) throw Refused{"no such event: " + event_name};
  forms::EventArgs args;
  if (event == forms::Event::KeyPress) {
    args.key_ascii = arguments.whole("KEY");
  } else if (event == forms::Event::SelectionChange) {
    args.row = arguments.whole("ROW");
    args.column = arguments.whole("COLUMN");
  }
  arguments.end();
  return [&control, event, args]() mutable { control.raise(event, args); };
}

Action assignment(forms::PropertyBase& property, const std::string& text) {
  return [&property, value = parse_like(property.value(), text)] { property.set_value(value); };
}

[[noreturn]] void refuse_to_set(const DottedName& name) {
  throw Refused{"no such property to set: " + name.text};
}

Action set_of_form(const forms::FormSet& forms, const DottedName& name, const std::string& text) {
  forms::Form& form = find_form(forms, name.first(1));
  const std::string& property = name.parts.back().name;
  if (name.parts.size() == 1) refuse_to_set(name);
  if (property == "Visible") {
    const bool visible = std::get<bool>(parse_like(forms::Value(form.visible()), text));
    return [&form, visible] { visible ? form.Show() : form.Hide(); };
  }
  auto* known = form.find_property(property);
  if (!known) refuse_to_set(name);
  return assignment(*known, text);
}

}  // namespace

Action click(Context& context, Arguments& arguments) {
  forms::Control& control = named_control(context, arguments);
  const bool has_row = arguments.more();
  const int row = has_row ? arguments.whole("N") : 0;
  arguments.end();
  check_reachable(control);
  if (has_row) return click_row(control, row);
  return [&control] { forms::user::click(control); };
}

Action double_click(Context& context, Arguments& arguments) {
  return on_control(context, arguments, forms::user::double_click);
}

Action leave(Context& context, Arguments& arguments) {
  return on_control(context, arguments, forms::user::leave);
}

Action focus(Context& context, Arguments& arguments) {
  return on_control(context, arguments, forms::user::focus);
}

Action enter(Context& context, Arguments& arguments) {
  auto& box = as<forms::TextBox>(named_control(context, arguments), "text box");
  arguments.end();
  check_reachable(box);
  return [&box] { forms::user::enter(box); };
}

Action type(Context& context, Arguments& arguments) {
  auto& box = as<forms::TextBox>(named_control(context, arguments), "text box");
  std::string text = arguments.text("TEXT");
  arguments.end();
  check_reachable(box);
  return [&box, text = std::move(text)] { forms::user::type(box, text); };
}

Action fill(Context& context, Arguments& arguments) {
  auto& box = as<forms::TextBox>(named_control(context, arguments), "text box");
  std::string text = arguments.text("TEXT");
  arguments.end();
  check_reachable(box);
  return [&box, text = std::move(text)] { forms::user::fill(box, text); };
}

Action scroll(Context& context, Arguments& arguments) {
  auto& bar = as<forms::ScrollBar>(named_control(context, arguments), "scroll bar");
  const int position = arguments.whole("N");
  arguments.end();
  check_reachable(bar);
  const auto [low, high] = std::minmax(bar.Min.get(), bar.Max.get());
  if (position < low || position > high) throw Refused{"out of range: " + std::to_string(position)};
  return [&bar, position] { forms::user::scroll(bar, position); };
}

Action bring_to_front(Context& context, Arguments& arguments) {
  forms::Form& form = visible_form(context, arguments);
  return [&form] { form.Show(); };
}

Action close_form(Context& context, Arguments& arguments) {
  forms::Form& form = visible_form(context, arguments);
  return [&form] { form.set().unload(form, by_close_box); };
}

Action raise_event(Context& context, Arguments& arguments) {
  const DottedName name(arguments.text("NAME"));
  const std::string event = arguments.text("EVENT");
  if (name.parts.size() == 1) {
    return form_event(find_form(context.program.forms, name.text), event, arguments);
  }
  return control_event(find_control(context.program.forms, name.text), event, arguments);
}

Action set(Context& context, Arguments& arguments) {
  const DottedName name(arguments.text("NAME.PROPERTY"));
  const std::string text = arguments.text("VALUE");
  arguments.end();
  if (is_store_name(name)) return set_variable(context, name, text);
  if (name.parts.size() < 3) return set_of_form(context.program.forms, name, text);
  forms::Control& control = find_control(context.program.forms, name);
  const bool plain = name.parts.size() == 3 && name.parts[2].indices.empty();
  auto* property = plain ? control.find_property(name.parts[2].name) : nullptr;
  if (!property) refuse_to_set(name);
  return assignment(*property, text);
}

}  // namespace console
