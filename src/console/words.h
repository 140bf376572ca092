// A line taken apart into words.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace console {

// Words are separated by blanks and tabs. A word that begins with a double quote is a JSON string and
// ends at its closing quote. Throws Refused for a string that isn't well-formed.
std::vector<std::string> split_words(std::string_view line);

}  // namespace console
