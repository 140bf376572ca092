// The colours that lamps and rows show.
#pragma once

#include "forms/color.h"

namespace varzelin::testing {

inline const forms::Color black = forms::QBColor(0);
inline const forms::Color dark_green = forms::QBColor(2);
inline const forms::Color light_green = forms::QBColor(10);
inline const forms::Color red = forms::QBColor(12);

}  // namespace varzelin::testing
