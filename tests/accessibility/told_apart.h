// What every window promises to somebody who hears it.
#pragma once

#include "tree.h"

namespace varzelin::testing {

// Everything that can be worked has a name, one of its own in the window; a lamp says what its colour means;
// nothing that only holds others has a name.
void expect_told_apart(const Part& window);
// How many lamps there are.
int lamps_of(const Part& window);

}  // namespace varzelin::testing
