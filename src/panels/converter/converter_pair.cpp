// Proximity minus infrared, measured as a pair of single conversions that the host commands past the image.
#include "panels/converter/converter_panel.h"

namespace varzelin {
namespace {

constexpr int infrared_once = 0x40;
constexpr int proximity_once = 0x60;
constexpr int inverted_scheme = 0x01;
constexpr int power_down = 0x00;
// Timing, time base and one bit of the persistence stay as they are in the image.
constexpr int kept_bits = 0x1E;

// From here on a proximity byte has a sign. At 128 itself it hasn't, other than in a plain reading.
constexpr int negative_from = 129;

constexpr std::int32_t out_of_range = -9999;
constexpr int result_register = 2;
constexpr int result_reply = 5;

// A button that can't be pressed while what it does is done, however that ends.
struct Disabled {
  explicit Disabled(CommandButton& of_button) : button(of_button) { button.Enabled = false; }
  ~Disabled() { button.Enabled = true; }
  CommandButton& button;
};

}  // namespace

int ConverterPanel::pair_command() const {
  return store.RegImage[0] & kept_bits;
}

void ConverterPanel::take_sample_delay() {
  store.SampleDelayMs = forms::CInt(forms::Val(txtSampling_Delay.Text));
}

bool ConverterPanel::convert(int command, Bytes& result) {
  register_write(0, command);
  return !stopped_by_failure() && fetch_converted(result);
}

bool ConverterPanel::write_between_yields(int command) {
  DoEvents();
  register_write(0, command);
  DoEvents();
  return !stopped_by_failure();
}

bool ConverterPanel::fetch_converted(Bytes& result) {
  DoEvents();
  if (store.SampleDelayMs > 0) Sleep(store.SampleDelayMs);
  DoEvents();
  store.I2C_RdCnt = 2;
  exchange({store.I2C_RdCnt, store.I2C_RdAdr, result_register}, result_reply, sensor_route(),
           converter_.pair.stops_at_failure ? BehindFailure::stops : BehindFailure::fetches_reply);
  if (stopped_by_failure()) return false;
  result = last_result_ = {.low = reply(1), .high = reply(2)};
  return true;
}

void ConverterPanel::cmdProx_IR_Click() {
  const Disabled meanwhile(cmdProx_IR);
  const int base = pair_command();
  store.IR_Cmd = static_cast<std::uint8_t>(base | infrared_once);
  store.Prox_Cmd =
      static_cast<std::uint8_t>(base | proximity_once | (store.ProxScheme == 1 ? inverted_scheme : 0));
  DoEvents(2);  // before the box, which a loop may fail over again and again
  take_sample_delay();
  connect_by_rule();
  measure_pair();
  disconnect_by_rule();
}

void ConverterPanel::measure_pair() {
  Bytes proximity;
  Bytes infrared;
  if (!convert(store.Prox_Cmd, proximity)) return;
  if (converter_.pair.powers_down) {
    if (!write_between_yields(store.IR_Cmd) || !fetch_converted(infrared)) return;
    if (!write_between_yields(power_down)) return;
    DoEvents();
  } else if (!convert(store.IR_Cmd, infrared)) {
    return;
  }
  show_pair(proximity, infrared);
}

void ConverterPanel::show_pair(const Bytes& proximity, const Bytes& infrared) {
  txtProx_IR(0).Text = forms::Hex2(proximity.high);
  txtProx_IR(1).Text = forms::Hex2(proximity.low);
  txtProx_IR(2).Text = forms::Hex2(infrared.high);
  txtProx_IR(3).Text = forms::Hex2(infrared.low);
  store.IrCount = plain_count(infrared.low, infrared.high).value;
  const SignedCount count = store.ProxScheme == 1
                                ? inverted_magnitude(proximity.low, proximity.high, negative_from)
                                : plain_count(proximity.low, proximity.high);
  store.ProxCount = count.value;
  store.ReadingSign = static_cast<std::int16_t>(count.sign);
  store.ProxMinusIr = store.ProxCount - store.IrCount;
  txtProx_IR(4).Text = std::to_string(store.ProxCount);
  txtProx_IR(5).Text = std::to_string(store.IrCount);
  txtProx_IR(6).Text = std::to_string(store.ProxMinusIr);
  show_over_range(0, store.ProxCount);
  show_over_range(1, store.IrCount);
}

void ConverterPanel::show_over_range(int lamp_number, std::int32_t count) {
  const bool over = count == store.FullCount;
  ShpOVRange(lamp_number).FillColor = lamp(over ? store.Clr_Red : store.Clr_LtGreen);
  if (!over) return;
  txtProx_IR(6).Text = "NA";
  store.ProxMinusIr = out_of_range;
}

std::optional<std::int32_t> ConverterPanel::pair_difference() const {
  const std::string& text = txtProx_IR(6).Text;
  if (!forms::IsNumeric(text)) return std::nullopt;
  return forms::CLng(forms::Val(text));
}

}  // namespace varzelin
