// How the multi-function panels sample and collect.
#include "panels/multi_function/multi_function_panel.h"
#include "registers/kvt71385.h"
#include "waveform/trace.h"

namespace varzelin {
namespace {

namespace map = registers::kvt71385;

constexpr int sync_lamp = 12;  // element of ShpInd
constexpr int result_reply = 5;

}  // namespace

SignedCount MultiFunctionPanel::decode(int low, int high) {
  return store.ProxMode != 0 && store.ProxScheme != 0 ? decode_proximity(low, high) : plain_count(low, high);
}

// Also of readings without a sign: twelve bits lose what they have no meaning for.
SignedCount MultiFunctionPanel::decode_proximity(int low, int high) {
  if (store.AdcBits == 16) {
    store.SignMask = 0x7FFF;
    store.SignBit = sign_bit_16;
  }
  if (store.AdcBits == 12) {
    store.SignMask = 0x07FF;
    store.SignBit = sign_bit_12;
  }
  if (store.ProxScheme == 1) return twos_complement(low, high, store.SignBit, store.SignMask);
  return plain_count(low, meant_of_high(high, store.SignBit));
}

void MultiFunctionPanel::Trig_KVT7134X() {
  if (store.InternalTiming == 0) {
    flip_lamp(ShpInd(sync_lamp));
    command_write(map::sync.byte, AddressForm::read);
  }
  store.TriggerDone = true_flag;
}

// --- the timed loop ---

void MultiFunctionPanel::prepare_sampling() {
  txtADHex.Visible = true;
}

void MultiFunctionPanel::fetch_sample() {
  if (store.ProxIRMode == 0 && store.CoverMode == 0) {
    Record_Triggered_Light_Count();
    return;
  }
  txtADHex.Text = txtProx_IR(6).Text.get();
  if (const auto difference = pair_difference()) store.Sample_Value[slot()] = *difference;
  txtADDec.Text = std::to_string(store.Sample_Value[slot()]);
}

void MultiFunctionPanel::sampling_pass_ends() {
  if (store.CoverMode != 0 && cover) {
    cover->cmdALS_IR_Click();
    txtADDec.Visible = false;
    txtADHex.Visible = false;
  }
  if (pin.ChkSampleInt.Value == 1) pin.cmdSampleInterrupt_Click();
}

void MultiFunctionPanel::Record_Triggered_Light_Count() {
  connect_by_rule();
  read_registers(map::result_register, result_reply);
  const SignedCount count =
      store.ProxMode != 0 ? decode_proximity(reply(1), reply(2)) : plain_count(reply(1), reply(2));
  store.ReadingSign = static_cast<std::int16_t>(count.sign);
  if (store.ReadAdc != 0 || store.ReadTimeBase != 0) store_sample(count);
  disconnect_by_rule();
  store.TriggerDone = false_flag;
}

void MultiFunctionPanel::store_sample(SignedCount count) {
  store.Sample_Value[slot()] = count.value;
  txtReading.Text = std::to_string(count.value);
  txtSampleByte(0).Text = forms::Hex(reply(0));
  txtSampleByte(1).Text = forms::Hex2(reply(1));
  txtSampleByte(2).Text = forms::Hex(reply(2));
  txtADHex.Text = txtSampleByte(2).Text + txtSampleByte(1).Text;
  txtADDec.Text = std::to_string(count.value);
}

void MultiFunctionPanel::Record_Prox_IR() {
  constexpr int negative_from = 129;
  connect_by_rule();
  read_registers(map::result_register, result_reply);
  const SignedCount count = signed_readings() ? inverted_magnitude(reply(1), reply(2), negative_from)
                                              : plain_count(reply(1), reply(2));
  store.ReadingSign = static_cast<std::int16_t>(count.sign);
  if (store.ReadAdc != 0) store_sample(count);
  if (store.ReadTimeBase != 0) {
    store.Sample_Value2[slot()] = store.RawReading2;
    txtReading2.Text = std::to_string(store.RawReading2);
    txtSampleByte(3).Text = forms::Hex2(reply(1));
    txtSampleByte(4).Text = forms::Hex(reply(2));
  }
  disconnect_by_rule();
  store.TriggerDone = false_flag;
}

// --- real time ---

void MultiFunctionPanel::collection_starts() {
  ConverterPanel::collection_starts();
  history.restart();
}

Measurement MultiFunctionPanel::measure() {
  Measurement result{.value = store.Reading, .raw = store.RawReading, .reading = store.Reading};
  const bool covered = store.CoverMode != 0 && cover;
  if (!covered && store.ProxIRMode == 0) result = plain_measurement();
  if (covered) result = cover_measurement();
  if (store.ProxIRMode != 0) result = pair_measurement(result.reading);
  return result;
}

Measurement MultiFunctionPanel::cover_measurement() {
  store.LuxMode = false_flag;
  forms::resume_next([this] { cover->cmdALS_IR_Click(); });
  std::int32_t lux = store.Sample_Value[slot()];
  forms::resume_next([&] { lux = forms::CLng(store.LuxCover); });
  txtReading.Text = std::to_string(lux);
  txtADCRaw.Text = std::to_string(store.CoverAlsCount);
  store.TripReading = lux;
  return {.value = lux, .raw = store.RawReading, .reading = lux};
}

// The second readings begin with the latest difference, wherever the first ones are.
Measurement MultiFunctionPanel::pair_result(std::int32_t difference) {
  store.Sample_Value2[0] = difference;
  return ConverterPanel::pair_result(difference);
}

void MultiFunctionPanel::run_collection_work() {
  if (store.CoverMode == 0) {
    forms::resume_next([this] { history.take(txtADCRaw.Text, last_result_.low, last_result_.high); });
  }
  if (pin.ChkSampleInt.Value == 1) forms::resume_next([this] { pin.cmdSampleInterrupt_Click(); });
  ConverterPanel::run_collection_work();
}

// On the span that the collection began with, though the scale may have been changed meanwhile.
std::int32_t MultiFunctionPanel::signed_row() {
  double above = store.Reading;
  const double offset = subtraction ? subtraction->offset() : 0;
  if (offset > 0) {
    above -= offset;
    store.Reading = forms::CLng(above);
  }
  if (collection_span_ == 0) forms::raise_error(forms::division_by_zero);
  if (store.Scale_Min < 0) above = store.Reading + std::abs(static_cast<double>(store.Scale_Min));
  if (store.Scale_Min > 0) above = store.Reading - static_cast<double>(store.Scale_Min);
  return limited_row(forms::CLng(plot_rows - above * (static_cast<double>(plot_rows) / collection_span_)));
}

void MultiFunctionPanel::end_pass() {
  ConverterPanel::end_pass();
  if (store.InternalTiming == 0) txtReading2.Text = std::to_string(store.RawReading2);
}

void MultiFunctionPanel::collection_ended() {
  if (loaded()) OptMeasure(0).Value = true;
}

}  // namespace varzelin
