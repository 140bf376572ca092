// The shared variables: `get store.NAME` and `set store.NAME VALUE`.
#pragma once

#include "console/context.h"
#include "console/names.h"

namespace console {

// Whether a name is that of a shared variable, known or not.
bool is_store_name(const DottedName& name);

void get_variable(Context& context, const DottedName& name, Json& answer);
Action set_variable(Context& context, const DottedName& name, const std::string& text);

}  // namespace console
