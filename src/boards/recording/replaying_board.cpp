#include "boards/recording/replaying_board.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "boards/recording/recording_format.h"
#include "forms/files.h"

namespace boards {
namespace {

constexpr std::string_view answer_mark = " -> ";
// No call takes so long; a number beyond is no duration.
constexpr double longest_call_ms = 3'600'000;

[[noreturn]] void fail(std::size_t line, const std::string& why) {
  throw std::runtime_error("line " + std::to_string(line) + " of the recording: " + why);
}

bool starts(const std::string& text, std::string_view word) {
  return text.starts_with(word) && text.size() > word.size() && text[word.size()] == ' ';
}

// The number behind the first word of a request or result.
std::optional<Handle> handle_in(std::string_view text) {
  if (const auto blank = text.find(' '); blank != std::string_view::npos) text.remove_prefix(blank + 1);
  Handle value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

bool begins_notification(const std::string& request) {
  return starts(request, "attach") || starts(request, "detach");
}

// What a good call must have brought.
bool result_is_good(const std::string& request, Status status, const std::string& result) {
  if (starts(request, "WDU_VB_Init")) return status != success || handle_in(result);
  if (!starts(request, "WDU_Transfer")) return result.empty();
  if (request.find(" read ") == std::string::npos) return handle_in(result).has_value();
  return recording::parse_bytes(result).has_value();
}

}  // namespace

ReplayingBoard::ReplayingBoard(std::istream& recording, forms::Clock& clock) : clock_(clock) {
  std::vector<char> buffer(forms::longest_line + 1);
  std::size_t number = 0;
  while (recording.getline(buffer.data(), static_cast<std::streamsize>(buffer.size())) ||
         recording.gcount() > 0) {
    ++number;
    if (recording.fail()) fail(number, "longer than 1 MiB");
    const auto size = static_cast<std::size_t>(recording.gcount()) - (recording.eof() ? 0 : 1);
    const std::string text(buffer.data(), size);
    if (number == 1 && text != recording::header)
      fail(number, "\"" + recording::printable(text) + "\" is not the head of one");
    if (number > 1 && !text.empty() && text[0] != '#') parse(text, number);
  }
  if (number == 0) throw std::runtime_error("the recording is empty");
}

void ReplayingBoard::parse(const std::string& text, std::size_t number) {
  if (starts(text, "board")) {
    board_name_ = text.substr(6);
    return;
  }
  std::istringstream in(text);
  std::string word;
  if (starts(text, "device")) {
    auto info = recording::parse_device_info(text.substr(7));
    if (!info) fail(number, "not a device information");
    devices_.push_back(std::move(*info));
    return;
  }
  if (starts(text, "text")) {
    Status status = 0;
    if (!(in >> word >> status >> std::ws)) fail(number, "not a status text");
    std::getline(in, texts_[status]);
    return;
  }
  Line line{.number = number, .request = {}, .result = {}, .device = devices_.size()};
  double time = 0;
  if (!(in >> time >> std::ws) || !std::getline(in, line.request)) fail(number, "not a call");
  if (const auto mark = line.request.find(answer_mark); mark != std::string::npos) {
    std::istringstream answer(line.request.substr(mark + answer_mark.size()));
    double took = 0;
    const bool is_good = answer >> line.status >> took && took >= 0 && took <= longest_call_ms;
    if (!is_good) fail(number, "not a status and a duration");
    line.took = std::chrono::round<forms::Clock::Duration>(std::chrono::duration<double, std::milli>(took));
    answer >> std::ws;
    std::getline(answer, line.result);
    line.request.resize(mark);
  }
  if (!result_is_good(line.request, line.status, line.result)) fail(number, "not the result of this call");
  if (begins_notification(line.request) && !handle_in(line.request)) fail(number, "not a notification");
  const bool gives_info = starts(line.request, "WDU_GetDeviceInfo") && line.status == success;
  const bool needs_device = gives_info || starts(line.request, "attach");
  if (needs_device && devices_.empty()) fail(number, "no device information yet");
  if (gives_info && devices_.back().configurations.empty()) fail(number, "the device has no configuration");
  lines_.push_back(std::move(line));
}

void ReplayingBoard::differ(std::string got) {
  const std::size_t last = lines_.empty() ? 1 : lines_.back().number;
  difference_ = at_end() ? Difference{last + 1, "the end of the recording", std::move(got)}
                         : Difference{lines_[next_].number, recording::printable(lines_[next_].request),
                                      std::move(got)};
  if (on_advice) on_advice(VB_Stat2Str(replay_differs));
}

void ReplayingBoard::end() {
  if (!difference_ && !at_end()) differ("the end of the program");
}

const ReplayingBoard::Line* ReplayingBoard::take(const std::string& request) {
  if (difference_) return nullptr;
  if (at_end() || lines_[next_].request != request) {
    differ(request);
    return nullptr;
  }
  const Line& line = lines_[next_++];
  clock_.pass(line.took);
  return &line;
}

Status ReplayingBoard::replay(const std::string& request) {
  const Line* line = take(request);
  return line ? line->status : replay_differs;
}

const DeviceInfo& ReplayingBoard::device_info(const Line& line) const {
  return devices_[line.device - 1];
}

std::string ReplayingBoard::VB_Stat2Str(Status status) const {
  if (status == replay_differs && difference_) {
    return "The replay differs at line " + std::to_string(difference_->line) +
           " of the recording: expected " + difference_->expected + ", got " + difference_->got;
  }
  const auto text = texts_.find(status);
  return text == texts_.end() ? "Status " + std::to_string(status) : text->second;
}

void ReplayingBoard::deliver_notifications() {
  while (!difference_ && !at_end() && begins_notification(lines_[next_].request)) {
    const Line& line = lines_[next_++];
    const Handle device = *handle_in(line.request);
    const EventTable events = events_;  // a handler may open another session
    if (starts(line.request, "attach")) {
      const bool accepted = events.attach && events.attach(device, device_info(line));
      take(recording::request::attached(device, accepted));
    } else {
      if (events.detach) events.detach(device);
      take(recording::request::detached(device));
    }
  }
}

void ReplayingBoard::model_chosen(std::string_view model) {
  take(recording::request::model_chosen(model));
}

Status ReplayingBoard::do_init(Handle& session, const MatchRow& match, EventTable events) {
  const Line* line = take(recording::request::init(match));
  if (!line) return replay_differs;
  if (line->status == success) {
    session = *handle_in(line->result);
    events_ = std::move(events);
  }
  return line->status;
}

Status ReplayingBoard::do_uninit(Handle session) {
  return replay(recording::request::uninit(session));
}

Status ReplayingBoard::do_close_handle(Handle session) {
  return replay(recording::request::close_handle(session));
}

Status ReplayingBoard::do_get_device_info(Handle device, DeviceInfo& info) {
  const Line* line = take(recording::request::get_device_info(device));
  if (!line) return replay_differs;
  if (line->status == success) info = device_info(*line);
  return line->status;
}

Status ReplayingBoard::do_set_interface(Handle device, std::int32_t interface_number,
                                        std::int32_t alternate) {
  return replay(recording::request::set_interface(device, interface_number, alternate));
}

Status ReplayingBoard::do_reset_device(Handle device) {
  return replay(recording::request::reset_device(device));
}

Status ReplayingBoard::do_reset_pipe(Handle device, std::int32_t pipe) {
  return replay(recording::request::reset_pipe(device, pipe));
}

Status ReplayingBoard::do_transfer(Handle device, std::int32_t pipe, bool read,
                                   std::span<std::uint8_t> buffer, std::size_t& transferred) {
  const Line* line = take(recording::request::transfer(device, pipe, read, buffer));
  if (!line) return replay_differs;
  if (read) {
    const auto bytes = recording::parse_bytes(line->result).value();
    transferred = std::min(bytes.size(), buffer.size());
    std::copy_n(bytes.begin(), transferred, buffer.begin());
  } else {
    transferred = std::min(static_cast<std::size_t>(*handle_in(line->result)), buffer.size());
  }
  return line->status;
}

}  // namespace boards
