#include "panels/two_mode/two_mode_model.h"

#include "panels/two_mode/proximity_filter.h"
#include "registers/kvt71374.h"

namespace varzelin {
namespace {

namespace map = registers::kvt71374;
using Disconnect = RegisterWrite::Disconnect;

constexpr ConverterFields fields{.operation = map::operation,
                                 .external_timing = map::external_timing,
                                 .time_base = map::time_base,
                                 .scheme = map::scheme,
                                 .modulation = map::modulation,
                                 .current = map::current,
                                 .width = map::width,
                                 .range = map::range,
                                 .modulation_values = {0, 1, 2, 3},
                                 .current_values = {0, 1, 2, 3}};

constexpr Option als_once{1, "ALS Once"};
constexpr Option als_continuous{5, "ALS Cont."};

// What both have. A write goes out under the read form of the address: the board takes it so.
ConverterModel converter(const char* form_name, const char* title, const char* device) {
  return {.panel = {.form_name = form_name,
                    .title = title,
                    .interval = "120",
                    .scale = "65535",
                    .scale_addition = 1,
                    .devices = {{device, 0x88}},
                    .sample_caption = "Start",
                    .write_address = AddressForm::read,
                    .buttons_stay = true,
                    .heartbeat = false,
                    .yields_when_closed = 1},
          .fields = &fields,
          .writes = {{.pending = &Store::PendingWriteR0,
                      .disconnect = Disconnect::before_read_back,
                      .yields_before = 2},
                     {.pending = &Store::PendingWriteR1,
                      .disconnect = Disconnect::before_read_back,
                      .yields_before = 3}},
          .boxes = {.written = {0, 1},
                    .read = {0, 1, 2, 3, 4, 5},
                    .lamps = {0, 1, 2, 4, 5, 8, 9, 10, 11, 12},
                    .framed_lamps = {filter_lamp::high_limit, filter_lamp::low_limit, filter_lamp::formula,
                                     filter_lamp::delta, filter_lamp::base_accepted, filter_lamp::below,
                                     filter_lamp::between, filter_lamp::above, filter_lamp::fixed}},
          .measurements = {{0, "Power Down"},
                           {2, "IR Once"},
                           {3, "Prox. Once"},
                           {4, "(Prox-IR) Calculated"},
                           {6, "IR Cont"},
                           {7, "Prox. Cont"},
                           {8, "(Prox - IR)Cont"},
                           {9, "(Prox-IR) ADJ"}},
          .modulations = {{0, "DC"}, {1, "1311"}, {2, "655.3"}, {3, "327.7"}},
          .modes = {{0, "Measure"}, {1, "Power Down"}, {2, "Test Comm"}},
          .command_caption = "Write Command b000",
          .control_caption = "Write Command II  b001",
          .syncs = 2,
          .collected_measurement = als_continuous.position,
          .pair = {.stops_at_failure = true, .powers_down = true}};
}

TwoModeModel kvt71374() {
  TwoModeModel model{
      converter("frmKVT71374", "KVT71374  Multi-Function  Sensor Evaluation Software", "KVT71374 ADR-44")};
  model.converter.measurements.push_back(als_once);
  model.converter.measurements.push_back(als_continuous);
  return model;
}

TwoModeModel kvt71376() {
  return {
      converter("frmKVT71376", "KVT71376  Multi-Function  Sensor Evaluation Software", "KVT71376 ADR-44")};
}

}  // namespace

std::span<const TwoModeModel> two_mode_models() {
  static const std::array models{kvt71374(), kvt71376()};
  return models;
}

}  // namespace varzelin
