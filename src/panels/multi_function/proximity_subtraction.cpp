#include "panels/multi_function/proximity_subtraction.h"

#include <algorithm>

#include "panels/multi_function/proximity_offset.h"

namespace varzelin {

ProximitySubtraction::ProximitySubtraction(Program& owner, ConverterPanel& of_panel)
    : PartOf(owner, of_panel) {
  on(ChkSubract, Event::Click, &ProximitySubtraction::ChkSubract_Click);
  on(lblOffset, Event::DblClick, &ProximitySubtraction::lblOffset_DblClick);
}

void ProximitySubtraction::lblOffset_DblClick() {
  form<frmProxOff>().Show();
}

// The constants are those of 12 bits: two a current, without modulation and with it.
void ProximitySubtraction::Tally_Prox_Offset() {
  constexpr int width_12_bits = 1;
  constexpr int modulated = 3;
  constexpr int currents = 4;
  lblOffset.Caption = "0";
  if (!panel.OptITime(width_12_bits).Value) return;
  for (int current = 0; current < currents; ++current) {
    if (!panel.OptPSrc(current).Value) continue;
    const int constant = 2 * current + (panel.OptMFreq(modulated).Value ? 1 : 0);
    lblOffset.Caption = form<frmProxOff>().txtProxOff(constant).Text.get();
  }
}

double ProximitySubtraction::offset() const {
  return ChkSubract.Value == 1 ? std::max(0.0, forms::Val(lblOffset.Caption)) : 0;
}

}  // namespace varzelin
