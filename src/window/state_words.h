// A form's work in words, for its status line.
#pragma once

#include <QString>

#include "bridge/run_state.h"

namespace window {

QString state_words(const varzelin::RunState& state);
QString state_words(const varzelin::ScriptState& state);

}  // namespace window
