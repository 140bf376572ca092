#include "panels/single_channel/kvt71346_model.h"

namespace varzelin {

// The addresses count in ones where the bus addresses step by two, and lack 0x86: it is what this
// device list has always sent, and what setups on benches rely on.
const PanelModel kvt71346_model{
    .form_name = "frmKVT71346",
    .title = "KVT7134X Ambient Light Sensor Evaluation Software",
    .interval = "120",
    .scale = "15000",
    .scale_addition = 0,
    .devices = {{"KVT71346 ADR-44", 0x88},
                {"KVT71347 ADR-40", 0x80},
                {"KVT71347 ADR-41", 0x81},
                {"KVT71347 ADR-42", 0x82},
                {"KVT71347 ADR-43", 0x83},
                {"KVT71347 ADR-44", 0x84},
                {"KVT71347 ADR-45", 0x85},
                {"KVT71347 ADR-46", 0x87},
                {"KVT71347 ADR-47", 0x88}},
    .wake_margin = 8,
    .sleep_margin = 8,
    .full_trace_sleep = 10,
    .exit_button = {.name = "CommandButton1", .stays_in_loops = true},
    .unloaded_panels = {"frmKVT71356"},
};

}  // namespace varzelin
