// Groups of option buttons and check boxes.
#pragma once

#include <QString>
#include <string_view>

class QGridLayout;
class QGroupBox;

namespace window {

class Arranger;

// The elements that the form has of a control array, whatever their numbers, from top to bottom in so many
// columns.
QGridLayout* elements(Arranger& place, std::string_view array, int columns = 1);

// They in the frame control that they belong to.
QGroupBox* option_frame(Arranger& place, std::string_view frame, std::string_view array, int columns = 1);
// They in a group that only the layout knows.
QGroupBox* option_group(Arranger& place, const QString& title, std::string_view array, int columns = 1);

}  // namespace window
