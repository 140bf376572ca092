// KVT71346 and KVT71347 in what all panels share.
#pragma once

#include "panels/common/panel_model.h"

namespace varzelin {

extern const PanelModel kvt71346_model;

}  // namespace varzelin
