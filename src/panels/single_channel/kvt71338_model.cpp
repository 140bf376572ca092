#include "panels/single_channel/kvt71338_model.h"

namespace varzelin {

const PanelModel kvt71338_model{
    .form_name = "frmKVT71338",
    .title = "KVT71338  Ambient Light Sensor Evaluation Software",
    .interval = "100",
    .scale = "4095",
    .scale_addition = 1,
    .devices = {{"KVT71338 ADR-44", 0x88}, {"KVT71338 ADR-45", 0x8A}},
    .shown_reply_bytes = 5,
    .unloaded_panels = {"frmKVT71356", "frmKVT71344"},
    .transfers = Transfers::checked,
    .sampling_holds_session = false,
};

const std::array<RegisterWrite, 1> kvt71338_writes{
    {{&Store::PendingWriteR0, RegisterWrite::Disconnect::before_read_back}}};

}  // namespace varzelin
