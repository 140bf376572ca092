// The single-channel sensors' differences in what all panels share.
#pragma once

#include "panels/common/panel_model.h"

namespace varzelin {

extern const PanelModel kvt71346_model;

}  // namespace varzelin
