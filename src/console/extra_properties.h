// What can be looked at on a control besides its properties: rows, cells, printed texts.
#pragma once

#include <vector>

#include "console/json.h"
#include "forms/control.h"

namespace console {

// False when the control has nothing of that name and number of indices. Throws forms::RunTimeError
// for an index outside.
bool write_extra(const forms::Control& control, std::string_view name, const std::vector<int>& indices,
                 Json& answer);

// Those that belong into a listing of the control, as members of an object.
void write_listed_extras(const forms::Control& control, Json& answer);

}  // namespace console
