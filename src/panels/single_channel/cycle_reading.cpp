#include "panels/single_channel/cycle_reading.h"

namespace varzelin {

void CycleReading::show(std::size_t low_index) {
  TextBox& low = panel.txtSampleByte(3);
  TextBox& high = panel.txtSampleByte(4);
  low.Text = forms::Hex2(panel.reply(low_index));
  high.Text = forms::Hex(panel.reply(low_index + 1));
  SensorPanel::show_count_of_bytes(high, low, txtICycHex, txtICYCDec);
  if (txtICycHex.Text == "000") txtICycHex.Text = "00";
}

}  // namespace varzelin
