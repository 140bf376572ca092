// Names for a screen reader where neither a caption nor the layout gives one.
#pragma once

#include <string_view>

namespace window {

// Empty for a control that needs none. `form` may be a second instance ("frmScriptOps#2").
std::string_view name_of(std::string_view form, std::string_view control);

}  // namespace window
