// How a command says no: it throws, nothing was done, and the line is answered by "error TEXT".
#pragma once

#include <string>

namespace console {

struct Refused {
  std::string text;
};

}  // namespace console
