#include "console/looking.h"

#include <algorithm>
#include <fstream>

#include "console/extra_properties.h"
#include "console/names.h"
#include "console/store_commands.h"
#include "console/values.h"
#include "forms/form.h"
#include "forms/picture.h"
#include "shell/start_panel.h"

namespace console {
namespace {

[[noreturn]] void refuse_property(const DottedName& name) {
  throw Refused{"no such property: " + name.text};
}

void get_of_form(const forms::FormSet& forms, const DottedName& name, Json& answer) {
  const std::string_view whole = name.text;
  const std::string_view property = name.parts.size() == 2 ? whole.substr(name.first(1).size() + 1) : "";
  if (property == "Loaded") {
    const std::string form(name.first(1));
    const bool not_built_yet =
        !forms.knows(form) &&
        std::ranges::any_of(varzelin::model_list, [&](const auto& row) { return form == row.panel; });
    answer.value(!not_built_yet && find_known_form(forms, form) != nullptr);
    return;
  }
  const forms::Form& form = find_form(forms, name.first(1));
  if (property == "Visible") {
    answer.value(form.visible());
  } else if (const auto* known = form.find_property(property)) {
    write(answer, known->value());
  } else {
    refuse_property(name);
  }
}

void get_of_control(const forms::Control& control, const DottedName& name, Json& answer) {
  const NamePart& property = name.parts[2];
  if (property.indices.empty()) {
    if (const auto* known = control.find_property(property.name)) {
      write(answer, known->value());
      return;
    }
  }
  try {
    if (!write_extra(control, property.name, property.indices, answer)) refuse_property(name);
  } catch (const forms::RunTimeError&) {
    refuse_element(name.text);
  }
}

const forms::PictureBox& find_picture(Context& context, const std::string& name) {
  const auto* picture = dynamic_cast<const forms::PictureBox*>(&find_control(context.program.forms, name));
  if (!picture) throw Refused{"not a picture: " + name};
  return *picture;
}

}  // namespace

void get(Context& context, Arguments& arguments, Json& answer) {
  const DottedName name(arguments.text("NAME.PROPERTY"));
  arguments.end();
  const forms::FormSet& forms = context.program.forms;
  if (is_store_name(name)) {
    get_variable(context, name, answer);
  } else if (name.parts.size() < 3) {
    get_of_form(forms, name, answer);
  } else {
    const forms::Control& control = find_control(forms, name);
    if (name.parts.size() > 3) refuse_property(name);
    get_of_control(control, name, answer);
  }
}

void list_forms(Context& context, Arguments& arguments, Json& answer) {
  arguments.end();
  answer.begin_array();
  for (const forms::Form* form : context.program.forms.all_loaded()) {
    answer.begin_object()
        .member("name", form->name())
        .member("visible", form->visible())
        .member("caption", form->Caption.get())
        .end_object();
  }
  answer.end_array();
}

void list_controls(Context& context, Arguments& arguments, Json& answer) {
  const forms::Form& form = find_form(context.program.forms, arguments.text("FORM"));
  arguments.end();
  answer.begin_array();
  for (const forms::Control* control : form.controls()) {
    answer.begin_object().member("name", control->full_name());
    answer.member("kind", forms::kind_name(control->kind()));
    for (const forms::PropertyBase* property : control->properties()) {
      answer.key(property->name());
      write(answer, property->value());
    }
    write_listed_extras(*control, answer);
    answer.end_object();
  }
  answer.end_array();
}

void pixel(Context& context, Arguments& arguments, Json& answer) {
  const forms::PictureBox& surface = find_picture(context, arguments.text("NAME"));
  const int x = arguments.whole("X");
  const int y = arguments.whole("Y");
  arguments.end();
  const std::int32_t color = surface.GetPixel(x, y);
  if (color == forms::PictureBox::invalid_color) {
    throw Refused{"outside the picture: " + std::to_string(x) + " " + std::to_string(y)};
  }
  answer.value(forms::html({static_cast<std::uint32_t>(color)}));
}

void picture(Context& context, Arguments& arguments, Json&) {
  const forms::PictureBox& surface = find_picture(context, arguments.text("NAME"));
  const std::string path = arguments.text("FILE");
  arguments.end();
  std::string bytes =
      "P6\n" + std::to_string(surface.ScaleWidth()) + " " + std::to_string(surface.ScaleHeight()) + "\n255\n";
  for (const std::uint32_t color : surface.pixels()) {
    for (const int shift : {0, 8, 16}) bytes += static_cast<char>(color >> shift & 0xFF);
  }
  std::ofstream file(path, std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (!file) throw Refused{"cannot write: " + path};
}

void shown(Context& context, Arguments& arguments, Json& answer) {
  const DottedName name(arguments.text("NAME"));
  arguments.end();
  const forms::FormSet& forms = context.program.forms;
  if (name.parts.size() == 1) {
    answer.value(find_form(forms, name.text).visible());
  } else {
    answer.value(find_control(forms, name.text).shown());
  }
}

void clock(Context& context, Arguments& arguments, Json& answer) {
  arguments.end();
  answer.value(milliseconds(context.program.runtime.clock().now()));
}

void packets(Context& context, Arguments& arguments, Json& answer) {
  arguments.end();
  context.calls.write_packets(answer);
}

void driver_calls(Context& context, Arguments& arguments, Json& answer) {
  arguments.end();
  context.calls.write_calls(answer);
}

}  // namespace console
