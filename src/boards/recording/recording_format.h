// The text of a board recording: what RecordingBoard writes and ReplayingBoard reads. See README.md.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "boards/driver.h"

namespace boards::recording {

inline constexpr std::string_view header = "varzelin-board-recording 1";

// The part of a line that says what the program asked for. Two calls are the same when these are.
namespace request {
std::string init(const MatchRow& match);
std::string uninit(Handle session);
std::string close_handle(Handle session);
std::string get_device_info(Handle device);
std::string set_interface(Handle device, std::int32_t interface_number, std::int32_t alternate);
std::string reset_device(Handle device);
std::string reset_pipe(Handle device, std::int32_t pipe);
// `buffer` is what is sent; of a read only its size counts.
std::string transfer(Handle device, std::int32_t pipe, bool read, std::span<const std::uint8_t> buffer);
std::string model_chosen(std::string_view model);
// How a notification begins, and how it ends with the program's answer.
std::string attach(Handle device);
std::string attached(Handle device, bool accepted);
std::string detach(Handle device);
std::string detached(Handle device);
}  // namespace request

// The bytes of a text as boards::hex writes it.
// No value: it is another text.
std::optional<std::vector<std::uint8_t>> parse_bytes(std::string_view text);

// A part of a file that may hold anything, for a message on a terminal: control characters as "\x1B", cut
// where it is long.
std::string printable(std::string_view text);

std::string device_info(const DeviceInfo& info);
std::optional<DeviceInfo> parse_device_info(std::string_view text);

}  // namespace boards::recording
