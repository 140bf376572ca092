#include "panels/multi_function/multi_function_model.h"

#include "registers/kvt71385.h"

namespace varzelin {
namespace {

namespace map = registers::kvt71385;

constexpr ConverterFields fields{.operation = map::operation,
                                 .external_timing = map::external_timing,
                                 .time_base = map::time_base,
                                 .scheme = map::scheme,
                                 .modulation = map::modulation,
                                 .current = map::current,
                                 .width = map::width,
                                 .range = map::range,
                                 .modulation_values = {0, 0, 0, 1},
                                 .current_values = {3, 2, 1, 0}};

constexpr Option power_down{0, "Power Down"};
constexpr Option als_once{1, "ALS Once"};
constexpr Option ir_once{2, "IR Once"};
constexpr Option proximity_once{3, "Prox. Once"};
constexpr Option pair{4, "Prox-IR External Calculated"};
constexpr Option als_continuous{5, "ALS Cont."};
constexpr Option ir_continuous{6, "IR Cont"};
constexpr Option proximity_continuous{7, "Prox. Cont"};

// What all of them have. A write goes out under the read form of the address: the board takes it so.
ConverterModel converter(const char* form_name, const char* title, const char* device) {
  return {.panel = {.form_name = form_name,
                    .title = title,
                    .interval = "10",
                    .scale = "4095",
                    .scale_addition = 1,
                    .devices = {{device, 0x88}},
                    .sample_caption = "Start",
                    .shown_reply_bytes = 5,
                    .write_address = AddressForm::read,
                    .heartbeat = false,
                    .yields_at_end = 3000},
          .fields = &fields,
          .writes = {{.pending = &Store::PendingWriteR0, .yields_before = 2, .only_with_events = true},
                     {.pending = &Store::PendingWriteR1, .yields_before = 3, .only_with_events = true}},
          .boxes = {.written = {0, 1, 2, 3, 4, 5, 6, 7, 8},
                    .read = {0, 1, 2, 3, 4, 5, 6, 7, 8},
                    .lamps = {2, 3, 4, 12}},
          .measurements = {power_down, als_once, ir_once, proximity_once, pair, als_continuous, ir_continuous,
                           proximity_continuous},
          .modulations = {{0, "DC"}, {3, "327.7"}},
          .modes = {{2, "Test Comm"}},
          .command_caption = "Write Operation r0",
          .control_caption = "Write Configuration  r1",
          .syncs = 1,
          .collected_measurement = als_continuous.position,
          .reads_by_gain = false,
          .range_modes_exclude = true,
          .pair = {.stops_at_failure = false, .powers_down = false}};
}

MultiFunctionModel kvt71385() {
  MultiFunctionModel model{
      .converter = converter(kvt71385_form_name, "KVT71385  Multi-Function  Sensor Evaluation Software",
                             "KVT71385 ADR-44"),
      .title_at_load = "KVT71385  Multi-Function  Sensor Evaluation Software : Revision ",
      .short_layout_hides = {1, 2, 3},
      .has_cover = true,
      .has_offset = true,
      .has_interrupt_test = true};
  model.converter.gain_multipliers = {1, 4, 16, 64};
  return model;
}

MultiFunctionModel kvt71388() {
  MultiFunctionModel model{
      .converter =
          converter("frmKVT71388", "KVT71388  Multi-Function  Sensor Evaluation Software", "KVT71388 ADR-44"),
      .title_at_load = "KVT71388  Multi-Function  Sensor Evaluation Software : Revision ",
      .short_layout_hides = {1, 2, 3},
      .has_cover = true};
  model.converter.gain_multipliers = {1, 4, 16, 64};
  return model;
}

MultiFunctionModel kvt71390() {
  MultiFunctionModel model{
      .converter =
          converter("frmKVT71390", "KVT71390  Proximity  Sensor Evaluation Software", "KVT71390 ADR-44"),
      .title_at_load = "KVT71390  Sensor Evaluation Software : Revision ",
      .short_layout_hides = {2, 3},
      .full_layout_shows_pair = true,
      .unsigned_minimum = "0000",
      .has_interrupt_test = true};
  model.converter.panel.write_address = AddressForm::write;
  model.converter.measurements = {power_down, ir_once,       proximity_once,
                                  pair,       ir_continuous, proximity_continuous};
  model.converter.collected_measurement = proximity_continuous.position;
  model.converter.reads_by_gain = true;
  return model;
}

MultiFunctionModel kvt71392() {
  MultiFunctionModel model{
      .converter =
          converter("frmKVT71392", "KVT71392  Multi-Function  Sensor Evaluation Software", "KVT71392 ADR-44"),
      .title_at_load = "KVT71392 Sensor Evaluation Software : Revision ",
      .short_layout_hides = {1, 2},
      .full_layout_shows_pair = true};
  model.converter.measurements = {power_down, als_once, ir_once, als_continuous, ir_continuous};
  model.converter.reads_by_gain = true;
  return model;
}

}  // namespace

std::span<const MultiFunctionModel> multi_function_models() {
  static const std::array models{kvt71385(), kvt71388(), kvt71390(), kvt71392()};
  return models;
}

}  // namespace varzelin
