#include "panels/single_channel/calculator_block.h"

namespace varzelin {

void CalculatorBlock::show(const Calculation& calculation) {
  txtClockCounts2.Text = calculation.clock_counts;
  txtFOSC_Freq.Text = calculation.oscillator_khz;
  txtFoscPeriod.Text = calculation.period_ms;
  txtCalcITIme.Text = calculation.integration_ms;
  txtFSR.Text = calculation.full_scale_lux;
  txtFSR2.Text = calculation.full_scale_lux;
  if (calculation.lux_factor) txtLFactor.Text = forms::CStr(*calculation.lux_factor);
}

}  // namespace varzelin
