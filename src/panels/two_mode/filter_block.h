// The proximity filter of a panel: its settings, what it makes of a pair, and its lamps.
#pragma once

#include "panels/common/panel_part.h"
#include "panels/two_mode/proximity_filter.h"

namespace varzelin {

class FilterBlock : public PanelPart {
 public:
  FilterBlock(Program& owner, RegisterPanel& of_panel, Frame& frame);

  // A collection begins.
  void restart();
  // The filtered count of a pair. None while the first passes of a collection prime it, and where it can't be
  // worked out.
  std::optional<std::int32_t> filtered(const ProximityPair& pair);
  // Where a reading in display units stands to the thresholds.
  void show_thresholds(std::int32_t reading);

 private:
  ProximityFilterSettings settings() const;
  ProximityFilterState state() const;
  void keep(const ProximityFilterState& state);
  void show(const LampChanges& changes);

 public:
  ControlArray<Label> lblFilter;
  TextBox txtProxLowLimit;
  TextBox txtProxHighLimit;
  TextBox txtProxDelta;
  TextBox txtProxConstant;
  TextBox txtCorrectThreshold;
  TextBox txtCorrectionConstant;
  TextBox txtProx_Weight;
  TextBox txtProxGrossDelta;
  TextBox txtHighThreshold;
  TextBox txtLowThreshold;
  TextBox txtProxADJ;
  TextBox txtMaxChange;
  Label lblProxOvercount;
  ControlArray<TextBox> txtPROXGross;
};

}  // namespace varzelin
