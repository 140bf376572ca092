// A bus trace as a capture file that Wireshark and tshark read.
#pragma once

#include <ostream>
#include <string_view>

#include "boards/trace/bus_trace.h"

namespace boards {

// Writes all that the trace keeps, as pcapng (IETF draft-ietf-opsawg-pcapng) with the link type of Linux's
// usbmon with padded header (220, LINKTYPE_USB_LINUX_MMAPPED). Each transfer gives two packets, as usbmon
// itself would: its submission, with the data that go out, and its completion, with those that came in. A
// transfer that the driver refused was never on the USB and isn't written.
// Times are date and time to the nanosecond. `program` is noted as the writing application. Whether the
// writing worked is to be seen from the stream.
void write_pcapng(std::ostream& out, const BusTrace& trace, std::string_view program);

}  // namespace boards
