// What holds for every session on the console, whatever its user clicks and its board does. Used by the
// fuzzer and by the test that replays its corpus.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace varzelin::fuzz {

// Works the whole program through its console on a simulated board: the bytes choose among the panels, the
// controls that are there, what is typed into them, and what goes wrong on the board. Gives the lines of the
// session, for whoever wants to repeat it by hand. Every line is answered once, and the program ends. Aborts,
// with the session on standard error, when a promise is broken. Files that the session writes go to a folder
// that goes with it.
std::vector<std::string> check_console_session(std::string_view bytes);

}  // namespace varzelin::fuzz
