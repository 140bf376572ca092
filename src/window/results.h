// Text boxes that only show what the program found out.
#pragma once

namespace forms {
class Control;
}

namespace window {

enum class Result {
  none,      // the user enters something here
  shown,     // nothing in the program looks at it
  read_back  // a handler goes on with what stands in the box, so the user may put something else there
};
Result result_of(const forms::Control& box);

}  // namespace window
