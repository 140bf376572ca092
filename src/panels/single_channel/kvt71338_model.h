// KVT71338 in what all panels share.
#pragma once

#include <array>

#include "panels/common/panel_model.h"
#include "panels/common/register_panel.h"

namespace varzelin {

extern const PanelModel kvt71338_model;
// The command register is the only one that is written.
extern const std::array<RegisterWrite, 1> kvt71338_writes;

}  // namespace varzelin
