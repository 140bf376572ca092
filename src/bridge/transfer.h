// The transfer routines. They take no arguments: a caller fills Pipe_Num, Xfer_Size and Xfer_Buf of
// the shared store, then calls one. Each yields, so another handler may run in between and transfer
// something else: the variables are put back behind it. What it does to the board isn't: a handler that
// fetches a reply between another's request and reply takes that one's. The panels guard against that.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "bridge/program.h"
#include "forms/color.h"

namespace varzelin {

// The bridge's IN pipe stands this much above its OUT pipe: the USB direction bit.
inline constexpr std::int32_t in_pipe_offset = 128;

// The bus address of the transfers to come, of which the low byte counts: writes go there, reads to the
// address above it.
void set_bus_address(Store& store, int write_address);

// Makes Xfer_Buf anew, all zero, with Xfer_Size bytes.
void ReDim_Xfer_Buf(Store& store);
// A byte of Xfer_Buf; raises subscript_out_of_range beyond its end.
std::uint8_t xfer_byte(const Store& store, std::size_t index);
// Sets up a request of these bytes on the pipe; the caller then writes it.
void set_request(Store& store, std::int32_t pipe, std::initializer_list<int> bytes);
// Sets up a request of this many zero bytes; the caller fills it, and then writes it.
void set_blank_request(Store& store, std::int32_t pipe, std::int32_t size);
// Sets up a reply of this many bytes on the pipe; the caller then reads it.
void set_reply(Store& store, std::int32_t pipe, std::int32_t size);

// One transfer as the variables say and nothing else: no yield, no lamp, no log. The status goes to
// Usb_Status.
void raw_transfer(Program& program, bool read);

// What became of a transfer. Given up: a collection began in its yield, which has the bus to itself.
enum class Outcome { good, failed, given_up };

// Unchecked, for the sensor panels: nothing is tested before, nothing is logged. A failure clears
// Sample_Run and turns the lamp ShpAttach of Active_Form red; a good transfer turns it light green. A
// transfer in whose first yield a collection begins is given up.
Outcome Fast_Write(Program& program);
Outcome Fast_Read(Program& program);

// Checked, for the workbench, scripts, GPIO and some panels: the session has to be open, the device to
// give its information and the setting to have pipes; failures go to the log.
Outcome WritePipe(Program& program);
Outcome ReadPipe(Program& program);

// Copies the pipe records of a setting. Without pipes: a log entry, and false.
bool Get_Pipes(Program& program, const boards::AlternateSetting& setting,
               std::vector<boards::PipeInfo>& list);

// Colours the lamp ShpAttach of the form in front, if there is one and it has such a lamp.
void colour_attach_lamp(Store& store, forms::Color color);

// The log's words for a failed WDU_GetDeviceInfo, by Usb_Status. The number behind "&H" is decimal.
std::string device_info_failed_text(Program& program, std::string_view routine);

}  // namespace varzelin
