// Commands that look at the program and change nothing.
#pragma once

#include "console/context.h"

namespace console {

void get(Context& context, Arguments& arguments, Json& answer);
void list_forms(Context& context, Arguments& arguments, Json& answer);
void list_controls(Context& context, Arguments& arguments, Json& answer);
void pixel(Context& context, Arguments& arguments, Json& answer);
void picture(Context& context, Arguments& arguments, Json& answer);
void shown(Context& context, Arguments& arguments, Json& answer);
void clock(Context& context, Arguments& arguments, Json& answer);
void packets(Context& context, Arguments& arguments, Json& answer);
void driver_calls(Context& context, Arguments& arguments, Json& answer);

}  // namespace console
