// The chart: the plot on the picture with its labels.
#pragma once

#include <string_view>

class QWidget;

namespace window {

class Arranger;

QWidget* chart(Arranger& place, std::string_view labels = "Picture2", std::string_view plot = "Picture1");

}  // namespace window
