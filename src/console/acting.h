// Commands that act as the user, and the two that reach what no user reaches.
#pragma once

#include "console/context.h"

namespace console {

Action click(Context& context, Arguments& arguments);
Action double_click(Context& context, Arguments& arguments);
Action type(Context& context, Arguments& arguments);
Action enter(Context& context, Arguments& arguments);
Action fill(Context& context, Arguments& arguments);
Action leave(Context& context, Arguments& arguments);
Action focus(Context& context, Arguments& arguments);
Action scroll(Context& context, Arguments& arguments);
Action bring_to_front(Context& context, Arguments& arguments);
Action close_form(Context& context, Arguments& arguments);

Action raise_event(Context& context, Arguments& arguments);
Action set(Context& context, Arguments& arguments);

}  // namespace console
