#include "panels/single_channel/eight_register_model.h"

#include "registers/kvt71344.h"

namespace varzelin {
namespace {

using Disconnect = RegisterWrite::Disconnect;

template <std::size_t Registers, std::size_t Fields>
constexpr std::array<std::uint8_t, 4> written_at_power_on(
    const registers::RegisterMap<Registers, Fields>& map) {
  std::array<std::uint8_t, 4> bytes{};
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = map.registers[i].power_on;
  return bytes;
}

const std::array<EightRegisterModel, 2> models{{
    {
        .panel = {.form_name = "frmKVT71344",
                  .title = "KVT71344/5  Ambient Light Sensor Evaluation Software",
                  .interval = "100",
                  .scale = "25000",
                  .scale_addition = 0.00001,
                  .devices = {{"KVT71344 ADR-44", 0x88},
                              {"KVT71345 ADR-40", 0x80},
                              {"KVT71345 ADR-41", 0x82},
                              {"KVT71345 ADR-42", 0x84},
                              {"KVT71345 ADR-43", 0x86},
                              {"KVT71345 ADR-44", 0x88},
                              {"KVT71345 ADR-45", 0x8A},
                              {"KVT71345 ADR-46", 0x8C},
                              {"KVT71345 ADR-47", 0x8E}},
                  .shown_reply_bytes = 5,
                  .unloaded_panels = {"frmKVT71356", "frmKVT71344"},
                  .sampling_session_end = SessionEnd::connect_again,
                  .integration_timer = false},
        .writes = {{{&Store::PendingWriteR0},
                    {&Store::PendingWriteR1},
                    {&Store::PendingIntHigh},
                    {&Store::PendingIntLow, Disconnect::before_read_back}}},
        .image_at_load = written_at_power_on(registers::kvt71344::kvt71344_map),
        .register_labels = {"R0", "R1", "R2", "R3", "Lux", "Lux", "Icycless", "Meas"},
        .buttons = {"Write Command Register R0", "Write  Control Register R1", "Write High Int Limit R2",
                    "Write Low Int Limit R3", "Read Regs R0-R3", "Read Lux && ICycle R4-R7"},
        .commands = {"Reset ADC", "Pwr Down", "Ext Time", "ADC &&  Device Power Down"},
        .resolutions = {"16", "12", "8", "4"},
        .ranges = {"1k", "4k", "16k", "64k"},
        .diodes = {"Diode 1", "Diode 2", "Difference"},
        .limit_maximum = 65280,
        // A row that the list doesn't have: it would be a sensor with the light count alone.
        .light_count_row = 9,
    },
    {
        .panel = {.form_name = "frmKVT71356",
                  .title = "KVT71356  Ambient Light Sensor Evaluation Software",
                  .interval = "100",
                  .scale = "25000",
                  .scale_addition = 0.00001,
                  .devices = {{"KVT71356 ADR-44", 0x88}},
                  .shown_reply_bytes = 5,
                  .transfers = Transfers::checked,
                  .sampling_session_end = SessionEnd::leave,
                  .yields_before_disconnect = 10000},
        .writes = {{{&Store::PendingWriteR0},
                    {&Store::PendingWriteR1},
                    {&Store::PendingIntHigh, Disconnect::never},
                    {&Store::PendingIntLow, Disconnect::never}}},
        .image_at_load = written_at_power_on(registers::kvt71344::kvt71356_map),
        .writes_at_load = true,
        .register_labels = {"b000", "b001", "b010", "b011", "Lux", "Lux", "Icycless", "Meas"},
        .buttons = {"Write Command Register b000", "Write  Control Register b001",
                    "Write High Int Limit b010", "Write Low Int Limit b011", "Read Regs b000-011",
                    "Read Lux && ICycle b100-111"},
        .commands = {"Reset ADC", "Power Down", "External Time"},
        .resolutions = {"15", "11", "7", "3"},
        .ranges = {"2000", "8000", "32000", "128000"},
        .diodes = {"Light Count"},
        .limit_maximum = 32512,
        .light_count_row = 0,
        .one_measurement = true,
        .limits_top_byte = true,
        .resets_by_power_down = false,
        .resets_before_collection = false,
        .measures_by_rule = true,
        .connects_before_sampling = true,
        .read_back_connects_first = true,
        .stop_disconnects = true,
        .clear_disconnects_first = false,
        .pin_by_gpio_panel = true,
        .timer_polls = true,
    },
}};

}  // namespace

std::span<const EightRegisterModel> eight_register_models() {
  return models;
}

}  // namespace varzelin
